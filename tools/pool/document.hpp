#pragma once

#include <cstddef>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "pool/type_table.hpp"

namespace varnoth {

using JSON = nlohmann::ordered_json;  // keys in the order in which they are added

/// A line as the pool's reader sees it: a CR ends one as well, and byte 1025 starts a new one.
struct POOL_LINE {
  std::string text;           ///< without its end
  std::size_t number = 0;     ///< as an editor counts, from 1
  char end = '\n';            ///< LF, CR, or 0 where the line has none
  bool is_continued = false;  ///< the rest of a line above the reader's limit
  bool follows_cr = false;    ///< the empty line between CR and LF
};

struct POOL_ENTRY {
  std::string key;
  std::string type;  ///< the word that stands there
  TYPE_CODE code = UNKNOWN;
  std::size_t at = 0;    ///< index of its key line
  std::size_t stop = 0;  ///< index behind its block, or behind its key line
  std::size_t line = 0;  ///< number of its key line
  std::optional<std::string> comment;
  JSON value;           ///< null if it can't be read
  std::string failure;  ///< why it can't
};

/// A pool as it is: its lines, and its entries with the values that a run reads. An entry that
/// another one's open block swallows is an entry all the same, since a search finds it. Texts are
/// UTF-8, made from the file's Latin-1.
struct POOL_DOCUMENT {
  std::string file;
  std::vector<POOL_LINE> lines;
  std::vector<POOL_ENTRY> entries;
  std::unordered_map<std::string, std::size_t> first_of_key;  ///< by the key's counting part

  /// The entry that a run finds: the first one of the key, whose first 100 bytes count.
  const POOL_ENTRY* Find(const std::string& key) const;
};

/// Reads a file and touches nothing. Throws std::runtime_error with the system's reason if it can't
/// be read, and for one that is too large to be a pool.
POOL_DOCUMENT ReadDocument(const std::string& file);

/// The bytes of a key that the pool's reader compares.
std::string CountingPart(const std::string& key);

/// Whether a line without its indent looks like the start of an entry: a name and a word in
/// capitals.
bool LooksLikeEntry(std::string_view text);

std::string FromLatin1(std::string_view bytes);
/// Nothing if a character has no place in Latin-1. Bytes that are no UTF-8 are kept as they are.
std::optional<std::string> ToLatin1(const std::string& text);

}  // namespace varnoth
