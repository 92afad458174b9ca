#include <csignal>
#include <cstdio>
#include <stdexcept>

#include "tools/stack/commands.hpp"
#include "tools/stack/pair_run.hpp"

namespace varnoth::tools {

TOOL_STATUS RunStack(const RUN_REQUEST& request) try {
  PAIR_RUNNER runner(request.results);
  int count[3] = {};
  for (const std::string& pair : request.pairs) {
    PAIR_END end = PAIR_END::FAILED;
    try {
      end = runner.Run(pair);
    } catch (const std::runtime_error& failure) {
      Tell(pair, 1, SEVERITY::ERROR, failure.what());
    }
    if (end == PAIR_END::INTERRUPTED || runner.Signals().Pending() != 0) break;
    ++count[static_cast<int>(end)];
  }
  std::printf("done %d, failed %d, stopped %d\n", count[0], count[1], count[2]);
  std::fflush(stdout);
  // A signal that asked to end comes through when the runner goes.
  return count[0] == static_cast<int>(request.pairs.size()) ? GOOD : FINDINGS;
} catch (const std::runtime_error& failure) {
  Tell(request.results, 1, SEVERITY::ERROR, failure.what());
  return FINDINGS;
}

}  // namespace varnoth::tools
