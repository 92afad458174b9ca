#include "tools/import/oem.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>
#include <utility>

#include "tools/import/keyed_text.hpp"
#include "tools/import/orbit_work.hpp"

namespace varnoth::tools {

namespace {

/// "2017-04-11T22:31:43.121856", or "1996-353T12:00:00.331" with the day of the year.
std::optional<MOMENT> TimeOf(std::string_view text) {
  constexpr std::size_t YEAR_AND_DAY = 8;
  if (text.size() <= YEAR_AND_DAY || text[4] != '-' || text[YEAR_AND_DAY] != 'T') {
    return MomentFromText(text);
  }
  const std::optional<double> day = NumberOf(text.substr(5, 3));
  const std::string start = std::string(text.substr(0, 4)) + "-01-01";
  std::optional<MOMENT> moment = MomentFromText(start + std::string(text.substr(YEAR_AND_DAY)));
  if (!moment || !day || *day < 1 || *day > 366 || *day != std::floor(*day)) return std::nullopt;
  moment->day += static_cast<std::int64_t>(*day) - 1;
  return moment;
}

/// Microseconds that a time system is ahead of UTC. Nothing for one that is not known here.
std::optional<std::int64_t> AheadOfUtc(const std::string& system, const MOMENT& moment) {
  constexpr std::int64_t TT_MINUS_TAI = 32184000;
  constexpr std::int64_t TAI_MINUS_GPS = 19 * MICROSECONDS_OF_SECOND;
  if (system == "UTC") return 0;
  const std::int64_t tai = TaiMinusUtc(moment) * MICROSECONDS_OF_SECOND;
  if (system == "TAI") return tai;
  if (system == "GPS") return tai - TAI_MINUS_GPS;
  if (system == "TT") return tai + TT_MINUS_TAI;
  return std::nullopt;
}

class OEM_READER {
 public:
  explicit OEM_READER(const SOURCE_FILE& from) : source(from) {}

  OEM Read() {
    for (const std::string_view line : LinesOf(source.content)) {
      ++number;
      Take(line);
    }
    if (part != PART::DATA)
      Fail(part == PART::HEADER ? "has no META_START" : "ends within " + Name());
    for (OEM_SEGMENT& segment : oem.segments) Settle(segment);
    return std::move(oem);
  }

 private:
  enum class PART { START, HEADER, META, DATA, COVARIANCE };

  std::string Name() const {
    return part == PART::START ? "nothing" : part == PART::META ? "META" : "COVARIANCE";
  }

  [[noreturn]] void Fail(const std::string& text) const {
    throw IMPORT_FAILURE(source.name, number, text);
  }

  void Take(std::string_view line) {
    const std::vector<std::string_view> words = WordsOf(line);
    if (words.empty()) return;
    if (part == PART::START) {
      if (line.find("CCSDS_OEM_VERS") == line.npos || line.find('<') != line.npos) {
        Fail("no CCSDS ephemeris in text form (OEM, KVN): CCSDS_OEM_VERS = leads one");
      }
      part = PART::HEADER;
      return;
    }
    if (words[0] == "COMMENT") return;
    const bool ends_covariance = part == PART::COVARIANCE && words[0] == "COVARIANCE_STOP";
    if (part == PART::COVARIANCE && !ends_covariance) return;
    if (ends_covariance) {
      part = PART::DATA;
    } else if (words[0] == "META_START" && part != PART::META) {
      oem.segments.emplace_back().line = number;
      part = PART::META;
    } else if (words[0] == "META_STOP" && part == PART::META) {
      part = PART::DATA;
      CheckMeta(oem.segments.back());
    } else if (words[0] == "COVARIANCE_START" && part == PART::DATA) {
      part = PART::COVARIANCE;
    } else if (part == PART::META) {
      TakeMeta(line);
    } else if (part == PART::DATA) {
      TakeVector(words);
    }
  }

