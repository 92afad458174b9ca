#include <array>

#include "driver/flat_earth_statistics.hpp"
#include "driver/look_direction.hpp"
#include "driver/scene_parameters.hpp"
#include "foundation/constants.hpp"
#include "orbit/circular_orbit.hpp"
#include "support/log_capture.hpp"

namespace varnoth::test {
namespace {

class SceneTest : public LoggedTest {
 protected:
  ~SceneTest() noexcept override {}  // the pools' own may throw
  void Open(PARAMETER_POOL& pool, const std::string& text) {
    const std::string path = directory.Path(&pool == &master ? "m" : "s");
    WriteFile(path, text);
    pool.open(path.c_str());
  }
  SCENE scene;
  PARAMETER_POOL master, slave;
};

// A polar orbit northwards over the equator at 180 degrees: east is right.
TEST_F(SceneTest, ScenesThatDifferTakeTheSideOfTheCentre) {
  Follow(scene.master_orbit, CIRCLE{.inclination = M_PI_2, .node = M_PI, .phase = 0});
  scene.requator = 6378137;
  scene.rpole = 6356752;
  // The mid point counts: its time is 0, its range time 5e-3 s.
  scene.master_first_az_time = -400;
  scene.master_last_az_time = 400;
  scene.master_first_rg_time = 3e-3;
  scene.master_last_rg_time = 7e-3;
  for (const auto& [longitude, side] : std::initializer_list<std::pair<std::string, double>>{
           {"179", -1}, {"-179", 1}, {"181", 1}, {"1e30", -1}}) {  // the last: as far from both
    scene.look_direction[MASTER] = longitude == "179" ? 1 : -1;
    scene.look_direction[SLAVE] = -scene.look_direction[MASTER];
    const std::string centre = "center_longitude FLT_6 " + longitude + "\ncenter_latitude FLT_6 1";
    Open(master, centre + "\n");
    Open(slave, centre + "\n");
    EXPECT_EQ(settle_look_direction(scene, master, slave), side) << longitude;
  }
  scene.look_direction[MASTER] = scene.look_direction[SLAVE];
  master.close();  // scenes that agree are not asked for their centres
  EXPECT_EQ(settle_look_direction(scene, master, slave), scene.look_direction[SLAVE]);
  EXPECT_THROW(read_scene_centers(master, slave), std::out_of_range);
}

TEST(AverageLongitude, UnwrapsRelativeToTheFirst) {
  for (const auto& [c, mean] : std::initializer_list<std::pair<std::array<float, 4>, float>>{
           {{10, 20, 10, 20}, 15},
           {{359.5, 0.5, 359.5, 0.5}, 0},
           {{0.5, 359.5, 0.5, 358.5}, 359.75},
           {{359, 1, 2, 0}, 0.5},
           {{181, 1, 1, 1}, 46},
           {{1, 181, 181, 181}, 136},
           {{0, 0, 0, -1e-6F}, 0}}) {
    EXPECT_EQ(average_longitude(c[0], c[1], c[2], c[3]), mean) << c[0];
  }
}

}  // namespace
}  // namespace varnoth::test
