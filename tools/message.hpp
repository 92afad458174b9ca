#pragma once

#include <cstddef>
#include <string>

namespace varnoth {

/// Exit status of every command.
enum TOOL_STATUS : int { GOOD = 0, FINDINGS = 1, WRONG_USAGE = 2 };

enum class SEVERITY { WARNING, ERROR };

/// Writes "FILE:LINE: error: text" to standard error, the form in which editors jump to the place.
/// What concerns a file as a whole stands at line 1.
/// Control characters appear as "?", and a long text is cut.
void Tell(const std::string& file, std::size_t line, SEVERITY severity, const std::string& text);
/// A text as a terminal may show it: what stands in a foreign file could be control characters,
/// which become "?".
std::string Printable(std::string text);
/// The same line, with its end, to be written later.
std::string Message(const std::string& file, std::size_t line, SEVERITY severity,
                    const std::string& text);

/// A distance as words: "12.3 km".
std::string Kilometres(double metres);

}  // namespace varnoth
