#include "tools/report/read_pair.hpp"

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <optional>
#include <stdexcept>

#include "time/utc_scanner.hpp"
#include "tools/import/moment.hpp"
#include "tools/pool/document.hpp"

namespace varnoth::tools {

namespace {

constexpr double NO_NUMBER = std::numeric_limits<double>::quiet_NaN();

constexpr const char* INPUT_NUMBERS[] = {"n_samples", "n_lines", "local_height"};
constexpr const char* RESULT_NUMBERS[] = {"early_az_near_rg_longitude",
                                          "early_az_near_rg_latitude",
                                          "early_az_far_rg_longitude",
                                          "early_az_far_rg_latitude",
                                          "late_az_near_rg_longitude",
                                          "late_az_near_rg_latitude",
                                          "late_az_far_rg_longitude",
                                          "late_az_far_rg_latitude",
                                          "fringe_frequency_range",
                                          "center_longitude",
                                          "center_latitude",
                                          "fringe_frequency_azimuth",
                                          "height_conversion_factor",
                                          "eff_baseline",
                                          "varnoth_deltaR",
                                          "incidence_angle_near_range",
                                          "incidence_angle_mid_range",
                                          "incidence_angle_far_range",
                                          "ssc_pixel_spacing_azimuth",
                                          "ssc_pixel_spacing_ground_range",
                                          "heading_angle"};
constexpr const char* RESULT_TEXTS[] = {"equator_crossing_direction", "sensor_look_direction"};
constexpr const char* RESULT_VECTORS[] = {
    "flat_phase_poly_early_az",        "flat_phase_poly_late_az",
    "early_az_phase_to_height_conv",   "late_az_phase_to_height_conv",
    "master_early_az_look_angle",      "master_late_az_look_angle",
    "slave_early_az_look_angle",       "slave_late_az_look_angle",
    "master_early_az_range_distance",  "master_late_az_range_distance",
    "slave_early_az_range_distance",   "slave_late_az_range_distance",
    "master_early_az_incidence_angle", "master_late_az_incidence_angle",
    "slave_early_az_incidence_angle",  "slave_late_az_incidence_angle"};

double NumberIn(const JSON& value) { return value.is_number() ? value.get<double>() : NO_NUMBER; }

/// What an entry of a number holds that no run can read, if it is infinite or too large.
std::optional<double> InfinityIn(const POOL_DOCUMENT& pool, const POOL_ENTRY& entry) {
  const std::string& line = pool.lines[entry.at].text;
  const std::size_t type = line.find(entry.type, line.find(entry.key) + entry.key.size());
  if (type == line.npos) return std::nullopt;
  const double number = std::strtod(line.c_str() + type + entry.type.size(), nullptr);
  return std::isinf(number) ? std::optional(number) : std::nullopt;
}

/// Takes values of a pool over into a record.
class POOL_TAKER {
 public:
  POOL_TAKER(const POOL_DOCUMENT& from, PAIR_RECORD& to) : pool(from), record(to) {}

  void TakeNumber(const char* key) {
    const POOL_ENTRY* const there = pool.Find(key);
    const bool is_unread = there != nullptr && there->value.is_null();
    if (const auto infinite = is_unread ? InfinityIn(pool, *there) : std::nullopt) {
      record.numbers[key] = *infinite;
      Warn(*there, "is infinite");
      return;
    }
    const POOL_ENTRY* const entry = Entry(key);
    if (entry == nullptr) return;
    const double number = record.numbers[key] = NumberIn(entry->value);
    if (std::isnan(number)) Warn(*entry, "is not a number");
  }
  void TakeText(const char* key) {
    const POOL_ENTRY* const entry = Entry(key);
    if (entry != nullptr && entry->value.is_string()) {
      record.texts[key] = entry->value.get<std::string>();
    }
  }
  void TakeVector(const char* key) {
    const POOL_ENTRY* const entry = Entry(key);
    if (entry == nullptr || !entry->value.is_object()) return;
    std::vector<double>& values = record.vectors[key];
    bool has_gap = false;
    for (const JSON& value : entry->value["values"]) {
      values.push_back(NumberIn(value));
      has_gap = has_gap || std::isnan(values.back());
    }
    if (has_gap) Warn(*entry, "holds what is not a number");
  }

  int missing = 0;  ///< of the keys that were asked for
  std::string first_missing;

 private:
  const POOL_ENTRY* Entry(const char* key) {
    const POOL_ENTRY* const entry = pool.Find(key);
    if (entry != nullptr && !entry->value.is_null()) return entry;
    if (entry != nullptr) Warn(*entry, "can't be read: " + entry->failure);
    if (++missing == 1) first_missing = key;
    return nullptr;
  }
  void Warn(const POOL_ENTRY& entry, const std::string& text) {
    record.remarks.push_back({pool.file, entry.line, SEVERITY::WARNING, entry.key + " " + text});
  }

