#include <memory>

#include "foundation/enumerations/azimuths.hpp"
#include "foundation/enumerations/basic_enumerations.hpp"
#include "foundation/enumerations/image_direction.hpp"
#include "foundation/enumerations/tx_rx_type.hpp"
#include "geometry/ellipsoid_type.hpp"
#include "support/log_capture.hpp"

namespace varnoth::test {
namespace {

using namespace BASIC::TYPES;
using namespace SAR;

using OWNER = std::unique_ptr<ENUM_BASE>;
template <class E>
OWNER Make() {
  return std::make_unique<E>();
}

/// Makers, with key word, then each legal value with its aliases behind it.
const std::pair<OWNER (*)(), std::string> MEMBERS[] = {
    {Make<QuicklookResolutionClass>, "quicklook_resolution_class|lowRes=lres|mediumRes=mres"},
    {Make<PolarizationType>, "polarization_type|V|H"},
    {Make<OrbitDirection>,
     "orbit_direction|A=ascending=ASCENDING|D=descending=DESCENDING|U=undefined=UNDEFINED"},
    {Make<AntennaLookDirection>,
     "antenna_look_direction|L=left=elevationLeft=LEFT|R=right=elevationRight=RIGHT|"
     "U=undefined=elevationUndefined=UNDEFINED"},
    {Make<Edge>, "edge|TOP|RIGHT|BOTTOM|LEFT"},
    {Make<Azimuth>, "azimuth|start=early=first|center=mid|stop=late=last"},
    {Make<Range>, "range|near|mid|far"},
    {Make<ImageType>, "image_type|PORTRAIT|LANDSCAPE"},
    {Make<ImagingConfiguration>,
     "imaging_configuration|StripMap=SM|ScanSAR=SC|SpotLight=SL|TopSAR"},
    {Make<ChirpSlope>, "chirp_slope|UpChirp=up|DownChirp=down|NotApplicable"},
    {Make<ChirpType>, "chirp_type|ideal=nominalChirp=nominal=idealChirp|model=modelChirp|replica"},
    {Make<ProductFormatId>, "product_format_id|PLAIN|QRV_ISP"},
    {Make<Projection>,
     "projection|slant range=SLANTRANGE|ground range=GROUNDRANGE|map=MAP|undefined=UNDEFINED"},
    {Make<MapProjection>, "map_projection|UTM|UPS|AUTO"},
    {Make<TxRxType>, "tx_rx_type|HH|HV|VH|VV"},
    {Make<PoolType>, "pool_type|PPOOL|IIP|TSC|CFG|ORDER|GEOCODING"},
    {Make<DataType>,
     "data_type|int_8|int_16|int_32|int_64|u_int_8|u_int_16|u_int_32|u_int_64|flt_2|flt_6|flt_15|"
     "flt_30|c_int_4|c_int_8|c_int_16|c_int_32|c_int_64|c_u_int_4|c_u_int_8|c_u_int_16|c_u_int_32|"
     "c_u_int_64|c_flt_2|c_flt_6|c_flt_15|c_flt_30|rgb|others"},
    {Make<EllipsoidType<double>>, "ellipsoid_type|Airy|Bessel|GRS80|WGS84"},
};

class EnumerationTest : public LoggedTest {
 protected:
  const std::string path = directory.Path("pool");
};

TEST_F(EnumerationTest, StepsTextsAndPoolsFollowTheTable) {
  for (const auto& [make, expected] : MEMBERS) {
    SCOPED_TRACE(expected);
    const OWNER value = make(), found = make();
    const STRING guard = (--*value).text;
    EXPECT_THROW(--*value, ERROR_ENUM_BASE_LIMIT_OF_ENUMERATION_EXPIRED);
    std::string table = expected.substr(0, expected.find('|'));
    const std::string key = "a_" + table;
    for (int id = 1; id <= value->LastId(); ++id) {
      const STRING text = (++*value).text;
      EXPECT_EQ(value->id, id);
      table += std::string("|") + text.c_str();
      for (int n = 0; !(value->GetAlias(*value, n) == text); ++n) {
        found->Set(value->GetAlias(*value, n), true);
        EXPECT_EQ(*found, *value);
        table += std::string("=") + value->GetAlias(*value, n).c_str();
      }
      value->WriteToPool(*std::make_unique<PARAMETER_POOL_READ_WRITE_CHANGE>(path.c_str()), "a");
      PARAMETER_POOL pool(path.c_str());
      EXPECT_TRUE(pool.find_key(key.c_str()));
      for (const auto read : {&ENUM_BASE::ReadFromPool, &ENUM_BASE::ReadCheckedFromPool}) {
        found->FromId(0, true);
        (*found.*read)(pool, "a");
        EXPECT_EQ(*found, *value);
        EXPECT_EQ(found->text, text);
      }
    }
    EXPECT_EQ(table, expected);
    EXPECT_EQ((++*value).text, guard);
    EXPECT_THROW(++*value, ERROR_ENUM_BASE_LIMIT_OF_ENUMERATION_EXPIRED);
    EXPECT_EQ((--*value).id, value->LastId());
    EXPECT_THROW(value->FromId(-1, false), ERROR_ENUM_BASE_INVALID_ID);
    EXPECT_THROW(value->FromId(value->LastId() + 2, true), ERROR_ENUM_BASE_INVALID_ID);
  }
}

TEST_F(EnumerationTest, AMissTellsKeyClassAndLegalValuesAndChangesNothing) {
  WriteFile(path, "edge STR \"Left\"\na_edge STR \"x\"\n");
  PARAMETER_POOL pool(path.c_str());
  Edge edge;
  edge.ReadFromPool(pool, "");
  try {
    edge.ReadFromPool(pool, "a");
    ADD_FAILURE() << "x was taken";
  } catch (const ERROR_ENUM_BASE_INVALID_VALUE& error) {
    EXPECT_STREQ(error.what(), "enumeration data type - invalid value of class SAR::Edge: x");
    EXPECT_EQ(error.value, "x");
  }
  const std::string line = " << read value is : x Valid values are: 'TOP' 'RIGHT' 'BOTTOM' 'LEFT' ";
  EXPECT_TRUE(TakeLog().ends_with(">> a_edge << of " + path + line + "\n"));
  EXPECT_THROW(edge.ReadCheckedFromPool(pool, ""), INVALID_PARAMETER_VALUE) << "not as it stands";
  EXPECT_TRUE(TakeLog().ends_with("Left Valid values are: 'TOP' 'RIGHT' 'BOTTOM' 'LEFT' \n"));
  EXPECT_EQ(edge.text, "LEFT");
}

TEST_F(EnumerationTest, TellsClassesCaseAndSeparatorsApart) {
  EXPECT_TRUE(Edge("top") != Edge("LEFT"));
  EXPECT_THROW((void)(Edge("TOP") == Range("near")), ERROR_ENUM_BASE_TYPE_MISMATCH);
  EXPECT_EQ(OrbitDirection("a"), OrbitDirection("Ascending"));
  EXPECT_EQ(OrbitDirection::Row(4).text, "-");
  EXPECT_THROW(OrbitDirection("-"), ERROR_ENUM_BASE_INVALID_VALUE);
  EXPECT_THROW(OrbitDirection("a", true), ERROR_ENUM_BASE_INVALID_VALUE);
  Projection projection;
  EXPECT_THROW(projection.Set("ground-range"), ERROR_ENUM_BASE_INVALID_VALUE);
  projection.SetTolerant("GROUND_-range ");
  EXPECT_EQ(projection.text, "ground range");
}

TEST(TxRxType, IsThePairOfItsTexts) {
  for (const char* text : {"HH", "HV", "VH", "VV"}) {
    const TxRxType named(text);
    EXPECT_EQ(named.transmit.text + named.receive.text, text);
    EXPECT_EQ(TxRxType(named.transmit, named.receive).text, text);
  }
  EXPECT_EQ(ThrownText([] { TxRxType(PolarizationType::Row(0), PolarizationType("H")); }),
            "invalid combination of transmit and receive polarization");
}

TEST(ImageDirection, EdgesAreOrthogonalAndPositionsLieAtThem) {
  const char* const edges[] = {"TOP", "RIGHT", "BOTTOM", "LEFT"};  // clockwise
  EXPECT_EQ(ThrownText([&] { ImageDirection(Edge("TOP"), Edge("BOTTOM")); }),
            "range and azimuth should be at orthogonal edges");
  for (int range = 0; range < 4; ++range) {
    const ImageDirection direction(Edge(edges[range]), Edge(edges[(range + 1) % 4]));
    EXPECT_EQ(direction.EdgeOf(Range("near")).text, edges[range]);
    EXPECT_EQ(direction.EdgeOf(Range("far")).text, edges[(range + 2) % 4]);
    EXPECT_EQ(direction.EdgeOf(Azimuth("start")).text, edges[(range + 1) % 4]);
    EXPECT_EQ(direction.EdgeOf(Azimuth("stop")).text, edges[(range + 3) % 4]);
    EXPECT_EQ(ThrownText([&] { direction.EdgeOf(Azimuth("mid")); }), "mid azimuth is at no edge");
    EXPECT_EQ(ThrownText([&] { direction.EdgeOf(Range("mid")); }), "mid range is at no edge");
  }
}

TEST_F(EnumerationTest, KeysOfAzimuthsAreJoinedOfPartsPositionAndWord) {
  for (const std::string s : {"", "s"}) {
    std::string text = "a_b_duration" + s + " FLT_15 2.000003\n";
    for (const std::string position : {"start", "center", "stop"}) {
      text += "a_b_" + position + "_time" + s + " STR \"2004-01-14T10:11:1" +
              std::to_string(position.size()) + "\"\n";
    }
    WriteFile(path, text);
    PARAMETER_POOL pool(path.c_str());
    Azimuths azimuths;
    azimuths.ReadFromPool(pool, {"a", "", "b"}, s == "s");
    EXPECT_EQ(azimuths[Azimuth("start")], UNIVERSAL_TIME("2004-01-14T10:11:15"));
    EXPECT_EQ(azimuths[Azimuth("center")], UNIVERSAL_TIME("2004-01-14T10:11:16"));
    EXPECT_EQ(azimuths[Azimuth("stop")], UNIVERSAL_TIME("2004-01-14T10:11:14"));
    EXPECT_EQ(azimuths.duration, DURATION(0, 2000, 3));
  }
}

TEST(EllipsoidType, NamesGiveTheAxesOfTheTable) {
  constexpr double axes[][2] = {{6377340.189, 6356034.447},
                                {6377397.155, 6356078.965},
                                {6378137.0, 6356752.3141},
                                {6378137.0, 6356752.315},
                                {0, 0}};
  EllipsoidType<double> figure("-");
  EXPECT_EQ(figure.id, 0) << "the lookup begins at the first guard";
  for (const auto& [major, minor] : axes) {
    ++figure;
    EXPECT_EQ(figure.semi_major_axis, major);
    EXPECT_EQ(figure.semi_minor_axis, minor);
  }
  figure = "wgs84";
  EXPECT_THROW(figure = "wgs 84", ERROR_ENUM_BASE_INVALID_VALUE);
  EXPECT_EQ(figure.id, 4);
}

}  // namespace
}  // namespace varnoth::test
