#include <cstdio>

#include "tools/import/scene_finish.hpp"
#include "tools/stack/commands.hpp"
#include "tools/stack/pair_run.hpp"

namespace varnoth::tools {

TOOL_STATUS RunStack(const RUN_REQUEST& request) {
  return WithFailuresTold(request.results, [&] {
    PAIR_RUNNER runner(request.results);
    int count[3] = {};
    for (const std::string& pair : request.pairs) {
      PAIR_END end = PAIR_END::FAILED;
      WithFailuresTold(pair, [&] {
        end = runner.Run(pair);
        return GOOD;
      });
      if (end == PAIR_END::INTERRUPTED || runner.Signals().Pending() != 0) break;
      ++count[static_cast<int>(end)];
    }
    std::printf("done %d, failed %d, stopped %d\n", count[0], count[1], count[2]);
    std::fflush(stdout);
    // A signal that asked to end comes through when the runner goes.
    return count[0] == static_cast<int>(request.pairs.size()) ? GOOD : FINDINGS;
  });
}

}  // namespace varnoth::tools
