#include "tools/report/curves.hpp"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace varnoth::tools {

namespace {

constexpr double LIGHT_SPEED = 299792458.0;  // m/s
constexpr double NO_BASELINE = 999999999999999.0;
constexpr std::size_t SAMPLES = 11;

using LIST = std::vector<double>;

const char* const LINES[] = {"early", "late"};

/// A result of eleven samples; empty if it is none.
LIST Vector(const PAIR_RECORD& record, const std::string& key) {
  const auto found = record.vectors.find(key);
  return found != record.vectors.end() && found->second.size() == SAMPLES ? found->second : LIST();
}

LIST Difference(const LIST& a, const LIST& b) {
  LIST difference;
  for (std::size_t i = 0; i < std::min(a.size(), b.size()); ++i) {
    difference.push_back(a[i] - b[i]);
  }
  return difference;
}

LIST OfPolynomial(const PAIR_RECORD& record, const std::string& line) {
  const auto found = record.vectors.find("flat_phase_poly_" + line + "_az");
  LIST phase;
  if (found == record.vectors.end() || found->second.empty()) return phase;
  for (const double sample : CurveSamples(record)) {
    const LIST& powers = found->second;
    phase.push_back(std::accumulate(powers.rbegin(), powers.rend(), 0.0,
                                    [&](double sum, double p) { return sum * sample + p; }));
  }
  return phase;
}

/// The phase that the polynomial was fitted to; empty where nothing tells it.
LIST SweptPhase(const PAIR_RECORD& record, std::size_t line) {
  const auto mode = record.texts.find("observation_mode");
  const bool is_dual = mode != record.texts.end() && mode->second == "dual_pass";
  if (!is_dual) return record.log.phase[line].size() == SAMPLES ? record.log.phase[line] : LIST();
  if (!(record.radar_frequency[0] > 0) || !(record.radar_frequency[1] > 0)) return {};
  const std::string end = std::string("_") + LINES[line] + "_az_range_distance";
  LIST phase;
  const LIST master = Vector(record, "master" + end);
  const LIST slave = Vector(record, "slave" + end);
  for (std::size_t i = 0; i < std::min(master.size(), slave.size()); ++i) {
    phase.push_back(2.0 / LIGHT_SPEED *
                    (master[i] * record.radar_frequency[0] - slave[i] * record.radar_frequency[1]));
  }
  return phase;
}

}  // namespace

std::vector<double> CurveSamples(const PAIR_RECORD& record) {
  const double last = record.Number("n_samples") - 1.0;
  LIST samples;
  if (!(last > 0) || std::isinf(last)) return samples;
  for (std::size_t i = 0; i < SAMPLES; ++i) {
    samples.push_back(static_cast<double>(i) * last / (SAMPLES - 1));
  }
  return samples;
}

std::vector<CURVE> CurvesOf(const PAIR_RECORD& record) {
  std::vector<CURVE> curves = {{"metres_per_cycle", 3, {}},
                               {"incidence", 5, {}},
                               {"look", 5, {}},
                               {"incidence_difference", 6, {}},
                               {"look_difference", 6, {}},
                               {"range_difference", 4, {}},
                               {"phase", 4, {}},
                               {"misfit", 5, {}}};
  for (std::size_t line = 0; line < 2; ++line) {
    const std::string middle = std::string("_") + LINES[line] + "_az_";
    const LIST incidence = Vector(record, "master" + middle + "incidence_angle");
    const LIST look = Vector(record, "master" + middle + "look_angle");
    const LIST phase = OfPolynomial(record, LINES[line]);
    LIST metres = Vector(record, std::string(LINES[line]) + "_az_phase_to_height_conv");
    std::ranges::replace(metres, NO_BASELINE, std::numeric_limits<double>::quiet_NaN());
    const LIST of_curve[] = {
        metres,
        incidence,
        look,
        Difference(Vector(record, "slave" + middle + "incidence_angle"), incidence),
        Difference(Vector(record, "slave" + middle + "look_angle"), look),
        Difference(Vector(record, "master" + middle + "range_distance"),
                   Vector(record, "slave" + middle + "range_distance")),
        phase,
        Difference(phase, SweptPhase(record, line))};
    for (std::size_t i = 0; i < curves.size(); ++i) curves[i].values[line] = of_curve[i];
  }
  return curves;
}

}  // namespace varnoth::tools
