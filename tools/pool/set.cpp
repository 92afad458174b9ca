#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <stdexcept>

#include "pool/parameter_pool_read_write_change.hpp"
#include "system/signal_safe/descriptor.hpp"
#include "tools/pool/commands.hpp"
#include "tools/pool/document.hpp"
#include "tools/pool/value_words.hpp"

namespace varnoth {

namespace {

std::runtime_error SystemFailure(const std::string& what) {
  return std::runtime_error(what + ": " + std::strerror(errno));
}

// The words were checked: they are whole values of their type.
void Take(const std::string*& word, bool& value) { value = *word++ == "TRUE"; }
template <class T>
requires std::is_integral_v<T>
void Take(const std::string*& word, T& value) {
  value = static_cast<T>(std::strtoll((word++)->c_str(), nullptr, 10));
}
template <class T>
requires std::is_floating_point_v<T>
void Take(const std::string*& word, T& value) {
  // The pool's reader makes a float from a double too.
  value = static_cast<T>(std::strtod((word++)->c_str(), nullptr));
}
void Take(const std::string*& word, STRING& value) { value = (word++)->c_str(); }
template <class T>
void Take(const std::string*& word, COMPLEX<T>& value) {
  Take(word, value.re);
  Take(word, value.im);
}
template <class T>
void Take(const std::string*& word, POINT<T>& value) {
  Take(word, value.x);
  Take(word, value.y);
}
template <class A, class B>
void Take(const std::string*& word, INDEX<A, B>& value) {
  Take(word, value.first);
  Take(word, value.second);
}
void Take(const std::string*& word, TUPLE<STRING>& value) {
  Take(word, value.first);
  Take(word, value.second);
}

/// What is to be set, with the bytes that the file will have.
struct CHANGE_PLAN {
  std::string key;
  TYPE_CODE code = UNKNOWN;
  std::vector<std::string> words;
  int first_index = 0;
  ARRAY<STRING> comments;
};

template <class X>
void ChangeTo(PARAMETER_POOL_READ_WRITE_CHANGE& pool, const CHANGE_PLAN& plan) {
  const std::string* word = plan.words.data();
  if (ShapeOf(plan.code) == SHAPE::SCALAR) {
    X value{};
    Take(word, value);
    pool.Change(plan.key.c_str(), value, plan.comments);
    return;
  }
  const std::size_t count = plan.words.size() / PartsOf(ElementOf(plan.code)).size();
  ARRAY<X> values(plan.first_index, static_cast<int>(count));
  for (X& value : values) Take(word, value);
  pool.Change(plan.key.c_str(), values, plan.comments);
}

void Change(PARAMETER_POOL_READ_WRITE_CHANGE& pool, const CHANGE_PLAN& plan) {
  const TYPE_CODE element = ElementOf(plan.code);
#define VARNOTH_TRY(...) \
  if (element == POOL_ELEMENT<__VA_ARGS__>::SCALAR) return ChangeTo<__VA_ARGS__>(pool, plan);
  VARNOTH_POOL_ELEMENTS(VARNOTH_TRY)
#undef VARNOTH_TRY
}

std::string Bytes(const std::string& text) {
  const auto bytes = ToLatin1(text);
  if (!bytes) throw std::runtime_error("\"" + text + "\" has a character that Latin-1 has not");
  if (bytes->find_first_of("\n\r") != bytes->npos) {
    throw std::runtime_error("a line end within \"" + text + "\"");
  }
  return *bytes;
}

/// Throws if a pool's reader would not make the same value of it.
void CheckWord(TYPE_CODE part, const std::string& word) {
  if (part == STR) {
    if (word.find('\\') != word.npos) {
      throw std::runtime_error("a pool can't keep the backslash in \"" + word + "\"");
    }
    return;
  }
  LINE_WORDS words(word);
  const auto finding = CheckValue(part, words);
  const bool has_blank = word.find_first_of(" \t") != word.npos;
  if (has_blank) throw std::runtime_error("'" + word + "' is no single value");
  if (finding && finding->severity == SEVERITY::ERROR) throw std::runtime_error(finding->text);
}

void CheckKey(const std::string& key) {
  if (key.empty() || key[0] == '#' || key.find_first_of(" \t") != key.npos) {
    throw std::runtime_error("\"" + key + "\" can't be a key");
  }
  if (key.size() > ENTRY_READER::KEY_LIMIT) {
    throw std::runtime_error("a key has at most " + std::to_string(ENTRY_READER::KEY_LIMIT) +
                             " bytes");
  }
}

CHANGE_PLAN Plan(const SET_REQUEST& request, TYPE_CODE type, const POOL_DOCUMENT& pool) {
  CHANGE_PLAN plan;
  plan.key = Bytes(request.key);
  CheckKey(plan.key);
  const std::vector<TYPE_CODE> parts = PartsOf(ElementOf(type));
  if (request.values.size() % parts.size() != 0) {
    throw std::runtime_error(std::string(TypeRow(ElementOf(type)).name) + " needs two values");
  }
  for (std::size_t i = 0; i < request.values.size(); ++i) {
    plan.words.push_back(Bytes(request.values[i]));
    CheckWord(parts[i % parts.size()], plan.words.back());
  }
  const bool is_list = request.values.size() > parts.size();
  plan.code = is_list && ShapeOf(type) == SHAPE::SCALAR
                  ? TypeFromName(std::string(TypeRow(type).name) + "_V")
                  : type;
  const POOL_ENTRY* const old = pool.Find(request.key);
  if (old != nullptr && old->value.is_object() && old->value.contains("first")) {
    plan.first_index = old->value["first"].get<int>();
  }
  if (request.comment) {
    plan.comments = ARRAY<STRING>(Bytes(*request.comment).c_str());
  }
  return plan;
}

/// A directory beside a file, which goes with all that is in it unless it is kept.
class WORKPLACE {
 public:
  explicit WORKPLACE(const std::filesystem::path& file) {
    std::string pattern = (file.parent_path() / ".varnoth-tools_XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) throw SystemFailure("can't write beside the pool");
    directory = pattern;
  }
  ~WORKPLACE() {
    std::error_code ignored;
    if (!is_kept) std::filesystem::remove_all(directory, ignored);
  }
  WORKPLACE(const WORKPLACE&) = delete;
  WORKPLACE& operator=(const WORKPLACE&) = delete;

  std::filesystem::path directory;
  bool is_kept = false;
};

/// Whether a name still leads to the file that was opened under it.
bool IsStill(const std::string& file, const struct stat& opened) {
  struct stat named {};
  return stat(file.c_str(), &named) == 0 && opened.st_ino == named.st_ino &&
         opened.st_dev == named.st_dev;
}

/// Opens a pool and locks it against other updates, as long as the stream is open.
void OpenLocked(POOL_STREAM& stream, const std::string& file) {
  constexpr double SECONDS = 10.0;
  struct stat opened {};
  do {  // until no other process replaced the pool before the lock held
    if (!stream.Open(file.c_str(), POOL_STREAM::MODE::READ_WRITE) ||
        fstat(stream.Descriptor(), &opened) != 0) {
      throw std::runtime_error(std::strerror(errno));
    }
    if (!S_ISREG(opened.st_mode)) throw std::runtime_error("not an ordinary file");
    if (!stream.SetLock(POOL_STREAM::LOCK::EXCLUSIVE, SECONDS) && errno == EAGAIN) {
      throw std::runtime_error("another process keeps the pool locked");
    }
  } while (!IsStill(file, opened));
}

/// Makes a text the whole content of an open file. A file that keeps or gains length is never
/// shorter on the way.
bool PutContent(int file, const std::string& content) {
  std::size_t written = 0;
  const auto write = [&](const char* next, std::size_t left) {
    return ::pwrite(file, next, left, static_cast<off_t>(written));
  };
  return WriteAllBy(write, content.data(), content.size(), written) &&
         ::ftruncate(file, static_cast<off_t>(content.size())) == 0 && ::fsync(file) == 0;
}

/// The pool's content after the change, made by the product in a copy: an update of the pool itself
/// could stop halfway on a full disk.
std::string Changed(const std::string& content, const std::string& copy, const CHANGE_PLAN& plan) {
  POOL_STREAM stream;
  if (!stream.Open(copy.c_str(), POOL_STREAM::MODE::CREATE)) throw SystemFailure("can't copy it");
  stream.Write(content);
  if (!stream.Close()) throw SystemFailure("can't copy it");
  PARAMETER_POOL_READ_WRITE_CHANGE pool(copy.c_str());
  try {
    Change(pool, plan);
  } catch (...) {
    pool.close();  // nothing to update
    throw;
  }
  pool.SetDurable(true);
  pool.update();
  stream.Open(copy.c_str(), POOL_STREAM::MODE::READ);
  std::string changed(stream.ReadRest());
  if (stream.HasError()) throw SystemFailure("can't read the copy");
  return changed;
}

/// The pool's content with a blank ahead of each line of an entry's block, where there is none: an
/// update takes what stands in the first column for the next entry, and would leave it.
std::string Indented(const POOL_DOCUMENT& pool, const POOL_ENTRY& entry) {
  std::string content;
  for (std::size_t i = 0; i < pool.lines.size(); ++i) {
    const POOL_LINE& line = pool.lines[i];
    const bool is_flush = !line.text.empty() && line.text[0] != ' ' && line.text[0] != '\t';
    if (is_flush && i > entry.at && i < entry.stop) content += ' ';
    content += line.text;
    if (line.end != 0) content += line.end;
  }
  return content;
}

/// Changes a locked pool in its place, so that links, owner and permissions stay, and a run that
/// waits for the lock finds the change. The copy stays if the pool can't be made whole again.
void ChangeInPlace(POOL_STREAM& stream, const std::filesystem::path& path,
                   const POOL_DOCUMENT& pool, const CHANGE_PLAN& plan) {
  WORKPLACE workplace(path);
  stream.Rewind();
  const std::string old(stream.ReadRest());
  if (stream.HasError()) throw SystemFailure("can't read it");
  const std::string copy = workplace.directory / path.filename();
  // Of a block that can't be read nobody knows the end.
  const POOL_ENTRY* const entry = pool.Find(FromLatin1(plan.key));
  const bool has_block = entry != nullptr && entry->value.is_object();
  const std::string clear = has_block ? Indented(pool, *entry) : old;
  if (PutContent(stream.Descriptor(), Changed(clear, copy, plan))) return;
  const std::runtime_error failure = SystemFailure("can't write it");
  if (PutContent(stream.Descriptor(), old)) throw failure;
  workplace.is_kept = true;
  throw std::runtime_error(failure.what() + ("; its whole new content is in " + copy));
}

}  // namespace

TOOL_STATUS SetValue(const SET_REQUEST& request) {
  const TYPE_CODE type = TypeFromName(request.type);
  if (type == UNKNOWN || ShapeOf(type) == SHAPE::MATRIX) {
    Tell(request.file, 1, SEVERITY::ERROR,
         type == UNKNOWN ? "unknown type word " + request.type : "a matrix can't be set");
    return WRONG_USAGE;
  }
  try {
    POOL_STREAM stream;
    OpenLocked(stream, request.file);
    const POOL_DOCUMENT pool = ReadDocument(request.file);
    if (!pool.lines.empty() && pool.lines.back().end == 0) {
      Tell(request.file, pool.lines.back().number, SEVERITY::ERROR,
           "the last line has no line end and would be lost: mend it first");
      return FINDINGS;
    }
    ChangeInPlace(stream, std::filesystem::absolute(request.file), pool, Plan(request, type, pool));
    return GOOD;
  } catch (const std::exception& error) {
    Tell(request.file, 1, SEVERITY::ERROR, error.what());
  } catch (const INVALID_PARAMETER_VALUE&) {
    Tell(request.file, 1, SEVERITY::ERROR,
         "value or comment makes a line longer than " + std::to_string(ENTRY_READER::LINE_LIMIT) +
             " bytes");
  } catch (const ERROR_EXCEPTION& error) {
    Tell(request.file, 1, SEVERITY::ERROR, error.what());
  }
  return FINDINGS;
}

}  // namespace varnoth
