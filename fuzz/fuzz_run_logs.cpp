#include <algorithm>

#include "fuzz_target.hpp"
#include "system/floating_point_traps.hpp"
#include "tools/pool/document.hpp"
#include "tools/report/page_data.hpp"
#include "tools/report/run_log.hpp"

namespace varnoth::fuzz {

using namespace varnoth::tools;

/// The log of a run. Whatever it holds goes into a page as data that a browser can read. A page
/// costs ten times its log: only an input of a multiple of sixty-four bytes gets one, and none of
/// the greatest length does.
void FuzzRunLogs(const std::string& input) {
  const HELD_TRAPS held;  // the tools have none, except where they rehearse a run
  WriteFile("log.varnoth", input);
  PAIR_RECORD record;
  record.log = ReadRunLog("log.varnoth");
  Require(record.log.fault.empty(), "a file is read");
  const auto lines = static_cast<std::size_t>(std::ranges::count(input, '\n')) + 1;
  std::size_t before = 0;
  for (const NOTICE& notice : record.log.notices) {
    Require(notice.line > before && notice.line <= lines, "notices in the order of the log");
    before = notice.line;
  }
  for (const NINE_POINTS* grid : {&record.log.effective_baseline, &record.log.baseline}) {
    Require(grid->lines.size() == grid->values.size(), "a row of values for each line");
  }
  if (input.size() % 64 != 0) return;
  record.ending = ENDING::DONE;
  record.numbers["n_samples"] = 1001;
  const std::string page = PageData({record}, false);
  Require(page.find('<') == page.npos, "no markup in a page's data");
  const JSON data = JSON::parse(page);
  Require(data["pairs"][0]["notices"].size() == record.log.notices.size(), "all notices");
}

}  // namespace varnoth::fuzz
