#include "tools/geometry/command.hpp"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <filesystem>
#include <stdexcept>

#include "tools/check/finding.hpp"
#include "tools/field.hpp"
#include "tools/geometry/blocks.hpp"
#include "tools/geometry/point_geometry.hpp"
#include "tools/geometry/writer.hpp"

namespace varnoth::tools {

namespace {

/// Points without geometry.
struct GAPS {
  std::size_t count = 0;
  IMAGE_POINT first;
  const char* reason = nullptr;  ///< of the first
};

/// Calculates blocks of points and writes them.
class POINT_WORKER final : public BLOCK_WORKER {
 public:
  POINT_WORKER(const POINT_GEOMETRY& pair_geometry, POINT_SOURCE& source, GEOMETRY_WRITER& target,
               std::size_t& taken, GAPS& all)
      : geometry(pair_geometry), points(source), writer(target), next(taken), all_gaps(all) {}

  bool Take() override {
    block = points.Next();
    first = next;
    next += block.size();
    return !block.empty();
  }
  void Work() override {
    rows.resize(block.size());
    gaps = {};
    for (std::size_t i = 0; i < block.size(); ++i) {
      const char* const reason = geometry.Find(block[i], work, rows[i]);
      if (reason != nullptr && gaps.count++ == 0) {
        gaps.first = block[i];
        gaps.reason = reason;
      }
    }
    text.clear();
    writer.Format(rows, first, text);
  }
  void Give() override {
    writer.Write(rows, first, text);
    const std::size_t count = all_gaps.count + gaps.count;
    if (all_gaps.count == 0) all_gaps = gaps;
    all_gaps.count = count;
  }

 private:
  const POINT_GEOMETRY& geometry;
  POINT_SOURCE& points;
  GEOMETRY_WRITER& writer;
  std::size_t& next;
  GAPS& all_gaps;
  POINT_WORK work;
  std::vector<IMAGE_POINT> block;
  std::size_t first = 0;
  std::vector<ROW> rows;
  std::string text;
  GAPS gaps;
};

void TellGaps(const GAPS& gaps, const GEOMETRY_REQUEST& request, std::size_t count) {
  const std::string text = std::to_string(gaps.count) + " of " + std::to_string(count) +
                           " points have no geometry; the first, line " + Short(gaps.first.line) +
                           ", sample " + Short(gaps.first.sample) + ", height " +
                           Short(gaps.first.height) + " m: " + gaps.reason;
  if (request.points.empty()) {
    std::fprintf(stderr, "varnoth-tools: error: %s\n", text.c_str());
  } else {
    Tell(request.points, gaps.first.file_line, SEVERITY::ERROR, text);
  }
}

/// Whether the file to write is one that is only read.
bool IsInput(const GEOMETRY_REQUEST& request, const LOADED_PAIR& pair) {
  const std::string files[] = {request.points, pair.pools.scene[MASTER].file,
                               pair.pools.scene[SLAVE].file, pair.pools.insar.file,
                               pair.configuration_file};
  std::error_code error;
  return std::any_of(std::begin(files), std::end(files), [&](const std::string& file) {
    return std::filesystem::equivalent(request.out, file, error);
  });
}

TOOL_STATUS WriteRows(const GEOMETRY_REQUEST& request, const LOADED_PAIR& pair,
                      POINT_SOURCE& points) {
  const POINT_GEOMETRY geometry(pair);
  const auto writer = request.format == "netcdf" ? MakeNetcdfWriter(pair, points, request.out)
                                                 : MakeTextWriter(request.format, request.out);
  writer->Begin();
  GAPS gaps;
  std::size_t taken = 0;
  RunInOrder(request.jobs, [&] {
    return std::make_unique<POINT_WORKER>(geometry, points, *writer, taken, gaps);
  });
  writer->Finish();
  if (gaps.count == 0) return GOOD;
  TellGaps(gaps, request, taken);
  return FINDINGS;
}

}  // namespace

TOOL_STATUS WriteGeometry(const GEOMETRY_REQUEST& request) {
  LOADED_PAIR pair;
  if (!LoadPair(request.of_step, pair)) return FINDINGS;
  const std::string out = request.out.empty() ? "standard output" : request.out;
  std::unique_ptr<POINT_SOURCE> points;
  if (request.points.empty()) {
    const std::vector<double> own = {pair.scene.local_height};
    points = MakeGrid(pair.scene, request.lines, request.samples,
                      request.heights.empty() ? own : request.heights);
  } else {
    try {
      points = OpenPoints(request.points);
    } catch (const std::runtime_error& error) {
      Tell(request.points, 1, SEVERITY::ERROR, error.what());
    }
  }
  if (points == nullptr) return FINDINGS;
  if (IsInput(request, pair)) {
    Tell(out, 1, SEVERITY::ERROR, "is read as well: give another name");
    return FINDINGS;
  }
  try {
    return WriteRows(request, pair, *points);
  } catch (const std::runtime_error& error) {
    Tell(out, 1, SEVERITY::ERROR, error.what());
    return FINDINGS;
  }
}

bool ReadGrid(const std::string& text, GEOMETRY_REQUEST& request) {
  const char* const end = text.data() + text.size();
  const auto lines = std::from_chars(text.data(), end, request.lines);
  if (lines.ec != std::errc() || lines.ptr == end || *lines.ptr != 'x') return false;
  const auto samples = std::from_chars(lines.ptr + 1, end, request.samples);
  return samples.ec == std::errc() && samples.ptr == end && request.lines >= 2 &&
         request.samples >= 2;
}

std::string ReadHeights(const std::string& text, GEOMETRY_REQUEST& request) {
  constexpr double LOWEST = -1000.0;
  constexpr double HIGHEST = 9000.0;
  std::vector<double>& heights = request.heights;
  heights.clear();
  for (std::size_t comma = 0, from = 0; comma != text.npos; from = comma + 1) {
    comma = text.find(',', from);
    const std::string word = text.substr(from, comma - from);
    const auto height = NumberOf(Trimmed(word));
    if (!height || *height < LOWEST || *height > HIGHEST) {
      return "'" + word + "' is no height from -1000 to 9000 m";
    }
    heights.push_back(*height);
  }
  // Coordinates of a netCDF file have to rise.
  std::sort(heights.begin(), heights.end());
  const auto twice = std::adjacent_find(heights.begin(), heights.end());
  return twice == heights.end() ? "" : "height " + Short(*twice) + " stands twice";
}

std::string FormatOf(const std::string& file) {
  const std::string ending = std::filesystem::path(file).extension();
  return ending == ".csv"    ? "csv"
         : ending == ".json" ? "json"
         : ending == ".nc"   ? "netcdf"
                             : "text";
}

}  // namespace varnoth::tools
