#include "geometry/geolocation_search.hpp"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "foundation/constants.hpp"
#include "geometry/internal/geolocation_report.hpp"
#include "geometry/internal/geolocation_steps.hpp"
#include "log/log.hpp"

namespace varnoth {

namespace {

constexpr const char* NEW = "geolocation_new";
constexpr const char* TEST = "geolocation_test";

/// The line of a failed call. Its height is that of the surface where the search ended.
void LogFailedCall(const char* solver, const SURFACE_ECHO& echo, const GEOLOCATION_WORK& work) {
  LogCall({solver, echo.sat_pos, echo.sat_vel, echo.look_direction, work.surface, echo.ellipsoid[1],
           echo.ellipsoid[0], " slant_range ", echo.slant_range});
}

[[noreturn]] void FailNew(const SURFACE_POINT& found, const SURFACE_ECHO& echo,
                          const GEOLOCATION_WORK& work) {
  switch (found.status) {
    case SOLVER_STATUS::RADIAL_VELOCITY:
      LogVerticalVelocity(NEW);
      LogFailedCall(NEW, echo, work);
      throw "geolocation_new: Vertical velocity not allowed (v_tan=0)!";
    case SOLVER_STATUS::NO_INTERSECTION:
      LogNoIntersection(NEW);
      LogFailedCall(NEW, echo, work);
      throw "geolocation_new: No intersection with earth (initial value).";
    default:
      GlobalLog.set(ALARM) << NEW << ": Convergence problem.\n";
      throw "Error.";
  }
}

[[noreturn]] void FailTest(const SURFACE_POINT& found, const SURFACE_ECHO& echo,
                           const GEOLOCATION_WORK& work) {
  switch (found.status) {
    case SOLVER_STATUS::RADIAL_VELOCITY:
      LogVerticalVelocity(TEST);
      LogStep(TEST, found.steps);
      LogFailedCall(TEST, echo, work);
      throw "geolocation_test: Vertical velocity not allowed (v_tan=0)!";
    case SOLVER_STATUS::NO_INTERSECTION:
      LogNoIntersection(TEST);
      LogStep(TEST, found.steps);
      LogFailedCall(TEST, echo, work);
      throw "geolocation_test: No intersection with earth (negative radiant).";
    default:
      GlobalLog.set(ALARM) << TEST << ": convergence problem. Residual error after " << found.steps
                           << " iterations: " << found.change
                           << " (previous: " << found.previous_change << ")\n";
      LogFailedCall(TEST, echo, work);
      throw "geolocation_test: Convergence problem!";
  }
}

void Deliver(const char* solver, const SURFACE_POINT& found, double earth_vect[3], double& latitude,
             double& longitude, double& height_found) {
  GlobalLog.set(TRACE) << solver << ": " << found.steps << " iterations.\n";
  std::copy_n(found.position, 3, earth_vect);
  latitude = found.latitude;
  longitude = found.longitude;
  height_found = found.height;
}

/// A surface function: the height that `context` points to.
double ConstantHeight(void* context, double /*latitude*/, double /*longitude*/, double /*n*/) {
  return *static_cast<const double*>(context);
}

/// Heading and incidence (degrees) after a search, from the record and the target's angles.
void SetTrackAngles(GEOLOCATION_WORK& work, const double sat_pos[3], double latitude,
                    double longitude, double& heading, double& incidence) {
  constexpr double NO_NUMBER = std::numeric_limits<double>::quiet_NaN();
  SATELLITE_TRACK track{};
  track.r = Length(sat_pos);
  // Without a longitude of the satellite there is no heading, and no target either.
  if (!PlaceSatellite(track, sat_pos)) track.lambda = {NO_NUMBER, NO_NUMBER, NO_NUMBER};
  SetLocalAxes(work, track);
  heading = HeadingOf(DotProduct(work.north, work.x_axis), DotProduct(work.east, work.x_axis));

  const double phi = latitude * (PI / 180.0);
  const double lambda = longitude * (PI / 180.0);
  SetNormal(work.normal, phi, std::sin(lambda), std::cos(lambda));
  incidence = IncidenceOf(work, sat_pos);
}

/// Calls the low-level form of a search with the arguments of `geolocation_fast`.
template <class FORM>
void GeolocateAtHeight(FORM form, GEOLOCATION_WORK& work, const double sat_pos[3],
                       const double sat_vel[3], double earth_vect[3], double& heading,
                       double& latitude, double& longitude, double& incidence,
                       double look_direction, double height, double rpole, double requator,
                       double fast_time, double los_velocity) {
  struct CONTEXT_LOAN {
    GEOLOCATION_WORK& record;
    void* former;
    ~CONTEXT_LOAN() { record.context = former; }
  };
  const CONTEXT_LOAN loan{work, std::exchange(work.context, &height)};
  work.surface = height;
  const double ellipsoid[4] = {requator, rpole, requator * requator, rpole * rpole};
  double squint = 0.0;
  double height_found = 0.0;
  form(work, ellipsoid, ConstantHeight, sat_pos, sat_vel, true, los_velocity, squint, earth_vect,
       latitude, longitude, height_found, look_direction, fast_time * SPEED_OF_LIGHT * 0.5);
  if (std::isless(longitude, 0.0)) longitude += 360.0;
  SetTrackAngles(work, sat_pos, latitude, longitude, heading, incidence);
}

}  // namespace

void geolocation_new(GEOLOCATION_WORK& work, const double ellipsoid[4],
                     SURFACE_HEIGHT surface_height, const double sat_pos[3],
                     const double sat_vel[3], bool doppler_mode, double los_velocity,
                     double& squint, double earth_vect[3], double& latitude, double& longitude,
                     double& height_found, double look_direction, double slant_range) {
  const SURFACE_ECHO echo{ellipsoid,    surface_height, sat_pos,        sat_vel,    doppler_mode,
                          los_velocity, squint,         look_direction, slant_range};
  const SURFACE_POINT found = SearchByFalsePosition(echo, work);
  if (found.status != SOLVER_STATUS::FOUND) FailNew(found, echo, work);
  Deliver(NEW, found, earth_vect, latitude, longitude, height_found);
  if (doppler_mode) squint = found.squint;
}

void geolocation_test(GEOLOCATION_WORK& work, const double ellipsoid[4],
                      SURFACE_HEIGHT surface_height, const double sat_pos[3],
                      const double sat_vel[3], bool doppler_mode, double& los_velocity,
                      double& squint, double earth_vect[3], double& latitude, double& longitude,
                      double& height_found, double look_direction, double slant_range) {
  const SURFACE_ECHO echo{ellipsoid,    surface_height, sat_pos,        sat_vel,    doppler_mode,
                          los_velocity, squint,         look_direction, slant_range};
  const SURFACE_POINT found = SearchByFixedPoint(echo, work);
  for (int i = 0; i < found.n_swings; ++i) {
    GlobalLog.set(INFO) << TEST << ": Alternating points detected in interation "
                        << found.swings[i].step << " at radius change " << found.swings[i].change
                        << ". Selecting new value in the middle.\n";
  }
  if (found.status != SOLVER_STATUS::FOUND) FailTest(found, echo, work);
  Deliver(TEST, found, earth_vect, latitude, longitude, height_found);
  if (doppler_mode) {
    squint = found.squint;
  } else {
    los_velocity = found.los_velocity;
  }
}

void geolocation_new(GEOLOCATION_WORK& work, const double sat_pos[3], const double sat_vel[3],
                     double earth_vect[3], double& heading, double& latitude, double& longitude,
                     double& incidence, double look_direction, double height, double rpole,
                     double requator, double fast_time, double los_velocity) {
  GeolocateAtHeight([](auto&&... arguments) { geolocation_new(arguments...); }, work, sat_pos,
                    sat_vel, earth_vect, heading, latitude, longitude, incidence, look_direction,
                    height, rpole, requator, fast_time, los_velocity);
}

void geolocation_test(GEOLOCATION_WORK& work, const double sat_pos[3], const double sat_vel[3],
                      double earth_vect[3], double& heading, double& latitude, double& longitude,
                      double& incidence, double look_direction, double height, double rpole,
                      double requator, double fast_time, double los_velocity) {
  GeolocateAtHeight([](auto&&... arguments) { geolocation_test(arguments...); }, work, sat_pos,
                    sat_vel, earth_vect, heading, latitude, longitude, incidence, look_direction,
                    height, rpole, requator, fast_time, los_velocity);
}

}  // namespace varnoth
