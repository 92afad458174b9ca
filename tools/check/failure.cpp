#include "tools/check/failure.hpp"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace varnoth::tools {

namespace {

/// EITHER_SCENE: of the scene whose orbit is being loaded; behind that, nothing tells which one.
enum class PLACE { SCENE, EITHER_SCENE, INSAR, NONE };

/// A text of a run (docs/troubleshooting.md has them all), the key that it is about, and the
/// remedy.
struct FAILURE_ROW {
  const char* text;
  const char* code;
  PLACE place;
  const char* key;  ///< "@epochs" for the list of epochs
  const char* remedy;
};
constexpr const char* REMEDY_OF_TIMES =
    "write epochs and orbit_reference_time in the form of their kind, as "
    "06-APR-2025/00:00:00.000000";
constexpr FAILURE_ROW ROWS[] = {
    {"to orbit_type_id", "word-unknown", PLACE::SCENE, "orbit_representation",
     "for instance orbit_pool_double_utc"},
    {"to interpolation_id", "word-unknown", PLACE::SCENE, "orbit_interpolation",
     "for instance everett_8"},
    {"interpolation type from", "word-unknown", PLACE::SCENE, "orbit_interpolation",
     "for instance everett_8"},
    {"can not copy array", "degree-negative", PLACE::NONE, "FlatEarthPolyDegree",
     "give a degree of 0 or more"},
    {"even order", "order-odd", PLACE::SCENE, "orbit_interpolation", "use an even order"},
    {"equidistant grid", "grid-uneven", PLACE::SCENE, "@epochs",
     "move the epochs onto an even grid, or use localpolynom_0_9"},
    {"too few for order", "samples-few", PLACE::SCENE, "orbit_interpolation",
     "use more samples, or a lower order"},
    {"values needed", "samples-few", PLACE::SCENE, "@epochs", "use more samples"},
    {"value needed", "samples-few", PLACE::SCENE, "@epochs", "use more samples"},
    {"there are no samples", "samples-few", PLACE::SCENE, "@epochs", "give samples"},
    {"abscissa", "epochs-unordered", PLACE::SCENE, "@epochs",
     "order the epochs, each of them once"},
    {"no polynomial of order", "order-negative", PLACE::SCENE, "orbit_interpolation",
     "correct the order"},
    {"support points", "support-points", PLACE::SCENE, "orbit_interpolation",
     "correct the number of support points"},
    {"the result takes", "columns", PLACE::EITHER_SCENE, "orbit_value_key", "name x, y and z"},
    {"coordinates in position and velocity", "columns", PLACE::EITHER_SCENE, "orbit_velocity_key",
     "name as many velocities as positions"},
    {"time conversion", "reference-time-kind", PLACE::SCENE, "orbit_reference_time",
     "give a time of the same kind as the epochs"},
    {"SCANNER", "time-unreadable", PLACE::SCENE, "@epochs", REMEDY_OF_TIMES},
    {"found token", "time-unreadable", PLACE::SCENE, "@epochs", REMEDY_OF_TIMES},
    {"_TIME: ", "time-unreadable", PLACE::SCENE, "@epochs", REMEDY_OF_TIMES},
    {"MET_VALUES", "time-unreadable", PLACE::SCENE, "@epochs", REMEDY_OF_TIMES},
    {"DURATION", "time-unreadable", PLACE::SCENE, "@epochs", REMEDY_OF_TIMES},
    {"can not open mdb-file", "record-file", PLACE::SCENE, "root_path",
     "check the keys of the record file, from root_path on"},
    {"MDB", "record-file", PLACE::SCENE, "mdb_orbit_data_file",
     "correct the record file, or the keys that name it"},
    {"outside of data constraints", "orbit-coverage", PLACE::INSAR, "master_first_az_time",
     "use samples that reach further, or correct the times"},
    {"can not cast", "record-file", PLACE::SCENE, "orbit_representation",
     "correct the record file, or the representation"},
    {"No intersection", "no-ground", PLACE::INSAR, "master_first_rg_time",
     "check first times and units (m, s), the orbit's epochs and its interpolation"},
    {"within the earth", "no-ground", PLACE::SCENE, "orbit_value_key",
     "check the orbit's positions (m) and the first times"},
    {"geolocation", "no-ground", PLACE::INSAR, "master_first_rg_time",
     "look for absurd values in orbit, range time, height and ellipsoid_parameters"},
    {"no parameters to be fitted", "degree-negative", PLACE::NONE, "FlatEarthPolyDegree",
     "give a degree of 0 or more"},
    {"Singular Matrix", "scene-empty", PLACE::INSAR, "n_samples",
     "give the scene's size; use a degree of 10 or less"},
    {"LUDCMP", "orbit-values", PLACE::EITHER_SCENE, "orbit_value_key", "correct the orbit"},
    {"svdcmp", "orbit-values", PLACE::EITHER_SCENE, "orbit_value_key", "correct the orbit"},
    {"to look direction", "word-unknown", PLACE::NONE, "antenna_look_direction",
     "write left or right"},
    {"to observation mode", "word-unknown", PLACE::INSAR, "observation_mode",
     "write single_pass or dual_pass"},
    {"9 are needed", "ellipsoid-short", PLACE::SCENE, "ellipsoid_parameters", "give nine elements"},
    {"not enough memory", "memory", PLACE::NONE, "", "look for an absurd count or degree"},
    {"/tmp", "temporary-file", PLACE::NONE, "TMPDIR", "give a temporary directory that works"},
    {"tmp file", "temporary-file", PLACE::NONE, "TMPDIR", "give a temporary directory that works"},
};

const char* StageWords(STAGE stage) {
  switch (stage) {
    case STAGE::LOG_POOL:
      return "reading the log pool";
    case STAGE::MASTER_ORBIT:
      return "loading the master's orbit";
    case STAGE::SLAVE_ORBIT:
      return "loading the slave's orbit";
    case STAGE::PARAMETERS:
      return "reading the scenes";
    case STAGE::TIMES:
      return "working out the scenes' ends";
    case STAGE::GEOMETRY:
      return "working out the geometry";
    case STAGE::POLYNOMIALS:
      return "fitting the flat-earth polynomials";
  }
  return "the run";
}

/// The key that a line names: "… parameter key >> KEY << …", "… list KEY has …".
std::string KeyIn(const std::string& line) {
  constexpr const char* BRACKETS[][2] = {{"parameter key >> ", " <<"}, {"list ", " has"}};
  for (const auto& [opening, closing] : BRACKETS) {
    const std::size_t begin = line.find(opening);
    const std::size_t start = begin + std::strlen(opening);
    const std::size_t end = begin == line.npos ? line.npos : line.find(closing, start);
    if (end != line.npos) return line.substr(start, end - start);
  }
  return "";
}

}  // namespace

