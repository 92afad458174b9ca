#include <stdexcept>

#include "driver/flat_earth_statistics.hpp"
#include "driver/look_direction.hpp"
#include "driver/scene_parameters.hpp"
#include "orbit/circular_orbit.hpp"
#include "support/log_capture.hpp"

namespace varnoth::test {
namespace {

using LookDirectionTest = LoggedTest;

// A polar orbit northwards over the equator at 180 degrees: east is right.
TEST_F(LookDirectionTest, ScenesThatDifferTakeTheSideOfTheCentre) {
  SCENE scene;
  Follow(scene.master_orbit, CIRCLE{.inclination = M_PI_2, .node = M_PI, .phase = 0});
  scene.requator = 6378137;
  scene.rpole = 6356752;
  // The mid point counts: its time is 0, its range time 5e-3 s.
  scene.master_first_az_time = -400;
  scene.master_last_az_time = 400;
  scene.master_first_rg_time = 3e-3;
  scene.master_last_rg_time = 7e-3;
  for (const auto& [longitude, side] : std::initializer_list<std::pair<std::string, double>>{
           {"179", -1}, {"539", -1}, {"-179", 1}, {"181", 1}, {"1e30", -1}}) {  // far from both
    scene.look_direction[MASTER] = longitude == "179" ? 1 : -1;
    scene.look_direction[SLAVE] = -scene.look_direction[MASTER];
    WriteFile(directory.Path("centre"),
              "center_latitude FLT_6 1\ncenter_longitude FLT_6 " + longitude + "\n\n");
    PARAMETER_POOL pool(directory.Path("centre").c_str());
    EXPECT_EQ(settle_look_direction(scene, pool, pool), side) << longitude;
    EXPECT_NE(TakeLines().find("TRACE Start reading parameter pools for scene centers\nTRACE r"),
              std::string::npos);
  }
}

TEST_F(LookDirectionTest, OtherTextsAndValuesAreToldAndRefused) {
  EXPECT_EQ(geolocation_mode_from_text("fixed_height"), 1);
  EXPECT_EQ(geolocation_mode_from_text("dem_height"), 2);
  EXPECT_THROW(geolocation_mode_from_text("height"), ERROR_ARGUMENT);
  for (const double value : {-1.75, 2147483647.0, std::nan("")}) {
    EXPECT_THROW(look_direction_text(value), ERROR_ARGUMENT);
  }
  EXPECT_EQ(TakeLines(), R"(ALARM can not convert >>height<< to geolocation mode
ALARM can not convert >>-1<< to look direction
ALARM can not convert >>2147483647<< to look direction
ALARM can not convert >>0<< to look direction
)");
  PARAMETER_POOL closed;
  closed.close();
  EXPECT_THROW(read_scene_centers(closed, closed), std::out_of_range);
}

TEST(AverageLongitude, UnwrapsRelativeToTheFirst) {
  EXPECT_EQ(average_longitude(0.5, 359.5, 0.5, 358.5), 359.75) << "downwards over 0";
  EXPECT_EQ(average_longitude(359, 1, 2, 0), 0.5) << "upwards over 360";
  EXPECT_EQ(average_longitude(181, 1, 1, 1), 46) << "half a circle below the first";
  EXPECT_EQ(average_longitude(1, 181, 181, 181), 136) << "half a circle above the first";
  EXPECT_EQ(average_longitude(0, 0, 0, -1e-6F), 0) << "rounded to 360";
}

}  // namespace
}  // namespace varnoth::test
