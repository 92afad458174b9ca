#pragma once

#include <ctime>

#include "foundation/string.hpp"

namespace varnoth {

/// Who ran, in which version, when and how long. Times are local, in the form
/// "2026-11-24T21:06:38".
class SoftwareIdentity {
 public:
  /// Takes the moment of its creation as the start; all other texts are empty.
  SoftwareIdentity() = default;

  /// Fills the record. A version or date that is a version-control keyword ("$Revision: 1.2 $",
  /// "$Date: 2016/12/09 17:32:18 $") is taken without its dress: "1.2", "2016-12-09T17:32:18".
  void set(const STRING& binary, const STRING& run_title, const STRING& version_keyword,
           const STRING& date_keyword, const STRING& build, const STRING& user);
  /// Takes the present moment as the end, and the whole seconds since the start.
  void StampEnd();

  std::time_t start_seconds = std::time(nullptr);
  std::time_t end_seconds = 0;
  STRING name;     ///< binary name; the key of the run among others
  STRING program;  ///< name as the banner shows it
  STRING version;
  STRING title;
  STRING date;
  STRING full_version;
  STRING start_time;
  STRING end_time;
  double execution_seconds = 0.0;
  STRING compiler_user;
};

/// A version or a date without the dress of a version-control keyword; others stay.
STRING PlainVersion(const STRING& keyword);
STRING PlainDate(const STRING& keyword);

/// "program version  day compiled by user", in one line.
void make_build_line(STRING& buffer, const SoftwareIdentity& identity, const STRING& user);
void make_build_line(STRING& buffer, const STRING& name, const STRING& version_keyword,
                     const STRING& date_keyword, const STRING& user);

}  // namespace varnoth
