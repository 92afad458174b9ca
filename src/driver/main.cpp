#include <cstdio>
#include <new>

#include "driver/annotation.hpp"
#include "driver/configuration.hpp"
#include "driver/flat_earth_polynomial.hpp"
#include "driver/flat_earth_statistics.hpp"
#include "driver/flat_earth_sweep.hpp"
#include "driver/geometry_state.hpp"
#include "driver/log_pool.hpp"
#include "driver/look_direction.hpp"
#include "driver/nine_point_grids.hpp"
#include "driver/scene_parameters.hpp"
#include "driver/usage.hpp"
#include "enumerations/enum_errors.hpp"
#include "framework/controller_ifc.hpp"
#include "framework/process_identity.hpp"
#include "framework/software_identity.hpp"
#include "framework/software_log.hpp"
#include "system/floating_point_traps.hpp"

namespace varnoth {

namespace {

/// What the process sets up before anything else runs: floating-point traps, and the log's prefix
/// and thresholds.
struct STATIC_SETUP {
  STATIC_SETUP() {
    enable_fp_traps();
    GlobalLog.configure("", "varnoth", INFO, DEBUG);
  }
};
const STATIC_SETUP static_setup;

GEOMETRY_STATE geometry_state;

/// Identity of this build.
constexpr const char* BUILD = "varnoth.v0.0.4.linux.gcc4.5.0_64bit.default.201612091732";
constexpr const char* BUILD_VERSION = "0.0.4";
constexpr const char* SOURCE_DATE = "$Date: 2016/12/09 17:32:18 $";
constexpr const char* TITLE = "Varnoth Estimations";
constexpr const char* COMPILER = "gcc4.5.0_64bit";

void read_orbit(const char* name, SCENE_ORBIT& orbit, PARAMETER_POOL& pool) {
  GlobalLog.printf_line(INFO, "read %s orbit ..", name);
  orbit.read(pool);
}

/// One run, from the configuration to the results in the pools. `results_stand` becomes true when
/// only the release of the run's objects is left.
void run(CONTROLLER_IFC& controller, SoftwareIdentity& identity, SoftwareLog& information,
         bool& results_stand) {
  SCENE& scene = geometry_state.scene;
  RESULTS& results = geometry_state.results;
  identity.set(controller.get_binary_name(), TITLE, BUILD_VERSION, SOURCE_DATE, BUILD, COMPILER);
  write_process_ids(identity, COMPILER, controller.get_config_file_name());

  GlobalLog.printf_line(TRACE, "Reading configuration");
  CONFIGURATION configuration;
  read_configuration(controller, configuration);
  PARAMETER_POOL_READ_WRITE_CHANGE insar_pool(configuration.parameter_pool.c_str());
  LOG_POOL log_pool(insar_pool, configuration.parameter_pool, configuration.log_pp);
  if (read_durability(controller)) {
    controller.SetDurable();
    insar_pool.SetDurable(true);
    log_pool.Pool().SetDurable(true);
  }
  scene.local_height = read_local_height(controller, insar_pool);
  configuration.flat_earth_poly_degree =
      degree_from_text(configuration.flat_earth_poly_degree_text);
  GlobalLog.printf_line(TRACE, "Configuration complete");
  log_configuration(configuration, scene.local_height);

  PARAMETER_POOL master_pool(configuration.master_par.c_str());
  PARAMETER_POOL slave_pool(configuration.slave_par.c_str());
  GlobalLog.printf_line(INFO, "%s", "");
  read_orbit("master", scene.master_orbit, master_pool);
  read_orbit("slave", scene.slave_orbit, slave_pool);
  read_scene_parameters(scene, master_pool, slave_pool, insar_pool);
  take_ellipsoid_radii(scene);
  BISTATIC_B bistatic;
  work_out_end_times(scene);
  results.sensor_look_direction = settle_look_direction(scene, master_pool, slave_pool);
  raise_missed_trap();

  GlobalLog.printf_line(INFO, "starting flat earth calculation");
  const SWEEP sweep = sweep_flat_earth(scene, results.sensor_look_direction, bistatic);
  raise_missed_trap();
  results.corners = corners_of(sweep);
  results.line_values = line_values_of(sweep);
  results.statistics = work_out_statistics(scene, sweep, results.corners);
  results.flat_earth =
      fit_flat_earth_polynomials(scene, sweep, configuration.flat_earth_poly_degree);
  print_nine_point_grids(scene, results.sensor_look_direction);
  raise_missed_trap();

  annotate_results(results, insar_pool);
  information.update_pool(log_pool.Pool(), identity);
  log_pool.Finish();
  results_stand = true;
}

}  // namespace

}  // namespace varnoth

int main(int argc, char** argv) {
  using namespace varnoth;
  if (answer_single_argument(argc, argv)) return std::fflush(stdout) == 0 ? 0 : 1;
  CONTROLLER_IFC controller;
  SoftwareIdentity identity;
  identity.title = TITLE;  // for the line of a failure during set-up
  SoftwareLog information;
  bool results_stand = false;
  bool all_went_well = false;
  try {
    controller.init(argc, argv, true);
    try {
      run(controller, identity, information, results_stand);
    } catch (...) {
      raise_missed_trap();  // a missed trap may have caused the failure
      throw;
    }
    all_went_well = true;
  } catch (const BASIC::TYPES::ERROR_ENUM_BASE_INVALID_VALUE& error) {
    GlobalLog.set(ALARM) << error.what() << "\n";
    GlobalLog.set(ALARM) << error.value << "\n";
  } catch (const ERROR_EXCEPTION& error) {
    GlobalLog.set(ALARM) << error.what() << "\n";
  } catch (const char* text) {
    GlobalLog.set(ALARM) << text << "\n";
  } catch (const std::bad_alloc&) {
    GlobalLog.set(ALARM) << ERROR_NO_MEMORY().what() << "\n";
  } catch (...) {
    GlobalLog.set(ALARM) << "program aborted due to FATAL ERROR\n";
  }
  // Only the log says that the InSAR pool could not be updated. If the log could not take the lines
  // either, the run has failed.
  if (!results_stand || (!all_went_well && !GlobalLog.flush())) {
    GlobalLog.set(ALARM) << "ZOD_MSG|ERROR|" << identity.title << " terminated with error!\n";
    controller.exit_error();
  }
  GlobalLog.end_banner();
  controller.exit_ok();
}
