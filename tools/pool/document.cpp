#include "tools/pool/document.hpp"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <new>
#include <stdexcept>

#include "pool/entry_reader.hpp"
#include "tools/pool/value_words.hpp"

namespace varnoth {

namespace {

JSON ToJson(bool value) { return value; }
JSON ToJson(unsigned char value) { return static_cast<int>(value); }
JSON ToJson(char value) { return static_cast<int>(value); }
JSON ToJson(short value) { return value; }
JSON ToJson(int value) { return value; }
JSON ToJson(long long value) { return value; }
JSON ToJson(double value) {
  if (std::isnan(value)) return "nan";
  if (std::isinf(value)) return value < 0 ? "-inf" : "inf";
  return value;
}
JSON ToJson(float value) { return ToJson(static_cast<double>(value)); }
JSON ToJson(const STRING& value) { return FromLatin1(value.c_str()); }
template <class T>
JSON ToJson(const COMPLEX<T>& value) {
  return JSON::array({ToJson(value.re), ToJson(value.im)});
}
template <class T>
JSON ToJson(const POINT<T>& value) {
  return JSON::array({ToJson(value.x), ToJson(value.y)});
}
template <class A, class B>
JSON ToJson(const INDEX<A, B>& value) {
  return JSON::array({ToJson(value.first), ToJson(value.second)});
}
JSON ToJson(const TUPLE<STRING>& value) {
  return JSON::array({ToJson(value.first), ToJson(value.second)});
}
template <class X>
JSON Row(const X* elements, int count) {
  JSON row = JSON::array();
  for (int i = 0; i < count; ++i) row.push_back(ToJson(elements[i]));
  return row;
}
template <class X>
JSON ToJson(const ARRAY<X>& value) {
  return {{"first", value.GetFirstIndex()}, {"values", Row(value.begin(), value.GetLength())}};
}
template <class X>
JSON ToJson(const MATRIX<X>& value) {
  const int columns = value.GetColumnRange().Count();
  JSON rows = JSON::array();
  for (int r = 0; r < value.GetRowRange().Count(); ++r) {
    rows.push_back(Row(value.GetBlock() + static_cast<std::ptrdiff_t>(r) * columns, columns));
  }
  return {{"first_row", value.GetRowRange().First()},
          {"first_column", value.GetColumnRange().First()},
          {"values", rows}};
}

template <class V>
JSON Parsed(ENTRY_READER& reader) {
  V value{};
  reader.Parse(value);
  return ToJson(value);
}

/// The value at the reader's token.
JSON ParsedAs(TYPE_CODE code, ENTRY_READER& reader) {
#define VARNOTH_TRY(...)                                                             \
  if (code == POOL_ELEMENT<__VA_ARGS__>::SCALAR) return Parsed<__VA_ARGS__>(reader); \
  if (code == POOL_ELEMENT<__VA_ARGS__>::VECTOR) return Parsed<ARRAY<__VA_ARGS__>>(reader);
  VARNOTH_POOL_ELEMENTS(VARNOTH_TRY)
#undef VARNOTH_TRY
#define VARNOTH_TRY(...) \
  if (code == POOL_ELEMENT<__VA_ARGS__>::MATRIX) return Parsed<MATRIX<__VA_ARGS__>>(reader);
  VARNOTH_POOL_MATRIX_ELEMENTS(VARNOTH_TRY)
#undef VARNOTH_TRY
  return nullptr;
}

std::vector<POOL_LINE> Lines(POOL_STREAM& stream) {
  std::vector<POOL_LINE> lines;
  std::size_t number = 1;
  bool is_cut = false;
  char last_end = '\n';
  for (std::string_view text = stream.NextLine(); !text.empty(); text = stream.NextLine()) {
    POOL_LINE line{.text = "", .number = number, .end = text.back(), .is_continued = is_cut};
    if (stream.AtEnd()) {
      text.remove_suffix(1);  // the end mark
      if (text.empty()) break;
      line.end = 0;
    } else if (line.end == '\n' || line.end == '\r') {
      text.remove_suffix(1);
    } else {
      line.end = 0;
    }
    line.text = text;
    line.follows_cr = text.empty() && last_end == '\r' && line.end == '\n';
    is_cut = line.end == 0;
    last_end = line.end;
    if (line.end == '\n') ++number;
    lines.push_back(std::move(line));
  }
  return lines;
}

bool IsKeyLine(const POOL_LINE& line) {
  if (line.text.empty() || line.text[0] == ' ' || line.text[0] == '\t' || line.text[0] == '#') {
    return false;
  }
  return !line.is_continued || LooksLikeEntry(line.text);
}

/// The index behind the block that follows a key line, or behind the key line if there is none. The
/// next entry ends a block that is not closed.
std::size_t BlockStop(const std::vector<POOL_LINE>& lines, std::size_t at) {
  int depth = 0;
  for (std::size_t i = at + 1; i < lines.size(); ++i) {
    if (lines[i].follows_cr) continue;
    if (IsKeyLine(lines[i]) && LooksLikeEntry(lines[i].text)) return depth > 0 ? i : at + 1;
    const std::string_view word = LINE_WORDS(lines[i].text).Next();
    if (word == "{") ++depth;
    if (word == "}" && --depth <= 0) return depth == 0 ? i + 1 : at + 1;
    if (depth == 0) return at + 1;
  }
  return depth > 0 ? lines.size() : at + 1;
}

std::optional<std::string> CommentAbove(const std::vector<POOL_LINE>& lines, std::size_t at) {
  std::size_t first = at;
  const auto is_passed = [](const POOL_LINE& line) {
    return line.follows_cr || line.text.starts_with('#');
  };
  while (first > 0 && is_passed(lines[first - 1])) --first;
  std::optional<std::string> comment;
  for (std::size_t i = first; i < at; ++i) {
    if (lines[i].follows_cr) continue;
    comment = (comment ? *comment + "\n" : "") + FromLatin1(lines[i].text).substr(1);
  }
  return comment;
}

/// Reads the values of entries one by one, mostly without going back in the file.
class VALUE_READER {
 public:
  explicit VALUE_READER(POOL_STREAM& stream) : reader(stream) { reader.Rewind(); }

