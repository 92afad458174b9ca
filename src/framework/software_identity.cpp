#include "framework/software_identity.hpp"

#include <string>
#include <string_view>

namespace varnoth {

namespace {

constexpr std::string_view VERSION_HEAD = "$Revision: ";
constexpr std::string_view DATE_HEAD = "$Date: ";

STRING IsoText(std::time_t time) {
  std::tm local{};
  localtime_r(&time, &local);
  char text[64];
  const std::size_t length = std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &local);
  return {text, length};
}

/// Cuts a "$" and the character before it.
void CutKeywordEnd(std::string& text) {
  const std::size_t end = text.find('$');
  if (end == text.npos) return;
  const std::size_t first = end > 0 ? end - 1 : 0;
  text.erase(first, end + 1 - first);
}

}  // namespace

STRING PlainVersion(const STRING& keyword) {
  std::string text = keyword.c_str();
  if (!text.starts_with(VERSION_HEAD)) return keyword;
  text.erase(0, VERSION_HEAD.size());
  CutKeywordEnd(text);
  return text.c_str();
}

STRING PlainDate(const STRING& keyword) {
  std::string text = keyword.c_str();
  if (!text.starts_with(DATE_HEAD)) return keyword;
  text.erase(0, DATE_HEAD.size());
  for (const std::size_t position : {std::size_t{4}, std::size_t{7}}) {
    if (position < text.size()) text[position] = '-';
  }
  CutKeywordEnd(text);
  const std::size_t blank = text.find(' ');
  if (blank != text.npos) text[blank] = 'T';
  return text.c_str();
}

void SoftwareIdentity::set(const STRING& binary, const STRING& run_title,
                           const STRING& version_keyword, const STRING& date_keyword,
                           const STRING& build, const STRING& user) {
  name = binary;
  title = run_title;
  program = title.IsEmpty() ? name : title + " " + name;
  version = PlainVersion(version_keyword);
  date = PlainDate(date_keyword);
  full_version = build;
  compiler_user = user;
  start_time = IsoText(start_seconds);
}

void SoftwareIdentity::StampEnd() {
  end_seconds = std::time(nullptr);
  end_time = IsoText(end_seconds);
  execution_seconds =
      static_cast<double>(static_cast<long>(std::difftime(end_seconds, start_seconds)));
}

void make_build_line(STRING& buffer, const SoftwareIdentity& identity, const STRING& user) {
  make_build_line(buffer, identity.program, identity.version, identity.date, user);
}

void make_build_line(STRING& buffer, const STRING& name, const STRING& version_keyword,
                     const STRING& date_keyword, const STRING& user) {
  const std::string date = PlainDate(date_keyword).c_str();
  const std::string day = date.substr(0, date.find('T'));
  buffer = name + " " + PlainVersion(version_keyword) + "  " + day.c_str() + " compiled by " + user;
}

}  // namespace varnoth
