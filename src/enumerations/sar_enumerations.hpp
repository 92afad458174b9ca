#pragma once

#include "enumerations/enum_base.hpp"

namespace varnoth::SAR {

using BASIC::TYPES::ENUM;
using BASIC::TYPES::ENUM_ALIAS;

/// The enumerations of radar images. All work alike:
///
///     const Projection projection("slant range");  // a text or an alias, in any case
///     const Range range = Range::Row(Range::FAR);
///     OrbitDirection direction;
///     direction.ReadFromPool(pool, "master");  // key "master_orbit_direction"
class QuicklookResolutionClass : public ENUM<QuicklookResolutionClass> {
 public:
  using ENUM::ENUM;
  static constexpr const char* KEY_WORD = "quicklook_resolution_class";
  static constexpr const char* VALUES[] = {"lowRes", "mediumRes"};
  static constexpr ENUM_ALIAS ALIASES[] = {{"lres", 1}, {"mres", 2}};
};

class PolarizationType : public ENUM<PolarizationType> {
 public:
  using ENUM::ENUM;
  static constexpr const char* KEY_WORD = "polarization_type";
  static constexpr const char* VALUES[] = {"V", "H"};
};

/// The flight direction of an orbit: ascending, descending, undefined.
class OrbitDirection : public ENUM<OrbitDirection> {
 public:
  using ENUM::ENUM;
  static constexpr const char* KEY_WORD = "orbit_direction";
  static constexpr const char* VALUES[] = {"A", "D", "U"};
  static constexpr ENUM_ALIAS ALIASES[] = {{"ascending", 1}, {"descending", 2}, {"undefined", 3},
                                           {"ASCENDING", 1}, {"DESCENDING", 2}, {"UNDEFINED", 3}};
};

/// The side of the track that the antenna looks at: left, right, undefined.
class AntennaLookDirection : public ENUM<AntennaLookDirection> {
 public:
  using ENUM::ENUM;
  static constexpr const char* KEY_WORD = "antenna_look_direction";
  static constexpr const char* VALUES[] = {"L", "R", "U"};
  static constexpr ENUM_ALIAS ALIASES[] = {
      {"left", 1},          {"right", 2},          {"undefined", 3},
      {"elevationLeft", 1}, {"elevationRight", 2}, {"elevationUndefined", 3},
      {"LEFT", 1},          {"RIGHT", 2},          {"UNDEFINED", 3}};
};

/// An edge of an image; the ids go clockwise.
class Edge : public ENUM<Edge> {
 public:
  using ENUM::ENUM;
  enum ID : std::int32_t { TOP = 1, RIGHT, BOTTOM, LEFT };
  static constexpr const char* KEY_WORD = "edge";
  static constexpr const char* VALUES[] = {"TOP", "RIGHT", "BOTTOM", "LEFT"};
};

/// A position along the flight path, with a second name: "early", "mid", "late".
class Azimuth : public ENUM<Azimuth> {
 public:
  enum ID : std::int32_t { START = 1, CENTER, STOP };
  static constexpr const char* KEY_WORD = "azimuth";
  static constexpr const char* VALUES[] = {"start", "center", "stop"};
  static constexpr ENUM_ALIAS ALIASES[] = {
      {"early", START}, {"mid", CENTER}, {"late", STOP}, {"first", START}, {"last", STOP}};

  Azimuth() = default;
  explicit Azimuth(const STRING& wanted, bool case_sensitive = false)
      : Azimuth(RowOf(wanted, case_sensitive)) {}

  STRING second_name;

 private:
  friend ENUM;
  /// The first alias of a row is its second name. Guards have no alias: their second name is their
  /// text.
  void CompleteRow() { second_name = GetAlias(*this, 0); }
};

/// A position across the flight path.
class Range : public ENUM<Range> {
 public:
  using ENUM::ENUM;
  enum ID : std::int32_t { NEAR = 1, MID, FAR };
  static constexpr const char* KEY_WORD = "range";
  static constexpr const char* VALUES[] = {"near", "mid", "far"};
};

class ImageType : public ENUM<ImageType> {
 public:
  using ENUM::ENUM;
  static constexpr const char* KEY_WORD = "image_type";
  static constexpr const char* VALUES[] = {"PORTRAIT", "LANDSCAPE"};
};

class ImagingConfiguration : public ENUM<ImagingConfiguration> {
 public:
  using ENUM::ENUM;
  static constexpr const char* KEY_WORD = "imaging_configuration";
  static constexpr const char* VALUES[] = {"StripMap", "ScanSAR", "SpotLight", "TopSAR"};
  static constexpr ENUM_ALIAS ALIASES[] = {{"SM", 1}, {"SC", 2}, {"SL", 3}};
};

class ChirpSlope : public ENUM<ChirpSlope> {
 public:
  using ENUM::ENUM;
  static constexpr const char* KEY_WORD = "chirp_slope";
  static constexpr const char* VALUES[] = {"UpChirp", "DownChirp", "NotApplicable"};
  static constexpr ENUM_ALIAS ALIASES[] = {{"up", 1}, {"down", 2}};
};

class ChirpType : public ENUM<ChirpType> {
 public:
  using ENUM::ENUM;
  static constexpr const char* KEY_WORD = "chirp_type";
  static constexpr const char* VALUES[] = {"ideal", "model", "replica"};
  static constexpr ENUM_ALIAS ALIASES[] = {
      {"nominalChirp", 1}, {"nominal", 1}, {"idealChirp", 1}, {"modelChirp", 2}};
};

class ProductFormatId : public ENUM<ProductFormatId> {
 public:
  using ENUM::ENUM;
  static constexpr const char* KEY_WORD = "product_format_id";
  static constexpr const char* VALUES[] = {"PLAIN", "QRV_ISP"};
};

class Projection : public ENUM<Projection> {
 public:
  using ENUM::ENUM;
  static constexpr const char* KEY_WORD = "projection";
  static constexpr const char* VALUES[] = {"slant range", "ground range", "map", "undefined"};
  static constexpr ENUM_ALIAS ALIASES[] = {
      {"SLANTRANGE", 1}, {"GROUNDRANGE", 2}, {"MAP", 3}, {"UNDEFINED", 4}};
};

class MapProjection : public ENUM<MapProjection> {
 public:
  using ENUM::ENUM;
  static constexpr const char* KEY_WORD = "map_projection";
  static constexpr const char* VALUES[] = {"UTM", "UPS", "AUTO"};
};

}  // namespace varnoth::SAR
