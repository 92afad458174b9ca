#include "geometry/geolocation_fast.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "foundation/constants.hpp"
#include "foundation/errors.hpp"
#include "foundation/vector.hpp"
#include "framework/log/log.hpp"

namespace varnoth {

namespace {

constexpr double TOLERANCE = 1e-9;  // m, and m/s for the Doppler residual
constexpr int STEP_LIMIT = 21;
constexpr double DEGREES = 57.29577951308232;  // per radian
constexpr double TWO_PI = 6.283185307179586;

/// Longitude of a point in the equatorial plane, 0 to 2 pi, with its sine and cosine.
struct PLANE_ANGLE {
  double angle;
  double sine;
  double cosine;
};

/// False for coordinates that are not numbers. On the y axis sine and cosine are fixed values, so
/// that no division by x = 0 takes place.
bool AngleOf(double x, double y, PLANE_ANGLE& result) {
  if (x == 0.0) {
    if (std::isgreaterequal(y, 0.0)) {
      result = {1.5707963267948966, 1.0, 6.123233995736766e-17};
      return true;
    }
    if (std::isless(y, 0.0)) {
      result = {4.71238898038469, -1.0, -1.8369701987210297e-16};
      return true;
    }
    return false;
  }
  double turn = 0.0;
  if (std::isless(x, 0.0)) {
    turn = PI;
  } else if (std::isgreater(x, 0.0) && std::isless(y, 0.0)) {
    turn = TWO_PI;
  } else if (!(std::isgreater(x, 0.0) && std::isgreaterequal(y, 0.0))) {
    return false;
  }
  const double angle = std::atan(y / x) + turn;
  result = {angle, std::sin(angle), std::cos(angle)};
  return true;
}

void LogState(const char* name, const double v[3]) {
  GlobalLog << name << " (" << v[0] << "," << v[1] << "," << v[2] << ")=" << Length(v);
}

/// What the solver was called with; the radii are the raised ones.
struct CALL {
  const double* sat_pos;
  const double* sat_vel;
  double look_direction;
  double height;
  double rpole;
  double requator;
  double fast_time;

