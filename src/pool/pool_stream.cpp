#include "pool/pool_stream.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <thread>

#include "system/signal_safe/descriptor.hpp"

namespace varnoth {

namespace {

constexpr char END_BYTE = '\xFF';

}  // namespace

bool POOL_STREAM::Open(const char* path, MODE mode) {
  Close();
  const int flags = mode == MODE::READ     ? O_RDONLY
                    : mode == MODE::CREATE ? O_RDWR | O_CREAT
                                           : O_RDWR;
  // A pipe is no pool: don't wait for its other end.
  Take(OpenAtOnce(path, flags));
  return IsOpen();
}

void POOL_STREAM::Take(int open_descriptor) {
  Close();
  descriptor = open_descriptor;
  write_failed = false;
  Rewind();
}

bool POOL_STREAM::Close() {
  if (!IsOpen()) return true;
  Flush();
  if (!CloseDescriptor(descriptor)) write_failed = true;
  descriptor = -1;
  is_locked = false;
  return !write_failed;
}

void POOL_STREAM::Rewind() {
  at_end = false;
  read_failed = false;
  block_length = 0;
  block_position = 0;
  may_hold_cr = false;
  read_offset = 0;
  write_offset = 0;
}

bool POOL_STREAM::FillBlock() {
  const std::size_t left = block_length - block_position;
  std::memmove(block, block + block_position, left);
  block_position = 0;
  block_length = left;
  char* const free = block + left;
  const long count =
      Restarted([&] { return ::pread(descriptor, free, BLOCK_SIZE - left, read_offset); });
  if (count <= 0) {
    read_failed = count < 0;
    at_end = true;
    return false;
  }
  const auto added = static_cast<std::size_t>(count);
  read_offset += count;
  block_length += added;
  may_hold_cr = (left > 0 && may_hold_cr) || std::memchr(free, '\r', added) != nullptr;
  return true;
}

std::string_view POOL_STREAM::NextLine() {
  if (at_end) return {};
  for (;;) {
    const char* const start = block + block_position;
    const std::size_t room = std::min(block_length - block_position, LINE_LIMIT);
    const void* end = std::memchr(start, '\n', room);
    if (may_hold_cr) {
      const std::size_t bound =
          end != nullptr ? static_cast<std::size_t>(static_cast<const char*>(end) - start) : room;
      const void* const carriage_return = std::memchr(start, '\r', bound);
      if (carriage_return != nullptr) end = carriage_return;
    }
    if (end != nullptr || room == LINE_LIMIT) {
      const std::size_t length =
          end != nullptr ? static_cast<std::size_t>(static_cast<const char*>(end) - start) + 1
                         : room;
      block_position += length;
      return {start, length};
    }
    if (FillBlock()) continue;
    block[block_length++] = END_BYTE;
    block_position = block_length;
    return {block, block_length};
  }
}

void POOL_STREAM::SkipLines(char first) {
  if (may_hold_cr || at_end || block_position == block_length) return;
  // Look for the byte instead of for line ends: in numbers it is rare.
  const std::string_view rest(block + block_position, block_length - block_position);
  std::size_t found = rest.front() == first ? 0 : rest.find(first);
  std::size_t line_start = 0;
  for (; found != 0 && found != rest.npos; found = rest.find(first, found + 1)) {
    if (rest[found - 1] == '\n') break;
    if (found - line_start < LINE_LIMIT) continue;
    line_start = rest.rfind('\n', found) + 1;
    // A piece of a line that is too long could start here: NextLine has to cut it.
    if (found - line_start >= LINE_LIMIT) {
      found = line_start;
      break;
    }
  }
  if (found == rest.npos) found = rest.rfind('\n') + 1;
  block_position += found;
}

std::string_view POOL_STREAM::ReadRest() {
  const auto left = [&] {
    return std::string_view(block + block_position, block_length - block_position);
  };
  while (!at_end && left().size() < BLOCK_SIZE) FillBlock();
  std::string_view bytes = left();
  if (!at_end) {
    long_rest.reserve(static_cast<std::size_t>(Size()));
    long_rest = bytes;
    for (block_position = block_length; FillBlock(); block_position = block_length) {
      long_rest += left();
    }
    bytes = long_rest;
  }
  block_position = block_length;
  return bytes;
}

long long POOL_STREAM::Size() const {
  struct stat status {};
  return ::fstat(descriptor, &status) == 0 ? status.st_size : 0;
}

void POOL_STREAM::Write(std::string_view bytes) {
  constexpr std::size_t FULL = 65536;
  unwritten += bytes;
  if (unwritten.size() >= FULL) Flush();
}

bool POOL_STREAM::Flush() {
  WriteOut(unwritten);
  unwritten.clear();
  return !write_failed;
}

bool POOL_STREAM::WriteThrough(std::string_view bytes) {
  Flush();
  WriteOut(bytes);
  return !write_failed;
}

void POOL_STREAM::WriteOut(std::string_view bytes) {
  std::size_t written = 0;
  const auto write = [&](const char* next, std::size_t left) {
    return ::pwrite(descriptor, next, left, write_offset + static_cast<off_t>(written));
  };
  if (!WriteAllBy(write, bytes.data(), bytes.size(), written)) write_failed = true;
  write_offset += static_cast<off_t>(written);
}

bool POOL_STREAM::Truncate() {
  return Restarted([&] { return ::ftruncate(descriptor, 0); }) == 0;
}

bool POOL_STREAM::Sync() {
  return Restarted([&] { return ::fsync(descriptor); }) == 0;
}

bool POOL_STREAM::SetLock(LOCK lock, double seconds) {
  struct flock whole_file {};
  constexpr short TYPES[] = {F_UNLCK, F_RDLCK, F_WRLCK};
  whole_file.l_type = TYPES[static_cast<int>(lock)];
  whole_file.l_whence = SEEK_SET;
  // Ask for the lock again and again, since a call that waits has no time limit.
  constexpr double PAUSE = 0.001;
  for (double waited = 0.0;; waited += PAUSE) {
    if (Restarted([&] { return ::fcntl(descriptor, F_OFD_SETLK, &whole_file); }) == 0) {
      is_locked = lock != LOCK::NONE;
      return true;
    }
    if (errno == EACCES) errno = EAGAIN;
    if (errno != EAGAIN || waited >= seconds) return false;
    std::this_thread::sleep_for(std::chrono::duration<double>(PAUSE));
  }
}

}  // namespace varnoth
