#pragma once

#include <ctime>

#include "foundation/string.hpp"

namespace varnoth {

/// Who ran, in which version, when and how long. Texts of times are local, in the form
/// "2026-11-24T21:06:38".
///
///     SoftwareIdentity identity;
///     identity.set("varnoth", "Estimations", "$Revision: 1.2 $", "2016-12-09", "build 7", "gcc");
///     identity.StampEnd();
///     std::puts(identity.program.c_str());  // "Estimations varnoth"
class SoftwareIdentity {
 public:
  /// Takes the present moment as the start; all texts are empty.
  SoftwareIdentity() = default;

  /// Fills the record except for its end. Reduces a version or date that is a version-control
  /// keyword ("$Revision: 1.2 $", "$Date: 2016/12/09 17:32:18 $") to its value: "1.2",
  /// "2016-12-09T17:32:18".
  void set(const STRING& binary, const STRING& run_title, const STRING& version_keyword,
           const STRING& date_keyword, const STRING& build, const STRING& user);
  /// Takes the present moment as the end, and computes the whole seconds since the start.
  void StampEnd();

  std::time_t start_seconds = std::time(nullptr);
  std::time_t end_seconds = 0;
  STRING name;     ///< binary name; identifies the run's row in a SoftwareLog
  STRING program;  ///< title and name, as the banner shows them
  STRING version;
  STRING title;
  STRING date;
  STRING full_version;
  STRING start_time;
  STRING end_time;
  double execution_seconds = 0.0;
  STRING compiler_user;
};

/// The value of a version or date keyword of version control; another text stays as it is.
STRING PlainVersion(const STRING& keyword);
STRING PlainDate(const STRING& keyword);

/// Sets `buffer` to "program version  day compiled by user"; the day is the date up to its "T".
void make_build_line(STRING& buffer, const SoftwareIdentity& identity, const STRING& user);
void make_build_line(STRING& buffer, const STRING& name, const STRING& version_keyword,
                     const STRING& date_keyword, const STRING& user);

}  // namespace varnoth