  void Log() const {
    GlobalLog.set(INFO) << "geolocation_fast was called with look_direction " << look_direction
                        << " height " << height << " rpole " << rpole << " requator " << requator
                        << " fast_time " << fast_time;
    LogState(" sat_pos", sat_pos);
    LogState(" sat_vel", sat_vel);
    GlobalLog << ".\n";
  }
};

/// Whether a residual still asks for a step; a NaN does not, so that it can't keep the loop going.
bool IsOpen(double residual) { return std::isgreaterequal(residual, TOLERANCE); }

}  // namespace

void geolocation_fast(GEOLOCATION_WORK& work, const double sat_pos[3], const double sat_vel[3],
                      double earth_vect[3], double& heading, double& latitude, double& longitude,
                      double& incidence, double look_direction, double height, double rpole,
                      double requator, double fast_time, double los_velocity) {
  const double r = Length(sat_pos);
  if (std::isgreater(rpole, r)) {
    GlobalLog.set(ALARM) << "geolocation_fast: satellite position lies within the earth!\n";
    GlobalLog.set(ALARM) << "geolocation_fast: length of satellite position is: " << r << "\n";
    throw ERROR_ARGUMENT();
  }

  // Satellite: geocentric latitude phi and longitude lambda.
  const double phi = std::asin(sat_pos[2] / r);
  const double sin_phi = std::sin(phi);
  const double cos_phi = std::cos(phi);
  PLANE_ANGLE lambda{};
  if (!AngleOf(sat_pos[0], sat_pos[1], lambda)) {
    GlobalLog.set(ALARM) << "geolocation_fast: determination of angle theta failed!\n";
    throw ERROR_UNHANDLED_CASE();
  }

  for (int i = 0; i < 3; ++i) work.z_axis[i] = -sat_pos[i] / r;
  CrossProduct(work.cross, work.z_axis, sat_vel);
  const double cross_length = Length(work.cross);
  for (int i = 0; i < 3; ++i) work.y_axis[i] = work.cross[i] / cross_length;
  CrossProduct(work.x_axis, work.y_axis, work.z_axis);
  std::copy_n(work.y_axis, 3, work.y_copy);
  std::copy_n(work.z_axis, 3, work.z_copy);

  work.north[0] = -lambda.cosine * sin_phi;
  work.north[1] = -lambda.sine * sin_phi;
  work.north[2] = cos_phi;
  work.east[0] = -lambda.sine;
  work.east[1] = lambda.cosine;
  work.east[2] = 0.0;
  const double nu = DotProduct(work.north, work.x_axis);
  const double eu = DotProduct(work.east, work.x_axis);
  const double vx = DotProduct(work.x_axis, sat_vel);
  const double vr = -DotProduct(work.z_axis, sat_vel);

  const double range = fast_time * SPEED_OF_LIGHT * 0.5;
  const double b = rpole + height;
  const double a = requator + height;
  const double e2 = 1.0 - (b * b) / (a * a);
  const CALL call{sat_pos, sat_vel, look_direction, height, b, a, fast_time};

  double rho = b / std::sqrt(1.0 - e2 * cos_phi * cos_phi);
  double previous = 0.0;
  double range_residual = 10.0;
  double doppler_residual = 10.0;
  int steps = 0;
  double dx = 0.0;
  double dy = 0.0;
  double dz = 0.0;
  while (IsOpen(std::fabs(rho - previous)) || IsOpen(range_residual) || IsOpen(doppler_residual)) {
    ++steps;
    dz = (r * r + range * range - rho * rho) / (2.0 * r);
    dx = (vr * dz + range * los_velocity) / vx;
    const double q = range * range - dx * dx - dz * dz;
    if (std::isless(q, 0.0)) {
      GlobalLog.set(ALARM) << "geolocation_fast: No intersection of earth ellipsoid and sphere "
                              "around the satellite\n";
      GlobalLog.set(ALARM) << "geolocation_fast: during iteration in step: " << steps << "\n";
      call.Log();
      throw ERROR_DATA();
    }
    dy = look_direction * std::sqrt(q);
    const double psi = std::asin(((r - dz) * sin_phi + (nu * dx - eu * dy) * cos_phi) / rho);
    const double length = std::sqrt(dx * dx + dy * dy + dz * dz);
    range_residual = std::fabs(length - range);
    doppler_residual = std::fabs((vx * dx - vr * dz) / length - los_velocity);
    const double cos_psi = std::cos(psi);
    const double next = b / std::sqrt(1.0 - e2 * cos_psi * cos_psi);
    if (steps == STEP_LIMIT) {
      GlobalLog.set(ALARM) << "geolocation_fast: convergence problem\n";
      call.Log();
      GlobalLog.set(INFO) << "accuracy after " << STEP_LIMIT << " steps: " << std::fabs(next - rho)
                          << " " << range_residual << " " << doppler_residual << " (" << TOLERANCE
                          << ")\n";
      throw ERROR_ALGORITHM();
    }
    previous = rho;
    rho = next;
  }

  double* const m = work.rotation;
  m[0] = -nu * sin_phi * lambda.cosine - eu * lambda.sine;
  m[1] = eu * sin_phi * lambda.cosine - nu * lambda.sine;
  m[2] = -cos_phi * lambda.cosine;
  m[3] = -nu * sin_phi * lambda.sine + eu * lambda.cosine;
  m[4] = eu * sin_phi * lambda.sine + nu * lambda.cosine;
  m[5] = -cos_phi * lambda.sine;
  m[6] = nu * cos_phi;
  m[7] = -eu * cos_phi;
  m[8] = -sin_phi;
  work.offset[0] = dx;
  work.offset[1] = dy;
  work.offset[2] = dz;
  std::copy_n(work.offset, 3, work.offset_copy);
  for (int i = 0; i < 3; ++i) {
    work.rotated_offset[i] = DotProduct(m + std::ptrdiff_t{3} * i, work.offset);
    work.earth_vect[i] = sat_pos[i] + work.rotated_offset[i];
    earth_vect[i] = work.earth_vect[i];
  }

  // On a track due north the product of two unit vectors may round to above 1.
  const double turn = std::acos(std::clamp(nu, -1.0, 1.0));
  heading = (std::isgreaterequal(eu, 0.0) ? turn : TWO_PI - turn) * DEGREES;

  // Target: geodetic latitude from the geocentric one, both on the raised ellipsoid.
  const double psi_t = std::asin(work.earth_vect[2] / Length(work.earth_vect));
  PLANE_ANGLE lambda_t{};
  if (!AngleOf(work.earth_vect[0], work.earth_vect[1], lambda_t)) {
    GlobalLog.set(ALARM) << "geolocation_fast: unexpected error!\n";
    GlobalLog.set(ALARM) << "earth_vect.x: " << work.earth_vect[0] << "\n";
    GlobalLog.set(ALARM) << "earth_vect.y: " << work.earth_vect[1] << "\n";
    throw ERROR_ALGORITHM();
  }
  const double phi_g = std::atan(std::tan(psi_t) / (1.0 - e2));
  latitude = phi_g * DEGREES;
  longitude = lambda_t.angle * DEGREES;
  GlobalLog.set(TRACE) << "geolocation_fast: " << steps << " iterations.\n";

  const double cos_phi_g = std::cos(phi_g);
  work.normal[0] = lambda_t.cosine * cos_phi_g;
  work.normal[1] = lambda_t.sine * cos_phi_g;
  work.normal[2] = std::sin(phi_g);
  Subtract(work.look, work.earth_vect, sat_pos);
  incidence = std::acos(-DotProduct(work.normal, work.look) / Length(work.look)) * DEGREES;
}

}  // namespace varnoth
