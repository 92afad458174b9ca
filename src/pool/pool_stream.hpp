#pragma once

#include <string>
#include <string_view>

namespace varnoth {

/// The open file of a pool: a reader of lines and a buffered writer on one descriptor, which it
/// owns. Reads always see the file as it stands after a `Rewind`.
class POOL_STREAM {
 public:
  POOL_STREAM() = default;
  ~POOL_STREAM() { Close(); }
  POOL_STREAM(const POOL_STREAM&) = delete;
  POOL_STREAM& operator=(const POOL_STREAM&) = delete;

  enum class MODE {
    READ_WRITE,  ///< an existing file
    CREATE,      ///< the same; the file is made if it is not there
    READ,        ///< an existing file, read only
  };
  /// Opens a file; false, with errno set, if it can't be opened so.
  bool Open(const char* path, MODE mode);
  bool IsOpen() const { return descriptor >= 0; }
  int Descriptor() const { return descriptor; }
  /// Flushes and closes. False if anything written since the opening failed.
  bool Close();

  /// Back to the first byte, for reading and writing.
  void Rewind();
  static constexpr std::size_t LINE_LIMIT = 1024;
  /// The next line, its terminator (LF or CR) included, or as many bytes as a line may have. The
  /// end of the file, or a place that can't be read, ends the line with the byte 0xFF and raises
  /// the end mark; behind it there are only empty lines. The bytes stay until the next call.
  std::string_view NextLine();
  /// All bytes up to the end, which this reaches.
  std::string ReadRest();
  /// Whether reading has met the end since the last `Rewind`.
  bool AtEnd() const { return at_end; }
  /// Whether a read since the last `Rewind`, or a write since the opening, failed.
  bool HasError() const { return read_failed || write_failed; }
  /// Bytes in the file.
  long long Size() const;

  /// Adds bytes at the write position; they reach the file with `Flush`.
  void Write(std::string_view bytes);
  bool Flush();
  /// Cuts the file to no bytes; false, with errno set, if it can't be.
  bool Truncate();
  /// Waits until what was flushed is on the disk; false, with errno set, on failure.
  bool Sync();

  enum class LOCK { NONE, SHARED, EXCLUSIVE };
  /// Sets the advisory lock of the whole file, which a close releases as well. Waits as long as
  /// another process holds one that excludes it, at most `seconds`; false, with errno EAGAIN, after
  /// that, and with another errno at once where files can't be locked. It is a lock of the open
  /// file description: flock(1) around a run does not see it.
  bool SetLock(LOCK lock, double seconds);

 private:
  /// Adds bytes of the file to what is left of the block; false, with the end mark raised, if there
  /// are none.
  bool FillBlock();

  int descriptor = -1;
  bool at_end = false;
  bool read_failed = false;  ///< since the last `Rewind`
  bool write_failed = false;
  static constexpr std::size_t BLOCK_SIZE = 16384;
  char block[BLOCK_SIZE];
  std::size_t block_length = 0;
  std::size_t block_position = 0;
  bool may_hold_cr = false;  ///< whether the block does
  long long read_offset = 0;
  long long write_offset = 0;
  std::string unwritten;
};

}  // namespace varnoth
