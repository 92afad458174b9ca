#pragma once

#include <string>
#include <vector>

namespace varnoth::tools {

/// The most bytes of a file, unpacked, that an import reads. The largest of them, an orbit file of
/// a day, has 5 million.
constexpr std::size_t SOURCE_LIMIT = 64000000;

/// A file that was read whole.
struct SOURCE_FILE {
  std::string name;  ///< for messages; of a file within an archive, the archive's name leads
  std::string content;
};

/// Reads an ordinary file, unpacking one that gzip packed. Throws IMPORT_FAILURE for one that can't
/// be read, that is empty or too large, and for a broken or cut archive.
SOURCE_FILE ReadSource(const std::string& file);

/// The names of the files that a folder or ZIP archive holds, within the folders too, sorted.
/// Throws IMPORT_FAILURE as `ReadSource` does, and for an archive with a name that leads out of it.
std::vector<std::string> FilesWithin(const std::string& place);
/// Reads one of them.
SOURCE_FILE ReadWithin(const std::string& place, const std::string& name);

/// Whether it is a folder or a ZIP archive.
bool HoldsFiles(const std::string& place);

}  // namespace varnoth::tools
