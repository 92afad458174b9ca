#include "tools/import/sentinel1_orbit_file.hpp"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <sstream>

#include "tools/import/orbit_work.hpp"
#include "tools/import/scene_check.hpp"

namespace varnoth::tools {

namespace {

ORBIT_KIND KindOf(const std::string& type) {
  if (type.find("POEORB") != type.npos) return ORBIT_KIND::PRECISE;
  return type.find("RESORB") != type.npos ? ORBIT_KIND::RESTITUTED : ORBIT_KIND::OTHER;
}

std::string KindText(ORBIT_KIND kind, const std::string& type) {
  if (kind == ORBIT_KIND::OTHER) return type.empty() ? "of no stated kind" : type.substr(0, 40);
  return kind == ORBIT_KIND::PRECISE ? "precise" : "restituted";
}

/// What the name of an orbit file tells; a name of another form tells nothing.
struct ORBIT_FILE_NAME {
  std::string path;
  std::string satellite;
  ORBIT_KIND kind = ORBIT_KIND::OTHER;
  std::string created;  ///< as "20210304T033926", so that texts sort as times
  std::optional<MOMENT> start;
  std::optional<MOMENT> stop;
};

/// "20210304T033926"
std::optional<MOMENT> CompactTime(std::string text) {
  if (text.size() < 15) return std::nullopt;
  text.resize(15);
  for (const std::size_t place : {13, 11}) text.insert(place, ":");
  for (const std::size_t place : {6, 4}) text.insert(place, "-");
  return MomentFromText(text);
}

/// As in S1A_OPER_AUX_POEORB_OPOD_20210304T033926_V20141003T225944_20141005T005944.EOF
ORBIT_FILE_NAME ReadName(const std::string& path) {
  ORBIT_FILE_NAME name;
  name.path = path;
  std::istringstream text(std::filesystem::path(path).filename().string());
  std::vector<std::string> parts;
  for (std::string part; std::getline(text, part, '_');) parts.push_back(part);
  if (parts.size() != 8 || !parts[6].starts_with('V')) return name;
  name.satellite = parts[0];
  name.kind = KindOf(parts[3]);
  name.created = parts[5];
  name.start = CompactTime(parts[6].substr(1));
  name.stop = CompactTime(parts[7]);
  return name;
}

bool IsOrbitFile(const std::string& name) {
  return name.ends_with(".EOF") || name.ends_with(".EOF.gz") || name.ends_with(".EOF.zip");
}

/// Whether the name leaves it open that the file is of use.
bool MayCover(const ORBIT_FILE_NAME& name, const SCENE& scene) {
  if (!name.satellite.empty() && name.satellite != scene.satellite.value) return false;
  return !(name.start && MicrosecondsBetween(*name.start, scene.first_line.value) < 0) &&
         !(name.stop && MicrosecondsBetween(LastLine(scene), *name.stop) < 0);
}

SOURCE_FILE ReadPacked(const std::string& path) {
  if (!HoldsFiles(path)) return ReadSource(path);
  for (const std::string& name : FilesWithin(path)) {
    if (IsOrbitFile(name)) return ReadWithin(path, name);
  }
  throw IMPORT_FAILURE(path, 1, "holds no orbit file");
}

std::int64_t SinceDayZero(const MOMENT& moment) {
  return moment.day * MICROSECONDS_OF_DAY + moment.microseconds;
}

/// A wrong difference is a wrong UTC, or a wrong TAI, which nothing here uses.
void WarnOfTai(const MOMENT& tai, const MOMENT& utc, std::vector<std::string>& warnings) {
  const std::int64_t ahead = SinceDayZero(tai) - SinceDayZero(utc);
  const std::int64_t known = TaiMinusUtc(utc);
  if (ahead == known * MICROSECONDS_OF_SECOND) return;
  char text[160];
  std::snprintf(
      text, sizeof text,
      "TAI - UTC is %.9g s in the file and %lld s by the leap seconds: its UTC may be wrong",
      static_cast<double>(ahead) / MICROSECONDS_OF_SECOND, static_cast<long long>(known));
  warnings.emplace_back(text);
}

std::string Span(const STATE_VECTORS& orbit) {
  return IsoTime(orbit.epoch.front()) + " to " + IsoTime(orbit.epoch.back());
}

struct ORBIT_CANDIDATE {
  std::string path;
  std::string name;  ///< for messages
  SENTINEL1_ORBIT_FILE file;
};

/// Fails for a file that can't serve the scene.
ORBIT_CANDIDATE ReadFor(const SCENE& scene, const std::string& path,
                        const INTERPOLATION& interpolation) {
  const XML_FILE xml(ReadPacked(path));
  ORBIT_CANDIDATE read{path, xml.Name(), ReadSentinel1OrbitFile(xml)};
  const SENTINEL1_ORBIT_FILE& file = read.file;
  if (file.satellite != scene.satellite.value) {
    xml.Fail(xml.Root(),
             "an orbit of " + file.satellite + ", and the scene is of " + scene.satellite.value);
  }
  const MOMENT last = LastLine(scene);
  const COVERAGE coverage = CoverageOf(file.orbit, scene.first_line.value, last);
  const std::size_t needed = interpolation.vectors_beyond;
  if (coverage.ahead < needed || coverage.behind < needed) {
    xml.Fail(xml.Root(), "its vectors, " + Span(file.orbit) + ", do not cover the scene, " +
                             IsoTime(scene.first_line.value) + " to " + IsoTime(last) + ", with " +
                             std::to_string(needed) + " vectors to spare");
  }
  return read;
}

std::string Take(SCENE& scene, ORBIT_CANDIDATE chosen, const INTERPOLATION& interpolation) {
  SENTINEL1_ORBIT_FILE& file = chosen.file;
  STATE_VECTORS& orbit = file.orbit;
  CutToScene(orbit, scene.first_line.value, LastLine(scene), interpolation);
  const auto degraded =
      std::count_if(file.degraded.begin(), file.degraded.end(), [&](const MOMENT& epoch) {
        return MicrosecondsBetween(orbit.epoch.front(), epoch) >= 0 &&
               MicrosecondsBetween(epoch, orbit.epoch.back()) >= 0;
      });
  if (degraded > 0) {
    file.warnings.push_back(std::to_string(degraded) +
                            " vectors around the scene are of a "
                            "degraded quality");
  }
  for (const std::string& warning : file.warnings) {
    scene.warnings.push_back(chosen.name + ": " + warning);
  }
  scene.orbit = std::move(orbit);
  return chosen.path;
}

}  // namespace

SENTINEL1_ORBIT_FILE ReadSentinel1OrbitFile(const XML_FILE& file) {
  const pugi::xml_node root = file.Root();
  if (std::string(root.name()) != "Earth_Explorer_File") {
    file.Fail(root, std::string("XML with the root element ") + root.name() +
                        ": no orbit file of Sentinel-1");
  }
  const pugi::xml_node header = file.Find(root, "Earth_Explorer_Header");
  const std::string mission = file.Text(header, "Fixed_Header/Mission");
  const std::string type = header.first_element_by_path("Fixed_Header/File_Type").child_value();
  SENTINEL1_ORBIT_FILE result;
  STATE_VECTORS& orbit = result.orbit;
  orbit.frame = file.Text(header, "Variable_Header/Ref_Frame");
  orbit.time_system = file.Text(header, "Variable_Header/Time_Reference");
  if (!mission.starts_with("Sentinel-1") || mission.size() != 11) {
    file.Fail(file.Find(header, "Fixed_Header/Mission"), "an orbit of " + mission.substr(0, 40));
  }
  if (orbit.frame != "EARTH_FIXED" || orbit.time_system != "UTC") {
    file.Fail(file.Find(header, "Variable_Header"), "vectors in the frame " + orbit.frame +
                                                        " and the time " + orbit.time_system +
                                                        ": EARTH_FIXED and UTC are needed");
  }
  result.satellite = "S1" + mission.substr(10);
  result.kind = type.empty() ? ReadName(file.Name()).kind : KindOf(type);
  orbit.source = "orbit file " + std::filesystem::path(file.Name()).filename().string() + " (" +
                 KindText(result.kind, type) + ")";

  const pugi::xml_node list = file.Find(root, "Data_Block/List_of_OSVs");
  MOMENT last_tai;
  bool is_leap_told = false;
  for (const pugi::xml_node node : list.children("OSV")) {
    const MOMENT epoch = file.Time(node, "UTC", "UTC=");
    const MOMENT tai = file.Time(node, "TAI", "TAI=");
    // Both axes have the same steps, unless the table of leap seconds, which a run counts with,
    // misses one. TAI has none.
    const std::int64_t step =
        orbit.epoch.empty() ? 1 : MicrosecondsBetween(orbit.epoch.back(), epoch);
    if (step <= 0) file.Fail(node, "the state vector is not later than the one before it");
    if (orbit.epoch.empty()) {
      WarnOfTai(tai, epoch, result.warnings);
    } else if (!is_leap_told && step != SinceDayZero(tai) - SinceDayZero(last_tai)) {
      is_leap_told = true;
      result.warnings.push_back("a leap second before " + IsoTime(epoch) +
                                " is not in the table of leap seconds that a run counts with");
    }
    last_tai = tai;
    AddVector(orbit, epoch,
              {file.Number(node, "X"), file.Number(node, "Y"), file.Number(node, "Z")},
              {file.Number(node, "VX"), file.Number(node, "VY"), file.Number(node, "VZ")});
    if (std::string_view(node.child("Quality").child_value()) != "NOMINAL") {
      result.degraded.push_back(epoch);
    }
  }
  if (orbit.epoch.empty()) file.Fail(list, "holds no state vectors");
  const std::int64_t stated = list.attribute("count").as_llong(-1);
  if (stated != static_cast<std::int64_t>(orbit.epoch.size())) {
    result.warnings.push_back("states " + std::to_string(stated) + " vectors and holds " +
                              std::to_string(orbit.epoch.size()) + ", " + Span(orbit));
  }
  return result;
}

std::string TakeSentinel1Orbit(SCENE& scene, const std::string& file_or_folder,
                               const INTERPOLATION& interpolation) {
  std::error_code ignored;
  if (!std::filesystem::is_directory(file_or_folder, ignored)) {
    return Take(scene, ReadFor(scene, file_or_folder, interpolation), interpolation);
  }
  std::vector<ORBIT_FILE_NAME> names;
  std::size_t count = 0;
  for (const std::string& file : FilesWithin(file_or_folder)) {
    if (!IsOrbitFile(file)) continue;
    ++count;
    ORBIT_FILE_NAME name = ReadName((std::filesystem::path(file_or_folder) / file).string());
    if (MayCover(name, scene)) names.push_back(std::move(name));
  }
  std::stable_sort(names.begin(), names.end(),
                   [](const ORBIT_FILE_NAME& a, const ORBIT_FILE_NAME& b) {
                     return a.kind != b.kind ? a.kind < b.kind : a.created > b.created;
                   });
  std::optional<ORBIT_CANDIDATE> best;
  std::vector<std::string> passed_over;
  for (const ORBIT_FILE_NAME& name : names) {
    // Headers mostly say what the names say: behind a precise file nothing better comes.
    if (best && best->file.kind == ORBIT_KIND::PRECISE) break;
    try {
      ORBIT_CANDIDATE read = ReadFor(scene, name.path, interpolation);
      if (!best || read.file.kind < best->file.kind) best = std::move(read);
    } catch (const IMPORT_FAILURE& failure) {
      passed_over.push_back(failure.file + ": " + failure.what());
    }
  }
  if (best) {
    std::string taken = Take(scene, std::move(*best), interpolation);
    for (const std::string& reason : passed_over) {
      scene.warnings.push_back("passed over " + reason);
    }
    scene.orbit.remarks.push_back("best of the " + std::to_string(count) +
                                  " orbit files in its folder");
    return taken;
  }
  std::string reasons;
  for (const std::string& reason : passed_over) reasons += "; " + reason;
  if (const std::size_t closed = count - names.size(); closed > 0) {
    reasons += "; " + std::to_string(closed) + " by their names";
  }
  throw IMPORT_FAILURE(file_or_folder, 1,
                       "none of " + std::to_string(count) + " orbit files covers " +
                           scene.satellite.value + " from " + IsoTime(scene.first_line.value) +
                           " to " + IsoTime(LastLine(scene)) + reasons);
}

}  // namespace varnoth::tools
