#include "tools/report/command.hpp"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "tools/report/collect.hpp"
#include "tools/report/page_data.hpp"
#include "tools/report/page_parts.hpp"
#include "tools/report/progress.hpp"
#include "tools/whole_file.hpp"

namespace varnoth::tools {

namespace {

/// Tells remarks, and whether an error was among them.
bool TellAll(const std::vector<REMARK>& remarks) {
  bool has_error = false;
  for (const REMARK& remark : remarks) {
    Tell(remark.file, remark.line, remark.severity, remark.text);
    has_error = has_error || remark.severity == SEVERITY::ERROR;
  }
  return has_error;
}

/// A page may replace a page, and nothing else: the name of a pool given by mistake costs nothing.
void RefuseOtherFiles(const std::string& out) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(out, error)) return;
  constexpr std::string_view START = "<!doctype html>";
  std::string start(START.size(), '\0');
  std::ifstream file(out, std::ios::binary);
  file.read(start.data(), static_cast<std::streamsize>(start.size()));
  if (file.gcount() > 0 && start != START) {
    throw std::runtime_error("is no page of a report, and stays as it is");
  }
}

}  // namespace

TOOL_STATUS WriteReport(const REPORT_REQUEST& request) try {
  RefuseOtherFiles(request.out);
  const COLLECTION found = FindPairs(request.places);
  bool has_error = TellAll(found.remarks);
  std::vector<PAIR_RECORD> records;
  PROGRESS progress(found.places.size());
  for (const COLLECTION::PLACE& place : found.places) {
    records.push_back(ReadPlace(place));
    if (!records.back().remarks.empty()) {
      progress.Clear();
      has_error = TellAll(records.back().remarks) || has_error;
    }
    progress.Step();
  }
  progress.Clear();
  if (records.empty()) return FINDINGS;
  const bool is_stack = found.has_results_directory || records.size() > 1;
  std::string page(PAGE_BEFORE_DATA);
  page += PageData(records, is_stack);
  page += PAGE_BEHIND_DATA;
  WriteWholeFile(request.out, page);
  return has_error ? FINDINGS : GOOD;
} catch (const std::runtime_error& error) {
  Tell(request.out, 1, SEVERITY::ERROR, error.what());
  return FINDINGS;
}

}  // namespace varnoth::tools
