#include "tools/stack/plan_files.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <nlohmann/json.hpp>

namespace varnoth::tools {

namespace {

/// Text that numbers are put behind without a detour: a plan may have half a million pairs.
class NUMBER_TEXT {
 public:
  NUMBER_TEXT& operator<<(std::string_view words) {
    text += words;
    return *this;
  }
  NUMBER_TEXT& operator<<(std::int64_t number) {
    return Put([&](char* at, char* stop) { return std::to_chars(at, stop, number); });
  }
  /// Metres, to a tenth of a millimetre.
  NUMBER_TEXT& operator<<(double metres) {
    return Put([&](char* at, char* stop) {
      return std::to_chars(at, stop, metres, std::chars_format::fixed, 4);
    });
  }

  std::string text;

 private:
  template <class WRITE>
  NUMBER_TEXT& Put(WRITE write) {
    char number[400];  // the longest number has 309 digits before its point
    text.append(number, write(number, number + sizeof number).ptr);
    return *this;
  }
};

/// A text or number as JSON, numbers at full precision.
std::string Quoted(const nlohmann::json& value) {
  return value.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

template <class TEXT>
void PutBaseline(NUMBER_TEXT& out, const BASELINE& baseline, const TEXT& names) {
  out << names[0] << baseline.perpendicular << names[1] << baseline.parallel << names[2]
      << baseline.along_track;
}

constexpr std::string_view JSON_NAMES[] = {
    ",\"perpendicular_m\":", ",\"parallel_m\":", ",\"along_track_m\":"};
constexpr std::string_view COMMAS[] = {",", ",", ","};

void PutScene(NUMBER_TEXT& out, const PLAN& plan, std::size_t i) {
  const STACK_SCENE& scene = plan.stack.scenes[i];
  out << R"({"date":")" << scene.date << R"(","file":)" << Quoted(scene.file)
      << ",\"name\":" << Quoted(scene.scene.name.value)
      << ",\"days\":" << DaysOf(plan.stack, {plan.reference, i});
  PutBaseline(out, BaselineOf(plan.stack, {plan.reference, i}), JSON_NAMES);
  out << ",\"overlap\":" << Overlap(plan.stack.scenes[plan.reference], scene) << "}";
}

void PutPair(NUMBER_TEXT& out, const PLAN& plan, const STACK_PAIR& pair) {
  out << R"({"master":")" << plan.stack.scenes[pair.master].date << R"(","slave":")"
      << plan.stack.scenes[pair.slave].date << R"(","days":)" << DaysOf(plan.stack, pair);
  PutBaseline(out, BaselineOf(plan.stack, pair), JSON_NAMES);
  out << "}";
}

/// The places of a picture's axis: what values it shows, and where.
class AXIS {
 public:
  AXIS(double low, double high, double from, double to)
      : lowest(low), scale((to - from) / std::max(high - low, 1e-9)), start(from) {}
  double Place(double value) const { return start + (value - lowest) * scale; }

 private:
  double lowest;
  double scale;
  double start;
};

/// A round distance between ticks, for about six of them.
double TickStep(double span) {
  const double rough = std::max(span, 1e-9) / 6;
  const double decade = std::pow(10.0, std::floor(std::log10(rough)));
  for (const double factor : {1.0, 2.0, 5.0}) {
    if (rough <= factor * decade) return factor * decade;
  }
  return 10 * decade;
}

constexpr int WIDTH = 900;
constexpr int HEIGHT = 500;
constexpr double LEFT = 70;
constexpr double RIGHT = WIDTH - 20;
constexpr double TOP = 20;
constexpr double BOTTOM = HEIGHT - 60;
/// More lines than a picture can show.
constexpr std::size_t MOST_LINES = 20000;

class NETWORK_PICTURE {
 public:
  explicit NETWORK_PICTURE(const PLAN& from) : plan(from), scenes(from.stack.scenes) {
    for (std::size_t i = 0; i < scenes.size(); ++i) {
      across.push_back(BaselineOf(plan.stack, {plan.reference, i}).perpendicular);
    }
    const auto [low, high] = std::minmax_element(across.begin(), across.end());
    const double margin = std::max(0.05 * (*high - *low), 1.0);
    lowest = *low - margin;
    highest = *high + margin;
    x.emplace(0.0, static_cast<double>(scenes.back().day - scenes.front().day), LEFT + 15,
              RIGHT - 15);
    y.emplace(lowest, highest, BOTTOM, TOP);
  }

  std::string Text() {
    out << R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 )" << std::int64_t{WIDTH} << " "
        << std::int64_t{HEIGHT}
        << "\" font-family=\"sans-serif\" font-size=\"13\">\n<title>Network of "
        << Count(scenes.size()) << " scenes and " << Count(plan.pairs.size())
        << " pairs</title>\n<rect width=\"100%\" height=\"100%\" fill=\"white\"/>\n";
    DrawTicks();
    DrawDates();
    DrawPairs();
    DrawScenes();
    out << "</svg>\n";
    return std::move(out.text);
  }

