#include "driver/usage.hpp"

#include <unistd.h>

#include <cstdio>
#include <string_view>

#include "log/log.hpp"

namespace varnoth {

namespace {

constexpr const char* USAGE = R"(Usage: varnoth -KEY VALUE ...
Calculates the geometry of an interferometric radar image pair.

Needed, in the arguments, the configuration file or the environment; else the run
asks for them at the keyboard:
  -FlatEarthPolyDegree DEGREE  degree of the flat-earth polynomial
  -MasterPar FILE              master scene pool
  -SlavePar FILE               slave scene pool
  -ParameterPool FILE          InSAR pool, which receives the results
  -log_pp FILE                 log pool, created if it does not exist

Optional:
  -LocalHeight METRES          height of the scene, in place of the InSAR pool's
  -DurableUpdate TRUE|FALSE    TRUE: updates wait for the disk
  -pid NAME                    name in the names of status files, log and configuration
  -status DIRECTORY            directory of the status files
  -pcf FILE                    configuration file: lines of a key and a value
  -lfn FILE                    log file
  -lfl LEVEL                   lowest level in the log file
  -lsl LEVEL                   lowest level on the screen

Levels: TRACE DEBUG PARAMETER INFO QA_WARNING WARNING EXCEPTION ALARM
Exit status: 0 end reached, 1 failure, 2 STOP file found, 255 no log file.
More: man varnoth
)";

}  // namespace

bool answer_single_argument(int argc, char** argv) {
  if (argc != 2) return false;
  const std::string_view word = argv[1];
  if (word != "--help" && word != "-help") {
    std::fprintf(stderr, "varnoth: \"%s\" has no value; varnoth --help shows the keys\n", argv[1]);
    return false;
  }
  std::fputs(USAGE, stdout);
  unlink(GlobalLog.get_file_path().c_str());
  return true;
}

}  // namespace varnoth