  void TakeMeta(std::string_view line) {
    static constexpr std::array KNOWN = {
        "OBJECT_NAME",       "OBJECT_ID",   "CENTER_NAME",   "REF_FRAME",
        "REF_FRAME_EPOCH",   "TIME_SYSTEM", "START_TIME",    "USEABLE_START_TIME",
        "USEABLE_STOP_TIME", "STOP_TIME",   "INTERPOLATION", "INTERPOLATION_DEGREE",
        "MESSAGE_ID"};
    const std::size_t sign = line.find('=');
    if (sign == line.npos) Fail("neither a keyword nor META_STOP");
    const std::vector<std::string_view> names = WordsOf(line.substr(0, sign));
    if (names.size() != 1) Fail("no keyword ahead of =");
    std::string value;
    for (const std::string_view word : WordsOf(line.substr(sign + 1))) {
      value += (value.empty() ? "" : " ") + std::string(word);
    }
    if (std::find(KNOWN.begin(), KNOWN.end(), names[0]) == KNOWN.end()) {
      oem.warnings.push_back("line " + std::to_string(number) + ": " + std::string(names[0]) +
                             " is no keyword of an ephemeris; left out");
    }
    oem.segments.back().meta[std::string(names[0])] = value;
  }

  void TakeVector(const std::vector<std::string_view>& words) {
    constexpr std::size_t NEEDED = 7;
    constexpr std::size_t WITH_ACCELERATION = 10;  // which nothing here needs
    constexpr double METRES = 1000.0;
    if (words.size() != NEEDED && words.size() != WITH_ACCELERATION) {
      Fail("a vector has a time and 6 numbers, or 9 with accelerations");
    }
    const std::optional<MOMENT> time = TimeOf(words[0]);
    if (!time) Fail("'" + std::string(words[0].substr(0, 40)) + "' is no time");
    double values[6] = {};
    for (std::size_t i = 1; i < words.size(); ++i) {
      const std::optional<double> value = NumberOf(words[i]);
      if (!value) Fail("'" + std::string(words[i].substr(0, 40)) + "' is no number");
      if (i < NEEDED) values[i - 1] = *value * METRES;
    }
    STATE_VECTORS& orbit = oem.segments.back().orbit;
    if (!orbit.epoch.empty() && MicrosecondsBetween(orbit.epoch.back(), *time) <= 0) {
      Fail("is not later than the vector before it");
    }
    AddVector(orbit, *time, {values[0], values[1], values[2]}, {values[3], values[4], values[5]});
  }

  /// Refuses what can't be taken before the vectors are looked at: it is the better reason.
  void CheckMeta(const OEM_SEGMENT& segment) {
    const std::size_t here = std::exchange(number, segment.line);
    const std::string centre = Value(segment, "CENTER_NAME");
    if (Upper(centre) != "EARTH") Fail("CENTER_NAME is " + centre + ", not EARTH");
    CheckFrame(Value(segment, "REF_FRAME"));
    const std::string system = Value(segment, "TIME_SYSTEM");
    if (!AheadOfUtc(Upper(system), {})) {
      Fail("TIME_SYSTEM " + system + " has no known difference to UTC");
    }
    number = here;
  }

  /// Brings the times of a segment to UTC, and finds out where it may be interpolated, and how.
  void Settle(OEM_SEGMENT& segment) {
    number = segment.line;
    STATE_VECTORS& orbit = segment.orbit;
    if (orbit.epoch.empty()) Fail("the segment has no vectors");
    const std::string system = Value(segment, "TIME_SYSTEM");
    const std::int64_t ahead = AheadOfUtc(Upper(system), orbit.epoch[0]).value_or(0);
    segment.first = orbit.epoch.front();
    segment.last = orbit.epoch.back();
    Narrow(segment, "START_TIME", "STOP_TIME");
    Narrow(segment, "USEABLE_START_TIME", "USEABLE_STOP_TIME");
    if (MicrosecondsBetween(segment.first, segment.last) <= 0) {
      Fail("the times of the segment leave no useable interval");
    }
    segment.first = Later(segment.first, -ahead);
    segment.last = Later(segment.last, -ahead);
    for (MOMENT& epoch : orbit.epoch) epoch = Later(epoch, -ahead);
    orbit.frame = Value(segment, "REF_FRAME");
    orbit.time_system = system + (ahead == 0 ? "" : ", converted");
    orbit.source = std::filesystem::path(source.name).filename().string() + ", " +
                   Value(segment, "OBJECT_NAME") + " " + Value(segment, "OBJECT_ID");
    SettleInterpolation(segment);
  }

