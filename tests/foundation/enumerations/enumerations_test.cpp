#include <memory>

#include "enumerations/azimuths.hpp"
#include "enumerations/basic_enumerations.hpp"
#include "enumerations/image_direction.hpp"
#include "enumerations/tx_rx_type.hpp"
#include "geometry/ellipsoid_type.hpp"
#include "support/log_capture.hpp"

namespace varnoth::test {
namespace {

using namespace BASIC::TYPES;
using namespace SAR;

using OWNER = std::unique_ptr<ENUM_BASE>;
template <class... E>
const std::vector<OWNER (*)()> MAKERS = {[]() -> OWNER { return std::make_unique<E>(); }...};
const auto& FAMILY =
    MAKERS<QuicklookResolutionClass, PolarizationType, OrbitDirection, AntennaLookDirection, Edge,
           Azimuth, Range, ImageType, ImagingConfiguration, ChirpSlope, ChirpType, ProductFormatId,
           Projection, MapProjection, TxRxType, PoolType, DataType, EllipsoidType<double>>;
/// For each its class, key word, and rows, guards included: a text and its aliases.
constexpr const char* TABLES = R"(
SAR::QuicklookResolutionClass quicklook_resolution_class|-|lowRes=lres|mediumRes=mres|-
SAR::PolarizationType polarization_type|-|V|H|-
SAR::OrbitDirection orbit_direction|-|A=ascending=ASCENDING|D=descending=DESCENDING|U=undefined=UNDEFINED|-
SAR::AntennaLookDirection antenna_look_direction|-|L=left=elevationLeft=LEFT|R=right=elevationRight=RIGHT|U=undefined=elevationUndefined=UNDEFINED|-
SAR::Edge edge|-|TOP|RIGHT|BOTTOM|LEFT|-
SAR::Azimuth azimuth|-|start=early=first|center=mid|stop=late=last|-
SAR::Range range|-|near|mid|far|-
SAR::ImageType image_type|-|PORTRAIT|LANDSCAPE|-
SAR::ImagingConfiguration imaging_configuration|-|StripMap=SM|ScanSAR=SC|SpotLight=SL|TopSAR|-
SAR::ChirpSlope chirp_slope|-|UpChirp=up|DownChirp=down|NotApplicable|-
SAR::ChirpType chirp_type|-|ideal=nominalChirp=nominal=idealChirp|model=modelChirp|replica|-
SAR::ProductFormatId product_format_id|-|PLAIN|QRV_ISP|-
SAR::Projection projection|-|slant range=SLANTRANGE|ground range=GROUNDRANGE|map=MAP|undefined=UNDEFINED|-
SAR::MapProjection map_projection|-|UTM|UPS|AUTO|-
SAR::TxRxType tx_rx_type|--|HH|HV|VH|VV|--
BASIC::TYPES::PoolType pool_type|-|PPOOL|IIP|TSC|CFG|ORDER|GEOCODING|-
BASIC::TYPES::DataType data_type|-|int_8|int_16|int_32|int_64|u_int_8|u_int_16|u_int_32|u_int_64|flt_2|flt_6|flt_15|flt_30|c_int_4|c_int_8|c_int_16|c_int_32|c_int_64|c_u_int_4|c_u_int_8|c_u_int_16|c_u_int_32|c_u_int_64|c_flt_2|c_flt_6|c_flt_15|c_flt_30|rgb|others|-
EllipsoidType<double> ellipsoid_type|-|Airy|Bessel|GRS80|WGS84|-
)";

class EnumerationTest : public LoggedTest {
 protected:
  const std::string path = directory.Path("pool");
};

TEST_F(EnumerationTest, StepsTextsAliasesAndPoolsFollowTheTable) {
  std::string tables = "\n";
  for (const auto& make : FAMILY) {
    const OWNER value = make(), found = make();
    try {
      value->Set("?");
    } catch (const ERROR_ENUM_BASE_INVALID_VALUE& error) {
      tables += error.class_name.c_str();
    }
    WriteFile(path, "");
    (--*value).WriteToPool(*std::make_unique<PARAMETER_POOL_READ_WRITE_CHANGE>(path.c_str()), "");
    tables += " " + ReadFile(path).substr(0, ReadFile(path).find(' '));
    SCOPED_TRACE(tables);
    EXPECT_THROW(--*value, ERROR_ENUM_BASE_LIMIT_OF_ENUMERATION_EXPIRED);
    for (int id = 0;; ++id, ++*value) {
      EXPECT_EQ(value->id, id);
      tables += std::string("|") + value->text.c_str();
      for (int n = 0; !(value->GetAlias(*value, n) == value->text); ++n) {
        tables += std::string("=") + value->GetAlias(*value, n).c_str();
        found->Set(value->GetAlias(*value, n), true);
        EXPECT_EQ(*found, *value);
      }
      if (id > value->LastId()) break;
      if (id == 0) continue;
      value->WriteToPool(*std::make_unique<PARAMETER_POOL_READ_WRITE_CHANGE>(path.c_str()), "a");
      PARAMETER_POOL pool(path.c_str());
      for (const auto read : {&ENUM_BASE::ReadFromPool, &ENUM_BASE::ReadCheckedFromPool}) {
        found->FromId(0, true);
        (*found.*read)(pool, "a");
        EXPECT_EQ(*found, *value);
        EXPECT_EQ(found->text, value->text);
      }
    }
    EXPECT_THROW(++*value, ERROR_ENUM_BASE_LIMIT_OF_ENUMERATION_EXPIRED);
    EXPECT_EQ((--*value).id, value->LastId());
    EXPECT_THROW(value->FromId(-1, false), ERROR_ENUM_BASE_INVALID_ID);
    EXPECT_THROW(value->FromId(value->LastId() + 2, true), ERROR_ENUM_BASE_INVALID_ID);
    tables += "\n";
  }
  EXPECT_EQ(tables, TABLES);
}

TEST_F(EnumerationTest, AMissTellsKeyClassAndLegalValuesAndChangesNothing) {
  WriteFile(path, "edge STR \"Left\"\na_edge STR \"x\"\n");
  PARAMETER_POOL pool(path.c_str());
  Edge edge("LEFT");
  EXPECT_THROW(edge.ReadCheckedFromPool(pool, ""), INVALID_PARAMETER_VALUE) << "not as it stands";
  TakeLines();
  try {
    edge.ReadFromPool(pool, "a");
    ADD_FAILURE() << "x was taken";
  } catch (const ERROR_ENUM_BASE_INVALID_VALUE& error) {
    EXPECT_STREQ(error.what(), "enumeration data type - invalid value of class SAR::Edge: x");
    EXPECT_EQ(error.value, "x");
  }
  EXPECT_EQ(edge.text, "LEFT");
  const std::string log = TakeLines(), line = log.substr(log.rfind('\n', log.size() - 2) + 1);
  EXPECT_EQ(line, "ALARM parameter pool: parameter key >> a_edge << of " + path +
                      " << read value is : x Valid values are: 'TOP' 'RIGHT' 'BOTTOM' 'LEFT' \n");
  EXPECT_THROW((void)(Edge("TOP") == Range("near")), ERROR_ENUM_BASE_TYPE_MISMATCH);
  EXPECT_EQ(OrbitDirection("a"), OrbitDirection("Ascending"));
  EXPECT_THROW(OrbitDirection("-"), ERROR_ENUM_BASE_INVALID_VALUE);
  EXPECT_THROW(OrbitDirection("a", true), ERROR_ENUM_BASE_INVALID_VALUE);
  Projection projection;
  EXPECT_THROW(projection.Set("ground-range"), ERROR_ENUM_BASE_INVALID_VALUE);
  projection.SetTolerant("GROUND_-range ");
  EXPECT_EQ(projection.text, "ground range");
}

TEST_F(EnumerationTest, PairsAndRecordsAreMadeOfTheirParts) {
  const TxRxType pair(PolarizationType("V"), PolarizationType("H"));
  EXPECT_EQ(pair.text + pair.transmit.text + pair.receive.text, "VHVH");
  const ImageDirection direction(Edge("TOP"), Edge("RIGHT"));  // near range, start azimuth
  EXPECT_EQ(direction.EdgeOf(Range("near")).text + direction.EdgeOf(Range("far")).text +
                direction.EdgeOf(Azimuth("start")).text + direction.EdgeOf(Azimuth("stop")).text,
            "TOPBOTTOMRIGHTLEFT");
  EXPECT_NE(ThrownText([] { ImageDirection(Edge("TOP"), Edge("BOTTOM")); }), "nothing thrown");
  WriteFile(
      path,
      "a_b_duration FLT_15 2.000003\na_b_start_time STR \"2004-01-14T10:11:15\"\n"
      "a_b_center_time STR \"2004-01-14T10:11:16\"\na_b_stop_time STR \"2004-01-14T10:11:17\"\n");
  PARAMETER_POOL pool(path.c_str());
  Azimuths azimuths;
  azimuths.ReadFromPool(pool, {"a", "", "b"}, false);
  EXPECT_EQ(azimuths[Azimuth("start")], UNIVERSAL_TIME("2004-01-14T10:11:15"));
  EXPECT_EQ(azimuths[Azimuth("center")], UNIVERSAL_TIME("2004-01-14T10:11:16"));
  EXPECT_EQ(azimuths.duration, DURATION(0, 2000, 3));
  EllipsoidType<double> figure("-");
  EXPECT_EQ(figure.id, 0) << "this lookup begins at the first guard";
  figure = "wgs84";
  EXPECT_TRUE(figure.semi_major_axis == 6378137.0 && figure.semi_minor_axis == 6356752.315);
}

}  // namespace
}  // namespace varnoth::test
