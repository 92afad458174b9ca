#include "driver/scene_parameters.hpp"

#include <stdexcept>
#include <string>

#include "foundation/errors.hpp"

namespace varnoth {

namespace {

void LogPool(const PARAMETER_POOL& pool) {
  if (pool.GetFileName().IsEmpty()) {
    throw std::out_of_range("subscript greater than string length");
  }
  GlobalLog.printf_line(TRACE, "reading parameter pool : %s", pool.GetFileName().c_str());
}

int ReadLookDirection(PARAMETER_POOL& pool) {
  STRING stated;
  pool.Read("antenna_look_direction", stated);
  std::string text = stated.c_str();
  std::erase_if(text, [](char c) { return c == ' ' || c == '\t'; });
  return look_direction_from_text(text.c_str());
}

}  // namespace

void read_scene_parameters(SCENE& scene, PARAMETER_POOL& master_pool, PARAMETER_POOL& slave_pool,
                           PARAMETER_POOL& insar_pool) {
  for (const ROLE role : {MASTER, SLAVE}) {
    PARAMETER_POOL& pool = role == MASTER ? master_pool : slave_pool;
    LogPool(pool);
    if (role == MASTER) pool.Read("ellipsoid_parameters", scene.ellipsoid_parameters);
    pool.Read("prf", scene.prf[role]);
    pool.Read("az_bandwidth", scene.az_bandwidth[role]);
    pool.Read("range_sampling_frequency", scene.range_sampling_frequency[role]);
    pool.Read("radar_frequency", scene.radar_frequency[role]);
    scene.look_direction[role] = ReadLookDirection(pool);
    if (role == MASTER) pool.Read("orbit_interpolation", scene.orbit_interpolation);
  }

  LogPool(insar_pool);
  insar_pool.Read("n_samples", scene.n_samples);
  insar_pool.Read("n_lines", scene.n_lines);
  insar_pool.Read("master_first_az_time", scene.master_first_az_time);
  insar_pool.Read("slave_first_az_time", scene.slave_first_az_time);
  insar_pool.Read("master_first_rg_time", scene.master_first_rg_time);
  insar_pool.Read("slave_first_rg_time", scene.slave_first_rg_time);
  STRING mode;
  insar_pool.Read("observation_mode", mode);
  scene.observation_mode = observation_mode_from_text(mode.c_str());
  GlobalLog.printf_line(INFO, "observation mode: %s", scene.observation_mode.text);
  GlobalLog.printf_line(TRACE, "Finished reading parameter pools");
}

SCENE_CENTERS read_scene_centers(PARAMETER_POOL& master_pool, PARAMETER_POOL& slave_pool) {
  SCENE_CENTERS centers;
  GlobalLog.printf_line(TRACE, "Start reading parameter pools for scene centers");
  for (const ROLE role : {MASTER, SLAVE}) {
    PARAMETER_POOL& pool = role == MASTER ? master_pool : slave_pool;
    LogPool(pool);
    pool.Read("center_longitude", centers.center_longitude[role]);
    pool.Read("center_latitude", centers.center_latitude[role]);
  }
  return centers;
}

void take_ellipsoid_radii(SCENE& scene) {
  constexpr int EQUATORIAL = 7;
  constexpr int POLAR = 8;
  if (scene.ellipsoid_parameters.GetLength() <= POLAR) {
    GlobalLog.printf_line(ALARM, "ellipsoid_parameters has %d elements, %d are needed",
                          scene.ellipsoid_parameters.GetLength(), POLAR + 1);
    throw ERROR_DATA();
  }
  scene.requator = scene.ellipsoid_parameters.begin()[EQUATORIAL];
  scene.rpole = scene.ellipsoid_parameters.begin()[POLAR];
}

void work_out_end_times(SCENE& scene) {
  const double lines = scene.n_lines - 1.0;
  const double samples = scene.n_samples - 1.0;
  scene.master_last_az_time = scene.master_first_az_time + lines / scene.prf[MASTER];
  scene.slave_last_az_time = scene.slave_first_az_time + lines / scene.prf[SLAVE];
  scene.master_last_rg_time =
      scene.master_first_rg_time + samples / scene.range_sampling_frequency[MASTER];
  scene.slave_last_rg_time =
      scene.slave_first_rg_time + samples / scene.range_sampling_frequency[SLAVE];
}

}  // namespace varnoth
