#include "tools/import/sentinel1_annotation.hpp"

#include <algorithm>
#include <cmath>
#include <filesystem>

namespace varnoth::tools {

namespace {

/// The file's name without folder and endings.
std::string Stem(const std::string& name) {
  std::filesystem::path path = std::filesystem::path(name).filename();
  while (path.extension() == ".gz" || path.extension() == ".xml") path = path.stem();
  return path.string();
}

/// The name that another maker's file gives its satellite, for the message.
std::string ForeignSatellite(pugi::xml_node root) {
  constexpr const char* PLACES[] = {"productInfo/missionInfo/mission", "sourceAttributes/satellite",
                                    "generalHeader/mission"};
  for (const char* const place : PLACES) {
    const std::string name = root.first_element_by_path(place).child_value();
    if (!name.empty()) return " of " + name.substr(0, 40);
  }
  return "";
}

void CheckProduct(const XML_FILE& file) {
  const pugi::xml_node root = file.Root();
  const std::string kind = root.name();
  if (kind == "Earth_Explorer_File") file.Fail(root, "an orbit file: give it behind --orbit");
  if (kind == "calibration" || kind == "noise" || kind == "rfi") {
    file.Fail(root, "a " + kind + " file: the annotation itself is wanted");
  }
  const std::string mission = root.first_element_by_path("adsHeader/missionId").child_value();
  if (kind != "product" || !mission.starts_with("S1")) {
    file.Fail(root, "XML" + ForeignSatellite(root) + " with the root element " + kind +
                        ": no Sentinel-1 annotation");
  }
  const std::string type = file.Text(root, "adsHeader/productType");
  const std::string projection = file.Text(root, "generalAnnotation/productInformation/projection");
  if (type == "GRD" || projection == "Ground Range") {
    file.Fail(file.Find(root, "adsHeader/productType"),
              "a " + type +
                  " product: it has no slant range grid; take the SLC product of the "
                  "same pass");
  }
  if (type != "SLC" || projection != "Slant Range") {
    file.Fail(file.Find(root, "adsHeader/productType"),
              "a product of type " + type + ", projection " + projection + ": SLC is wanted");
  }
}

void ReadTiming(const XML_FILE& file, SCENE& scene) {
  const std::string at = "imageAnnotation/imageInformation/";
  const pugi::xml_node image = file.Find(file.Root(), "imageAnnotation/imageInformation");
  scene.line_count = {file.Whole(image, "numberOfLines"), at + "numberOfLines"};
  scene.sample_count = {file.Whole(image, "numberOfSamples"), at + "numberOfSamples"};
  scene.first_line = {file.Time(image, "productFirstLineUtcTime"), at + "productFirstLineUtcTime"};
  scene.first_range_time = {file.Number(image, "slantRangeTime"), at + "slantRangeTime, two-way"};
  scene.line_rate = {file.Number(image, "azimuthFrequency"),
                     at + "azimuthFrequency, the line rate of the focused image"};
  const double interval = file.Number(image, "azimuthTimeInterval");
  if (!(std::abs(interval * scene.line_rate.value - 1) < 1e-6)) {
    file.Fail(file.Find(image, "azimuthTimeInterval"),
              "azimuthTimeInterval is not the inverse of azimuthFrequency");
  }

  const pugi::xml_node timing = file.Find(file.Root(), "swathTiming");
  const std::int64_t burst_lines = file.Whole(timing, "linesPerBurst");
  std::int64_t bursts = 0;
  std::int64_t first_line_of_burst = 0;
  for (const pugi::xml_node burst : file.Find(timing, "burstList").children("burst")) {
    const MOMENT time = file.Time(burst, "azimuthTime");
    if (bursts++ == 0) {
      scene.first_line = {time, "swathTiming/burstList, azimuthTime of the first burst"};
    }
    const double lines = static_cast<double>(MicrosecondsBetween(scene.first_line.value, time)) /
                         MICROSECONDS_OF_SECOND / interval;
    if (!(std::abs(lines) < 1e7) || (bursts > 1 && std::llround(lines) <= first_line_of_burst)) {
      file.Fail(burst, "the burst does not begin behind the one before it");
    }
    first_line_of_burst = std::llround(lines);
    if (std::abs(lines - static_cast<double>(first_line_of_burst)) > 0.1) {
      file.Fail(burst, "the burst is not a whole number of lines behind the first one");
    }
  }
  if (bursts > 0) {
    const std::int64_t lines = scene.line_count.value;
    if (burst_lines < 1 || bursts * burst_lines != lines) {
      file.Fail(file.Find(timing, "linesPerBurst"),
                std::to_string(bursts) + " bursts of " + std::to_string(burst_lines) +
                    " lines (linesPerBurst) do not make the " + std::to_string(lines) +
                    " lines of numberOfLines");
    }
    scene.line_count = {first_line_of_burst + burst_lines,
                        "lines of the merged image: " + std::to_string(bursts) +
                            " bursts in one time; the file has " + std::to_string(lines) +
                            " lines, burst behind burst"};
  }
}

void ReadRadar(const XML_FILE& file, SCENE& scene) {
  const pugi::xml_node product = file.Find(file.Root(), "generalAnnotation/productInformation");
  const std::string at = "generalAnnotation/productInformation/";
  scene.range_sampling_frequency = {file.Number(product, "rangeSamplingRate"),
                                    at + "rangeSamplingRate"};
  scene.radar_frequency = {file.Number(product, "radarFrequency"), at + "radarFrequency"};
  const pugi::xml_node processing = file.Find(file.Root(), "imageAnnotation/processingInformation");
  scene.azimuth_bandwidth = {
      file.Number(processing,
                  "swathProcParamsList/swathProcParams/azimuthProcessing/processingBandwidth"),
      "swathProcParams/azimuthProcessing/processingBandwidth"};
  scene.equatorial_radius = {file.Number(processing, "ellipsoidSemiMajorAxis"),
                             "imageAnnotation/processingInformation/ellipsoidSemiMajorAxis"};
  scene.polar_radius = {file.Number(processing, "ellipsoidSemiMinorAxis"),
                        "ellipsoidSemiMinorAxis"};
}

void ReadOrbit(const XML_FILE& file, SCENE& scene) {
  const pugi::xml_node list = file.Find(file.Root(), "generalAnnotation/orbitList");
  STATE_VECTORS& orbit = scene.orbit;
  orbit.time_system = "UTC";
  for (const pugi::xml_node node : list.children("orbit")) {
    const std::string frame = file.Text(node, "frame");
    if (frame != "Earth Fixed") {
      file.Fail(file.Find(node, "frame"),
                "state vectors of the frame '" + frame + "': Earth-fixed ones are needed");
    }
    orbit.frame = frame;
    const MOMENT epoch = file.Time(node, "time");
    if (!orbit.epoch.empty() && MicrosecondsBetween(orbit.epoch.back(), epoch) <= 0) {
      file.Fail(node, "the state vector is not later than the one before it");
    }
    AddVector(orbit, epoch,
              {file.Number(node, "position/x"), file.Number(node, "position/y"),
               file.Number(node, "position/z")},
              {file.Number(node, "velocity/x"), file.Number(node, "velocity/y"),
               file.Number(node, "velocity/z")});
  }
  const std::string source =
      file.Root()
          .first_element_by_path("imageAnnotation/processingInformation/orbitSource")
          .child_value();
  orbit.source = "the annotation's generalAnnotation/orbitList" +
                 (source.empty() ? "" : ", orbit source " + source.substr(0, 40));
  const std::int64_t stated = list.attribute("count").as_llong(-1);
  if (stated != static_cast<std::int64_t>(orbit.epoch.size())) {
    scene.warnings.push_back("orbitList states " + std::to_string(stated) + " vectors and holds " +
                             std::to_string(orbit.epoch.size()));
  }
}

/// The grid tells the scene's centre and the side on which the antenna looks.
void ReadGrid(const XML_FILE& file, SENTINEL1_ANNOTATION& annotation) {
  SCENE& scene = annotation.scene;
  const pugi::xml_node list = file.Find(file.Root(), "geolocationGrid/geolocationGridPointList");
  const std::int64_t middle_line =
      file.Whole(file.Root(), "imageAnnotation/imageInformation/numberOfLines") / 2;
  const std::int64_t middle_sample = scene.sample_count.value / 2;
  double nearest = INFINITY;
  for (const pugi::xml_node node : list.children("geolocationGridPoint")) {
    const double latitude = file.Number(node, "latitude");
    const double longitude = file.Number(node, "longitude");
    const auto lines = static_cast<double>(file.Whole(node, "line") - middle_line);
    const auto samples = static_cast<double>(file.Whole(node, "pixel") - middle_sample);
    const double height = file.Number(node, "height");
    const double range_time =
        node.child("slantRangeTime") ? file.Number(node, "slantRangeTime") : NAN;
    annotation.grid.push_back(
        {file.Time(node, "azimuthTime"), range_time, height,
         GroundPosition(latitude, longitude, height, scene.equatorial_radius.value,
                        scene.polar_radius.value)});
    const double distance = std::hypot(lines / static_cast<double>(scene.line_count.value),
                                       samples / static_cast<double>(scene.sample_count.value));
    if (distance < nearest) {
      nearest = distance;
      scene.center_latitude = {latitude, "latitude of the middle point of geolocationGrid"};
      scene.center_longitude = {longitude, "longitude of the middle point of geolocationGrid"};
    }
  }
  if (annotation.grid.empty()) file.Fail(list, "the geolocation grid is empty");
  const STATE_VECTORS& orbit = scene.orbit;
  if (orbit.epoch.empty()) return;  // told where the orbit is fitted to the scene
  // The vector before the grid's middle point is near enough to tell the side.
  const ANNOTATED_POINT& point = annotation.grid[annotation.grid.size() / 2];
  const COVERAGE coverage = CoverageOf(orbit, point.time, point.time);
  const std::size_t i = coverage.ahead == 0 ? 0 : coverage.ahead - 1;
  const VECTOR_3 right = Cross(VelocityOf(orbit, i), PositionOf(orbit, i));
  scene.look_direction = {Dot(right, point.position) > 0 ? "right" : "left",
                          "side of the track on which the geolocation grid lies"};
}

}  // namespace

std::int64_t Sentinel1RelativeOrbit(const std::string& satellite, std::int64_t absolute_orbit) {
  constexpr std::int64_t CYCLE = 175;
  std::int64_t offset = 0;
  if (satellite == "S1A") offset = 73;
  if (satellite == "S1B") offset = 27;
  if (satellite == "S1C") offset = 172;
  if (offset == 0) return 0;
  return ((absolute_orbit - offset) % CYCLE + CYCLE) % CYCLE + 1;
}

SENTINEL1_ANNOTATION ReadSentinel1Annotation(const XML_FILE& file) {
  CheckProduct(file);
  SENTINEL1_ANNOTATION annotation;
  SCENE& scene = annotation.scene;
  const pugi::xml_node header = file.Find(file.Root(), "adsHeader");
  scene.name = {Stem(file.Name()), "name of the annotation file"};
  scene.satellite = {file.Text(header, "missionId"), "adsHeader/missionId"};
  scene.mode = file.Text(header, "swath") + " " + file.Text(header, "polarisation");
  scene.absolute_orbit = {file.Whole(header, "absoluteOrbitNumber"),
                          "adsHeader/absoluteOrbitNumber"};
  scene.relative_orbit = {
      Sentinel1RelativeOrbit(scene.satellite.value, scene.absolute_orbit.value),
      "from the absolute orbit: " + scene.satellite.value + " repeats its orbits after 175"};
  ReadTiming(file, scene);
  scene.attribution =
      "Contains modified Copernicus Sentinel data " + IsoTime(scene.first_line.value).substr(0, 4);
  ReadRadar(file, scene);
  ReadOrbit(file, scene);
  ReadGrid(file, annotation);
  return annotation;
}

}  // namespace varnoth::tools
