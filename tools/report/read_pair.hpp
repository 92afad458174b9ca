#pragma once

#include <string>

#include "tools/report/record.hpp"

namespace varnoth::tools {

/// The name of a directory or of a log as a pair's.
std::string NameOfPlace(const std::string& place);

/// Reads insar.pool, master.pool, slave.pool and log.varnoth of a directory, and touches nothing.
/// What is missing or wrong stands in the remarks; an error among them says that there is no result
/// to show.
PAIR_RECORD ReadPair(const std::string& directory);

/// A pair of which only the log was kept.
PAIR_RECORD ReadKeptLog(const std::string& file, ENDING ending);

}  // namespace varnoth::tools
