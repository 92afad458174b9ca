#pragma once

#include "foundation/string.hpp"
#include "framework/controller_ifc.hpp"
#include "pool/parameter_pool.hpp"

namespace varnoth {

/// The configuration of a run. No value has more than 255 characters.
///
///     CONFIGURATION configuration;
///     read_configuration(controller, configuration);
///     const int degree = degree_from_text(configuration.flat_earth_poly_degree_text);
struct CONFIGURATION {
  STRING flat_earth_poly_degree_text;  ///< as given; see `degree_from_text`
  STRING master_par;                   ///< file name of the master scene pool
  STRING slave_par;                    ///< of the slave scene pool
  STRING parameter_pool;               ///< of the InSAR pool
  STRING log_pp;                       ///< of the log pool
  int flat_earth_poly_degree = 0;
};

/// Looks up the five mandatory keys, and sets everything but the degree as a number. Throws
/// ERROR_ARGUMENT, after a line at ALARM, for a value that is too long, and what the controller's
/// lookups throw.
void read_configuration(CONTROLLER_IFC& controller, CONFIGURATION& configuration);

/// Height in metres above the ellipsoid: the key LocalHeight or, without it, `local_height` of the
/// InSAR pool. A value of the key counts as far as it is a number, and is 0 if it starts with none.
/// Throws ERROR_ARGUMENT, after a line at ALARM, for a value that is too long, and what the
/// controller's lookups and the pool throw.
double read_local_height(CONTROLLER_IFC& controller, PARAMETER_POOL& insar_pool);

/// Whether the results must survive a crash of the machine: the optional key DurableUpdate, TRUE or
/// FALSE (the default). Logs a line for TRUE. Throws ERROR_ARGUMENT, after a line at ALARM, for
/// another value, and what the controller's lookups throw.
bool read_durability(const CONTROLLER_IFC& controller);

/// Degree of the flat-earth polynomial: the whole number at the start of the text, within the range
/// of int; 0 if there is none. May be negative.
int degree_from_text(const STRING& text);

/// Logs the configuration and the height (m) at level INFO.
void log_configuration(const CONFIGURATION& configuration, double local_height);

}  // namespace varnoth
