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

struct PARAMETERS_REQUEST {
  std::string source;
  std::string out;
  std::string interpolation;  ///< empty: one that fits the state vectors
};

TOOL_STATUS ImportGmtsar(const PARAMETERS_REQUEST& request);
TOOL_STATUS ImportGamma(const PARAMETERS_REQUEST& request);

struct OEM_REQUEST {
  std::string source;
  std::string scene;  ///< pool whose orbit is replaced in the new one
  std::string out;
  std::string interpolation;  ///< empty: the one that the file asks for
};

TOOL_STATUS ImportOem(const OEM_REQUEST& request);

struct PAIR_REQUEST {
  std::string master;
  std::string slave;
  std::string out;  ///< directory to make
  double height = 0.0;
  std::string lines;    ///< "A:B", first and last one, from 0; empty: all of the master
  std::string samples;  ///< likewise
  bool is_single_pass = false;
};

/// Whether a text is two numbers of an image's lines or samples, as 0:1499.
bool IsSection(const std::string& text);
/// Makes a directory of two scene pools, with the InSAR pool and the configuration of a run.
TOOL_STATUS ImportPair(const PAIR_REQUEST& request);

}  // namespace varnoth::tools
