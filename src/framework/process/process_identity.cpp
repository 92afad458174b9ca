#include "framework/process/process_identity.hpp"

#include <unistd.h>

#include <cstdio>

#include "foundation/errors.hpp"
#include "framework/log/log.hpp"
#include "framework/log/owned_file.hpp"

namespace varnoth {

namespace {

void WriteId(const char* name, pid_t id) {
  OWNED_FILE file(std::fopen(name, "we"));
  bool written = file != nullptr && std::fprintf(file.get(), "%d\n", id) > 0;
  if (file != nullptr) written = std::fclose(file.release()) == 0 && written;
  if (!written) {
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
