#pragma once

#include <cmath>
#include <utility>

#include "foundation/constants.hpp"
#include "geometry/geolocation_search.hpp"
#include "geometry/internal/geolocation_steps.hpp"

namespace varnoth {

/// What the searches for a point on a surface share: the satellite's frame, and the way from a
/// nadir component to a point with its geodetic coordinates and the surface below it.
struct SURFACE_SEARCH {
  const char* solver;
  GEOLOCATION_WORK& work;
  const double* ellipsoid;
  SURFACE_HEIGHT surface_height;
  const double* sat_pos;
  const double* sat_vel;
  bool doppler_mode;
  double look_direction;
  double range;  ///< m

  double a = ellipsoid[0];
  double b = ellipsoid[1];
  double e2 = (ellipsoid[2] - ellipsoid[3]) / ellipsoid[2];
  double e2_second = (ellipsoid[2] - ellipsoid[3]) / ellipsoid[3];
  double r = Length(sat_pos);
  double tolerance = 0.0;  ///< m
  double vx = 0.0;         ///< along-track speed, m/s
  double vz = 0.0;         ///< speed towards the centre, m/s

  double dx = 0.0;
  double dy = 0.0;
  double dz = 0.0;
  double axis_distance = 0.0;  ///< of the point, m
  double phi = 0.0;            ///< geodetic latitude
  double lambda = 0.0;         ///< longitude
  double n = 0.0;              ///< a / n is the prime-vertical radius

  /// Sets tolerance and frame. With a velocity along the radius there is none, and vx stays 0.
  void Begin();
  /// Takes a nadir component, and in Doppler mode the along-track one with it. Gives the square
  /// that is left of the range for the other components, m².
  double Take(double nadir, double los_velocity);
  /// Splits that square along and across the track by their ratio.
  void Split(double square, double squint);
  /// From the offset to the point, its geodetic coordinates (Bowring 1976) and the surface's
  /// height.
  void Place();
  void LogFailedCall() const;
  void Deliver(int steps, double& squint, double earth_vect[3], double& latitude, double& longitude,
               double& height_found) const;
};

/// A surface function: the height that `context` points to.
double ConstantHeight(void* context, double latitude, double longitude, double n);

/// Heading and incidence (degrees) behind a search, from the record and the target's angles.
void SetTrackAngles(GEOLOCATION_WORK& work, const double sat_pos[3], double latitude,
                    double longitude, double& heading, double& incidence);

/// Calls the low-level form of a search as `geolocation_fast` is called.
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

}  // namespace varnoth
