#include "framework/process/process_identity.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <string>

#include "foundation/errors.hpp"
#include "framework/log/log.hpp"
#include "framework/log/restarted.hpp"

namespace varnoth {

namespace {

void WriteId(const char* name, pid_t id) {
  const std::string text = std::to_string(id) + "\n";
  // The name is known to everybody: no link is followed, no pipe is waited for.
  constexpr int FLAGS = O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
  const int descriptor = Restarted([&] { return ::open(name, FLAGS, 0666); });
  bool written = descriptor >= 0;
  if (written) {
    const auto count = Restarted([&] { return ::write(descriptor, text.data(), text.size()); });
    const bool closed = ::close(descriptor) == 0 || errno == EINTR;
    written = closed && count == static_cast<ssize_t>(text.size());
  }
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
