#pragma once

#include <cstddef>
#include <functional>
#include <memory>

namespace varnoth::tools {

/// What one of the threads of `RunInOrder` does: takes the next block, works on it, and gives it
/// away. What a step throws ends the work of all.
class BLOCK_WORKER {
 public:
  virtual ~BLOCK_WORKER() = default;
  /// One worker at a time; false at the end.
  virtual bool Take() = 0;
  /// Beside the others.
  virtual void Work() = 0;
  /// One worker at a time, in the order in which the blocks were taken.
  virtual void Give() = 0;
};

/// Makes `count` workers, one at least, and lets each run in a thread until there are no more
/// blocks. After a failure no more blocks are taken or given; throws the first failure.
void RunInOrder(std::size_t count, const std::function<std::unique_ptr<BLOCK_WORKER>()>& make);

}  // namespace varnoth::tools
