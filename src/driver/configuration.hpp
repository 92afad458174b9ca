#pragma once

#include "foundation/string.hpp"
#include "framework/controller_ifc.hpp"
#include "pool/parameter_pool.hpp"

namespace varnoth {

/// The configuration of a run. Values of more than 255 characters are refused.
struct CONFIGURATION {
  STRING flat_earth_poly_degree_text;
  STRING master_par;      ///< file name of the master scene pool
  STRING slave_par;       ///< of the slave scene pool
  STRING parameter_pool;  ///< of the InSAR pool
  STRING log_pp;          ///< of the log pool
  int flat_earth_poly_degree = 0;
};

/// Looks the five mandatory keys up. Throws ERROR_ARGUMENT, behind a line at ALARM, for a value
/// that is too long.
void read_configuration(CONTROLLER_IFC& controller, CONFIGURATION& configuration);

/// Height in metres above the ellipsoid: the key LocalHeight or, without it, `local_height` of the
/// InSAR pool. A text that is no number is 0. Throws what the pool throws.
double read_local_height(CONTROLLER_IFC& controller, PARAMETER_POOL& insar_pool);

/// Whether the run has to outlive a crash of the machine: the optional key DurableUpdate, TRUE or
/// FALSE. Logs a line if so. Throws ERROR_ARGUMENT, behind a line at ALARM, for another value.
bool read_durability(const CONTROLLER_IFC& controller);

/// Degree of the flat-earth polynomial. A text that is no number is 0; nothing else is checked.
int degree_from_text(const STRING& text);

/// Logs the configuration.
void log_configuration(const CONFIGURATION& configuration, double local_height);

}  // namespace varnoth