  std::string Value(const OEM_SEGMENT& segment, const char* key) const {
    const auto value = segment.meta.find(key);
    if (value == segment.meta.end() || value->second.empty()) {
      Fail("the segment has no " + std::string(key));
    }
    return value->second;
  }

  void CheckFrame(const std::string& name) const {
    const std::string frame = Upper(name);
    if (frame.starts_with("ITRF") || frame.starts_with("WGS84") || frame.starts_with("WGS-84")) {
      return;
    }
    if (frame == "TDR" || frame == "GRC") {
      Fail("REF_FRAME " + name +
           " lacks the motion of the pole, some 10 m: vectors in an ITRF are "
           "needed");
    }
    Fail("REF_FRAME " + name +
         " is not Earth-fixed: vectors in an ITRF are needed, turned by "
         "precession, nutation, Earth rotation (UT1) and the motion of the pole of their days");
  }

  /// Narrows the interval to the times that are stated; what the vectors don't hold stays out.
  void Narrow(OEM_SEGMENT& segment, const char* start, const char* stop) {
    const auto time = [&](const char* key) -> std::optional<MOMENT> {
      if (!segment.meta.contains(key)) return std::nullopt;
      const std::optional<MOMENT> moment = TimeOf(segment.meta.at(key));
      if (!moment) Fail(std::string(key) + " is no time");
      return moment;
    };
    const std::optional<MOMENT> from = time(start);
    const std::optional<MOMENT> to = time(stop);
    if (from && MicrosecondsBetween(segment.first, *from) > 0) segment.first = *from;
    if (to && MicrosecondsBetween(*to, segment.last) > 0) segment.last = *to;
  }

  /// A polynomial of an odd degree through the vectors around a time is Everett's, which needs even
  /// epochs: the one of order k goes through k + 2 vectors, so its degree is k + 1. Beyond order 10
  /// the digits that differences lose outweigh what they gain. Hermite's of degree n has (n + 1) /
  /// 2 positions with their velocities, and two at least, since there is nothing between the
  /// vectors of a single one.
  void SettleInterpolation(OEM_SEGMENT& segment) {
    constexpr double HIGHEST = 15;
    constexpr std::size_t HIGHEST_ORDER = 10;
    if (!segment.meta.contains("INTERPOLATION")) return;
    const std::string method = Upper(segment.meta.at("INTERPOLATION"));
    const auto degree = NumberOf(Value(segment, "INTERPOLATION_DEGREE"));
    if (!degree || *degree < 1 || *degree > HIGHEST || *degree != std::floor(*degree)) {
      Fail("INTERPOLATION_DEGREE is no degree of 1 to 15");
    }
    const auto points = static_cast<std::size_t>(*degree) + 1;
    STATE_VECTORS orbit = segment.orbit;
    if (method == "LAGRANGE" && points % 2 == 0 && MoveOntoGrid(orbit)) {
      segment.interpolation = "everett_" + std::to_string(std::min(points - 2, HIGHEST_ORDER));
    } else if (method == "LAGRANGE") {
      segment.interpolation = "localpolynom_0_" + std::to_string(points);
    } else if (method == "HERMITE") {
      const std::size_t vectors = std::max<std::size_t>((points + 1) / 2, 2);
      segment.interpolation = "localhermite_0_" + std::to_string(vectors);
    } else {
      oem.warnings.push_back("INTERPOLATION " + method + " is not known here; left out");
    }
  }

  const SOURCE_FILE& source;
  OEM oem;
  PART part = PART::START;
  std::size_t number = 0;
};

}  // namespace

OEM ReadOem(const SOURCE_FILE& source) { return OEM_READER(source).Read(); }

}  // namespace varnoth::tools
