#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <set>
#include <sstream>

#include "tools/import/commands.hpp"
#include "tools/import/keyed_text.hpp"
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

/// The velocities of quick orbits are not the derivative of the positions. Those who listed them
/// placed the image with both lists apart; a run takes the positions alone. Measures what that
/// changes.
void MeasureVelocities(const SENTINEL1_ANNOTATION& annotation, bool has_orbit_file, SCENE& scene) {
  constexpr double NOTEWORTHY = 0.02;  // m
  if (scene.orbit.epoch.size() < 3) return;
  const std::vector<VECTOR_3> gaps = VelocityGaps(scene.orbit);
  double gap = 0.0;
  for (const VECTOR_3& one : gaps) gap = std::max(gap, Norm(one));
  double shift = 0.0;
  for (const ANNOTATED_POINT& point : annotation.grid) {
    shift =
        std::max(shift, std::abs(AlongTrackShift(scene.orbit, gaps, point.time, point.position)));
  }
  if (shift < NOTEWORTHY) return;
  char text[200];
  std::snprintf(text, sizeof text,
                "the listed velocities are up to %.1f mm/s off the derivative of the positions: "
                "with these positions expect errors of up to %.2f m along the track",
                gap * 1000, shift);
  scene.warnings.push_back(std::string(text) +
                           (has_orbit_file ? "" : "; a precise orbit file (--orbit) mends it"));
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
  } catch (const IMPORT_FAILURE&) {
    throw;
  } catch (const std::runtime_error& failure) {
    throw IMPORT_FAILURE(inputs.back(), 1, failure.what());
  }
  MeasureVelocities(annotation, !request.orbit.empty(), scene);
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
  for (const std::string& warning : scene.warnings) {
    Tell(request.source, 1, SEVERITY::WARNING, warning);
  }
  std::printf("%s: %s, %s %s, orbit %lld, %lld lines, %lld samples\n%s: %zu vectors of %s\n",
              request.out.c_str(), scene.name.value.c_str(), scene.satellite.c_str(),
              scene.mode.c_str(), static_cast<long long>(scene.absolute_orbit.value),
              static_cast<long long>(scene.line_count.value),
              static_cast<long long>(scene.sample_count.value), request.out.c_str(),
              scene.orbit.epoch.size(), scene.orbit.source.c_str());
  for (const std::string& remark : scene.orbit.remarks) {
    std::printf("%s: %s\n", request.out.c_str(), remark.c_str());
  }
  return GOOD;
}

}  // namespace varnoth::tools
