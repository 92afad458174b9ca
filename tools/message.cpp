#include "tools/message.hpp"

#include <cstdio>

namespace varnoth {

namespace {

std::string Cut(std::string text) {
  constexpr std::size_t LIMIT = 500;
  if (text.size() > LIMIT) text.replace(LIMIT, text.npos, "...");
  return text;
}

}  // namespace

std::string Printable(std::string text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    // C2 80 to C2 9F are the control characters of Latin-1.
    const bool is_upper =
        byte == 0xC2 && i + 1 < text.size() && static_cast<unsigned char>(text[i + 1]) < 0xA0;
    if (is_upper) text.erase(i, 1);
    if (is_upper || byte < 0x20 || byte == 0x7F) text[i] = '?';
  }
  return text;
}

std::string Message(const std::string& file, std::size_t line, SEVERITY severity,
                    const std::string& text) {
  return Printable(file) + ":" + std::to_string(line) +
         (severity == SEVERITY::ERROR ? ": error: " : ": warning: ") + Printable(Cut(text)) + "\n";
}

void Tell(const std::string& file, std::size_t line, SEVERITY severity, const std::string& text) {
  std::fputs(Message(file, line, severity, text).c_str(), stderr);
}

std::string Kilometres(double metres) {
  char text[40];
  std::snprintf(text, sizeof text, "%.1f km", metres / 1000);
  return text;
}

}  // namespace varnoth
