#include <memory>

#include "enumerations/azimuths.hpp"
#include "enumerations/basic_enumerations.hpp"
#include "enumerations/image_direction.hpp"
#include "enumerations/tx_rx_type.hpp"
#include "geometry/ellipsoid_type.hpp"
#include "pool/parameter_pool_read_write_change.hpp"
#include "support/log_capture.hpp"

namespace varnoth::test {
namespace {

using namespace BASIC::TYPES;
using namespace SAR;

struct EnumerationTest : LoggedTest {
  /// Compares a class with its key word, its rows (each a text and its aliases) and their guards.
  template <class E>
  void Has(const std::string& key_word, const std::string& rows, const std::string& guard = "-") {
    WriteFile(path, "");
    std::string found_rows;
    E value;
    --value;
    EXPECT_THROW(--value, ERROR_ENUM_BASE_LIMIT_OF_ENUMERATION_EXPIRED) << key_word;
    for (;; ++value) {
      value.WriteToPool(*std::make_unique<PARAMETER_POOL_READ_WRITE_CHANGE>(path.c_str()), "");
      found_rows += std::string("|") + value.text.c_str();
      for (int n = 0; !(value.GetAlias(value, n) == value.text); ++n) {
        found_rows += std::string("=") + value.GetAlias(value, n).c_str();
        EXPECT_EQ(E(value.GetAlias(value, n), true).text, value.text) << key_word;
      }
      if (value.id > value.LastId()) break;
      if (value.id == 0) continue;
      PARAMETER_POOL pool(path.c_str());
      for (const auto read : {&ENUM_BASE::ReadFromPool, &ENUM_BASE::ReadCheckedFromPool}) {
        E found;
        (found.*read)(pool, "");
        EXPECT_EQ(found.text, value.text) << key_word;
      }
    }
    EXPECT_THROW(++value, ERROR_ENUM_BASE_LIMIT_OF_ENUMERATION_EXPIRED) << key_word;
    const std::string found_key_word = ReadFile(path).substr(0, ReadFile(path).find(' '));
    EXPECT_EQ(found_key_word + found_rows, key_word + "|" + guard + "|" + rows + "|" + guard);
  }