FINDING ExplainFailure(STAGE stage, const std::vector<std::string>& lines,
                       const std::string& reason, const STEP_POOLS& pools) {
  std::string text;
  FINDING finding;
  for (const std::string& line : lines) {
    text += (text.empty() ? "" : "; ") + line;
    if (finding.key.empty()) finding.key = KeyIn(line);
  }
  if (text.empty()) text = reason;  // otherwise the lines say it better
  const bool is_mute = text.empty();
  finding.code = is_mute ? "arithmetic" : "run-fails";
  finding.message =
      std::string(StageWords(stage)) + " fails: " +
      (is_mute ? "a division by zero, an overflow or a value that is no number" : text);
  finding.remedy = is_mute ? "look for a zero, an absurd value or two equal epochs"
                           : "correct what the lines name";
  const POOL_INPUT* scene = &pools.scene[stage == STAGE::SLAVE_ORBIT ? SLAVE : MASTER];
  const bool is_orbit = stage == STAGE::MASTER_ORBIT || stage == STAGE::SLAVE_ORBIT;
  if (is_orbit) finding.file = scene->file;
  if (stage == STAGE::LOG_POOL) {
    finding.code = "log-pool";
    finding.remedy = "correct the log pool, or name another one";
    finding.key = finding.key.empty() ? "log_pp" : finding.key;
    finding.file = pools.log_file;
  }
  if (!finding.key.empty()) {
    if (is_orbit) finding.line = scene->LineOf(finding.key);
    return finding;
  }
  const auto* const row = std::find_if(std::begin(ROWS), std::end(ROWS), [&](const auto& known) {
    return text.find(known.text) != text.npos;
  });
  if (row == std::end(ROWS)) return finding;
  finding.code = row->code;
  finding.remedy = row->remedy;
  finding.key = row->key;
  if (finding.key == "@epochs") finding.key = scene->Text("orbit_param_key");
  const bool is_unknown = row->place == PLACE::EITHER_SCENE && !is_orbit;
  if (row->place == PLACE::NONE || is_unknown) return finding;
  const POOL_INPUT& place = row->place == PLACE::INSAR ? pools.insar : *scene;
  finding.file = place.file;
  finding.line = place.LineOf(finding.key);
  return finding;
}

std::optional<std::string> WarningOf(const std::string& text) {
  for (const char* const told_elsewhere :
       {"different look directions", "master: ", "slave: ", "detect look direction",
        "Forced interpolation", "can not remove tmp file", "reason: "}) {
    if (text.find(told_elsewhere) != text.npos) return std::nullopt;
  }
  if (text.find("iterations count") != text.npos) return "check the slave's orbit and first times";
  if (text.find("reduce polynomial fit order") != text.npos) return "use more samples";
  if (text.find("support_point_count") != text.npos) return "use more samples";
  if (text.find("Result is Nan") != text.npos) return "correct the orbit";
  return "docs/troubleshooting.md explains it";
}

}  // namespace varnoth::tools
