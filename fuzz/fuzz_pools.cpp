#include <functional>
#include <iterator>

#include "fuzz_target.hpp"
#include "pool/parameter_pool_read_write_change.hpp"

namespace varnoth::fuzz {

namespace {

template <class V>
void ReadAs(PARAMETER_POOL& pool) {
  Accepts([&] {
    V value{};
    pool.Read("k", value);
  });
}

struct READER {
  TYPE_CODE type;
  void (*read)(PARAMETER_POOL& pool);
};

#define VARNOTH_READER(...) {POOL_TYPE<__VA_ARGS__>, ReadAs<__VA_ARGS__>},
#define VARNOTH_ELEMENT(...) VARNOTH_READER(__VA_ARGS__) VARNOTH_READER(ARRAY<__VA_ARGS__>)
#define VARNOTH_MATRIX(...) VARNOTH_READER(MATRIX<__VA_ARGS__>)
constexpr READER READERS[] = {VARNOTH_POOL_ELEMENTS(VARNOTH_ELEMENT)
                                  VARNOTH_POOL_MATRIX_ELEMENTS(VARNOTH_MATRIX)};
#undef VARNOTH_READER
#undef VARNOTH_ELEMENT
#undef VARNOTH_MATRIX

}  // namespace

/// Reads the key "k" of a pool file of any bytes as the type that it has, and as another one. Every
/// other type is refused ahead of the value, so that asking for all of them finds nothing more.
void FuzzValues(const std::string& input) {
  WriteFile("pool", input);
  PARAMETER_POOL pool("pool");
  TYPE_CODE type = UNKNOWN;
  Accepts([&] { type = pool.get_type("k"); });
  READERS[std::hash<std::string>{}(input) % std::size(READERS)].read(pool);
  for (const READER& reader : READERS) {
    if (reader.type == type) reader.read(pool);
  }
}

/// An update without changes keeps a file of whole lines. One that adds entries keeps all that was
/// there in front of them, and what it writes reads back.
void FuzzPools(const std::string& input) {
  const std::string content = input + "\n";
  WriteFile("pool", content);
  { PARAMETER_POOL_READ_WRITE_CHANGE pool("pool"); }
  Require(ReadFile("pool") == content, "an update without changes keeps the file");

  const double number = static_cast<double>(input.size()) / 3 - 1;
  const std::string line = input.substr(0, input.find_first_of(std::string("\r\n\\\"\0", 5)));
  bool added = false;
  {
    PARAMETER_POOL_READ_WRITE_CHANGE pool("pool");
    pool.Change("k", number, ARRAY<STRING>("a comment"));
    added = Accepts([&] { pool.Change("t", line.c_str()); });
  }
  // Anything with one of the keys' letters may hold an entry that the update replaced.
  const bool is_new = content.find_first_of("kt") == content.npos;
  Require(!is_new || ReadFile("pool").starts_with(content), "new entries stand behind the rest");
  PARAMETER_POOL pool("pool");
  double read = 0;
  pool.Read("k", read);
  Require(read == number, "a number reads back");
  if (!added) return;
  STRING text;
  pool.Read("t", text);
  Require(text == line.c_str(), "any text of one line reads back");
}

}  // namespace varnoth::fuzz
