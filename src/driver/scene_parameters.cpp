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

void read_scene_parameters(GEOMETRY_STATE& state, PARAMETER_POOL& master_pool,
                           PARAMETER_POOL& slave_pool, PARAMETER_POOL& insar_pool) {
  for (const SCENE scene : {MASTER, SLAVE}) {
    PARAMETER_POOL& pool = scene == MASTER ? master_pool : slave_pool;
    LogPool(pool);
    if (scene == MASTER) pool.Read("ellipsoid_parameters", state.ellipsoid_parameters);
    pool.Read("prf", state.prf[scene]);
    pool.Read("az_bandwidth", state.az_bandwidth[scene]);
    pool.Read("range_sampling_frequency", state.range_sampling_frequency[scene]);
    pool.Read("radar_frequency", state.radar_frequency[scene]);
    state.look_direction[scene] = ReadLookDirection(pool);
    if (scene == MASTER) pool.Read("orbit_interpolation", state.orbit_interpolation);
  }

  LogPool(insar_pool);
  insar_pool.Read("n_samples", state.n_samples);
  insar_pool.Read("n_lines", state.n_lines);
  insar_pool.Read("master_first_az_time", state.master_first_az_time);
  insar_pool.Read("slave_first_az_time", state.slave_first_az_time);
  insar_pool.Read("master_first_rg_time", state.master_first_rg_time);
  insar_pool.Read("slave_first_rg_time", state.slave_first_rg_time);
  STRING mode;
  insar_pool.Read("observation_mode", mode);
  state.observation_mode = observation_mode_from_text(mode.c_str());
  GlobalLog.printf_line(INFO, "observation mode: %s", state.observation_mode.text);
  GlobalLog.printf_line(TRACE, "Finished reading parameter pools");
}

void read_scene_centers(GEOMETRY_STATE& state, PARAMETER_POOL& master_pool,
                        PARAMETER_POOL& slave_pool) {
  GlobalLog.printf_line(TRACE, "Start reading parameter pools for scene centers");
  for (const SCENE scene : {MASTER, SLAVE}) {
    PARAMETER_POOL& pool = scene == MASTER ? master_pool : slave_pool;
    LogPool(pool);
    pool.Read("center_longitude", state.center_longitude[scene]);
    pool.Read("center_latitude", state.center_latitude[scene]);
  }
}

void take_ellipsoid_radii(GEOMETRY_STATE& state) {
  constexpr int EQUATORIAL = 7;
  constexpr int POLAR = 8;
  if (state.ellipsoid_parameters.GetLength() <= POLAR) {
    GlobalLog.printf_line(ALARM, "ellipsoid_parameters has %d elements, %d are needed",
                          state.ellipsoid_parameters.GetLength(), POLAR + 1);
    throw ERROR_DATA();
  }
  state.requator = state.ellipsoid_parameters.GetElementBase(0)[EQUATORIAL];
  state.rpole = state.ellipsoid_parameters.GetElementBase(0)[POLAR];
}

void work_out_end_times(GEOMETRY_STATE& state) {
  const double lines = state.n_lines - 1.0;
  const double samples = state.n_samples - 1.0;
  state.master_last_az_time = state.master_first_az_time + lines / state.prf[MASTER];
  state.slave_last_az_time = state.slave_first_az_time + lines / state.prf[SLAVE];
  state.master_last_rg_time =
      state.master_first_rg_time + samples / state.range_sampling_frequency[MASTER];
  state.slave_last_rg_time =
      state.slave_first_rg_time + samples / state.range_sampling_frequency[SLAVE];
}

}  // namespace varnoth
