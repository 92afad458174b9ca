#include "tools/geometry/point_source.hpp"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <memory>
#include <numeric>
#include <sstream>
#include <stdexcept>
#include <utility>

#include "tools/field.hpp"
#include "tools/message.hpp"

namespace varnoth::tools {

namespace {

constexpr std::size_t BLOCK = 8192;  ///< points; some milliseconds of work

class GRID_SOURCE final : public POINT_SOURCE {
 public:
  explicit GRID_SOURCE(GRID whole) : grid(std::move(whole)) {}

  std::vector<IMAGE_POINT> Next() override {
    std::vector<IMAGE_POINT> points;
    if (next == Count()) return points;
    const std::size_t width = grid.samples.size();
    const std::size_t row = next / width;
    const std::size_t line = row % grid.lines.size();
    std::size_t count = std::min(BLOCK, width - next % width);
    if (width <= BLOCK) count = width * std::min(BLOCK / width, grid.lines.size() - line);
    const double height = grid.heights[row / grid.lines.size()];
    points.reserve(count);
    for (const std::size_t stop = next + count; next < stop; ++next) {
      points.push_back({.line = grid.lines[next / width % grid.lines.size()],
                        .sample = grid.samples[next % width],
                        .height = height});
    }
    return points;
  }
  std::size_t Count() const override {
    return grid.heights.size() * grid.lines.size() * grid.samples.size();
  }
  const GRID* Grid() const override { return &grid; }

 private:
  GRID grid;
  std::size_t next = 0;
};

/// Opens points to be read twice, since nothing is calculated before all lines are known to be
/// points: a file as it is, and what a pipe gives, in memory. "-" is the standard input.
std::unique_ptr<std::istream> OpenTwice(const std::string& name) {
  const bool is_input = name == "-";
  const char* const path = is_input ? "/dev/stdin" : name.c_str();
  struct stat status {};
  if (stat(path, &status) != 0) throw std::runtime_error(std::strerror(errno));
  const bool is_file = S_ISREG(status.st_mode);
  if (!is_file && !is_input && !S_ISFIFO(status.st_mode)) {
    throw std::runtime_error("neither a file nor a pipe");
  }
  auto file = std::make_unique<std::ifstream>(path, std::ios::binary);
  if (!*file) throw std::runtime_error(std::strerror(errno));
  if (is_file) return file;
  auto content = std::make_unique<std::stringstream>();
  for (char part[1 << 16]; file->read(part, sizeof part), file->gcount() > 0;) {
    content->write(part, file->gcount());
  }
  if (file->bad()) throw std::runtime_error("can't be read to its end");
  return content;
}

/// Where the first field of a line ends: at a comma outside of quotation marks.
std::size_t EndOfField(std::string_view line) {
  bool is_quoted = false;
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (line[i] == '"') is_quoted = !is_quoted;
    if (line[i] == ',' && !is_quoted) return i;
  }
  return line.npos;
}

/// A field without the quotation marks that spreadsheets write around it.
std::string_view Unquoted(std::string_view field) {
  const bool is_quoted = field.size() > 1 && field.front() == '"' && field.back() == '"';
  return is_quoted ? Trimmed(field.substr(1, field.size() - 2)) : field;
}

/// Takes a decimal number as "-12.50" off the front of a text: the digits and the power of ten are
/// exact, so that the quotient is the nearest value. False for all else, and for a number of more
/// digits.
bool TakeDecimal(const char*& at, const char* end, double& value) {
  constexpr std::ptrdiff_t MOST_DIGITS = 15;
  static constexpr double POWERS[MOST_DIGITS + 1] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                     1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
  std::uint64_t number = 0;
  const auto take_digits = [&] {
    const char* const begin = at;
    for (; at != end && *at >= '0' && *at <= '9'; ++at) {
      number = 10 * number + static_cast<std::uint64_t>(*at - '0');
    }
    return at - begin;
  };
  const bool is_negative = at != end && *at == '-';
  if (is_negative) ++at;
  std::ptrdiff_t digits = take_digits();
  std::ptrdiff_t decimals = 0;
  if (at != end && *at == '.') {
    ++at;
    decimals = take_digits();
    digits += decimals;
  }
  if (digits == 0 || digits > MOST_DIGITS) return false;
  value = static_cast<double>(number) / POWERS[decimals];
  if (is_negative) value = -value;
  return true;
}

/// Reads points line by line.
class POINTS_FILE final : public POINT_SOURCE {
 public:
  explicit POINTS_FILE(const std::string& name) : file(name), stream(OpenTwice(name)) {}

  /// Whether all lines are points.
  bool Check() {
    IMAGE_POINT point;
    while (Read(point)) ++count;
    if (count == 0 && faults == 0) Fault("no points");
    Rewind();
    return faults == 0;
  }

