#include "imported_scene.hpp"

#include <algorithm>
#include <cmath>

#include "fuzz_target.hpp"
#include "orbit/general_orbit.hpp"
#include "tools/import/moment.hpp"
#include "tools/import/scene_pool.hpp"

namespace varnoth::fuzz {

namespace {

using namespace varnoth::tools;

template <class X>
void RequireValue(PARAMETER_POOL& pool, const char* key, X wanted) {
  X read{};
  pool.Read(key, read);
  Require(read == wanted, key);
}

/// A pool keeps the start of a long text, and replaces what it can't keep.
void RequireText(PARAMETER_POOL& pool, const char* key, const std::string& wanted) {
  STRING read;
  pool.Read(key, read);
  const bool is_plain = std::all_of(wanted.begin(), wanted.end(),
                                    [](char c) { return c >= ' ' && c <= '~' && c != '\\'; });
  Require(!is_plain || read == wanted.substr(0, 450).c_str(), key);
}

void RequireList(PARAMETER_POOL& pool, const std::string& key, const std::vector<double>& wanted) {
  ARRAY<double> read;
  pool.Read(key.c_str(), read);
  Require(std::equal(read.begin(), read.end(), wanted.begin(), wanted.end()), key.c_str());
}

void RequireOrbit(PARAMETER_POOL& pool, const SCENE& scene) {
  constexpr double HALF_A_MICROSECOND = 0.5e-6;
  const STATE_VECTORS& vectors = scene.orbit;
  const MOMENT midnight{scene.first_line.value.day, 0};
  for (int axis = 0; axis < 3; ++axis) {
    const std::string name(1, "xyz"[axis]);
    RequireList(pool, "orbit_" + name, vectors.position[axis]);
    RequireList(pool, "orbit_v" + name, vectors.velocity[axis]);
  }
  SCENE_ORBIT orbit;
  orbit.read(pool);
  Require(orbit.core->GetSampleCount() == static_cast<int>(vectors.epoch.size()),
          "all state vectors are read again");
  for (int i = 0; i < orbit.core->GetSampleCount(); ++i) {
    double time = 0;
    orbit.core->GetRelativeSampleTime(i, time);
    const auto microseconds = MicrosecondsBetween(midnight, vectors.epoch[std::size_t(i)]);
    Require(std::abs(time - orbit.time_offset - 1e-6 * static_cast<double>(microseconds)) <
                HALF_A_MICROSECOND,
            "an epoch is read again");
  }
}

}  // namespace

void RequireReadable(const SCENE& scene, const std::string& interpolation) {
  WriteFile("scene", ScenePoolText(scene, interpolation));
  PARAMETER_POOL pool("scene");
  RequireText(pool, "scene_name", scene.name.value);
  RequireText(pool, "satellite", scene.satellite.value);
  RequireText(pool, "antenna_look_direction", scene.look_direction.value);
  RequireValue(pool, "n_lines", static_cast<int>(scene.line_count.value));
  RequireValue(pool, "n_samples", static_cast<int>(scene.sample_count.value));
  RequireValue(pool, "first_az_time",
               static_cast<double>(scene.first_line.value.microseconds) / MICROSECONDS_OF_SECOND);
  RequireValue(pool, "first_rg_time", scene.first_range_time.value);
  RequireValue(pool, "prf", scene.line_rate.value);
  RequireValue(pool, "az_bandwidth", scene.azimuth_bandwidth.value);
  RequireValue(pool, "range_sampling_frequency", scene.range_sampling_frequency.value);
  RequireValue(pool, "radar_frequency", scene.radar_frequency.value);
  RequireValue(pool, "center_longitude", static_cast<float>(scene.center_longitude.value));
  RequireValue(pool, "center_latitude", static_cast<float>(scene.center_latitude.value));
  RequireList(pool, "ellipsoid_parameters",
              {0, 0, 0, 0, 0, 0, 0, scene.equatorial_radius.value, scene.polar_radius.value});
  RequireOrbit(pool, scene);
}

}  // namespace varnoth::fuzz
