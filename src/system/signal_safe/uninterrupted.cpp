#include "system/signal_safe/uninterrupted.hpp"

#include "system/signal_safe/descriptor.hpp"

namespace varnoth {

static_assert(std::atomic<int>::is_always_lock_free);
static_assert(std::atomic<void (*)()>::is_always_lock_free);

// The handler interrupts the thread that writes to the log and never runs beside it: the order that
// the compiler keeps is all that is needed. Ordered for other threads, too, each object would wait
// five times for the processor to drain its writes.

UNINTERRUPTED::UNINTERRUPTED(int descriptor) : outer(Get(waiting_for)) {
  if (descriptor != NONE) Set(waiting_for, descriptor);
  Set(depth, Get(depth) + 1);
  std::atomic_signal_fence(std::memory_order_seq_cst);
}

UNINTERRUPTED::~UNINTERRUPTED() {
  std::atomic_signal_fence(std::memory_order_seq_cst);
  Set(waiting_for, outer);
  Set(depth, Get(depth) - 1);
  std::atomic_signal_fence(std::memory_order_seq_cst);
  void (*const action)() = Get(at_end);
  if (action == nullptr || Get(depth) > 0) return;
  Set<void (*)()>(at_end, nullptr);
  action();
}

void UNINTERRUPTED::AtItsEnd(void (*action)()) { Set(at_end, action); }

bool UNINTERRUPTED::IsUnderWay() {
  return Get(depth) > 0 && (Get(waiting_for) == NONE || TakesBytes(Get(waiting_for)));
}

}  // namespace varnoth
