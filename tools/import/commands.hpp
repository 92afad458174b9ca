#pragma once

#include <string>

#include "tools/message.hpp"

namespace varnoth::tools {

// The subcommands of "varnoth-tools import". They write a scene pool, tell on standard output what
// it holds, and on standard error what to mind.

struct SENTINEL1_REQUEST {
  std::string
      source;  ///< an annotation file, also gzipped, or a product as a folder or ZIP archive
  std::string out;
  std::string swath;         ///< as "IW1"; may be empty where there is only one
  std::string polarisation;  ///< as "VV"; empty: the one that the antenna sends
  std::string orbit;         ///< an orbit file or a folder of them; empty: the annotation's own
  std::string interpolation = "everett_8";
};

TOOL_STATUS ImportSentinel1(const SENTINEL1_REQUEST& request);

}  // namespace varnoth::tools
