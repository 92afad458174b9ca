#pragma once

#include "framework/software_identity.hpp"

namespace varnoth {

/// Prints the banner of a run, and writes the process's own id to "current_process.pid" and its
/// parent's to "parent_process.pid" in the current directory. Throws ERROR_CAN_NOT_OPEN_FILE,
/// after a line at ALARM, if it can't write a file.
///
///     write_process_ids(identity, "gcc", controller.get_config_file_name());
void write_process_ids(const SoftwareIdentity& identity, const STRING& compiled_by,
                       const STRING& config_file);

}  // namespace varnoth
