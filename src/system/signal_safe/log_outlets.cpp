#include "system/signal_safe/log_outlets.hpp"

namespace varnoth {

void LOG_OUTLETS::AppendHead(TEXT_SINK& sink, int level) const {
  sink.Append({RowOf(level).label, " : ", prefix, " : "});
}

void LOG_OUTLETS::AppendLine(TEXT_SINK& sink, int level, std::string_view text) const {
  sink.Append({RowOf(level).label, " : ", prefix, " : ", text, "\n"});
}

}  // namespace varnoth
