#include "tools/geometry/blocks.hpp"

#include <condition_variable>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace varnoth::tools {

namespace {

/// What the threads share: whose turn it is.
class TURNS {
 public:
  void Run(BLOCK_WORKER& worker) {
    try {
      for (std::size_t mine = 0; Take(worker, mine);) {
        worker.Work();
        if (!Give(worker, mine)) return;
      }
    } catch (...) {
      const std::lock_guard lock(mutex);
      if (failure == nullptr) failure = std::current_exception();
      turn.notify_all();
    }
  }

  void Throw() const {
    if (failure != nullptr) std::rethrow_exception(failure);
  }

 private:
  bool Take(BLOCK_WORKER& worker, std::size_t& mine) {
    const std::lock_guard lock(taking);
    {
      const std::lock_guard state(mutex);
      if (failure != nullptr) return false;
    }
    mine = taken++;
    return worker.Take();
  }

  bool Give(BLOCK_WORKER& worker, std::size_t mine) {
    {
      std::unique_lock lock(mutex);
      turn.wait(lock, [&] { return given == mine || failure != nullptr; });
      if (failure != nullptr) return false;
    }
    worker.Give();
    const std::lock_guard lock(mutex);
    ++given;
    turn.notify_all();
    return true;
  }

  std::mutex taking;
  std::mutex mutex;  ///< of `given` and `failure`
  std::condition_variable turn;
  std::size_t taken = 0;
  std::size_t given = 0;
  std::exception_ptr failure;
};

}  // namespace

void RunInOrder(std::size_t count, const std::function<std::unique_ptr<BLOCK_WORKER>()>& make) {
  TURNS turns;
  std::vector<std::unique_ptr<BLOCK_WORKER>> workers;
  for (std::size_t i = 0; i < count; ++i) workers.push_back(make());
  std::vector<std::thread> threads;
  try {
    for (std::size_t i = 1; i < count; ++i) {
      threads.emplace_back([&turns, &worker = *workers[i]] { turns.Run(worker); });
    }
  } catch (const std::system_error&) {  // fewer threads do as well
  }
  turns.Run(*workers[0]);
  for (std::thread& thread : threads) thread.join();
  turns.Throw();
}

}  // namespace varnoth::tools
