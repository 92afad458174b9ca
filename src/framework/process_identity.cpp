#include "framework/process_identity.hpp"

#include <unistd.h>

#include <string>

#include "foundation/errors.hpp"
#include "log/log.hpp"
#include "system/signal_safe/descriptor.hpp"

namespace varnoth {

namespace {

void WriteId(const char* name, pid_t id) {
  if (!ReplaceFile(name, std::to_string(id) + "\n")) {
    GlobalLog.set(ALARM) << "Error opening file " << name << "\n";
    throw ERROR_CAN_NOT_OPEN_FILE();
  }
}

}  // namespace

void write_process_ids(const SoftwareIdentity& identity, const STRING& compiled_by,
                       const STRING& config_file) {
  GlobalLog.banner({.name = identity.program.c_str(),
                    .version = identity.version.c_str(),
                    .date = identity.date.c_str(),
                    .compiler_user = compiled_by.c_str(),
                    .configuration_file = config_file.c_str(),
                    .full_version = identity.full_version.c_str()});
  WriteId("current_process.pid", getpid());
  WriteId("parent_process.pid", getppid());
}

}  // namespace varnoth
