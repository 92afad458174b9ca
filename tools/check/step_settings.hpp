#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/check/finding.hpp"

namespace varnoth::tools {

/// A value of a run's configuration and where it stands.
struct SETTING {
  std::string key;
  std::string value;
  std::string file;  ///< empty for an argument and a variable of the environment
  std::size_t line = 0;
  bool is_given = false;
};

/// The configuration of a run.
struct STEP_SETTINGS {
  SETTING master;
  SETTING slave;
  SETTING insar;
  SETTING log_pool;
  SETTING degree;
  SETTING height;  ///< of the whole scene, instead of the InSAR pool's
  std::string configuration_file;
};

/// Finds what the step would find: in its arguments (without the program's name), in its
/// configuration file and in the environment, in the step's order. Tells what is missing, too long
/// or not what it seems, and which of the step's own files can't be written.
STEP_SETTINGS FindSettings(const std::vector<std::string>& arguments, FINDING_LIST& findings);

/// Why the step could not open a file for writing, which it creates where there is none; empty if
/// it could.
std::string WhyNotWritable(const std::string& path);
/// Why no file can be made in the directory of a path; empty if one can.
std::string WhyNoneBeside(const std::string& path);

}  // namespace varnoth::tools
