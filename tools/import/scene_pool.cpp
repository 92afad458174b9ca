#include "tools/import/scene_pool.hpp"

#include <algorithm>
#include <sstream>

#include "pool/entry_text.hpp"
#include "tools/import/moment.hpp"
#include "tools/pool/document.hpp"
#include "tools/whole_file.hpp"

namespace varnoth::tools {

namespace {

/// A text as a pool can keep it: Latin-1, without control characters and backslashes.
std::string PoolBytes(const std::string& text) {
  std::string bytes = ToLatin1(text).value_or(text);
  for (char& byte : bytes) {
    if (static_cast<unsigned char>(byte) < ' ' || byte == '\x7F') byte = ' ';
    if (byte == '\\') byte = '/';
  }
  return bytes;
}

/// Breaks sentences into comment lines that fit a screen. A word that is too long for a line of a
/// pool is cut.
ARRAY<STRING> CommentLines(const std::vector<std::string>& sentences) {
  constexpr std::size_t WIDTH = 96;
  constexpr std::size_t LONGEST_WORD = 1000;
  std::vector<std::string> lines;
  for (const std::string& sentence : sentences) {
    std::istringstream words(PoolBytes(sentence));
    std::string line;
    for (std::string word; words >> word;) {
      word.resize(std::min(word.size(), LONGEST_WORD));
      if (!line.empty() && line.size() + 1 + word.size() > WIDTH) {
        lines.push_back(std::move(line));
        line.clear();
      }
      line += (line.empty() ? "" : " ") + word;
    }
    if (!line.empty()) lines.push_back(line);
  }
  ARRAY<STRING> comments(0, static_cast<int>(lines.size()));
  std::transform(lines.begin(), lines.end(), comments.begin(),
                 [](const std::string& line) { return STRING(line.c_str()); });
  return comments;
}

/// Collects the entries of a pool.
class POOL_TEXT {
 public:
  template <class X>
  void Add(const char* key, const X& value, const std::vector<std::string>& comments = {}) {
    ENTRY_TEXT entry(key, POOL_TYPE<X>, CommentLines(comments));
    entry.Append(value);
    text += entry.Text();
  }
  /// A text that is too long for a line of a pool, with a backslash ahead of each quote, is cut.
  void Add(const char* key, const std::string& value,
           const std::vector<std::string>& comments = {}) {
    constexpr std::size_t LONGEST = 450;
    Add(key, STRING(PoolBytes(value).substr(0, LONGEST).c_str()), comments);
  }
  template <class X>
  void AddNumber(const char* key, const SOURCED<X>& number, const std::string& unit = "") {
    const std::string in_unit = unit.empty() ? "" : " in [" + unit + "]";
    Add(key, number.value, {number.source + in_unit});
  }
  /// Whole numbers of a scene are far below the limit: what is read from a file was checked.
  void AddCount(const char* key, const SOURCED<std::int64_t>& count) {
    Add(key, static_cast<int>(count.value), {count.source});
  }

