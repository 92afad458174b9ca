#pragma once

#include "orbit/orbit.hpp"
#include "records/mdb.hpp"

namespace varnoth {

/// An orbit whose samples are in a record file: one record per epoch, with an item for the epoch
/// and an item for every coordinate, under the names that SetKeys was given. It reads no
/// velocities.
///
///     MDB_ORBIT<double, double, EVERETT<double>, POINT<double>> orbit;
///     orbit.SetKeys("time", "x,y,z", nullptr);
///     orbit.SetPolyFitOrder(8);
///     orbit.read(root_path, mission, tape, source, major, minor, channel, file);
///
/// GENERAL_ORBIT makes these objects by name. T, S, I and P are those of ORBIT.
template <class T, class S, class I, class P>
class MDB_ORBIT : public MDB, public ORBIT<T, S, I, P> {
 public:
  bool IsMdbOrbit() const override { return true; }
  /// Assigns the orbit, not the record file. Throws as the assignment of ORBIT does.
  ORBIT_BASE& operator=(const ORBIT_BASE& source) override;
  using ORBIT_BASE::read;
  /// Loads all records of a file; the first epoch becomes the reference time. `tape` is the number
  /// of the segment, `major` and `minor` are those of the first and second data take.
  ///
  /// Throws what the record file and the interpolators throw; texts for an item that is missing or
  /// not a number; and ERROR_DATA, after a line at ALARM, if the file loses records while it is
  /// read. Nothing detects an epoch item of another type than S if S is a class.
  void read(const STRING& root_path, int mission, int tape, int source, int major, int minor,
            int channel, const STRING& file) override;

 private:
  int CountRecords();
  S EpochOf(const RECORD_ITEM& item) const;
};

}  // namespace varnoth