  const POOL_DOCUMENT& pool;
  PAIR_RECORD& record;
};

void TakeResults(const POOL_DOCUMENT& pool, PAIR_RECORD& record) {
  POOL_TAKER taker(pool, record);
  for (const char* const key : RESULT_NUMBERS) taker.TakeNumber(key);
  for (const char* const key : RESULT_TEXTS) taker.TakeText(key);
  for (const char* const key : RESULT_VECTORS) taker.TakeVector(key);
  constexpr auto ALL = static_cast<int>(std::size(RESULT_NUMBERS) + std::size(RESULT_TEXTS) +
                                        std::size(RESULT_VECTORS));
  if (taker.missing == ALL) {
    record.remarks.push_back(
        {pool.file, 1, SEVERITY::ERROR, "has no results: no run has ended on it"});
  } else if (taker.missing > 0) {
    record.remarks.push_back({pool.file, 1, SEVERITY::ERROR,
                              "lacks " + taker.first_missing + ", " +
                                  std::to_string(taker.missing) + " of " + std::to_string(ALL) +
                                  " results in all"});
  } else {
    record.ending = ENDING::DONE;
  }
  POOL_TAKER inputs(pool, record);
  for (const char* const key : INPUT_NUMBERS) inputs.TakeNumber(key);
  inputs.TakeText("observation_mode");
}

/// The moment of a reference time's text; nothing if it is no date of the years that a MOMENT has.
std::optional<MOMENT> Date(const std::string& text) {
  UTC_SCANNER scanner;
  try {
    scanner.Scan(text.c_str());
  } catch (...) {  // the scanner's own errors: an elapsed time, or seconds
    return std::nullopt;
  }
  const UTC_VALUES& utc = scanner.values;
  const auto day = DayOf(utc.year, utc.month, utc.day);
  if (!day) return std::nullopt;
  const std::int64_t seconds = (utc.hour * 60 + utc.minute) * 60 + utc.second;
  const std::int64_t milliseconds = seconds * 1000 + utc.millisecond;
  return MOMENT{*day, milliseconds * 1000 + utc.microsecond};
}

SCENE_TIME TimeOf(const std::string& reference, double first_az_time) {
  constexpr double LONGEST = 1e8;  // of a scene's times, in seconds
  const std::optional<MOMENT> date = Date(reference);
  if (!date || !(std::fabs(first_az_time) < LONGEST)) return {reference, std::nullopt};
  const MOMENT first = Later(*date, std::llround(first_az_time * MICROSECONDS_OF_SECOND));
  return {IsoTime(first), static_cast<double>(first.day) * 86400.0 +
                              static_cast<double>(first.microseconds) / MICROSECONDS_OF_SECOND};
}

void TakeScene(const std::string& file, double first_az_time, std::size_t index,
               PAIR_RECORD& record) {
  try {
    const POOL_DOCUMENT pool = ReadDocument(file);
    const POOL_ENTRY* const frequency = pool.Find("radar_frequency");
    if (frequency != nullptr && frequency->value.is_number()) {
      record.radar_frequency[index] = frequency->value.get<double>();
    }
    const POOL_ENTRY* const reference = pool.Find("orbit_reference_time");
    if (reference != nullptr && reference->value.is_string()) {
      record.times[index] = TimeOf(reference->value.get<std::string>(), first_az_time);
    }
  } catch (const std::runtime_error& error) {
    record.remarks.push_back({file, 1, SEVERITY::WARNING,
                              std::string(error.what()) + ": the scene's date is not known"});
  }
}

void TakeLog(const std::string& file, PAIR_RECORD& record) {
  record.log = ReadRunLog(file);
  if (!record.log.fault.empty()) {
    record.remarks.push_back(
        {file, 1, SEVERITY::WARNING,
         "can't be read (" + record.log.fault + "): no warnings and no nine points"});
  } else if (!record.log.is_ended) {
    record.remarks.push_back({file, 1, SEVERITY::WARNING, "does not tell the end of a run"});
  }
}

double FirstTime(const POOL_DOCUMENT& pool, const char* key) {
  const POOL_ENTRY* const entry = pool.Find(key);
  return entry == nullptr ? NO_NUMBER : NumberIn(entry->value);
}

}  // namespace

double PAIR_RECORD::Number(const std::string& key) const {
  const auto found = numbers.find(key);
  return found == numbers.end() ? NO_NUMBER : found->second;
}

std::string NameOfPlace(const std::string& place) {
  std::filesystem::path path = std::filesystem::absolute(place).lexically_normal();
  if (!path.has_filename()) path = path.parent_path();  // a slash stood at the end
  return path.filename().string();
}

PAIR_RECORD ReadPair(const std::string& directory) {
  PAIR_RECORD record;
  record.name = NameOfPlace(directory);
  record.place = directory;
  const std::filesystem::path folder = directory;
  const std::string file = (folder / "insar.pool").string();
  try {
    const POOL_DOCUMENT pool = ReadDocument(file);
    TakeResults(pool, record);
    TakeScene((folder / "master.pool").string(), FirstTime(pool, "master_first_az_time"), 0,
              record);
    TakeScene((folder / "slave.pool").string(), FirstTime(pool, "slave_first_az_time"), 1, record);
  } catch (const std::runtime_error& error) {
    record.remarks.push_back({file, 1, SEVERITY::ERROR, error.what()});
  }
  TakeLog((folder / "log.varnoth").string(), record);
  return record;
}

PAIR_RECORD ReadKeptLog(const std::string& file, ENDING ending) {
  PAIR_RECORD record;
  record.name = std::filesystem::path(file).stem().string();
  record.place = file;
  record.ending = ending;
  record.log = ReadRunLog(file);
  if (!record.log.fault.empty()) {
    record.remarks.push_back({file, 1, SEVERITY::ERROR, "can't be read: " + record.log.fault});
  }
  return record;
}

}  // namespace varnoth::tools
