#pragma once

#include <string>
#include <string_view>

namespace varnoth {

/// The open file of a pool: a line reader and a buffered writer on one descriptor, which the object
/// owns. Failures show in the results alone: the class logs nothing.
///
///     POOL_STREAM from, to;
///     if (!from.Open("scene.dat", POOL_STREAM::MODE::READ)) std::perror("scene.dat");
///     if (!to.Open("copy.dat", POOL_STREAM::MODE::CREATE)) std::perror("copy.dat");
///     std::string_view line = from.NextLine();
///     for (; !from.AtEnd(); line = from.NextLine()) to.Write(line);
///     if (!to.Close()) std::perror("copy.dat");
///
/// `Rewind` drops what the object read ahead, so that later reads see what other processes have
/// written.
class POOL_STREAM {
 public:
  POOL_STREAM() = default;
  ~POOL_STREAM() { Close(); }
  POOL_STREAM(const POOL_STREAM&) = delete;
  POOL_STREAM& operator=(const POOL_STREAM&) = delete;

  enum class MODE {
    READ_WRITE,  ///< an existing file
    CREATE,      ///< the same, but creates a missing file
    READ,        ///< an existing file, read only
  };
  /// Closes an open file and opens another; false, with errno set, on failure.
  bool Open(const char* path, MODE mode);
  /// Closes an open file and takes over the descriptor of another one, for reading and writing.
  void Take(int open_descriptor);
  bool IsOpen() const { return descriptor >= 0; }
  int Descriptor() const { return descriptor; }
  /// Flushes and closes. False if closing, or any write since the opening, failed; true if nothing
  /// was open.
  bool Close();

  /// Goes back to the first byte, for reading and writing.
  void Rewind();
  /// The most bytes of a line, with its terminator.
  static constexpr std::size_t LINE_LIMIT = 1024;
  /// The next line with its terminator (LF or CR), or LINE_LIMIT bytes of a longer one. The end of
  /// the file, or a failed read, ends the line with the byte 0xFF and sets `AtEnd`; later calls
  /// give empty lines. The bytes are valid until the next read.
  std::string_view NextLine();
  /// Passes over lines that start with another byte: cheaper than reading them. Stops where the
  /// next line starts with `first`, and at the latest where more of the file must be read.
  void SkipLines(char first);
  /// All bytes up to the file's end, or a failed read; sets `AtEnd`. Valid until the next read.
  std::string_view ReadRest();
  /// Whether a read reached the end of the file, or failed, since the last `Rewind`.
  bool AtEnd() const { return at_end; }
  /// Whether a read since the last `Rewind`, or a write since the opening, failed.
  bool HasError() const { return read_failed || write_failed; }
  /// The file's size in bytes; 0 if the system doesn't tell.
  long long Size() const;

  /// Buffers bytes for the write position. `Flush` hands them to the file, and so does a `Write`
  /// that fills the buffer.
  void Write(std::string_view bytes);
  /// False if any write since the opening failed.
  bool Flush();
  /// Flushes, and writes bytes without buffering them; false as `Flush`.
  bool WriteThrough(std::string_view bytes);
  /// Cuts the file to length 0; false, with errno set, on failure.
  bool Truncate();
  /// Waits until the disk holds what `Flush` has written; false, with errno set, on failure.
  bool Sync();

  enum class LOCK { NONE, SHARED, EXCLUSIVE };
  /// Sets the advisory lock of the whole file, which a close releases as well. Waits as long as
  /// another process holds a lock that excludes it, at most `seconds`, and then returns false with
  /// errno EAGAIN. Where the system can't lock files, returns false with another errno at once. The
  /// lock belongs to the open file description: flock(1) around a run does not see it.
  bool SetLock(LOCK lock, double seconds);
  /// Whether this object holds a lock of the open file.
  bool IsLocked() const { return is_locked; }

 private:
  /// Reads more bytes of the file after what is left of the block; false, with `at_end` set, if
  /// there are none.
  bool FillBlock();
  /// Writes at the write position and moves it.
  void WriteOut(std::string_view bytes);

  int descriptor = -1;
  bool at_end = false;
  bool read_failed = false;  ///< since the last `Rewind`
  bool write_failed = false;
  bool is_locked = false;
  std::size_t block_length = 0;
  std::size_t block_position = 0;
  bool may_hold_cr = false;  ///< false only if the block has no CR
  long long read_offset = 0;
  long long write_offset = 0;
  std::string unwritten;
  std::string long_rest;                            ///< what `ReadRest` found beyond a block
  static constexpr std::size_t BLOCK_SIZE = 24576;  ///< holds most pools, results and all
  char block[BLOCK_SIZE];  ///< last, so that a small pool's bytes share a page with the above
};

}  // namespace varnoth
