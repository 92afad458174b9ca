#pragma once

#include "foundation/vector.hpp"
#include "framework/software_identity.hpp"
#include "pool/parameter_pool_read_write_change.hpp"

namespace varnoth {

/// The table of the chain's software runs as a log pool keeps it: six parallel vectors, one row per
/// step. A step that runs again replaces its own row, which is known by its name.
class SoftwareLog {
 public:
  /// Adds a row for the run, or replaces the row of that name.
  void add(const SoftwareIdentity& identity);
  /// Merges the run into a log pool's table and takes the run's end at that moment. The pool's flag
  /// QA_WARNING_FLAG is set if this run wrote a QA warning; a warning flagged by an earlier step is
  /// never cleared. The pool stays locked until its update. Throws what the pool throws, as
  /// WRONG_PARAMETER_TYPE for a vector of another type.
  void update_pool(PARAMETER_POOL_READ_WRITE_CHANGE& pool, SoftwareIdentity& identity);

  VECTOR<STRING> names{0, 0};
  VECTOR<STRING> versions{0, 0};
  VECTOR<STRING> dates{0, 0};
  VECTOR<STRING> start_times{0, 0};
  VECTOR<STRING> end_times{0, 0};
  ARRAY<int> execution_times{0, 0};

 private:
  int RowOf(const STRING& name) const;
  void Resize(int rows);
};

}  // namespace varnoth
