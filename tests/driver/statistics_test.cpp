#include "driver/flat_earth_statistics.hpp"

#include <gtest/gtest.h>

namespace varnoth::test {
namespace {

TEST(AverageLongitude, UnwrapsRelativeToTheFirst) {
  struct CASE {
    float corners[4], mean;
  };
  for (const auto& [c, mean] : std::initializer_list<CASE>{{{10, 20, 10, 20}, 15},
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
