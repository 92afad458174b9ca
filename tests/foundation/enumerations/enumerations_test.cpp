#include <algorithm>
#include <cctype>
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

struct MEMBER {
  OWNER (*make)();
  std::string table;  ///< key word, then each legal value with its aliases behind it
};

const MEMBER MEMBERS[] = {
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

STRING In(int (*letter_case)(int), const STRING& text) {
  std::string changed = text.c_str();
  std::transform(changed.begin(), changed.end(), changed.begin(), letter_case);
  return changed.c_str();
}

class EnumerationFamilyTest : public LoggedTest, public testing::WithParamInterface<MEMBER> {
 protected:
  /// A text or alias is found in any case as the value that stands, and exactly as it is.
  void ExpectFound(const STRING& text) const {
    const OWNER found = GetParam().make();
    for (const STRING& wanted : {In(std::tolower, text), In(std::toupper, text), text}) {
      found->FromId(0, true);
      found->Set(wanted, wanted == text);
      EXPECT_EQ(*found, *value) << wanted.c_str();
      EXPECT_EQ(found->text, value->text);
    }
  }

  const OWNER value = GetParam().make();
  const std::string key_word = GetParam().table.substr(0, GetParam().table.find('|'));
};

TEST_P(EnumerationFamilyTest, StepsLeadFromGuardToGuardOverTheTable) {
  const STRING guard = (--*value).text;
  EXPECT_EQ(guard, key_word == "tx_rx_type" ? "--" : "-");
  EXPECT_THROW(--*value, ERROR_ENUM_BASE_LIMIT_OF_ENUMERATION_EXPIRED);
  std::string table = key_word;
  for (int id = 1; id <= value->LastId(); ++id) {
    const STRING text = (++*value).text;
    EXPECT_EQ(value->id, id);
    ExpectFound(text);
    table += std::string("|") + text.c_str();
    for (int n = 0; !(value->GetAlias(*value, n) == text); ++n) {
      ExpectFound(value->GetAlias(*value, n));
      table += std::string("=") + value->GetAlias(*value, n).c_str();
    }
  }
  EXPECT_EQ(table, GetParam().table);
  EXPECT_EQ((++*value).text, guard);
  EXPECT_THROW(++*value, ERROR_ENUM_BASE_LIMIT_OF_ENUMERATION_EXPIRED);
  EXPECT_EQ((--*value).id, value->LastId());
  EXPECT_THROW(value->FromId(-1, false), ERROR_ENUM_BASE_INVALID_ID);
  EXPECT_THROW(value->FromId(value->LastId() + 2, true), ERROR_ENUM_BASE_INVALID_ID);
  EXPECT_EQ(value->id, value->LastId());
}

TEST_P(EnumerationFamilyTest, PoolsGiveBackWhatWasWritten) {
  const std::string path = directory.Path("pool");
  const OWNER read = GetParam().make();
  for (int id = 1; id <= value->LastId(); ++id) {
    value->FromId(id, true);
    {
      PARAMETER_POOL_READ_WRITE_CHANGE pool(path.c_str());
      value->WriteToPool(pool, "a");
      pool.Change(key_word.c_str(), In(std::tolower, value->text));
    }
    PARAMETER_POOL pool(path.c_str());
    EXPECT_TRUE(pool.find_key(("a_" + key_word).c_str()));
    for (const char* prefix : {"a", "", "checked"}) {
      read->FromId(0, true);
      *prefix == 'c' ? read->ReadCheckedFromPool(pool, "a") : read->ReadFromPool(pool, prefix);
      EXPECT_EQ(*read, *value);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Members, EnumerationFamilyTest, testing::ValuesIn(MEMBERS));

using EnumerationMissTest = LoggedTest;

TEST_F(EnumerationMissTest, TellsKeyClassAndLegalValuesAndChangesNothing) {
  const std::string path = directory.Path("pool");
  WriteFile(path, "a_edge STR \"x\"\n");
  PARAMETER_POOL pool(path.c_str());
  Edge edge("LEFT");
  try {
    edge.ReadFromPool(pool, "a");
    ADD_FAILURE() << "x was taken";
  } catch (const ERROR_ENUM_BASE_INVALID_VALUE& error) {
    EXPECT_STREQ(error.what(), "enumeration data type - invalid value of class SAR::Edge: x");
    EXPECT_EQ(error.value, "x");
    EXPECT_EQ(error.valid_values, "Valid values are: 'TOP' 'RIGHT' 'BOTTOM' 'LEFT' ");
  }
  const std::string line =
      "parameter pool: parameter key >> a_edge << of " + path +
      " << read value is : x Valid values are: " + "'TOP' 'RIGHT' 'BOTTOM' 'LEFT' \n";
  EXPECT_TRUE(TakeLog().ends_with(line));
  EXPECT_THROW(edge.ReadCheckedFromPool(pool, "a"), INVALID_PARAMETER_VALUE);
  EXPECT_EQ(TakeLog(), "PP.Read pool a_edge STR\n" + line);
  EXPECT_EQ(edge.text, "LEFT");
}

TEST(Enumeration, TellsClassesCaseSeparatorsAndStepsApart) {
  EXPECT_TRUE(Edge("top") != Edge("LEFT"));
  EXPECT_THROW((void)(Edge("TOP") == Range("near")), ERROR_ENUM_BASE_TYPE_MISMATCH);
  EXPECT_THROW((void)Edge().GetAlias(Range("near"), 0), ERROR_ENUM_BASE_TYPE_MISMATCH);
  EXPECT_THROW(OrbitDirection("-"), ERROR_ENUM_BASE_INVALID_VALUE);
  EXPECT_THROW(OrbitDirection("a", true), ERROR_ENUM_BASE_INVALID_VALUE);
  Projection projection;
  EXPECT_THROW(projection.Set("ground-range"), ERROR_ENUM_BASE_INVALID_VALUE);
  projection.SetTolerant("GROUND_-range ");
  EXPECT_EQ(projection.text, "ground range");
  EXPECT_THROW(projection.SetTolerant("Ground range", true), ERROR_ENUM_BASE_INVALID_VALUE);
  Azimuth position("mid");
  EXPECT_EQ((position++).second_name, "mid") << "the row that was left";
  EXPECT_EQ((position--).second_name, "late");
  EXPECT_EQ(position.text, "center");
}

TEST(TxRxType, IsThePairOfItsTexts) {
  for (const char* text : {"HH", "HV", "VH", "VV"}) {
    const TxRxType named(text);
    EXPECT_EQ(named.transmit.text + named.receive.text, text);
    EXPECT_EQ(TxRxType(named.transmit, named.receive).text, text);
  }
  const PolarizationType& first = PolarizationType::Row(0);
  const PolarizationType& last = PolarizationType::Row(3);
  EXPECT_EQ(TxRxType(first, first).id, 0);
  EXPECT_EQ(TxRxType(last, last).id, 5);
  EXPECT_EQ(ThrownText([&] { TxRxType(first, PolarizationType("H")); }),
            "invalid combination of transmit and receive polarization");
}

TEST(ImageDirection, EdgesAreOrthogonalAndPositionsLieAtThem) {
  const char* const edges[] = {"TOP", "BOTTOM", "LEFT", "RIGHT"};
  for (int i = 0; i < 16; ++i) {
    const int range = i / 4, azimuth = i % 4;
    const auto direction = [&] { return ImageDirection(Edge(edges[range]), Edge(edges[azimuth])); };
    if (range / 2 == azimuth / 2) {
      EXPECT_EQ(ThrownText(direction), "range and azimuth should be at orthogonal edges");
      continue;
    }
    EXPECT_EQ(direction().EdgeOf(Range("near")).text, edges[range]);
    EXPECT_EQ(direction().EdgeOf(Range("far")).text, edges[range ^ 1]);
    EXPECT_EQ(direction().EdgeOf(Azimuth("start")).text, edges[azimuth]);
    EXPECT_EQ(direction().EdgeOf(Azimuth("stop")).text, edges[azimuth ^ 1]);
  }
  const ImageDirection direction(Edge("TOP"), Edge("LEFT"));
  for (const int id : {0, 2, 4}) {
    EXPECT_EQ(ThrownText([&] { direction.EdgeOf(Azimuth::Row(id)); }), "mid azimuth is at no edge");
    EXPECT_EQ(ThrownText([&] { direction.EdgeOf(Range::Row(id)); }), "mid range is at no edge");
  }
  EXPECT_THROW(direction.EdgeOf(Edge("TOP")), ERROR_ENUM_BASE_TYPE_MISMATCH);
  EXPECT_THROW(direction.Opposite(Edge::Row(5)), ERROR_ENUM_BASE_INVALID_ID);
}

using AzimuthsTest = LoggedTest;

TEST_F(AzimuthsTest, KeysAreJoinedOfPartsPositionAndWord) {
  PARAMETER_POOL pool(directory.Path("pool").c_str());
  Azimuths azimuths;
  for (const bool plural : {false, true}) {
    const std::string s = plural ? "s" : "";
    WriteFile(directory.Path("pool"), "a_b_start_time" + s + " STR \"2004-01-14T10:11:12.5\"\n" +
                                          "a_b_center_time" + s + " STR \"2004-01-14T10:11:13\"\n" +
                                          "a_b_stop_time" + s + " STR \"2004-01-14T10:11:14\"\n" +
                                          "a_b_duration" + s + " FLT_15 2.000003\n");
    EXPECT_THROW(azimuths.ReadFromPool(pool, {"a", "b"}, !plural), PARAMETER_KEY_NOT_FOUND);
    azimuths = {};
    azimuths.ReadFromPool(pool, {"a", "", "b"}, plural);
    EXPECT_EQ(azimuths[Azimuth("start")], UNIVERSAL_TIME("2004-01-14T10:11:12.5"));
    EXPECT_EQ(azimuths[Azimuth("center")], UNIVERSAL_TIME("2004-01-14T10:11:13"));
    EXPECT_EQ(azimuths[Azimuth("stop")], UNIVERSAL_TIME("2004-01-14T10:11:14"));
    EXPECT_EQ(azimuths.duration, DURATION(0, 2000, 3));
  }
  EXPECT_THROW((void)azimuths[Azimuth::Row(4)], ERROR_ENUM_BASE_INVALID_ID);
}

/// Semi-axes of Airy, Bessel, GRS80 and WGS84, in pairs. long double has the values of double.
template <class T>
constexpr double AXES[] = {6377340.189, 6356034.447,  6377397.155, 6356078.965,
                           6378137.0,   6356752.3141, 6378137.0,   6356752.315};
template <>
constexpr double AXES<float>[] = {6377340.0, 6356034.5, 6377397.0, 6356079.0,
                                  6378137.0, 6356752.5, 6378137.0, 6356752.5};

template <class T>
class EllipsoidTypeTest : public testing::Test {};
using PRECISIONS = testing::Types<float, double, long double>;
TYPED_TEST_SUITE(EllipsoidTypeTest, PRECISIONS);

TYPED_TEST(EllipsoidTypeTest, NamesGiveTheAxesOfTheTable) {
  EllipsoidType<TypeParam> figure("-");
  EXPECT_EQ(figure.id, 0) << "the lookup begins at the first guard";
  for (int i = 0; i < 8; i += 2) {
    ++figure;
    EXPECT_EQ(figure.semi_major_axis, AXES<TypeParam>[i]);
    EXPECT_EQ(figure.semi_minor_axis, AXES<TypeParam>[i + 1]);
  }
  EXPECT_EQ((++figure).id, 5);
  EXPECT_EQ(figure.semi_major_axis + figure.semi_minor_axis, 0);
  figure = "wgs84";
  EXPECT_THROW(figure = "wgs 84", ERROR_ENUM_BASE_INVALID_VALUE);
  EXPECT_EQ(figure.id, 4);
  EXPECT_EQ(figure.semi_minor_axis, AXES<TypeParam>[7]);
  EXPECT_THROW(figure.SetTolerant(""), ERROR_ENUM_BASE_INVALID_VALUE) << "a guard without its text";
}

}  // namespace
}  // namespace varnoth::test
