#pragma once

#include <cstddef>
#include <string>

namespace varnoth::tools {

/// Why a run failed, in the words of its log.
struct ALARM_LINE {
  std::size_t number = 1;
  std::string text;
};

/// The first line at level ALARM of a run's log; without text if there is none.
ALARM_LINE FirstAlarm(const std::string& log);

}  // namespace varnoth::tools
