#include "system/signal_safe/uninterrupted.hpp"

#include "system/signal_safe/descriptor.hpp"

namespace varnoth {

static_assert(std::atomic<int>::is_always_lock_free);
static_assert(std::atomic<void (*)()>::is_always_lock_free);

UNINTERRUPTED::UNINTERRUPTED(int descriptor) : outer(waiting_for) {
  if (descriptor != NONE) waiting_for = descriptor;
  ++depth;
}

UNINTERRUPTED::~UNINTERRUPTED() {
  waiting_for = outer;
  if (--depth > 0) return;
  if (void (*const action)() = at_end.exchange(nullptr); action != nullptr) action();
}

bool UNINTERRUPTED::IsUnderWay() {
  return depth > 0 && (waiting_for == NONE || TakesBytes(waiting_for));
}

}  // namespace varnoth
