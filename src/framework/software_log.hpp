#pragma once

#include "foundation/vector.hpp"
#include "framework/software_identity.hpp"
#include "pool/parameter_pool_read_write_change.hpp"

namespace varnoth {

/// The table of the chain's software runs, as a log pool keeps it: six parallel vectors with a row
/// per step. A step that runs again replaces the row of its name.
///
///     SoftwareLog runs;
///     runs.update_pool(log_pool, identity);
///     log_pool.update();
class SoftwareLog {
 public:
  /// Adds a row for the run, or replaces the row of that name.
  void add(const SoftwareIdentity& identity);
  /// Reads the pool's table, takes the present moment as the run's end, adds the run, and writes
  /// the table into the pool object. The flag QA_WARNING_FLAG becomes true if this run logged a QA
  /// warning, and false only in a pool that has no flag yet. The pool stays locked until its
  /// update. Throws what the pool throws, such as WRONG_PARAMETER_TYPE for a vector of another
  /// type.
  void update_pool(PARAMETER_POOL_READ_WRITE_CHANGE& pool, SoftwareIdentity& identity);

  VECTOR<STRING> names{0, 0};
  VECTOR<STRING> versions{0, 0};
  VECTOR<STRING> dates{0, 0};
  VECTOR<STRING> start_times{0, 0};
  VECTOR<STRING> end_times{0, 0};
  ARRAY<int> execution_times{0, 0};  ///< whole seconds

 private:
  int RowOf(const STRING& name) const;
  void Resize(int rows);
};

}  // namespace varnoth
