#pragma once

#include <string>

namespace varnoth::tools {

/// Appends a number with a fixed count of decimals, 0 to 12: "-12.50". A value whose digits fit
/// into a double is scaled and rounded to a whole number, so that its last digit may differ from
/// the exact rounding where the rest is within 1e-3 of a half; this takes a tenth of the time of
/// an exact conversion. What is no finite number becomes "nan", "inf" or "-inf".
void AppendFixed(std::string& text, double value, int decimals);

}  // namespace varnoth::tools