 private:
  static std::int64_t Count(std::size_t count) { return static_cast<std::int64_t>(count); }
  double X(std::size_t i) const {
    return x->Place(static_cast<double>(scenes[i].day - scenes.front().day));
  }
  double Y(std::size_t i) const { return y->Place(across[i]); }

  void DrawTicks() {
    const double step = TickStep(highest - lowest);
    const auto last = static_cast<int>(std::floor(highest / step));
    for (auto tick = static_cast<int>(std::ceil(lowest / step)); tick <= last; ++tick) {
      const double value = tick * step;
      const double at = y->Place(value);
      out << R"(<path stroke="#ddd" d="M)" << LEFT << " " << at << "H" << RIGHT
          << R"("/><text text-anchor="end" x=")" << LEFT - 8 << "\" y=\"" << at + 4 << "\">"
          << static_cast<std::int64_t>(std::lround(value)) << "</text>\n";
    }
    out << "<text transform=\"translate(18 " << (TOP + BOTTOM) / 2
        << ") rotate(-90)\" text-anchor=\"middle\">perpendicular baseline against "
        << scenes[plan.reference].date << ", m</text>\n";
  }

  /// As many dates as have room, each under its scene.
  void DrawDates() {
    constexpr double ROOM = 90;
    double free = 0.0;
    for (std::size_t i = 0; i < scenes.size(); ++i) {
      if (X(i) < free) continue;
      free = X(i) + ROOM;
      out << R"(<path stroke="#888" d="M)" << X(i) << " " << BOTTOM << "v6\"/><text text-anchor=\""
          << (X(i) + ROOM / 2 > WIDTH ? "end" : "middle") << "\" x=\"" << X(i) << "\" y=\""
          << BOTTOM + 22 << "\">" << scenes[i].date << "</text>\n";
    }
    out << R"(<path stroke="#888" d="M)" << LEFT << " " << BOTTOM << "H" << RIGHT << "\"/>\n";
  }

  void DrawPairs() {
    if (plan.pairs.size() > MOST_LINES) {
      out << "<text x=\"" << LEFT + 15 << "\" y=\"" << BOTTOM + 45 << "\">"
          << Count(plan.pairs.size()) << " pairs, too many to draw</text>\n";
      return;
    }
    out << R"(<path stroke="#0072b2" stroke-opacity="0.6" fill="none" d=")";
    for (const STACK_PAIR& pair : plan.pairs) {
      out << "M" << X(pair.master) << " " << Y(pair.master) << "L" << X(pair.slave) << " "
          << Y(pair.slave);
    }
    out << "\"/>\n";
  }

  void DrawScenes() {
    for (std::size_t i = 0; i < scenes.size(); ++i) {
      const bool is_reference = i == plan.reference;
      out << "<circle cx=\"" << X(i) << "\" cy=\"" << Y(i) << "\" r=\""
          << (is_reference ? "6" : "4") << "\" fill=\"" << (is_reference ? "#d55e00" : "#222")
          << "\"><title>" << scenes[i].date << (is_reference ? ", reference" : "")
          << "</title></circle>\n";
    }
  }

  const PLAN& plan;
  const std::vector<STACK_SCENE>& scenes;
  std::vector<double> across;  ///< perpendicular baselines against the reference, m
  double lowest = 0.0;
  double highest = 0.0;
  std::optional<AXIS> x;
  std::optional<AXIS> y;
  NUMBER_TEXT out;
};

}  // namespace

std::string PlanJson(const PLAN& plan) {
  const GROUND_POINT& point = plan.stack.point;
  NUMBER_TEXT out;
  out << R"({"reference":")" << plan.stack.scenes[plan.reference].date
      << "\",\n\"connected\":" << (plan.parts.size() == 1 ? "true" : "false")
      << ",\n\"point\":{\"longitude\":" << Quoted(point.longitude)
      << ",\"latitude\":" << Quoted(point.latitude) << ",\"height\":" << plan.stack.height
      << "},\n\"scenes\":[";
  for (std::size_t i = 0; i < plan.stack.scenes.size(); ++i) {
    out << (i == 0 ? "\n" : ",\n");
    PutScene(out, plan, i);
  }
  out << "],\n\"pairs\":[";
  for (const STACK_PAIR& pair : plan.pairs) {
    out << (&pair == plan.pairs.data() ? "\n" : ",\n");
    PutPair(out, plan, pair);
  }
  out << "]}\n";
  return std::move(out.text);
}

std::string PairsCsv(const PLAN& plan) {
  NUMBER_TEXT out;
  out << "master,slave,days,perpendicular_m,parallel_m,along_track_m\n";
  for (const STACK_PAIR& pair : plan.pairs) {
    out << plan.stack.scenes[pair.master].date << "," << plan.stack.scenes[pair.slave].date << ","
        << DaysOf(plan.stack, pair);
    PutBaseline(out, BaselineOf(plan.stack, pair), COMMAS);
    out << "\n";
  }
  return std::move(out.text);
}

std::string NetworkSvg(const PLAN& plan) { return NETWORK_PICTURE(plan).Text(); }

}  // namespace varnoth::tools
