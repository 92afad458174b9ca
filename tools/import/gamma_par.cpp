#include "tools/import/gamma_par.hpp"

#include <charconv>
#include <cmath>
#include <filesystem>

#include "foundation/constants.hpp"
#include "tools/import/keyed_text.hpp"
#include "tools/import/orbit_work.hpp"

namespace varnoth::tools {

namespace {

MOMENT AfterMidnight(const KEYED_TEXT& par, std::int64_t day, const std::string& key) {
  const double seconds = par.Number(key);  // below 0 or above a day next to midnight
  if (std::abs(seconds) > 2 * 86400) par.Fail(key, "is not within days of the scene");
  return Later({day, 0}, std::llround(seconds * MICROSECONDS_OF_SECOND));
}

void CheckKind(const KEYED_TEXT& par) {
  for (const char* const key : {"range_looks", "azimuth_looks"}) {
    if (par.Has(key) && par.Whole(key) != 1) {
      par.Fail(key, "a multi-looked image; take the single-look one's (.slc.par)");
    }
  }
  if (par.Text("image_geometry") != "SLANT_RANGE") {
    par.Fail("image_geometry", par.Text("image_geometry") + " has no slant range grid");
  }
  if (par.Has("azimuth_deskew") && par.Text("azimuth_deskew") != "ON") {
    par.Fail("azimuth_deskew", "not at zero Doppler, where a run places all lines");
  }
}

/// A raw pulse rate may stand in `prf` where several pulses, or less than one, make a line.
SOURCED<double> LineRate(const KEYED_TEXT& par) {
  constexpr double PRINTED_DIGITS = 1e-7;  // of azimuth_line_time, which has fewer than prf
  const double line_time = par.Number("azimuth_line_time");
  if (!(line_time > 0)) par.Fail("azimuth_line_time", "is not above 0");
  if (par.Has("prf") && std::abs(par.Number("prf") * line_time - 1) < PRINTED_DIGITS) {
    return {par.Number("prf"), "prf, which agrees with azimuth_line_time"};
  }
  return {1 / line_time, "1 / azimuth_line_time"};
}

/// Of an image resampled onto another one the spacing says how far its samples are apart now, and
/// the converter's rate what it was.
SOURCED<double> SamplingFrequency(const KEYED_TEXT& par) {
  constexpr double PRINTED_DIGITS = 1e-6;
  constexpr double MOST = 0.01;
  const double rate = par.Number("adc_sampling_rate");
  const double spacing = par.Number("range_pixel_spacing");
  const double resampled = SPEED_OF_LIGHT / (2 * spacing);
  const double change = std::abs(resampled / rate - 1);
  if (!(change < MOST)) par.Fail("range_pixel_spacing", "is not c / (2 adc_sampling_rate)");
  if (change < PRINTED_DIGITS) return {rate, "adc_sampling_rate"};
  return {resampled, "velocity of light / (2 * range_pixel_spacing), of a resampled image"};
}

/// Titles such as "s1a-iw1-slc-vv-...-004.tiff S1A-IW-IW1-VV-20027 (software: ...)" end their
/// second word with the orbit number.
void ReadTitle(const KEYED_TEXT& par, SCENE& scene) {
  const std::string title = par.Has("title") ? par.Text("title") : "";
  const std::vector<std::string_view> words = WordsOf(title);
  const std::filesystem::path file(par.Name());
  scene.name = {file.stem().string(), "the name of " + file.filename().string()};
  if (words.empty()) return;
  scene.name = {std::filesystem::path(words[0]).stem().string(), "title"};
  if (words.size() < 2) return;
  const std::string_view digits = words[1].substr(words[1].rfind('-') + 1);
  std::int64_t orbit = 0;
  const auto [stop, error] = std::from_chars(digits.data(), digits.data() + digits.size(), orbit);
  if (error == std::errc() && stop == digits.data() + digits.size() && digits != words[1]) {
    scene.absolute_orbit = {orbit, "title"};
  }
}

STATE_VECTORS ReadVectors(const KEYED_TEXT& par, std::int64_t day) {
  constexpr std::int64_t MOST = 1000000;
  STATE_VECTORS orbit;
  orbit.frame = "Earth-fixed, not named";
  orbit.time_system = "UTC, not named";
  orbit.source = "state vectors of " + std::filesystem::path(par.Name()).filename().string();
  const MOMENT first = AfterMidnight(par, day, "time_of_first_state_vector");
  const double step = par.Number("state_vector_interval");
  if (!(step > 0 && step < 86400)) par.Fail("state_vector_interval", "is no interval in s");
  const std::int64_t count = par.Whole("number_of_state_vectors");
  if (count < 0 || count > MOST) par.Fail("number_of_state_vectors", "is no number of vectors");
  for (std::int64_t i = 0; i < count; ++i) {
    const std::string number = std::to_string(i + 1);
    const std::vector<double> position = par.Numbers("state_vector_position_" + number, 3);
    const std::vector<double> velocity = par.Numbers("state_vector_velocity_" + number, 3);
    const double after = static_cast<double>(i) * step;
    AddVector(orbit, Later(first, std::llround(after * MICROSECONDS_OF_SECOND)),
              {position[0], position[1], position[2]}, {velocity[0], velocity[1], velocity[2]});
  }
  return orbit;
}

}  // namespace

SCENE ReadGammaPar(const SOURCE_FILE& source) {
  const KEYED_TEXT par(source, ':');
  CheckKind(par);
  SCENE scene;
  ReadTitle(par, scene);
  const std::string sensor = par.Has("sensor") ? par.Text("sensor") : "";
  scene.satellite = {sensor.substr(0, sensor.find(' ')), "sensor"};
  if (scene.satellite.value.size() < sensor.size()) {
    scene.mode = sensor.substr(scene.satellite.value.size() + 1);
  }
  const std::vector<double> date = par.Numbers("date", 3);
  std::optional<std::int64_t> day;
  if (std::abs(date[0]) < 1e4 && std::abs(date[1]) < 1e4 && std::abs(date[2]) < 1e4) {
    day = DayOf(static_cast<int>(date[0]), static_cast<int>(date[1]), static_cast<int>(date[2]));
  }
  if (!day) par.Fail("date", "is no year, month and day");
  scene.line_count = {par.Whole("azimuth_lines"), "azimuth_lines"};
  scene.sample_count = {par.Whole("range_samples"), "range_samples"};
  scene.first_line = {AfterMidnight(par, *day, "start_time"), "date, start_time"};
  scene.first_range_time = {2 * par.Number("near_range_slc") / SPEED_OF_LIGHT,
                            "2 * near_range_slc / velocity of light"};
  scene.line_rate = LineRate(par);
  scene.azimuth_bandwidth = {par.Number("azimuth_proc_bandwidth"), "azimuth_proc_bandwidth"};
  scene.range_sampling_frequency = SamplingFrequency(par);
  scene.radar_frequency = {par.Number("radar_frequency"), "radar_frequency"};
  const double angle = par.Number("azimuth_angle");
  if (std::abs(angle) != 90) par.Fail("azimuth_angle", "is neither 90 (right) nor -90 (left)");
  scene.look_direction = {angle > 0 ? "right" : "left", "azimuth_angle"};
  scene.equatorial_radius = {par.Number("earth_semi_major_axis"), "earth_semi_major_axis"};
  scene.polar_radius = {par.Number("earth_semi_minor_axis"), "earth_semi_minor_axis"};
  if (par.Has("center_latitude")) {
    scene.center_latitude = {par.Number("center_latitude"), "center_latitude"};
    scene.center_longitude = {par.Number("center_longitude"), "center_longitude"};
  }
  scene.orbit = ReadVectors(par, *day);
  return scene;
}

}  // namespace varnoth::tools
