#include "tools/geometry/pair_loading.hpp"

#include <algorithm>
#include <cfenv>
#include <set>

#include "driver/look_direction.hpp"
#include "driver/scene_parameters.hpp"
#include "foundation/errors.hpp"
#include "tools/check/rehearsal.hpp"

namespace varnoth::tools {

namespace {

/// Whether the run's code goes through, without an operation that would end the run by a trap.
bool Load(const STEP_SETTINGS& settings, LOADED_PAIR& pair) {
  varnoth::SCENE& scene = pair.scene;
  std::feclearexcept(FE_ALL_EXCEPT);
  try {
    PARAMETER_POOL insar(pair.pools.insar.file.c_str());
    PARAMETER_POOL master(pair.pools.scene[MASTER].file.c_str());
    PARAMETER_POOL slave(pair.pools.scene[SLAVE].file.c_str());
    scene.local_height = HeightOf(settings, insar);
    scene.master_orbit.read(master);
    scene.slave_orbit.read(slave);
    read_scene_parameters(scene, master, slave, insar);
    take_ellipsoid_radii(scene);
    work_out_end_times(scene);
    pair.look_direction = settle_look_direction(scene, master, slave);
  } catch (const ERROR_EXCEPTION&) {
    return false;
  } catch (const char*) {  // of the pools' and orbits' lowest classes
    return false;
  } catch (const std::out_of_range&) {
    return false;
  }
  return std::fetestexcept(FE_INVALID | FE_DIVBYZERO | FE_OVERFLOW) == 0;
}

bool IsError(const FINDING& finding) { return finding.level == SEVERITY::ERROR; }

}  // namespace

bool LoadPair(const std::vector<std::string>& arguments, LOADED_PAIR& pair) {
  FINDING_LIST findings;
  const STEP_SETTINGS settings = FindSettings(arguments, findings);
  static const std::set<std::string> USED = {"MasterPar", "SlavePar", "ParameterPool",
                                             "LocalHeight", "pcf"};
  std::erase_if(findings, [](const FINDING& finding) { return !USED.contains(finding.key); });
  pair.configuration_file = settings.configuration_file;
  auto pools = OpenPools(settings, findings);
  bool is_loaded = false;
  if (pools && std::none_of(findings.begin(), findings.end(), IsError)) {
    pair.pools = std::move(*pools);
    is_loaded = Load(settings, pair);
    if (!is_loaded) {
      CheckInputs(pair.pools, settings, findings);
      Rehearse(pair.pools, settings, findings);
      std::erase_if(findings, [](const FINDING& finding) { return !IsError(finding); });
      if (findings.empty()) {
        findings.push_back({.code = "pair-unreadable",
                            .file = pair.pools.insar.file,
                            .line = 0,
                            .key = "",
                            .message = "the pair can't be loaded",
                            .remedy = "see what varnoth-tools check tells of it"});
      }
    }
  }
  for (const FINDING& finding : findings) Tell(finding);
  return is_loaded;
}

}  // namespace varnoth::tools
