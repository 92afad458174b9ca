#pragma once

#include <string>
#include <string_view>

namespace varnoth::tools {

/// A file that appears whole or not at all: it is written beside its place, and comes into it when
/// the disk has it. A file that stands there keeps its permissions. All operations throw
/// std::runtime_error with the reason.
///
///     WHOLE_FILE file("points.csv");
///     file.Write("line,sample\n");
///     file.Finish();
class WHOLE_FILE {
 public:
  explicit WHOLE_FILE(const std::string& file);
  /// Removes what is not finished.
  ~WHOLE_FILE();
  WHOLE_FILE(const WHOLE_FILE&) = delete;
  WHOLE_FILE& operator=(const WHOLE_FILE&) = delete;

  /// Path of the file as long as it is not finished, for a library that writes it by its name.
  const std::string& Temporary() const { return temporary; }
  void Write(std::string_view content);
  void Finish();

 private:
  std::string place;
  std::string temporary;  ///< empty when finished
  int descriptor = -1;
  unsigned mode = 0;  ///< of the finished file
};

/// Writes a file that appears whole or not at all, as WHOLE_FILE does.
void WriteWholeFile(const std::string& file, const std::string& content);

/// The permissions that this process leaves away from new files and directories (umask).
unsigned CreationMask();

}  // namespace varnoth::tools
