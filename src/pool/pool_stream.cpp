#include "pool/pool_stream.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "framework/log/restarted.hpp"

namespace varnoth {

namespace {

constexpr unsigned char END_BYTE = 0xFF;

}  // namespace

bool POOL_STREAM::Open(const char* path, MODE mode) {
  Close();
  const int flags = mode == MODE::READ     ? O_RDONLY
                    : mode == MODE::CREATE ? O_RDWR | O_CREAT
                                           : O_RDWR;
  // A pipe is no pool, and not waited for.
  descriptor = Restarted([&] { return ::open(path, flags | O_NONBLOCK | O_CLOEXEC, 0666); });
  write_failed = false;
  Rewind();
  return IsOpen();
}

bool POOL_STREAM::Close() {
  if (!IsOpen()) return true;
  Flush();
  // The descriptor is gone whatever close says, so it is not repeated.
  if (::close(descriptor) != 0 && errno != EINTR) write_failed = true;
  descriptor = -1;
  return !write_failed;
}

void POOL_STREAM::Rewind() {
  at_end = false;
  read_failed = false;
  block_length = 0;
  block_position = 0;
  read_offset = 0;
  write_offset = 0;
}

unsigned char POOL_STREAM::Fetch() {
  if (block_position == block_length) {
    const long count =
        Restarted([&] { return ::pread(descriptor, block, sizeof block, read_offset); });
    if (count <= 0) {
      if (count < 0) read_failed = true;
      at_end = true;
      return END_BYTE;
    }
    read_offset += count;
    block_length = count;
    block_position = 0;
  }
  return static_cast<unsigned char>(block[block_position++]);
}

long long POOL_STREAM::Size() const {
  struct stat status {};
  return ::fstat(descriptor, &status) == 0 ? status.st_size : 0;
}

void POOL_STREAM::Write(std::string_view bytes) { unwritten += bytes; }

bool POOL_STREAM::Flush() {
  const char* next = unwritten.data();
  std::size_t left = unwritten.size();
  while (left > 0) {
    const long count = Restarted([&] { return ::pwrite(descriptor, next, left, write_offset); });
    if (count <= 0) {
      if (count == 0) errno = EIO;
      write_failed = true;
      break;
    }
    next += count;
    left -= static_cast<std::size_t>(count);
    write_offset += count;
  }
  unwritten.clear();
  return !write_failed;
}

bool POOL_STREAM::Truncate() {
  return Restarted([&] { return ::ftruncate(descriptor, 0); }) == 0;
}

}  // namespace varnoth
