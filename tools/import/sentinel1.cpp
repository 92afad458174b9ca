#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <set>
#include <sstream>

#include "tools/import/commands.hpp"
#include "tools/import/keyed_text.hpp"
#include "tools/import/satellite_path.hpp"
#include "tools/import/scene_check.hpp"
#include "tools/import/scene_finish.hpp"
#include "tools/import/scene_pool.hpp"
#include "tools/import/sentinel1_annotation.hpp"
#include "tools/import/sentinel1_orbit_file.hpp"

namespace varnoth::tools {

namespace {

/// An annotation within a product, with what its name tells.
struct CANDIDATE {
  std::string name;
  std::string swath;
  std::string polarisation;
};

/// As annotation/s1a-iw1-slc-vv-20250406t022009-20250406t022034-058630-07421f-004.xml, with the
/// product's own folder in front within an archive.
std::vector<CANDIDATE> Candidates(const std::vector<std::string>& names) {
  std::vector<CANDIDATE> candidates;
  for (const std::string& name : names) {
    const std::filesystem::path path(name);
    if (path.parent_path().filename() != "annotation" || path.extension() != ".xml") continue;
    std::istringstream stem(path.stem().string());
    std::vector<std::string> parts;
    for (std::string part; std::getline(stem, part, '-');) parts.push_back(Upper(part));
    if (parts.size() >= 4) candidates.push_back({name, parts[1], parts[3]});
  }
  return candidates;
}

/// Leaves the candidates with a wanted value. Throws if there are none, and where nothing is wanted
/// but several values are there.
void Choose(std::vector<CANDIDATE>& candidates, std::string CANDIDATE::*part,
            const std::string& wanted, const std::string& what, const std::string& source) {
  std::set<std::string> values;
  for (const CANDIDATE& candidate : candidates) values.insert(candidate.*part);
  std::string list;
  for (const std::string& value : values) list += (list.empty() ? "" : ", ") + value;
  if (wanted.empty() && values.size() > 1) {
    throw IMPORT_FAILURE(source, 1, "has " + list + ": choose with --" + what);
  }
  if (wanted.empty()) return;
  std::erase_if(candidates, [&](const CANDIDATE& c) { return c.*part != wanted; });
  if (candidates.empty()) {
    throw IMPORT_FAILURE(source, 1, "has no " + what + " " + wanted + ", only " + list);
  }
}

SOURCE_FILE ReadFromProduct(const SENTINEL1_REQUEST& request,
                            const std::vector<std::string>& names) {
  std::vector<CANDIDATE> candidates = Candidates(names);
  const std::string& source = request.source;
  if (candidates.empty()) throw IMPORT_FAILURE(source, 1, "holds no annotation/*.xml");
  Choose(candidates, &CANDIDATE::swath, Upper(request.swath), "swath", source);
  std::string polarisation = Upper(request.polarisation);
  // All polarisations of a pass have one geometry.
  for (const char* const usual : {"VV", "HH"}) {
    const bool is_there = std::any_of(candidates.begin(), candidates.end(),
                                      [&](const auto& c) { return c.polarisation == usual; });
    if (polarisation.empty() && is_there) polarisation = usual;
  }
  Choose(candidates, &CANDIDATE::polarisation, polarisation, "polarisation", source);
  if (candidates.size() > 1) {
    throw IMPORT_FAILURE(source, 1,
                         "has " + std::to_string(candidates.size()) +
                             " images of this kind: give the annotation file itself");
  }
  return ReadWithin(source, candidates[0].name);
}

/// Manifests are known that count the cycle's orbits in another way.
void CheckManifest(const std::string& source, const std::vector<std::string>& names, SCENE& scene) {
  const auto name = std::find_if(names.begin(), names.end(), [](const std::string& n) {
    return std::filesystem::path(n).filename() == "manifest.safe";
  });
  if (name == names.end() || scene.relative_orbit.value == 0) return;
  const XML_FILE manifest(ReadWithin(source, *name));
  const pugi::xml_node node = manifest.Root().find_node([](const pugi::xml_node& n) {
    return std::string_view(n.name()) == "safe:relativeOrbitNumber";
  });
  const std::string stated = node.child_value();
  if (!node || stated == std::to_string(scene.relative_orbit.value)) return;
  scene.warnings.push_back("the manifest says relative orbit " + stated.substr(0, 20) +
                           "; by the absolute orbit number it is " +
                           std::to_string(scene.relative_orbit.value));
}

void CheckChoice(const SENTINEL1_REQUEST& request, const XML_FILE& file, const SCENE& scene) {
  for (const std::string& wanted : {Upper(request.swath), Upper(request.polarisation)}) {
    const std::string words = " " + scene.mode + " ";
    if (!wanted.empty() && words.find(" " + wanted + " ") == words.npos) {
      file.Fail(file.Root(), "holds " + scene.mode + ", not " + wanted);
    }
  }
}

/// How far the points of the annotated grid, which others worked out, lie at most from where a
/// scene's orbit places their echoes, m.
double DistanceOfGrid(const SENTINEL1_ANNOTATION& annotation, const SCENE& scene) {
  const SATELLITE_PATH path(scene.orbit);
  double farthest = 0.0;
  for (const ANNOTATED_POINT& point : annotation.grid) {
    if (std::isnan(point.range_time)) continue;
    const GROUND_POINT place =
        LocateSample(scene, path, point.time, point.range_time, point.height);
    farthest = std::max(farthest, Distance(ToVector(place.position), point.position));
  }
  return farthest;
}

/// Warns of what keeps the scene's orbit from placing echoes where the annotation does: listed
/// velocities that are not the positions' derivative, or a grid of another orbit.
void CompareWithGrid(const SENTINEL1_ANNOTATION& annotation, bool has_orbit_file, SCENE& scene) {
  constexpr double NOTEWORTHY = 0.1;  // m
  std::vector<SEEN_POINT> points;
  for (const ANNOTATED_POINT& point : annotation.grid) {
    points.push_back({point.time, point.position});
  }
  const double expected = MeasureVelocities(
      scene, points, has_orbit_file ? "" : "; a precise orbit file (--orbit) mends it");
  const double farthest = DistanceOfGrid(annotation, scene);
  if (farthest < expected + NOTEWORTHY) return;
  char text[200];
  std::snprintf(text, sizeof text,
                "the annotated geolocation grid was made with another orbit: it lies up to %.2f m "
                "from where this one places its points",
                farthest);
  if (has_orbit_file) {
    scene.orbit.remarks.emplace_back(text);
  } else {
    scene.warnings.push_back(std::string(text) + "; a precise orbit file (--orbit) decides");
  }
}

/// Adds the files that count to `inputs`.
SCENE ReadScene(const SENTINEL1_REQUEST& request, const INTERPOLATION& interpolation,
                std::vector<std::string>& inputs) {
  SENTINEL1_REQUEST from = request;
  if (std::filesystem::path(from.source).filename() == "manifest.safe") {
    from.source = std::filesystem::path(from.source).parent_path().string();
    if (from.source.empty()) from.source = ".";
  }
  std::vector<std::string> names;
  const bool is_product = HoldsFiles(from.source);
  if (is_product) names = FilesWithin(from.source);
  const XML_FILE file(is_product ? ReadFromProduct(from, names) : ReadSource(from.source));
  const SENTINEL1_ANNOTATION annotation = ReadSentinel1Annotation(file);
  SCENE scene = annotation.scene;
  inputs.push_back(file.Name());
  CheckChoice(request, file, scene);
  if (is_product) CheckManifest(from.source, names, scene);
  try {
    CheckScene(scene);
    if (!request.orbit.empty()) {
      inputs.push_back(TakeSentinel1Orbit(scene, request.orbit, interpolation));
    }
    FitOrbit(scene, interpolation);
    CompareWithGrid(annotation, !request.orbit.empty(), scene);
  } catch (const IMPORT_FAILURE&) {
    throw;
  } catch (const std::runtime_error& failure) {
    throw IMPORT_FAILURE(inputs.back(), 1, failure.what());
  }
  return scene;
}

}  // namespace

TOOL_STATUS ImportSentinel1(const SENTINEL1_REQUEST& request) {
  const auto interpolation = FindInterpolation(request.interpolation);
  if (!interpolation) {
    Tell(request.source, 1, SEVERITY::ERROR,
         "no run knows the interpolation " + request.interpolation);
    return WRONG_USAGE;
  }
  SCENE scene;
  const TOOL_STATUS read = WithFailuresTold(request.source, [&] {
    std::vector<std::string> inputs = {request.source};
    scene = ReadScene(request, *interpolation, inputs);
    return IsWrongUsage("", request.out, inputs) ? WRONG_USAGE : GOOD;
  });
  if (read != GOOD) return read;
  const TOOL_STATUS written = WithFailuresTold(request.out, [&] {
    WriteScenePool(scene, request.interpolation, request.out);
    return GOOD;
  });
  if (written != GOOD) return written;
  TellScene(scene, request.interpolation, request.source, request.out);
  return GOOD;
}

}  // namespace varnoth::tools
