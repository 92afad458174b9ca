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
/// The classes, as makers with the word of their keys.
template <class... E>
const std::vector<std::pair<OWNER (*)(), std::string>> FAMILY = {
    {[]() -> OWNER { return std::make_unique<E>(); }, E::KEY_WORD}...};
const auto& MEMBERS =
    FAMILY<QuicklookResolutionClass, PolarizationType, OrbitDirection, AntennaLookDirection, Edge,
           Azimuth, Range, ImageType, ImagingConfiguration, ChirpSlope, ChirpType, ProductFormatId,
           Projection, MapProjection, TxRxType, PoolType, DataType, EllipsoidType<double>>;

class EnumerationTest : public LoggedTest {
 protected:
  const std::string path = directory.Path("pool");
};

TEST_F(EnumerationTest, StepsTextsAndPoolsFollowTheTable) {
  for (const auto& [make, key] : MEMBERS) {
    SCOPED_TRACE(key);
    const OWNER value = make(), found = make();
    const STRING guard = (--*value).text;
    EXPECT_THROW(--*value, ERROR_ENUM_BASE_LIMIT_OF_ENUMERATION_EXPIRED);
    for (int id = 1; id <= value->LastId(); ++id) {
      const STRING text = (++*value).text;
      EXPECT_EQ(value->id, id);
      found->Set(text, true);
      EXPECT_EQ(found->id, id);
      for (int n = 0; !(value->GetAlias(*value, n) == text); ++n) {
        found->Set(value->GetAlias(*value, n), true);
        EXPECT_EQ(*found, *value);
      }
      value->WriteToPool(*std::make_unique<PARAMETER_POOL_READ_WRITE_CHANGE>(path.c_str()), "a");
      PARAMETER_POOL pool(path.c_str());
      EXPECT_TRUE(pool.find_key(("a_" + key).c_str()));
      for (const auto read : {&ENUM_BASE::ReadFromPool, &ENUM_BASE::ReadCheckedFromPool}) {
        found->FromId(0, true);
        (*found.*read)(pool, "a");
        EXPECT_EQ(*found, *value);
        EXPECT_EQ(found->text, text);
      }
    }
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

TEST(Enumerations, PairsOfPolarizationsAndOfEdges) {
  const TxRxType pair(PolarizationType("V"), PolarizationType("H"));
  EXPECT_EQ(pair.text, "VH");
  EXPECT_EQ(pair.transmit.text + pair.receive.text, "VH");
  const ImageDirection direction(Edge("TOP"), Edge("RIGHT"));  // near range, start azimuth
  EXPECT_EQ(direction.EdgeOf(Range("far")), Edge("BOTTOM"));
  EXPECT_EQ(direction.EdgeOf(Azimuth("stop")), Edge("LEFT"));
  EXPECT_NE(ThrownText([] { ImageDirection(Edge("TOP"), Edge("BOTTOM")); }), "nothing thrown");
}

TEST_F(EnumerationTest, KeysOfAzimuthsAreJoinedOfPartsPositionAndWord) {
  std::string text = "a_b_duration FLT_15 2.000003\n";
  for (const std::string position : {"start", "center", "stop"}) {
    text += "a_b_" + position + "_time STR \"2004-01-14T10:11:1" + std::to_string(position.size()) +
            "\"\n";
  }
  WriteFile(path, text);
  PARAMETER_POOL pool(path.c_str());
  Azimuths azimuths;
  azimuths.ReadFromPool(pool, {"a", "", "b"}, false);
  EXPECT_EQ(azimuths[Azimuth("start")], UNIVERSAL_TIME("2004-01-14T10:11:15"));
  EXPECT_EQ(azimuths[Azimuth("center")], UNIVERSAL_TIME("2004-01-14T10:11:16"));
  EXPECT_EQ(azimuths.duration, DURATION(0, 2000, 3));
}

TEST(EllipsoidType, IsNamedInAnyCaseAndGivesItsAxes) {
  EllipsoidType<double> figure("-");
  EXPECT_EQ(figure.id, 0) << "the lookup begins at the first guard";
  figure = "wgs84";
  EXPECT_THROW(figure = "wgs 84", ERROR_ENUM_BASE_INVALID_VALUE);
  EXPECT_EQ(figure.semi_major_axis, 6378137.0);
  EXPECT_EQ(figure.semi_minor_axis, 6356752.315);
}

}  // namespace
}  // namespace varnoth::test
