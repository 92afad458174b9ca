#include "tools/check/pool_inputs.hpp"

#include <sys/stat.h>
#include <sys/statvfs.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <stdexcept>

#include "driver/scene_enumerations.hpp"
#include "foundation/constants.hpp"
#include "foundation/errors.hpp"
#include "foundation/split.hpp"
#include "tools/pool/value_words.hpp"

namespace varnoth::tools {

namespace {

struct NEEDED_KEY {
  const char* key;
  TYPE_CODE type;
};
constexpr NEEDED_KEY SCENE_KEYS[] = {
    {"prf", FLT_15},
    {"az_bandwidth", FLT_15},
    {"range_sampling_frequency", FLT_15},
    {"radar_frequency", FLT_15},
};
constexpr NEEDED_KEY INSAR_KEYS[] = {
    {"n_samples", INT_32},
    {"n_lines", INT_32},
    {"master_first_az_time", FLT_15},
    {"slave_first_az_time", FLT_15},
    {"master_first_rg_time", FLT_15},
    {"slave_first_rg_time", FLT_15},
};
constexpr NEEDED_KEY RECORD_FILE_KEYS[] = {
    {"root_path", STR},
    {"mission_id", STR},
    {"tape_source_id", STR},
    {"tape_id_number", INT_32},
    {"major_data_take_id", INT_32},
    {"minor_data_take_id", INT_32},
    {"channel_id", STR},
    {"mdb_orbit_data_file", STR},
};

/// Where the values of real scenes lie; outside, the unit is mostly another one.
struct USUAL_RANGE {
  const char* key;
  double least;
  double most;
  const char* unit;
};
constexpr USUAL_RANGE USUAL[] = {
    {"prf", 50.0, 20e3, "lines per second"},
    {"range_sampling_frequency", 1e6, 5e9, "Hz"},
    {"radar_frequency", 1e8, 1e11, "Hz"},
    {"az_bandwidth", 10.0, 20e3, "Hz"},
    {"n_samples", 2, 1e6, "samples"},
    {"n_lines", 2, 1e7, "lines"},
    {"local_height", -1000.0, 9000.0, "m"},
    {"master_first_rg_time", 2e-3, 0.04, "s, there and back"},
    {"slave_first_rg_time", 2e-3, 0.04, "s, there and back"},
};

std::string Lower(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

std::size_t CountOf(const JSON& vector) { return vector["values"].size(); }

/// Checks the keys of one pool.
class INPUT_CHECK {
 public:
  INPUT_CHECK(const POOL_INPUT& input, FINDING_LIST& list) : pool(input), findings(list) {}

  FINDING& Add(SEVERITY level, const std::string& key, const std::string& code,
               const std::string& message, const std::string& remedy) {
    findings.push_back({.level = level,
                        .code = code,
                        .file = pool.file,
                        .line = pool.LineOf(key),
                        .key = key,
                        .message = message,
                        .remedy = remedy});
    return findings.back();
  }

  /// Whether a run can read the key in this type.
  bool Need(const std::string& key, TYPE_CODE type) {
    const POOL_ENTRY* const entry = pool.document.Find(key);
    if (entry == nullptr) {
      TellMissing(key);
      return false;
    }
    if (entry->code != type) {
      Add(SEVERITY::ERROR, key, "key-type",
          "has the type " + entry->type + ", " + TypeRow(type).name + " is expected",
          "write the entry in that type");
      return false;
    }
    if (entry->value.is_null()) {
      Add(SEVERITY::ERROR, key, "value-unreadable", "refused: " + entry->failure + Told(*entry),
          "correct the value; varnoth-tools pool check tells more");
      return false;
    }
    if (const std::string told = Told(*entry); !told.empty()) {
      Add(SEVERITY::WARNING, key, "value-misread", "is not read as it stands" + told,
          "correct the value; varnoth-tools pool check tells more");
    }
    const auto is_again = [&](const POOL_ENTRY& other) {
      return &other != entry && other.key == entry->key;
    };
    if (std::any_of(pool.document.entries.begin(), pool.document.entries.end(), is_again)) {
      Add(SEVERITY::WARNING, key, "key-twice", "stands twice, and this entry counts",
          "remove the other one");
    }
    CheckUsual(key);
    return true;
  }

  /// Checks a text that must be one of a few words, by the product's own conversion.
  template <class CONVERSION>
  void NeedWord(const std::string& key, const char* words, CONVERSION convert) {
    if (!Need(key, STR)) return;
    const std::string text = pool.Text(key);
    try {
      convert(text);
    } catch (const ERROR_EXCEPTION&) {
      Add(SEVERITY::ERROR, key, "word-unknown", "'" + text + "' is no word that a run knows",
          words);
    }
  }

  void NeedOrbit() {
    NeedKeys({{"orbit_reference_time", STR}});
    if (pool.document.Find("orbit_data_file") != nullptr) Need("orbit_data_file", STR);
    const bool has_words = Need("orbit_representation", STR) && Need("orbit_interpolation", STR);
    const bool has_names = Need("orbit_param_key", STR) && Need("orbit_value_key", STR);
    if (!has_words) return;
    SCENE_ORBIT orbit;
    try {
      orbit.SelectCore(pool.Text("orbit_representation").c_str(),
                       pool.Text("orbit_interpolation").c_str());
    } catch (const ERROR_EXCEPTION&) {
      const bool knows_kind = orbit.orbit_type_id > 0;
      const char* const key = knows_kind ? "orbit_interpolation" : "orbit_representation";
      Add(SEVERITY::ERROR, key, "word-unknown",
          "'" + pool.Text(key) + "' is no word that a run knows",
          knows_kind ? "for instance everett_8" : "for instance orbit_pool_double_utc");
      return;
    }
    const std::string word = pool.Text("orbit_interpolation");
    const bool is_hermite = word.starts_with("hermite") || word.starts_with("localhermite");
    const bool has_velocities = !is_hermite || Need("orbit_velocity_key", STR);
    if (!orbit.core->IsPoolOrbit()) {
      NeedKeys(RECORD_FILE_KEYS);
    } else if (has_names) {
      NeedLists("orbit_value_key");
      if (is_hermite && has_velocities) NeedLists("orbit_velocity_key");
    }
  }

  template <std::size_t COUNT>
  void NeedKeys(const NEEDED_KEY (&keys)[COUNT]) {
    for (const NEEDED_KEY& row : keys) Need(row.key, row.type);
  }

 private:
  void TellMissing(const std::string& key) {
    std::string hint;
    for (const POOL_LINE& line : pool.document.lines) {
      const std::string word(LINE_WORDS(line.text).Next());
      if (word == key && (line.text[0] == ' ' || line.text[0] == '\t')) {
        hint = "; line " + std::to_string(line.number) + " has a blank before it";
      } else if (word != key && Lower(word) == Lower(key)) {
        hint = "; line " + std::to_string(line.number) + " has " + word;
      }
    }
    Add(SEVERITY::ERROR, key, "key-missing", "not found" + hint, "add the key");
  }

  /// What is told of the first word of a value that is read otherwise than it stands there.
  std::string Told(const POOL_ENTRY& entry) const {
    const auto& lines = pool.document.lines;
    if (ShapeOf(entry.code) == SHAPE::SCALAR) {
      LINE_WORDS words(lines[entry.at].text);
      words.Next();
      words.Next();
      const auto found = CheckValue(entry.code, words);
      return found && found->severity == SEVERITY::ERROR ? ": " + found->text : "";
    }
    for (std::size_t i = entry.at + 2; i + 1 < entry.stop; ++i) {
      LINE_WORDS words(lines[i].text);
      const auto found = CheckValue(ElementOf(entry.code), words);
      if (found && found->severity == SEVERITY::ERROR) {
        return ": line " + std::to_string(lines[i].number) + ": " + found->text;
      }
    }
    const bool is_read = !entry.value.is_null() && ShapeOf(entry.code) == SHAPE::VECTOR;
    if (is_read && entry.at + CountOf(entry.value) + 3 != entry.stop) {
      return ": its block has not the " + std::to_string(CountOf(entry.value)) +
             " elements that its head says";
    }
    return "";
  }

  void CheckUsual(const std::string& key) {
    for (const USUAL_RANGE& usual : USUAL) {
      const double value = pool.Number(key);
      if (key != usual.key || (value >= usual.least && value <= usual.most)) continue;
      Add(SEVERITY::WARNING, key, "value-unusual",
          Short(value) + " is outside of what scenes have, " + Short(usual.least) + " to " +
              Short(usual.most) + " " + usual.unit,
          "check value and unit")
          .is_cause = true;
    }
  }

  void NeedLists(const std::string& names_key) {
    const std::string kind = pool.Text("orbit_representation");
    const std::string epochs = pool.Text("orbit_param_key");
    const TYPE_CODE epoch_type = kind.ends_with("_double") ? FLT_15_V : STR_V;
    const TYPE_CODE value_type = kind.starts_with("orbit_pool_float") ? FLT_6_V : FLT_15_V;
    const bool is_first = names_key == "orbit_value_key";
    const bool has_epochs = is_first ? Need(epochs, epoch_type) : !pool.Value(epochs).is_null();
    const std::string text = pool.Text(names_key);
    const ARRAY<STRING> names = Split(text.c_str(), ": /,(){}");
    if (names.GetLength() != 3) {
      Add(names.GetLength() < 3 || !is_first ? SEVERITY::ERROR : SEVERITY::WARNING, names_key,
          "columns", "names " + std::to_string(names.GetLength()) + " lists, '" + text + "'",
          "name x, y and z");
    }
    for (const STRING& name : names) {
      const std::string key = name.c_str();
      if (!Need(key, value_type) || !has_epochs || !pool.Value(epochs).is_object()) continue;
      const std::size_t count = CountOf(pool.Value(epochs));
      const std::size_t found = CountOf(pool.Value(key));
      if (found == count) continue;
      Add(found < count ? SEVERITY::ERROR : SEVERITY::WARNING, key, "list-length",
          std::to_string(found) + " values for " + std::to_string(count) + " epochs",
          "give as many values as epochs");
    }
  }

  const POOL_INPUT& pool;
  FINDING_LIST& findings;
};

/// Tells of values of the two scenes, or of several keys, that do not fit each other.
void CheckAgainstEachOther(const STEP_POOLS& pools, FINDING_LIST& findings) {
  INPUT_CHECK slave(pools.scene[SLAVE], findings);
  INPUT_CHECK insar(pools.insar, findings);
  const auto of = [&](ROLE role, const char* key) { return pools.scene[role].Number(key); };
  const auto looks = [&](ROLE role, const char* side) {
    return pools.scene[role].Text("antenna_look_direction").find(side) != std::string::npos;
  };
  if ((looks(MASTER, "left") && looks(SLAVE, "right")) ||
      (looks(MASTER, "right") && looks(SLAVE, "left"))) {
    slave.Add(SEVERITY::WARNING, "antenna_look_direction", "look-directions",
              "the scenes look to different sides, and their centres will decide",
              "correct the wrong one");
    for (const ROLE role : {MASTER, SLAVE}) {
      INPUT_CHECK(pools.scene[role], findings)
          .NeedKeys({{"center_longitude", FLT_6}, {"center_latitude", FLT_6}});
    }
  }
  const double ratio = of(SLAVE, "radar_frequency") / of(MASTER, "radar_frequency");
  if (std::fabs(ratio - 1.0) > 1e-3) {
    slave.Add(SEVERITY::WARNING, "radar_frequency", "frequencies",
              Short(of(SLAVE, "radar_frequency")) + " Hz, the master has " +
                  Short(of(MASTER, "radar_frequency")) + " Hz",
              "pair scenes of one frequency");
  }
  const double ranges =
      pools.insar.Number("slave_first_rg_time") / pools.insar.Number("master_first_rg_time");
  if (ranges < 0.8 || ranges > 1.25) {
    insar.Add(SEVERITY::WARNING, "slave_first_rg_time", "ranges",
              "is " + Short(ranges) + " times the master's",
              "give both as the time there and back, in seconds");
  }
  for (const ROLE role : {MASTER, SLAVE}) {
    const double rate = of(role, "prf");
    const double bandwidth = of(role, "az_bandwidth");
    if (!(bandwidth > 0) || !(rate > 0) || (rate >= bandwidth && rate <= 3.0 * bandwidth)) continue;
    constexpr double GROUND_SPEED = 6.8e3;  // m/s, of satellites some 700 km high
    INPUT_CHECK(pools.scene[role], findings)
        .Add(SEVERITY::WARNING, "prf", "line-rate",
             Short(rate) + " lines per second against a bandwidth of " + Short(bandwidth) +
                 " Hz: lines " + Short(GROUND_SPEED / rate) + " m apart, a scene " +
                 Short(GROUND_SPEED / rate * pools.insar.Number("n_lines") / 1e3) + " km long",
             "give the line rate of the focused image, not the radar's pulse rate");
  }
}

void CheckEllipsoid(const POOL_INPUT& master, FINDING_LIST& findings) {
  constexpr std::size_t COUNT = 9;
  constexpr double EQUATORIAL = 6378137.0;  // WGS 84; others differ by less than a kilometre
  constexpr double POLAR = 6356752.3;
  constexpr const char* KEY = "ellipsoid_parameters";
  INPUT_CHECK check(master, findings);
  if (!check.Need(KEY, FLT_15_V)) return;
  const JSON& values = master.Value(KEY)["values"];
  if (values.size() < COUNT) {
    check.Add(SEVERITY::ERROR, KEY, "ellipsoid-short",
              std::to_string(values.size()) + " elements, 9 are needed",
              "give nine, with the equatorial and the polar radius in the last two");
    return;
  }
  const auto is_near = [&](std::size_t i, double radius) {
    return values[i].is_number() && std::fabs(values[i].get<double>() - radius) < 2000.0;
  };
  if (is_near(7, EQUATORIAL) && is_near(8, POLAR)) return;
  check
      .Add(SEVERITY::WARNING, KEY, "ellipsoid-unusual",
           "elements 7 and 8 are " + values[7].dump() + " and " + values[8].dump() +
               ", no radii of the Earth at equator and pole in metres",
           "give the equatorial radius before the polar one")
      .is_cause = true;
}

/// Whether a pool is there and can be read.
bool Open(const SETTING& setting, POOL_DOCUMENT& document, FINDING_LIST& findings) {
  if (!setting.is_given) return false;
  std::string reason;
  struct stat status {};
  if (stat(setting.value.c_str(), &status) == 0 && S_ISDIR(status.st_mode)) {
    reason = std::strerror(EISDIR);
  } else {
    try {
      document = ReadDocument(setting.value);
      return true;
    } catch (const std::runtime_error& error) {
      reason = error.what();
    }
  }
  findings.push_back({.code = "pool-unreadable",
                      .file = setting.value,
                      .line = 0,
                      .key = setting.key,
                      .message = "can't read the pool: " + reason,
                      .remedy = "correct the name, or its rights"});
  return false;
}

void NeedWritable(const SETTING& setting, bool must_update, FINDING_LIST& findings) {
  if (!setting.is_given) return;
  const auto add = [&](SEVERITY level, const char* code, const std::string& message,
                       const char* remedy) {
    findings.push_back({.level = level,
                        .code = code,
                        .file = setting.value,
                        .line = 0,
                        .key = setting.key,
                        .message = message,
                        .remedy = remedy});
  };
  struct stat status {};
  const bool is_there = stat(setting.value.c_str(), &status) == 0;
  if (const std::string reason = WhyNotWritable(setting.value); !reason.empty()) {
    add(SEVERITY::ERROR, "pool-unwritable", "can't open the pool for its update: " + reason,
        "correct the name, or the right to write");
  } else if (const std::string why = WhyNoneBeside(setting.value); !why.empty()) {
    add(must_update ? SEVERITY::ERROR : SEVERITY::WARNING, "update-impossible",
        "the update needs a file beside the pool: " + why +
            (must_update ? "" : "; the run would end with 0 and without results"),
        "correct the right to write into that directory");
  } else if (is_there && !S_ISREG(status.st_mode) && must_update) {
    add(SEVERITY::ERROR, "update-impossible", "is no plain file: the update can't cut its length",
        "name a file");
  } else {
    struct statvfs disk {};
    constexpr unsigned long NEEDED = 1 << 20;
    if (statvfs(setting.value.c_str(), &disk) == 0 && disk.f_bavail * disk.f_frsize < NEEDED) {
      add(SEVERITY::WARNING, "disk-full", "less than 1 MB is free on its disk",
          "free space before the run");
    }
  }
}

}  // namespace

std::size_t POOL_INPUT::LineOf(const std::string& key) const {
  const POOL_ENTRY* const entry = document.Find(key);
  return entry != nullptr ? entry->line : 0;
}

const JSON& POOL_INPUT::Value(const std::string& key) const {
  static const JSON NONE;
  const POOL_ENTRY* const entry = document.Find(key);
  return entry != nullptr ? entry->value : NONE;
}

double POOL_INPUT::Number(const std::string& key) const {
  const JSON& value = Value(key);
  return value.is_number() ? value.get<double>() : std::nan("");
}

std::string POOL_INPUT::Text(const std::string& key) const {
  const JSON& value = Value(key);
  return value.is_string() ? value.get<std::string>() : "";
}

std::size_t POOL_INPUT::LineOfElement(const std::string& key, std::size_t index) const {
  const POOL_ENTRY* const entry = document.Find(key);
  if (entry == nullptr || entry->at + 2 + index >= document.lines.size()) return LineOf(key);
  return document.lines[entry->at + 2 + index].number;
}

std::optional<STEP_POOLS> OpenPools(const STEP_SETTINGS& settings, FINDING_LIST& findings) {
  STEP_POOLS pools;
  pools.scene[MASTER].file = settings.master.value;
  pools.scene[SLAVE].file = settings.slave.value;
  pools.insar.file = settings.insar.value;
  pools.log_file = settings.log_pool.value;
  bool is_open = Open(settings.master, pools.scene[MASTER].document, findings);
  is_open &= Open(settings.slave, pools.scene[SLAVE].document, findings);
  is_open &= Open(settings.insar, pools.insar.document, findings);
  if (!is_open) return std::nullopt;
  return pools;
}

void CheckUpdates(const STEP_SETTINGS& settings, FINDING_LIST& findings) {
  const bool is_one = settings.insar.value == settings.log_pool.value;
  NeedWritable(settings.insar, is_one, findings);
  if (!is_one) NeedWritable(settings.log_pool, true, findings);
}

void CheckInputs(const STEP_POOLS& pools, const STEP_SETTINGS& settings, FINDING_LIST& findings) {
  for (const POOL_INPUT& scene : pools.scene) {
    INPUT_CHECK check(scene, findings);
    check.NeedKeys(SCENE_KEYS);
    check.NeedWord("antenna_look_direction", "write left or right", [](std::string text) {
      std::erase_if(text, [](char c) { return c == ' ' || c == '\t'; });
      look_direction_from_text(text.c_str());
    });
    check.NeedOrbit();
  }
  CheckEllipsoid(pools.scene[MASTER], findings);
  INPUT_CHECK insar(pools.insar, findings);
  insar.NeedKeys(INSAR_KEYS);
  insar.NeedWord("observation_mode", R"(write "single_pass" or "dual_pass")",
                 [](const std::string& text) { observation_mode_from_text(text.c_str()); });
  if (!settings.height.is_given) insar.Need("local_height", FLT_15);
  const auto& lines = pools.insar.document.lines;
  if (!lines.empty() && lines.back().end == 0) {
    insar.Add(SEVERITY::ERROR, "", "last-line",
              "the last line has no line end: the update drops it", "end it with a line end");
    findings.back().line = lines.back().number;
  }
  CheckAgainstEachOther(pools, findings);
}

}  // namespace varnoth::tools
