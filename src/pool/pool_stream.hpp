#pragma once

#include <string>
#include <string_view>

namespace varnoth {

/// The open file of a pool: a block reader and a buffered writer on one descriptor, which it owns.
/// Reads always see the file as it stands after a `Rewind`.
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
  /// The next byte. At the end of the file, or where it can't be read, this gives 0xFF and raises
  /// the end mark.
  unsigned char Fetch();
  /// Whether `Fetch` has met the end since the last `Rewind`.
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

 private:
  int descriptor = -1;
  bool at_end = false;
  bool read_failed = false;  ///< since the last `Rewind`
  bool write_failed = false;
  char block[16384];
  long block_length = 0;
  long block_position = 0;
  long long read_offset = 0;
  long long write_offset = 0;
  std::string unwritten;
};

}  // namespace varnoth
