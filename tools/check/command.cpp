#include "tools/check/command.hpp"

#include <algorithm>
#include <cstdio>

#include "tools/check/finding.hpp"
#include "tools/check/rehearsal.hpp"

namespace varnoth::tools {

namespace {

std::string Count(std::size_t count, const char* word) {
  return std::to_string(count) + " " + word + (count == 1 ? "" : "s");
}

void PrintJson(const FINDING_LIST& findings, bool would_succeed) {
  JSON list = JSON::array();
  for (const FINDING& finding : findings) list.push_back(ToJson(finding));
  const JSON all = {{"would_succeed", would_succeed}, {"findings", list}};
  std::puts(all.dump(-1, ' ', false, JSON::error_handler_t::replace).c_str());
}

}  // namespace

TOOL_STATUS CheckStep(const std::vector<std::string>& arguments, bool as_json) {
  FINDING_LIST findings;
  const STEP_SETTINGS settings = FindSettings(arguments, findings);
  const auto is_error = [](const FINDING& finding) { return finding.level == SEVERITY::ERROR; };
  const auto pools = OpenPools(settings, findings);
  CheckUpdates(settings, findings);
  // An error so far is one of the run's surroundings; those of the pools are the rehearsal's
  // verdict.
  bool would_succeed = pools && std::none_of(findings.begin(), findings.end(), is_error);
  if (pools) {
    CheckInputs(*pools, settings, findings);
    would_succeed &= Rehearse(*pools, settings, findings);
  }
  if (would_succeed) {
    // Nothing that stops a run was there: what looked like it is only odd.
    for (FINDING& finding : findings) finding.level = SEVERITY::WARNING;
  }
  std::stable_sort(findings.begin(), findings.end(), [](const FINDING& a, const FINDING& b) {
    return a.level == SEVERITY::ERROR && b.level != SEVERITY::ERROR;
  });
  if (as_json) {
    PrintJson(findings, would_succeed);
  } else {
    for (const FINDING& finding : findings) Tell(finding);
    const auto errors =
        static_cast<std::size_t>(std::count_if(findings.begin(), findings.end(), is_error));
    std::printf("the run would %s: %s, %s\n", would_succeed ? "succeed" : "fail",
                Count(errors, "error").c_str(), Count(findings.size() - errors, "warning").c_str());
  }
  return would_succeed ? GOOD : TOOL_STATUS::FINDINGS;
}

}  // namespace varnoth::tools
