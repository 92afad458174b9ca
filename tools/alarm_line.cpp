#include "tools/alarm_line.hpp"

#include <fstream>

namespace varnoth::tools {

ALARM_LINE FirstAlarm(const std::string& log) {
  std::ifstream stream(log);
  ALARM_LINE line{0, ""};
  while (std::getline(stream, line.text)) {
    ++line.number;
    if (line.text.starts_with("ALARM")) return line;
  }
  return {};
}

}  // namespace varnoth::tools