  std::string text;
};

ARRAY<double> Values(const std::vector<double>& list) {
  ARRAY<double> values(0, static_cast<int>(list.size()));
  std::copy(list.begin(), list.end(), values.begin());
  return values;
}

ARRAY<double> EllipsoidParameters(const SCENE& scene) {
  ARRAY<double> values(0, 9);
  std::fill(values.begin(), values.end(), 0.0);
  values.begin()[7] = scene.equatorial_radius.value;
  values.begin()[8] = scene.polar_radius.value;
  return values;
}

}  // namespace

std::string OrbitPoolText(const STATE_VECTORS& orbit, const std::string& interpolation,
                          const SOURCED<MOMENT>& reference) {
  POOL_TEXT pool;
  pool.Add("orbit_representation", std::string("orbit_pool_double_utc"),
           {"the kind of the lists that the import wrote below"});
  pool.Add("orbit_interpolation", interpolation,
           {"--interpolation of the import, else its choice for these vectors"});
  pool.Add("orbit_param_key", std::string("orbit_epoch"), {"the list of epochs below"});
  pool.Add("orbit_value_key", std::string("orbit_x, orbit_y, orbit_z"),
           {"the lists of positions below"});
  pool.Add("orbit_velocity_key", std::string("orbit_vx, orbit_vy, orbit_vz"),
           {"the lists of velocities below"});
  pool.Add("orbit_reference_time", PoolTime(reference.value), {reference.source});

  std::vector<std::string> comments = {
      orbit.source, "frame " + orbit.frame + ", time system " + orbit.time_system};
  comments.insert(comments.end(), orbit.remarks.begin(), orbit.remarks.end());
  comments.emplace_back("UTC");
  ARRAY<STRING> epochs(0, static_cast<int>(orbit.epoch.size()));
  std::transform(orbit.epoch.begin(), orbit.epoch.end(), epochs.begin(),
                 [](const MOMENT& epoch) { return STRING(PoolTime(epoch).c_str()); });
  pool.Add("orbit_epoch", epochs, comments);
  const char* const positions[3] = {"orbit_x", "orbit_y", "orbit_z"};
  const char* const velocities[3] = {"orbit_vx", "orbit_vy", "orbit_vz"};
  for (int i = 0; i < 3; ++i) {
    pool.Add(positions[i], Values(orbit.position[i]), {"Earth fixed in [m]"});
  }
  for (int i = 0; i < 3; ++i) {
    pool.Add(velocities[i], Values(orbit.velocity[i]), {"Earth fixed in [m/s]"});
  }
  return pool.text;
}

std::string ScenePoolText(const SCENE& scene, const std::string& interpolation) {
  POOL_TEXT pool;
  std::vector<std::string> head = {scene.attribution, scene.satellite.value + " " + scene.mode};
  for (const std::string& warning : scene.warnings) head.push_back("Mind: " + warning);
  head.push_back(scene.name.source);
  pool.Add("scene_name", scene.name.value, head);
  pool.Add("satellite", scene.satellite.value, {scene.satellite.source});
  if (scene.absolute_orbit.value > 0) pool.AddCount("absolute_orbit", scene.absolute_orbit);
  if (scene.relative_orbit.value > 0) pool.AddCount("relative_orbit", scene.relative_orbit);
  pool.AddCount("n_lines", scene.line_count);
  pool.AddCount("n_samples", scene.sample_count);
  pool.Add("first_az_time",
           static_cast<double>(scene.first_line.value.microseconds) / MICROSECONDS_OF_SECOND,
           {scene.first_line.source + " in [s] after orbit_reference_time"});
  pool.AddNumber("first_rg_time", scene.first_range_time, "s");
  pool.Add("ellipsoid_parameters", EllipsoidParameters(scene),
           {"elements 7 and 8: equatorial and polar radius in [m]",
            scene.equatorial_radius.source + ", " + scene.polar_radius.source});
  pool.AddNumber("prf", scene.line_rate, "Hz");
  pool.AddNumber("az_bandwidth", scene.azimuth_bandwidth, "Hz");
  pool.AddNumber("range_sampling_frequency", scene.range_sampling_frequency, "Hz");
  pool.AddNumber("radar_frequency", scene.radar_frequency, "Hz");
  pool.Add("antenna_look_direction", scene.look_direction.value, {scene.look_direction.source});
  pool.Add("center_longitude", static_cast<float>(scene.center_longitude.value),
           {scene.center_longitude.source + " in [deg]"});
  pool.Add("center_latitude", static_cast<float>(scene.center_latitude.value),
           {scene.center_latitude.source + " in [deg]"});
  const MOMENT midnight{scene.first_line.value.day, 0};
  return pool.text +
         OrbitPoolText(scene.orbit, interpolation, {midnight, "midnight before the first line"});
}

void WriteScenePool(const SCENE& scene, const std::string& interpolation, const std::string& file) {
  WriteWholeFile(file, ScenePoolText(scene, interpolation));
}

}  // namespace varnoth::tools
