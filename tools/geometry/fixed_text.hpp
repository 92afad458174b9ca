#pragma once

#include <cstddef>
#include <string>

namespace varnoth::tools {

/// Room that a number needs: the largest one has 309 digits before its point.
inline constexpr std::size_t FIXED_ROOM = 330;

/// Writes a number with a fixed count of decimals, 1 to 12: "-12.50", at a place with FIXED_ROOM
/// characters. Returns the end of the text. The fraction is scaled and rounded to a whole number,
/// so that the last digit may differ from that of an exact conversion where the rest is within 1e-3
/// of a half; this takes half of its time. What is no finite number becomes "nan", "inf" or "-inf".
char* PutFixed(char* at, double value, int decimals);

/// Appends the same text.
void AppendFixed(std::string& text, double value, int decimals);

}  // namespace varnoth::tools