  const std::string path = directory.Path("pool");
};

TEST_F(EnumerationTest, TextsAliasesAndPoolsFollowTheTable) {
  Has<QuicklookResolutionClass>("quicklook_resolution_class", "lowRes=lres|mediumRes=mres");
  Has<PolarizationType>("polarization_type", "V|H");
  Has<OrbitDirection>("orbit_direction",
                      "A=ascending=ASCENDING|D=descending=DESCENDING|U=undefined=UNDEFINED");
  Has<AntennaLookDirection>("antenna_look_direction",
                            "L=left=elevationLeft=LEFT|R=right=elevationRight=RIGHT|"
                            "U=undefined=elevationUndefined=UNDEFINED");
  Has<Edge>("edge", "TOP|RIGHT|BOTTOM|LEFT");
  Has<Azimuth>("azimuth", "start=early=first|center=mid|stop=late=last");
  Has<Range>("range", "near|mid|far");
  Has<ImageType>("image_type", "PORTRAIT|LANDSCAPE");
  Has<ImagingConfiguration>("imaging_configuration", "StripMap=SM|ScanSAR=SC|SpotLight=SL|TopSAR");
  Has<ChirpSlope>("chirp_slope", "UpChirp=up|DownChirp=down|NotApplicable");
  Has<ChirpType>("chirp_type", "ideal=nominalChirp=nominal=idealChirp|model=modelChirp|replica");
  Has<ProductFormatId>("product_format_id", "PLAIN|QRV_ISP");
  Has<Projection>("projection",
                  "slant range=SLANTRANGE|ground range=GROUNDRANGE|map=MAP|undefined=UNDEFINED");
  Has<MapProjection>("map_projection", "UTM|UPS|AUTO");
  Has<TxRxType>("tx_rx_type", "HH|HV|VH|VV", "--");
  Has<PoolType>("pool_type", "PPOOL|IIP|TSC|CFG|ORDER|GEOCODING");
  Has<DataType>(
      "data_type",
      "int_8|int_16|int_32|int_64|u_int_8|u_int_16|u_int_32|u_int_64|"
      "flt_2|flt_6|flt_15|flt_30|c_int_4|c_int_8|c_int_16|c_int_32|c_int_64|c_u_int_4|c_u_int_8|"
      "c_u_int_16|c_u_int_32|c_u_int_64|c_flt_2|c_flt_6|c_flt_15|c_flt_30|rgb|others");
  Has<EllipsoidType<double>>("ellipsoid_type", "Airy|Bessel|GRS80|WGS84");
}

TEST_F(EnumerationTest, AzimuthsReadATimeForEachPositionAndTheDurationOrStayAsTheyWere) {
  const std::string times =
      "a_center_times STR \"02-JAN-2004/00:00:00\"\na_stop_times STR \"03-JAN-2004/00:00:00\"\n";
  WriteFile(path, times + "a_start_times STR \"01-JAN-2004/00:00:00\"\na_durations FLT_15 1.5\n");
  PARAMETER_POOL pool(path.c_str());
  Azimuths azimuths;
  azimuths.ReadFromPool(pool, {"a"}, true);
  EXPECT_EQ(azimuths[Azimuth("center")], UNIVERSAL_TIME("02-JAN-2004/00:00:00"));
  EXPECT_EQ(azimuths.duration, DURATION::FromSeconds(1.5));
  EXPECT_THROW(azimuths.ReadFromPool(pool, {"a"}), PARAMETER_KEY_NOT_FOUND);
  EXPECT_EQ(azimuths[Azimuth("start")], UNIVERSAL_TIME("01-JAN-2004/00:00:00"));
  STRING second_names;
  for (int id = 0; id <= 4; ++id) second_names += Azimuth::Row(id).second_name;
  EXPECT_EQ(second_names, "-earlymidlate-");
  EXPECT_THROW(azimuths[Azimuth::Row(0)], ERROR_ENUM_BASE_INVALID_ID);
  EXPECT_THROW(azimuths[Azimuth::Row(4)], ERROR_ENUM_BASE_INVALID_ID);
}

TEST_F(EnumerationTest, AMissTellsKeyClassAndLegalValuesAndChangesNothing) {
  WriteFile(path, "edge STR \"Left\"\na_edge STR \"x\"\n");
  PARAMETER_POOL pool(path.c_str());
  Edge edge("LEFT");
  EXPECT_THROW(edge.ReadCheckedFromPool(pool, ""), INVALID_PARAMETER_VALUE) << "not as it stands";
  try {
    edge.ReadFromPool(pool, "a");
    ADD_FAILURE() << "x was taken";
  } catch (const ERROR_ENUM_BASE_INVALID_VALUE& error) {
    EXPECT_STREQ(error.what(), "enumeration data type - invalid value of class SAR::Edge: x");
  }
  ENUM_BASE& base = edge;  // of an unknown class: a step gives the old row
  EXPECT_EQ((base--).text, "LEFT");
  EXPECT_EQ((base++).text, "BOTTOM");
  EXPECT_EQ(edge.text, "LEFT");
  EXPECT_TRUE(edge != Edge("TOP") && !(edge != Edge("left")));
  EXPECT_THROW(edge.GetAlias(Range("far"), 0), ERROR_ENUM_BASE_TYPE_MISMATCH);
  EXPECT_EQ(ENUM_BASE().FromId(7, true).id, ENUM_BASE().id);
  EXPECT_EQ(ENUM_BASE().LastId(), 0);
  EXPECT_PRED_FORMAT2(
      testing::IsSubstring,
      "ALARM parameter pool: parameter key >> a_edge << of " + path +
          " << read value is : x Valid values are: 'TOP' 'RIGHT' 'BOTTOM' 'LEFT' \n",
      TakeLines());
  for (const volatile int id : {-1, 6}) {  // volatile, or the compiler warns of the row
    EXPECT_THROW(edge.FromId(id, true), ERROR_ENUM_BASE_INVALID_ID);
  }
  EXPECT_THROW((void)(Edge("TOP") == Range("near")), ERROR_ENUM_BASE_TYPE_MISMATCH);
  EXPECT_EQ(OrbitDirection("a"), OrbitDirection("Ascending"));
  EXPECT_THROW(OrbitDirection("-"), ERROR_ENUM_BASE_INVALID_VALUE);
  EXPECT_THROW(OrbitDirection("a", true), ERROR_ENUM_BASE_INVALID_VALUE);
  Projection projection;
  EXPECT_THROW(projection.Set("ground-range"), ERROR_ENUM_BASE_INVALID_VALUE);
  projection.SetTolerant("GROUND_-range ");
  EXPECT_EQ(projection.text, "ground range");
}

TEST_F(EnumerationTest, PairsAndFiguresAreMadeOfTheirParts) {
  const TxRxType pair(PolarizationType("V"), PolarizationType("H"));
  EXPECT_EQ(pair.text + pair.transmit.text + pair.receive.text, "VHVH");
  EXPECT_EQ(TxRxType("hv").id, 2);
  EXPECT_THROW(TxRxType("hv", true), ERROR_ENUM_BASE_INVALID_VALUE);
  EXPECT_EQ(TxRxType::Row(5).transmit.id * 10 + TxRxType::Row(5).receive.id, 33);
  EXPECT_EQ(ThrownText([] { TxRxType(PolarizationType("V"), PolarizationType::Row(3)); }),
            "invalid combination of transmit and receive polarization");
  const ImageDirection direction(Edge("TOP"), Edge("RIGHT"));  // near range, start azimuth
  EXPECT_EQ(direction.EdgeOf(Range("near")).text + direction.EdgeOf(Range("far")).text +
                direction.EdgeOf(Azimuth("start")).text + direction.EdgeOf(Azimuth("stop")).text,
            "TOPBOTTOMRIGHTLEFT");
  Edge guard;
  --guard;
  EXPECT_THROW(direction.Opposite(guard), ERROR_ENUM_BASE_INVALID_ID);
  EXPECT_EQ(ThrownText([&] { direction.EdgeOf(Azimuth("center")); }), "mid azimuth is at no edge");
  EXPECT_EQ(ThrownText([&] { direction.EdgeOf(Range("mid")); }), "mid range is at no edge");
  EXPECT_THROW(direction.EdgeOf(Edge("TOP")), ERROR_ENUM_BASE_TYPE_MISMATCH);
  EXPECT_EQ(ThrownText([] { ImageDirection(Edge("TOP"), Edge("BOTTOM")); }),
            "range and azimuth should be at orthogonal edges");
  EllipsoidType<double> figure("-");
  EXPECT_EQ(figure.id, 0) << "this lookup begins at the first guard";
  figure = "wgs84";
  EXPECT_TRUE(figure.semi_major_axis == 6378137.0 && figure.semi_minor_axis == 6356752.315);
}

}  // namespace
}  // namespace varnoth::test
