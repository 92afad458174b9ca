#include "tools/geometry/point_geometry.hpp"

#include <algorithm>
#include <cmath>

#include "driver/scene_geometry.hpp"
#include "foundation/constants.hpp"

namespace varnoth::tools {

namespace {

/// Whether the last search of this thread for the slave's time has failed.
thread_local bool search_has_failed = false;
void NoteOpenSearch(const CLOSEST_APPROACH& /*search*/) { search_has_failed = true; }

constexpr const char* OUTSIDE_MASTER_ORBIT = "outside the master's orbit";
constexpr const char* OUTSIDE_SLAVE_ORBIT = "outside the slave's orbit";
constexpr const char* OPEN_SEARCH = "the search for the slave's time does not converge";

/// SampleGeometry, with the higher target from the lower one. Null, or why there is none.
const char* Solve(SAMPLE_GEOMETRY& sample, const PAIR_CONSTANTS& pair, const IMAGE_POINT& point,
                  double range_time, POINT_WORK& work) {
  search_has_failed = false;
  const ECHO echo = EchoOf(pair, work.line, range_time, point.height);
  const ECHO higher = EchoOf(pair, work.line, range_time, point.height + HEIGHT_STEP);
  sample.target = LocateEcho(echo, work.geolocation);
  if (sample.target.status != SOLVER_STATUS::FOUND) return StatusText(sample.target.status);
  if (!PlaceNear(higher, sample.target.position, sample.higher.position)) {
    sample.higher = LocateEcho(higher, work.geolocation);
    if (sample.higher.status != SOLVER_STATUS::FOUND) return StatusText(sample.higher.status);
  }
  FindSlave(sample, pair, work.line, work.search);
  CompleteSample(sample, pair, work.line, work.search);
  SplitBaseline(sample, work.line);
  return nullptr;
}

void FillRow(ROW& row, const SAMPLE_GEOMETRY& sample, const varnoth::SCENE& scene) {
  const double slave_range_time = 2.0 * sample.slave_range / SPEED_OF_LIGHT;
  const double values[] = {
      sample.target.longitude,
      sample.target.latitude,
      sample.target.incidence,
      sample.slave_incidence,
      sample.master_look_angle,
      sample.slave_look_angle,
      sample.master_range,
      sample.slave_range,
      sample.range_difference,
      sample.baseline,
      sample.perpendicular,
      sample.parallel,
      sample.along_track,
      sample.metres_per_cycle,
      sample.phase,
      (sample.slave_time - scene.slave_first_az_time) * scene.prf[SLAVE],
      (slave_range_time - scene.slave_first_rg_time) * scene.range_sampling_frequency[SLAVE],
  };
  static_assert(std::size(values) == COLUMN_COUNT - POINT_COLUMNS);
  std::copy(std::begin(values), std::end(values), row.begin() + POINT_COLUMNS);
}

}  // namespace

POINT_GEOMETRY::POINT_GEOMETRY(const LOADED_PAIR& pair)
    : scene(pair.scene), constants(ConstantsOf(pair.scene, pair.look_direction)) {
  constants.master_orbit = &orbits[MASTER];
  constants.slave_orbit = &orbits[SLAVE];
  constants.tell_search = NoteOpenSearch;
  constexpr double MARGIN = 600.0;  // s beyond the scene, some 4000 km
  const SCENE_ORBIT* const sources[] = {&scene.master_orbit, &scene.slave_orbit};
  const double first[] = {scene.master_first_az_time, scene.slave_first_az_time};
  const double last[] = {scene.master_last_az_time, scene.slave_last_az_time};
  for (const ROLE role : {MASTER, SLAVE}) {
    auto core =
        std::make_unique<ORBIT_PIECES>(*sources[role], first[role] - MARGIN, last[role] + MARGIN);
    pieces[role] = core.get();
    is_faithful &= core->IsFaithful();
    orbits[role].core = std::move(core);
  }
}

const char* POINT_GEOMETRY::Find(const IMAGE_POINT& point, POINT_WORK& work, ROW& row) const {
  row.fill(std::nan(""));
  row[0] = point.line;
  row[1] = point.sample;
  row[2] = point.height;
  const double time = scene.master_first_az_time + point.line / scene.prf[MASTER];
  if (!pieces[MASTER]->Covers(time)) return OUTSIDE_MASTER_ORBIT;
  if (time != work.line.time) {
    work.line = LineAt(is_faithful ? orbits[MASTER] : scene.master_orbit, time);
  }
  const double range_time =
      scene.master_first_rg_time + point.sample / scene.range_sampling_frequency[MASTER];

  PAIR_CONSTANTS pair = constants;
  // The slave's line is nearly the master's.
  pair.slave_start = std::clamp(scene.slave_first_az_time + point.line / scene.prf[SLAVE],
                                pieces[SLAVE]->Begin(), pieces[SLAVE]->End());
  SAMPLE_GEOMETRY sample;
  const char* reason = Solve(sample, pair, point, range_time, work);
  if (reason != nullptr) return reason;
  if (!pieces[SLAVE]->Covers(sample.slave_time)) return OUTSIDE_SLAVE_ORBIT;
  if (!is_faithful) {
    // Only now, since some orbits end the process at times outside their epochs.
    pair.master_orbit = &scene.master_orbit;
    pair.slave_orbit = &scene.slave_orbit;
    pair.slave_start = sample.slave_time;
    reason = Solve(sample, pair, point, range_time, work);
    if (reason != nullptr) return reason;
  }
  if (search_has_failed) return OPEN_SEARCH;
  FillRow(row, sample, scene);
  return nullptr;
}

}  // namespace varnoth::tools
