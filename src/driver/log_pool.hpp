#pragma once

#include <memory>

#include "foundation/string.hpp"
#include "pool/parameter_pool_read_write_change.hpp"

namespace varnoth {

/// The pool that takes the software information: the InSAR pool itself if both have the same name,
/// otherwise a separate one. Only `Finish` changes the file of a separate log pool; a run that
/// fails earlier leaves it as it was.
///
///     LOG_POOL log_pool(insar_pool, "insar.pool", "log.pool");
///     information.update_pool(log_pool.Pool(), identity);
///     log_pool.Finish();
class LOG_POOL {
 public:
  /// Opens a separate pool if the names differ; throws what that throws. The InSAR pool must
  /// outlive the object.
  LOG_POOL(PARAMETER_POOL_READ_WRITE_CHANGE& insar_pool, const STRING& insar_name,
           const STRING& name)
      : separate(name == insar_name
                     ? nullptr
                     : std::make_unique<PARAMETER_POOL_READ_WRITE_CHANGE>(name.c_str())),
        pool(separate != nullptr ? *separate : insar_pool) {}
  ~LOG_POOL() {
    if (separate != nullptr) separate->close();
  }
  LOG_POOL(const LOG_POOL&) = delete;
  LOG_POOL& operator=(const LOG_POOL&) = delete;

  PARAMETER_POOL_READ_WRITE_CHANGE& Pool() { return pool; }
  /// Updates the file; throws what the update throws.
  void Finish() { pool.update(); }

 private:
  std::unique_ptr<PARAMETER_POOL_READ_WRITE_CHANGE> separate;
  PARAMETER_POOL_READ_WRITE_CHANGE& pool;
};

}  // namespace varnoth
