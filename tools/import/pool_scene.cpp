#include "tools/import/pool_scene.hpp"

#include <cmath>

#include "time/utc_scanner.hpp"
#include "tools/import/failure.hpp"
#include "tools/import/keyed_text.hpp"
#include "tools/import/moment.hpp"

namespace varnoth::tools {

namespace {

/// Reads values of a pool; failures name the key and its line.
class VALUES_OF_POOL {
 public:
  explicit VALUES_OF_POOL(const POOL_DOCUMENT& from) : pool(from) {}

  bool Has(const char* key) const { return pool.Find(key) != nullptr; }

  const POOL_ENTRY& Entry(const std::string& key) const {
    const POOL_ENTRY* const entry = pool.Find(key);
    if (entry == nullptr) {
      throw IMPORT_FAILURE(pool.file, 1, "has no " + key + ", which an imported scene has");
    }
    if (entry->value.is_null()) Fail(*entry, entry->failure);
    return *entry;
  }

  double Number(const char* key) const {
    const POOL_ENTRY& entry = Entry(key);
    if (!entry.value.is_number()) Fail(entry, "is no number");
    return entry.value.get<double>();
  }
  std::int64_t Count(const char* key) const {
    const POOL_ENTRY& entry = Entry(key);
    if (!entry.value.is_number_integer()) Fail(entry, "is no whole number");
    return entry.value.get<std::int64_t>();
  }
  std::string Text(const char* key) const { return TextOf(Entry(key), Entry(key).value); }

  MOMENT Time(const POOL_ENTRY& entry, const JSON& value) const {
    const std::string text = TextOf(entry, value);
    UTC_SCANNER scanner;
    try {
      scanner.Scan(text.c_str());
    } catch (...) {  // the scanner's own errors, which all mean this
      Fail(entry, "'" + text.substr(0, 40) + "' is no universal time");
    }
    const UTC_VALUES& utc = scanner.values;
    const auto day = DayOf(utc.year, utc.month, utc.day);
    if (!day) Fail(entry, "'" + text.substr(0, 40) + "' is no day of the years 1970 to 2099");
    const std::int64_t seconds = (utc.hour * 60 + utc.minute) * 60 + utc.second;
    return {*day, seconds * MICROSECONDS_OF_SECOND + std::int64_t{utc.millisecond} * 1000 +
                      utc.microsecond};
  }

  /// The values of a vector.
  const JSON& List(const POOL_ENTRY& entry) const {
    if (!entry.value.is_object() || !entry.value.contains("first")) Fail(entry, "is no vector");
    return entry.value["values"];
  }

  [[noreturn]] void Fail(const POOL_ENTRY& entry, const std::string& text) const {
    throw IMPORT_FAILURE(pool.file, entry.line, entry.key + ": " + text);
  }

 private:
  std::string TextOf(const POOL_ENTRY& entry, const JSON& value) const {
    if (!value.is_string()) Fail(entry, "is no text");
    return value.get<std::string>();
  }

  const POOL_DOCUMENT& pool;
};

std::vector<std::string> Names(const std::string& text) {
  const std::vector<std::string_view> names = WordsOf(text, ": /,(){}");
  return {names.begin(), names.end()};
}

STATE_VECTORS ReadVectors(const VALUES_OF_POOL& pool) {
  const POOL_ENTRY& kind = pool.Entry("orbit_representation");
  if (kind.value != "orbit_pool_double_utc") pool.Fail(kind, "must be orbit_pool_double_utc here");
  STATE_VECTORS orbit;
  const POOL_ENTRY& epochs = pool.Entry(pool.Text("orbit_param_key"));
  for (const JSON& epoch : pool.List(epochs)) orbit.epoch.push_back(pool.Time(epochs, epoch));
  const std::vector<std::string> names = Names(pool.Text("orbit_value_key"));
  if (names.size() < 3) pool.Fail(pool.Entry("orbit_value_key"), "names no three lists");
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const POOL_ENTRY& list = pool.Entry(names[axis]);
    for (const JSON& value : pool.List(list)) {
      if (!value.is_number()) pool.Fail(list, "holds what is no number");
      orbit.position[axis].push_back(value.get<double>());
    }
    if (orbit.position[axis].size() < orbit.epoch.size()) pool.Fail(list, "has too few values");
  }
  return orbit;
}

void ReadRadii(const VALUES_OF_POOL& pool, SCENE& scene) {
  constexpr std::size_t COUNT = 9;
  const POOL_ENTRY& entry = pool.Entry("ellipsoid_parameters");
  const JSON& values = pool.List(entry);
  if (values.size() < COUNT || !values[7].is_number() || !values[8].is_number()) {
    pool.Fail(entry, "must have the radii as elements 7 and 8");
  }
  scene.equatorial_radius.value = values[7].get<double>();
  scene.polar_radius.value = values[8].get<double>();
}

}  // namespace

POOL_SCENE ReadPoolScene(const std::string& file) {
  POOL_SCENE read;
  try {
    read.document = ReadDocument(file);
  } catch (const std::runtime_error& failure) {
    throw IMPORT_FAILURE(file, 1, failure.what());
  }
  const VALUES_OF_POOL pool(read.document);
  SCENE& scene = read.scene;
  if (pool.Has("scene_name")) scene.name.value = pool.Text("scene_name");
  if (pool.Has("satellite")) scene.satellite.value = pool.Text("satellite");
  if (pool.Has("absolute_orbit")) scene.absolute_orbit.value = pool.Count("absolute_orbit");
  if (pool.Has("relative_orbit")) scene.relative_orbit.value = pool.Count("relative_orbit");
  scene.line_count.value = pool.Count("n_lines");
  scene.sample_count.value = pool.Count("n_samples");
  scene.first_range_time.value = pool.Number("first_rg_time");
  scene.line_rate.value = pool.Number("prf");
  scene.azimuth_bandwidth.value = pool.Number("az_bandwidth");
  scene.range_sampling_frequency.value = pool.Number("range_sampling_frequency");
  scene.radar_frequency.value = pool.Number("radar_frequency");
  scene.look_direction.value = pool.Text("antenna_look_direction");
  ReadRadii(pool, scene);
  const POOL_ENTRY& reference = pool.Entry("orbit_reference_time");
  read.reference = {pool.Time(reference, reference.value), reference.comment.value_or("")};
  const double after = pool.Number("first_az_time");
  if (!(std::abs(after) < 1e6)) pool.Fail(pool.Entry("first_az_time"), "is days away");
  scene.first_line.value =
      Later(read.reference.value, std::llround(after * MICROSECONDS_OF_SECOND));
  scene.orbit = ReadVectors(pool);
  return read;
}

}  // namespace varnoth::tools
