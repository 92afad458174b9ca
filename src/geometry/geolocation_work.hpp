#pragma once

namespace varnoth {

/// Work record of the geolocation solvers. The caller keeps it, so that a call does not allocate;
/// it zeroes the record once and never reads it. All vectors are Earth-fixed except `offset` and
/// its copy.
///
///     GEOLOCATION_WORK work{};
struct GEOLOCATION_WORK {
  double x_axis[3];          ///< unit along-track axis of the satellite frame
  double y_axis[3];          ///< unit cross-track axis
  double z_axis[3];          ///< unit axis towards the Earth's centre
  double north[3];           ///< local north at the sub-satellite point
  double east[3];            ///< local east at the sub-satellite point
  double offset[3];          ///< target offset in the satellite frame: along, across, nadir; m
  double earth_vect[3];      ///< target, m
  double cross[3];           ///< z_axis × velocity
  double y_copy[3];          ///< second copy of y_axis
  double z_copy[3];          ///< second copy of z_axis
  double normal[3];          ///< ellipsoid normal at the target
  double look[3];            ///< target minus satellite, m
  double rotation[9];        ///< satellite frame to Earth-fixed frame, row by row
  double rotated_offset[3];  ///< rotation × offset, m
  double offset_copy[3];     ///< second copy of offset

  // For the solvers with a surface function; their caller sets these.
  void* context;            ///< passed to the surface function
  double tolerance_factor;  ///< tolerance of a search in units of rounding; 0 takes the default

  double surface;  ///< last height from the surface function, m; reported in failures
};

}  // namespace varnoth