  std::vector<IMAGE_POINT> Next() override {
    std::vector<IMAGE_POINT> points;
    IMAGE_POINT point;
    while (points.size() < BLOCK && Read(point)) points.push_back(point);
    if (faults > 0) throw std::runtime_error("changed while it was read");
    return points;
  }
  std::size_t Count() const override { return count; }

 private:
  static constexpr int MOST_FAULTS = 20;
  static constexpr const char* NAMES[] = {"line", "sample", "height"};

  void Rewind() {
    stream->clear();
    stream->seekg(0);
    number = 0;
    has_begun = false;
    columns = 3;
    std::iota(std::begin(places), std::end(places), std::size_t{0});
  }

  void Fault(const std::string& message) {
    if (++faults <= MOST_FAULTS) {
      Tell(file, std::max<std::size_t>(number, 1), SEVERITY::ERROR, message);
    }
  }

  /// The next line that is a point; false at the end.
  bool Read(IMAGE_POINT& point) {
    while (std::getline(*stream, text)) {
      ++number;
      if (has_begun && TakePlainPoint(point)) return true;
      std::string_view rest = text;
      if (number == 1 && rest.starts_with("\xEF\xBB\xBF")) rest.remove_prefix(3);
      rest = Trimmed(rest);
      if (rest.empty() || rest[0] == '#') continue;
      Split(rest);
      if (!std::exchange(has_begun, true) && !NumberOf(fields[0])) {
        if (!TakeHead()) return false;  // no line means anything
      } else if (TakePoint(point)) {
        return true;
      }
    }
    if (stream->bad()) throw std::runtime_error("can't be read to its end");
    return false;
  }

  /// Takes the point of a line that has nothing but its three numbers, without finding its fields
  /// first.
  bool TakePlainPoint(IMAGE_POINT& point) {
    if (columns != 3 || !std::is_sorted(std::begin(places), std::end(places))) return false;
    const char* at = text.data();
    const char* const end = at + text.size();
    const bool is_plain = TakeDecimal(at, end, point.line) && at != end && *at++ == ',' &&
                          TakeDecimal(at, end, point.sample) && at != end && *at++ == ',' &&
                          TakeDecimal(at, end, point.height) && at == end;
    point.file_line = number;
    return is_plain;
  }

  void Split(std::string_view rest) {
    fields.clear();
    for (std::size_t comma = 0; comma != rest.npos;) {
      comma = EndOfField(rest);
      fields.push_back(Unquoted(Trimmed(rest.substr(0, comma))));
      rest.remove_prefix(comma == rest.npos ? rest.size() : comma + 1);
    }
  }

  bool TakeHead() {
    for (int i = 0; i < 3; ++i) {
      const auto is_wanted = [&](std::string_view field) {
        return field == NAMES[i] || field == std::string(NAMES[i]) + "_m";
      };
      const auto found = std::find_if(fields.begin(), fields.end(), is_wanted);
      if (found == fields.end()) {
        Fault("neither a point nor a head with the column " + std::string(NAMES[i]));
        return false;
      }
      places[i] = static_cast<std::size_t>(found - fields.begin());
    }
    columns = fields.size();
    return true;
  }

  bool TakePoint(IMAGE_POINT& point) {
    double* const values[] = {&point.line, &point.sample, &point.height};
    if (fields.size() != columns) {
      Fault(std::to_string(fields.size()) + " columns instead of " + std::to_string(columns));
      return false;
    }
    for (int i = 0; i < 3; ++i) {
      const auto value = NumberOf(fields[places[i]]);
      if (!value) {
        Fault(std::string(NAMES[i]) + " '" + std::string(fields[places[i]]) + "' is no number");
        return false;
      }
      *values[i] = *value;
    }
    point.file_line = number;
    return true;
  }

  std::string file;
  std::unique_ptr<std::istream> stream;
  std::string text;
  std::vector<std::string_view> fields;
  std::size_t columns = 3;
  std::size_t places[3] = {0, 1, 2};  ///< columns of NAMES
  std::size_t number = 0;
  std::size_t count = 0;
  int faults = 0;
  bool has_begun = false;
};

std::vector<double> Spread(double last, std::size_t count) {
  std::vector<double> values(count);
  for (std::size_t i = 0; i < count; ++i) {
    values[i] = last * static_cast<double>(i) / static_cast<double>(count - 1);
  }
  return values;
}

}  // namespace

std::unique_ptr<POINT_SOURCE> MakeGrid(const varnoth::SCENE& scene, std::size_t lines,
                                       std::size_t samples, const std::vector<double>& heights) {
  return std::make_unique<GRID_SOURCE>(GRID{.heights = heights,
                                            .lines = Spread(scene.n_lines - 1.0, lines),
                                            .samples = Spread(scene.n_samples - 1.0, samples)});
}

std::unique_ptr<POINT_SOURCE> OpenPoints(const std::string& file) {
  auto points = std::make_unique<POINTS_FILE>(file);
  if (!points->Check()) return nullptr;
  return points;
}

}  // namespace varnoth::tools
