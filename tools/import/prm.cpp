#include "tools/import/prm.hpp"

#include <cmath>
#include <cstdio>
#include <filesystem>

#include "foundation/constants.hpp"
#include "tools/import/keyed_text.hpp"
#include "tools/import/orbit_work.hpp"

namespace varnoth::tools {

namespace {

/// A day of the year that counts from 0.
std::optional<std::int64_t> DayOfYearZero(double year, double day) {
  if (!(year >= 0 && year < 1e4 && day >= 0 && day < 366)) return std::nullopt;
  const std::optional<std::int64_t> new_year = DayOf(static_cast<int>(year), 1, 1);
  if (!new_year || year != std::floor(year)) return std::nullopt;
  return *new_year + static_cast<std::int64_t>(day);
}

/// The first line "count year day seconds step", then "year day seconds x y z vx vy vz" a line.
STATE_VECTORS ReadLed(const SOURCE_FILE& source, std::vector<std::string>& warnings) {
  constexpr std::size_t FIELDS = 9;
  STATE_VECTORS orbit;
  orbit.frame = "Earth-fixed, not named";
  orbit.time_system = "UTC, not named";
  orbit.source = std::filesystem::path(source.name).filename().string();
  std::size_t number = 0;
  double stated = 0.0;
  for (const std::string_view line : LinesOf(source.content)) {
    ++number;
    std::vector<double> fields;
    for (const std::string_view word : WordsOf(line)) {
      const std::optional<double> field = NumberOf(word);
      if (!field) {
        throw IMPORT_FAILURE(source.name, number,
                             "'" + std::string(word.substr(0, 40)) + "' is no number");
      }
      fields.push_back(*field);
    }
    if (number == 1 && fields.size() >= 5) {
      stated = fields[0];
    } else if (number == 1 || (!fields.empty() && fields.size() != FIELDS)) {
      throw IMPORT_FAILURE(source.name, number,
                           number == 1 ? "no orbit file: count, year, day, seconds and step lead it"
                                       : "a vector has year, day, seconds and six numbers");
    } else if (!fields.empty()) {
      const std::optional<std::int64_t> day = DayOfYearZero(fields[0], fields[1]);
      if (!day || std::abs(fields[2]) > 2 * 86400) {
        throw IMPORT_FAILURE(source.name, number, "no time: year, day from 0, and seconds");
      }
      AddVector(orbit, Later({*day, 0}, std::llround(fields[2] * MICROSECONDS_OF_SECOND)),
                {fields[3], fields[4], fields[5]}, {fields[6], fields[7], fields[8]});
    }
  }
  if (static_cast<double>(orbit.epoch.size()) != stated) {
    char text[120];
    std::snprintf(text, sizeof text, "%.0f vectors are stated and %zu are there", stated,
                  orbit.epoch.size());
    warnings.push_back(orbit.source + ": " + text);
  }
  return orbit;
}

/// SC_clock_start holds the year and the day from 0 (2020356.6), clock_start the day with two more
/// digits.
MOMENT StartOf(const KEYED_TEXT& prm) {
  const double clock = prm.Number("SC_clock_start");
  const double year = std::floor(clock / 1000);
  double day = clock - year * 1000;
  if (prm.Has("clock_start")) {
    constexpr double ROUNDING = 1e-8;  // days
    const double fine = prm.Number("clock_start");
    if (std::abs(fine - day) > ROUNDING) prm.Fail("clock_start", "differs from SC_clock_start");
    day = fine;
  }
  const std::optional<std::int64_t> number = DayOfYearZero(year, day);
  if (!number) prm.Fail("SC_clock_start", "no year and day such as 2020356.6");
  return Later({*number, 0}, std::llround((day - std::floor(day)) * MICROSECONDS_OF_DAY));
}

}  // namespace

SCENE ReadPrm(const SOURCE_FILE& source) {
  const KEYED_TEXT prm(source, '=');
  SCENE scene;
  const std::filesystem::path path(source.name);
  scene.name = {path.stem().string(), "the name of " + path.filename().string()};
  if (prm.Has("SC_identity")) {
    scene.satellite = {"SC_identity " + prm.Text("SC_identity"), "SC_identity"};
  }
  scene.line_count = {prm.Whole("num_valid_az") * prm.Whole("num_patches"),
                      "num_valid_az * num_patches"};
  scene.sample_count = {prm.Whole("num_rng_bins"), "num_rng_bins"};
  scene.first_line = {StartOf(prm), "SC_clock_start, clock_start"};
  scene.first_range_time = {2 * prm.Number("near_range") / SPEED_OF_LIGHT,
                            "2 * near_range / velocity of light"};
  scene.line_rate = {prm.Number("PRF"), "PRF"};
  scene.azimuth_bandwidth = {scene.line_rate.value, "not stated; PRF is its upper bound"};
  scene.range_sampling_frequency = {prm.Number("rng_samp_rate"), "rng_samp_rate"};
  const double wavelength = prm.Number("radar_wavelength");
  if (!(wavelength > 0)) prm.Fail("radar_wavelength", "is not above 0");
  scene.radar_frequency = {SPEED_OF_LIGHT / wavelength, "velocity of light / radar_wavelength"};
  const std::string side = prm.Text("lookdir");
  if (side != "R" && side != "L") prm.Fail("lookdir", "is neither R nor L");
  scene.look_direction = {side == "R" ? "right" : "left", "lookdir"};
  scene.equatorial_radius = {prm.Number("equatorial_radius"), "equatorial_radius"};
  scene.polar_radius = {prm.Number("polar_radius"), "polar_radius"};
  for (const char* const key : {"fd1", "fdd1"}) {
    if (prm.Has(key) && prm.Number(key) != 0) {
      scene.warnings.push_back("focused at a Doppler of " + std::string(key) + " = " +
                               prm.Text(key) +
                               ": a run places all lines at zero Doppler, so expect a shift");
    }
  }
  std::filesystem::path led = prm.Text("led_file");
  if (led.is_relative()) led = path.parent_path() / led;
  scene.inputs.push_back(led.string());
  scene.orbit = ReadLed(ReadSource(led.string()), scene.warnings);
  return scene;
}

}  // namespace varnoth::tools
