#pragma once

#include "orbit/orbit.hpp"
#include "records/mdb.hpp"

namespace varnoth {

/// An orbit whose samples stand in a record file: one record per epoch, with an item for the epoch
/// and an item for every coordinate, under the names that SetKeys gave. Velocities take no part.
template <class T, class S, class I, class P>
class MDB_ORBIT : public MDB, public ORBIT<T, S, I, P> {
 public:
  bool IsMdbOrbit() const override { return true; }
  /// Assigns the orbit, not the record file.
  ORBIT_BASE& operator=(const ORBIT_BASE& source) override;
  using ORBIT_BASE::read;
  /// Loads all records of a file; the first epoch becomes the reference time. `tape` is the
  /// segment's number, `major` and `minor` those of the first and second data take.
  ///
  /// Throws what the record file and the interpolators throw, texts for an item that is no
  /// coordinate, and ERROR_DATA, behind a line at ALARM, if the file has lost records while it was
  /// read.
  void read(const STRING& root_path, int mission, int tape, int source, int major, int minor,
            int channel, const STRING& file) override;

 private:
  int CountRecords();
  S EpochOf(const RECORD_ITEM& item) const;
};

}  // namespace varnoth