  void Read(POOL_ENTRY& entry) {
    if (taken > entry.at) {
      reader.Rewind();
      taken = 0;
    }
    for (; taken <= entry.at; ++taken) reader.NextLine();
    reader.ReadKey();
    try {
      for (int word = 0; word < 3; ++word) {
        if (!reader.NextToken()) throw INVALID_PARAMETER_VALUE();
      }
      entry.value = ParsedAs(entry.code, reader);
    } catch (const ERROR_EXCEPTION& error) {
      entry.failure = error.what();
    } catch (const char* text) {
      entry.failure = text;
    } catch (const std::bad_alloc&) {
      entry.failure = "not enough memory";
    }
    taken += BlockLines(entry);
  }

 private:
  /// How many lines of a block were taken. In a broken one only the reader knows: then the next
  /// search starts at the file's first line.
  std::size_t BlockLines(const POOL_ENTRY& entry) const {
    const SHAPE shape = ShapeOf(entry.code);
    if (shape == SHAPE::SCALAR) return 0;
    if (entry.value.is_null()) return static_cast<std::size_t>(-1) - taken;
    const JSON& values = entry.value["values"];
    if (shape == SHAPE::VECTOR) return values.size() + 2;
    std::size_t count = 2;
    for (const JSON& row : values) count += row.size() + 2;
    return count;
  }

  ENTRY_READER reader;
  std::size_t taken = 0;
};

}  // namespace

const POOL_ENTRY* POOL_DOCUMENT::Find(const std::string& key) const {
  const auto found = first_of_key.find(CountingPart(key));
  return found == first_of_key.end() ? nullptr : &entries[found->second];
}

std::string CountingPart(const std::string& key) {
  return ToLatin1(key).value_or(key).substr(0, ENTRY_READER::KEY_LIMIT);
}

bool LooksLikeEntry(std::string_view text) {
  LINE_WORDS words(text);
  const std::string_view key = words.Next();
  const std::string_view type = words.Next();
  if (key.empty() || (std::isalpha(static_cast<unsigned char>(key[0])) == 0 && key[0] != '_')) {
    return false;
  }
  if (type.size() < 3 || std::isupper(static_cast<unsigned char>(type[0])) == 0) return false;
  return std::all_of(type.begin(), type.end(), [](unsigned char byte) {
    return std::isupper(byte) != 0 || std::isdigit(byte) != 0 || byte == '_';
  });
}

POOL_DOCUMENT ReadDocument(const std::string& file) {
  // A document of scalars takes thirteen times the memory of its file.
  constexpr std::uintmax_t LARGEST = 512'000'000;
  std::error_code unknown;
  const std::uintmax_t size = std::filesystem::file_size(file, unknown);
  if (!unknown && size > LARGEST) throw std::runtime_error("larger than 512 MB, as no pool is");
  POOL_STREAM stream;
  if (!stream.Open(file.c_str(), POOL_STREAM::MODE::READ)) {
    throw std::runtime_error(std::strerror(errno));
  }
  POOL_DOCUMENT document{.file = file, .lines = Lines(stream), .entries = {}, .first_of_key = {}};
  if (stream.HasError()) throw std::runtime_error(std::strerror(errno));

  VALUE_READER values(stream);
  std::size_t next = 0;
  for (std::size_t at = 0; at < document.lines.size(); at = next) {
    next = at + 1;
    if (!IsKeyLine(document.lines[at])) continue;
    LINE_WORDS words(document.lines[at].text);
    POOL_ENTRY entry;
    entry.at = at;
    entry.line = document.lines[at].number;
    entry.key = FromLatin1(words.Next());
    entry.type = FromLatin1(words.Next());
    entry.code = TypeFromName(entry.type);
    const bool has_block = entry.code == UNKNOWN || ShapeOf(entry.code) != SHAPE::SCALAR;
    entry.stop = has_block ? BlockStop(document.lines, at) : next;
    entry.comment = CommentAbove(document.lines, at);
    if (entry.code != UNKNOWN) {
      values.Read(entry);
    } else {
      entry.failure = "unknown type word";
    }
    next = entry.stop;
    document.first_of_key.emplace(CountingPart(entry.key), document.entries.size());
    document.entries.push_back(std::move(entry));
  }
  if (stream.HasError()) throw std::runtime_error(std::strerror(errno));
  return document;
}

std::string FromLatin1(std::string_view bytes) {
  std::string text;
  for (const char byte : bytes) {
    const auto code = static_cast<unsigned char>(byte);
    if (code < 0x80) {
      text += byte;
    } else {
      text += static_cast<char>(0xC0 | code >> 6);
      text += static_cast<char>(0x80 | (code & 0x3F));
    }
  }
  return text;
}

std::optional<std::string> ToLatin1(const std::string& text) {
  std::string bytes;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto lead = static_cast<unsigned char>(text[i]);
    const auto next = static_cast<unsigned char>(i + 1 < text.size() ? text[i + 1] : '\0');
    const bool is_pair = lead >= 0xC2 && (next & 0xC0) == 0x80;
    if (is_pair && lead > 0xC3) return std::nullopt;
    if (is_pair) ++i;
    bytes += is_pair ? static_cast<char>((lead & 3) << 6 | (next & 0x3F)) : text[i];
  }
  return bytes;
}

}  // namespace varnoth
