#include "tools/import/source.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <zlib.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <memory>

#include "tools/import/failure.hpp"
#include "tools/import/zip_library.hpp"

namespace varnoth::tools {

namespace {

constexpr std::size_t BLOCK = std::size_t{1} << 16;

[[noreturn]] void Fail(const std::string& file, const std::string& text) {
  throw IMPORT_FAILURE(file, 1, text);
}

[[noreturn]] void FailTooLarge(const std::string& file) {
  Fail(file, "larger than " + std::to_string(SOURCE_LIMIT / 1000000) +
                 " million bytes: no annotation or orbit file is");
}

/// Reads on until the end; `read` gives the number of bytes that it put into a block, or throws.
template <class READ>
std::string ReadBounded(const std::string& file, READ read) {
  std::string content;
  char block[BLOCK];
  for (std::size_t count = 1; count > 0;) {
    count = read(block);
    content.append(block, count);
    if (content.size() > SOURCE_LIMIT) FailTooLarge(file);
  }
  if (content.empty()) Fail(file, "empty");
  return content;
}

void CheckOrdinary(const std::string& file) {
  struct stat status {};
  if (stat(file.c_str(), &status) != 0) Fail(file, std::strerror(errno));
  if (!S_ISREG(status.st_mode)) Fail(file, "not an ordinary file");
}

struct CLOSE_ZIP {
  void operator()(zip_t* archive) const { Zip().zip_discard(archive); }
  void operator()(zip_file_t* file) const { Zip().zip_fclose(file); }
};
using ZIP_ARCHIVE = std::unique_ptr<zip_t, CLOSE_ZIP>;

ZIP_ARCHIVE OpenArchive(const std::string& file) {
  CheckOrdinary(file);
  int code = 0;
  ZIP_ARCHIVE archive(Zip().zip_open(file.c_str(), ZIP_RDONLY, &code));
  if (archive) return archive;
  zip_error_t error;
  Zip().zip_error_init_with_code(&error, code);
  const std::string reason = Zip().zip_error_strerror(&error);
  Zip().zip_error_fini(&error);
  Fail(file, "not a whole ZIP archive: " + reason);
}

bool LeadsOut(std::string name) {
  std::replace(name.begin(), name.end(), '\\', '/');
  const std::filesystem::path path(name);
  return path.is_absolute() || std::find(path.begin(), path.end(), "..") != path.end();
}

std::vector<std::string> NamesInArchive(const std::string& file) {
  const ZIP_ARCHIVE archive = OpenArchive(file);
  std::vector<std::string> names;
  const zip_int64_t count = Zip().zip_get_num_entries(archive.get(), 0);
  for (zip_int64_t i = 0; i < count; ++i) {
    const char* const name = Zip().zip_get_name(archive.get(), static_cast<zip_uint64_t>(i), 0);
    if (name == nullptr) continue;
    if (LeadsOut(name)) Fail(file, "holds '" + std::string(name) + "', which leads out of it");
    names.emplace_back(name);
  }
  return names;
}

std::vector<std::string> NamesInFolder(const std::string& folder) {
  namespace fs = std::filesystem;
  constexpr int DEEPEST = 1;  // products and archives of orbit files are flat
  std::vector<std::string> names;
  std::error_code error;
  const auto options = fs::directory_options::skip_permission_denied |
                       fs::directory_options::follow_directory_symlink;
  for (fs::recursive_directory_iterator i(folder, options, error), end; !error && i != end;
       i.increment(error)) {
    std::error_code ignored;
    if (i.depth() >= DEEPEST) i.disable_recursion_pending();
    if (!i->is_directory(ignored)) names.push_back(i->path().lexically_relative(folder).string());
  }
  if (error) Fail(folder, error.message());
  return names;
}

}  // namespace

SOURCE_FILE ReadSource(const std::string& file) {
  CheckOrdinary(file);
  const int descriptor = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
  if (descriptor < 0) Fail(file, std::strerror(errno));
  // Takes the descriptor. What has no head of gzip's is read as it is.
  const std::unique_ptr<gzFile_s, int (*)(gzFile)> packed(gzdopen(descriptor, "rb"), gzclose_r);
  if (!packed) {
    ::close(descriptor);
    Fail(file, "not enough memory");
  }
  std::string content = ReadBounded(file, [&](char* block) {
    const int count = gzread(packed.get(), block, BLOCK);
    int code = Z_OK;
    const std::string reason = gzerror(packed.get(), &code);
    // A file that ends within the packed data gives its bytes first, and then nothing more.
    if (count < 0 || code == Z_BUF_ERROR) {
      // The library puts a name of its own in front.
      Fail(file, code == Z_ERRNO ? std::string(std::strerror(errno))
                                 : "broken gzip file" + reason.substr(reason.find(": ")));
    }
    return static_cast<std::size_t>(count);
  });
  return {file, std::move(content)};
}

bool HoldsFiles(const std::string& place) {
  std::error_code ignored;
  if (std::filesystem::is_directory(place, ignored)) return true;
  CheckOrdinary(place);
  const int descriptor = ::open(place.c_str(), O_RDONLY | O_CLOEXEC);
  char head[4] = {};
  const bool is_read = descriptor >= 0 && ::read(descriptor, head, 4) == 4;
  if (descriptor >= 0) ::close(descriptor);
  return is_read && (std::memcmp(head, "PK\3\4", 4) == 0 || std::memcmp(head, "PK\5\6", 4) == 0);
}

std::vector<std::string> FilesWithin(const std::string& place) {
  std::error_code ignored;
  std::vector<std::string> names =
      std::filesystem::is_directory(place, ignored) ? NamesInFolder(place) : NamesInArchive(place);
  std::sort(names.begin(), names.end());
  return names;
}

SOURCE_FILE ReadWithin(const std::string& place, const std::string& name) {
  const std::string shown = (std::filesystem::path(place) / name).string();
  std::error_code ignored;
  if (std::filesystem::is_directory(place, ignored)) return ReadSource(shown);
  const ZIP_ARCHIVE archive = OpenArchive(place);
  const std::unique_ptr<zip_file_t, CLOSE_ZIP> file(
      Zip().zip_fopen(archive.get(), name.c_str(), 0));
  if (!file) Fail(shown, Zip().zip_strerror(archive.get()));
  std::string content = ReadBounded(shown, [&](char* block) {
    const zip_int64_t count = Zip().zip_fread(file.get(), block, BLOCK);
    if (count < 0) Fail(shown, Zip().zip_file_strerror(file.get()));
    return static_cast<std::size_t>(count);
  });
  return {shown, std::move(content)};
}

}  // namespace varnoth::tools
