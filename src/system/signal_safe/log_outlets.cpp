#include "system/signal_safe/log_outlets.hpp"

namespace varnoth {

void LOG_OUTLETS::AppendHead(TEXT_SINK& sink, int level) const {
  for (const char* piece : {RowOf(level).label, " : ", prefix, " : "}) sink.Append(piece);
}

}  // namespace varnoth
