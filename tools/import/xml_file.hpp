#pragma once

#include <pugixml.hpp>

#include "tools/import/failure.hpp"
#include "tools/import/moment.hpp"
#include "tools/import/source.hpp"

namespace varnoth::tools {

/// An XML file with its values. All operations throw IMPORT_FAILURE, with the line, for what is
/// missing or is no value of the wanted kind. A path is element names with "/" between, from
/// `from` on.
class XML_FILE {
 public:
  /// Entities are not expanded, and a document type declaration, which could define some, is
  /// refused.
  explicit XML_FILE(const SOURCE_FILE& source);

  pugi::xml_node Root() const { return document.document_element(); }
  pugi::xml_node Find(pugi::xml_node from, const char* path) const;
  std::string Text(pugi::xml_node from, const char* path) const;
  double Number(pugi::xml_node from, const char* path) const;
  std::int64_t Whole(pugi::xml_node from, const char* path) const;
  /// Of a time text behind a prefix, as in "UTC=2014-10-04T03:00:54.000000".
  MOMENT Time(pugi::xml_node from, const char* path, std::string_view prefix = "") const;

  [[noreturn]] void Fail(pugi::xml_node at, const std::string& text) const;
  const std::string& Name() const { return name; }

 private:
  std::size_t LineAt(std::ptrdiff_t offset) const;

  std::string name;
  std::vector<std::size_t> line_ends;
  pugi::xml_document document;
};

}  // namespace varnoth::tools
