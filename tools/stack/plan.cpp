#include <cstdio>
#include <filesystem>

#include "tools/import/commands.hpp"
#include "tools/import/failure.hpp"
#include "tools/import/scene_finish.hpp"
#include "tools/stack/commands.hpp"
#include "tools/stack/plan_files.hpp"
#include "tools/whole_file.hpp"

namespace varnoth::tools {

namespace {

namespace fs = std::filesystem;

std::size_t ReferenceOf(const SCENE_STACK& stack, const PLAN_REQUEST& request) {
  if (request.reference.empty()) return BestReference(stack);
  for (std::size_t i = 0; i < stack.scenes.size(); ++i) {
    if (stack.scenes[i].date == request.reference) return i;
  }
  throw IMPORT_FAILURE(request.places.front(), 1,
                       "--reference " + request.reference + ": no scene is of that date");
}

void PrintScenes(const PLAN& plan) {
  std::printf("%-10s %5s %13s %10s %11s %8s\n", "date", "days", "perpendicular", "parallel",
              "along track", "overlap");
  for (std::size_t i = 0; i < plan.stack.scenes.size(); ++i) {
    const STACK_PAIR pair{plan.reference, i};
    const BASELINE baseline = BaselineOf(plan.stack, pair);
    std::printf("%-10s %5lld %11.3f m %8.3f m %9.3f m %6.1f %%%s\n",
                plan.stack.scenes[i].date.c_str(), static_cast<long long>(DaysOf(plan.stack, pair)),
                baseline.perpendicular, baseline.parallel, baseline.along_track,
                100 * Overlap(plan.stack.scenes[plan.reference], plan.stack.scenes[i]),
                i == plan.reference ? "  reference" : "");
  }
}

void TellNetwork(const PLAN& plan, const std::string& out) {
  std::printf("%zu pairs of %zu scenes, %s\n", plan.pairs.size(), plan.stack.scenes.size(),
              plan.parts.size() == 1 ? "connected" : "not connected");
  if (plan.parts.size() == 1) return;
  std::string text =
      "the network is not connected: it has " + std::to_string(plan.parts.size()) + " parts";
  constexpr std::size_t MOST = 10;
  for (std::size_t i = 0; i < plan.parts.size() && i < MOST; ++i) {
    const std::vector<std::size_t>& part = plan.parts[i];
    text += (i == 0 ? ": " : "; ") + plan.stack.scenes[part.front()].date;
    if (part.size() > 1) {
      text += " to " + plan.stack.scenes[part.back()].date + " (" + std::to_string(part.size()) +
              " scenes)";
    }
  }
  if (plan.parts.size() > MOST) text += "; ...";
  Tell(out, 1, SEVERITY::WARNING, text);
}

/// Makes a directory for each pair. Status: whether all of them are there.
TOOL_STATUS MakePairs(const PLAN& plan, const PLAN_REQUEST& request) {
  fs::create_directories(request.make);
  TOOL_STATUS status = GOOD;
  for (const STACK_PAIR& pair : plan.pairs) {
    const STACK_SCENE& master = plan.stack.scenes[pair.master];
    const STACK_SCENE& slave = plan.stack.scenes[pair.slave];
    PAIR_REQUEST one;
    one.master = master.file;
    one.slave = slave.file;
    one.out = request.make + "/pair_" + master.date + "_" + slave.date;
    one.height = request.height;
    if (ImportPair(one) != GOOD) status = FINDINGS;
  }
  return status;
}

}  // namespace

TOOL_STATUS PlanStack(const PLAN_REQUEST& request) {
  return WithFailuresTold(request.out, [&] {
    std::optional<SCENE_STACK> stack = ReadStack(PoolsIn(request.places), request.height);
    if (!stack) return FINDINGS;
    PLAN plan{std::move(*stack), 0, {}, {}};
    plan.reference = ReferenceOf(plan.stack, request);
    plan.pairs = MakeNetwork(plan.stack, plan.reference, request.network);
    plan.parts = PartsOf(plan.stack.scenes.size(), plan.pairs);
    fs::create_directories(request.out);
    WriteWholeFile(request.out + "/plan.json", PlanJson(plan));
    WriteWholeFile(request.out + "/pairs.csv", PairsCsv(plan));
    WriteWholeFile(request.out + "/network.svg", NetworkSvg(plan));
    PrintScenes(plan);
    TellNetwork(plan, request.out);
    return request.make.empty() ? GOOD : MakePairs(plan, request);
  });
}

}  // namespace varnoth::tools
