#include "tools/report/page_data.hpp"

#include <algorithm>
#include <cmath>
#include <ctime>
#include <map>
#include <set>

#include "tools/pool/document.hpp"
#include "tools/report/curves.hpp"
#include "tools/report/footprints.hpp"
#include "tools/report/page_parts.hpp"
#include "tools/report/remedies.hpp"

namespace varnoth::tools {

namespace {

/// JSON has no NaN and no infinity: null stands for the one, "inf" or "-inf" for the other.
JSON Rounded(double value, int decimals) {
  if (std::isnan(value)) return nullptr;
  if (std::isinf(value)) return value < 0 ? "-inf" : "inf";
  const double scale = std::pow(10.0, decimals);
  const double scaled = value * scale;
  // Beyond these digits there is nothing to round.
  if (std::fabs(scaled) > 1e15) return value;
  const double rounded = std::round(scaled) / scale;
  return rounded == 0.0 ? 0.0 : rounded;  // no minus zero
}

JSON List(const std::vector<double>& values, int decimals) {
  JSON list = JSON::array();
  for (const double value : values) list.push_back(Rounded(value, decimals));
  return list;
}

/// A number with nine digits, the most that an angle or a length of the page shows.
JSON NineDigits(double value) {
  const double size = std::fabs(value);
  if (!std::isfinite(size) || size == 0.0) return Rounded(value, 0);
  return Rounded(value, 8 - static_cast<int>(std::floor(std::log10(size))));
}

const char* Word(ENDING ending) {
  switch (ending) {
    case ENDING::DONE:
      return "done";
    case ENDING::FAILED:
      return "failed";
    case ENDING::STOPPED:
      return "stopped";
    case ENDING::WITHOUT:
      break;
  }
  return "without results";
}

JSON Grid(const NINE_POINTS& grid) {
  constexpr std::size_t LINES = 3;
  if (grid.lines.size() != LINES) return nullptr;
  JSON rows = JSON::array();
  for (const auto& row : grid.values) rows.push_back(List({row.begin(), row.end()}, 2));
  return {{"samples", List({grid.samples.begin(), grid.samples.end()}, 0)},
          {"lines", List(grid.lines, 0)},
          {"values", rows}};
}

/// The keys of all numbers, so that a pair needs the values alone.
std::vector<std::string> NumberKeys(const std::vector<PAIR_RECORD>& records) {
  std::set<std::string> keys;
  for (const PAIR_RECORD& record : records) {
    for (const auto& [key, value] : record.numbers) keys.insert(key);
  }
  return {keys.begin(), keys.end()};
}

/// Turns records into JSON, with one list of all remedies that they need.
class DATA_WRITER {
 public:
  explicit DATA_WRITER(const std::vector<PAIR_RECORD>& records) : keys(NumberKeys(records)) {}

  JSON Pair(const PAIR_RECORD& record) {
    JSON pair = {{"name", record.name}, {"place", record.place}, {"ending", Word(record.ending)}};
    JSON times = JSON::array();
    for (const SCENE_TIME& time : record.times) {
      times.push_back({time.text, time.seconds_1970 ? Rounded(*time.seconds_1970, 3) : nullptr});
    }
    pair["times"] = times;
    pair["log"] = {{"fault", record.log.fault},
                   {"is_ended", record.log.is_ended},
                   {"started", record.log.started},
                   {"misfit", Rounded(record.log.misfit.value_or(NAN), 4)}};
    pair["notices"] = Notices(record);
    JSON remarks = JSON::array();
    for (const REMARK& remark : record.remarks) {
      remarks.push_back(remark.file + ":" + std::to_string(remark.line) + ": " + remark.text);
    }
    pair["remarks"] = remarks;
    if (record.numbers.empty()) return pair;
    AddResults(record, pair);
    return pair;
  }

  JSON Keys() const { return keys; }
  const JSON& Remedies() const { return remedies; }

 private:
  void AddResults(const PAIR_RECORD& record, JSON& pair) const {
    JSON numbers = JSON::array();
    for (const std::string& key : keys) numbers.push_back(NineDigits(record.Number(key)));
    pair["numbers"] = numbers;
    pair["texts"] = record.texts;
    JSON curves = JSON::object();
    for (const CURVE& curve : CurvesOf(record)) {
      curves[curve.name] = {List(curve.values[0], curve.decimals),
                            List(curve.values[1], curve.decimals)};
    }
    JSON polynomials = JSON::array();
    for (const char* const key : {"flat_phase_poly_early_az", "flat_phase_poly_late_az"}) {
      const auto found = record.vectors.find(key);
      // All digits count in a polynomial; JSON writes what is no number as null.
      polynomials.push_back(found == record.vectors.end() ? JSON::array() : JSON(found->second));
    }
    pair["polynomials"] = polynomials;
    pair["samples"] = List(CurveSamples(record), 1);
    pair["curves"] = curves;
    pair["grids"] = {Grid(record.log.effective_baseline), Grid(record.log.baseline)};
  }

  JSON Notices(const PAIR_RECORD& record) {
    JSON notices = JSON::array();
    for (const NOTICE& notice : record.log.notices) {
      notices.push_back({notice.level, notice.text, notice.line, Remedy(notice)});
    }
    return notices;
  }

  /// The place of a line's remedy in the list; null where the page on messages has none.
  JSON Remedy(const NOTICE& notice) {
    static const REMEDY_BOOK book(REMEDY_PAGE);  // once, however many pages a process makes
    const std::optional<std::size_t> row = book.Find(notice.level, notice.text);
    if (!row) return nullptr;
    const auto [known, is_new] = place_of_row.emplace(*row, remedies.size());
    if (is_new) remedies.push_back({book.rows[*row].meaning, book.rows[*row].action});
    return known->second;
  }

  std::vector<std::string> keys;
  JSON remedies = JSON::array();
  std::map<std::size_t, std::size_t> place_of_row;
};

/// Rings of land in hundredths of a degree.
JSON Land(const std::vector<PAIR_RECORD>& records, double middle) {
  constexpr double UNITS_OF_DEGREE = 100.0;
  JSON land = JSON::array();
  const std::optional<MAP_BOX> box = Surroundings(records, middle);
  if (!box) return land;
  for (const RING& ring : LandWithin(LAND_TEXT, *box)) {
    JSON numbers = JSON::array();
    for (const MAP_POINT& point : ring) {
      numbers.push_back(std::lround(point.longitude * UNITS_OF_DEGREE));
      numbers.push_back(std::lround(point.latitude * UNITS_OF_DEGREE));
    }
    land.push_back(numbers);
  }
  return land;
}

std::string Now() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  char text[32];
  std::strftime(text, sizeof text, "%Y-%m-%d %H:%M", &local);
  return text;
}

}  // namespace

std::string PageData(const std::vector<PAIR_RECORD>& records, bool is_stack) {
  DATA_WRITER writer(records);
  JSON pairs = JSON::array();
  for (const PAIR_RECORD& record : records) pairs.push_back(writer.Pair(record));
  const double middle = MiddleLongitude(records);
  const JSON data = {{"is_stack", is_stack},
                     {"made", Now()},
                     {"keys", writer.Keys()},
                     {"remedies", writer.Remedies()},
                     {"middle_longitude", Rounded(middle, 2)},
                     {"land", Land(records, middle)},
                     {"pairs", std::move(pairs)}};
  const std::string plain = data.dump(-1, ' ', false, JSON::error_handler_t::replace);
  std::string text;
  text.reserve(plain.size());
  for (const char c : plain) {
    if (c == '<') {
      text += "\\u003c";
    } else {
      text += c;
    }
  }
  return text;
}

}  // namespace varnoth::tools
