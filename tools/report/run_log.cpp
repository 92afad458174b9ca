#include "tools/report/run_log.hpp"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string_view>

#include "tools/pool/document.hpp"

namespace varnoth::tools {

namespace {

constexpr std::string_view LOUD_LEVELS[] = {"WARN", "QA_WA", "EXCEP", "ALARM"};
constexpr std::string_view NAME = " : varnoth : ";
constexpr std::size_t LABEL_LENGTH = 5;

std::string_view Trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t()");
  if (first == text.npos) return {};
  return text.substr(first, text.find_last_not_of(" \t()") - first + 1);
}

/// The cells of "| 1 | 2 |" that are numbers, or nothing if one is not.
std::vector<double> NumbersOfRow(std::string_view row) {
  std::vector<double> numbers;
  std::size_t begin = row.find('|');
  for (std::size_t end = row.find('|', begin + 1); begin != row.npos && end != row.npos;
       begin = end, end = row.find('|', begin + 1)) {
    const std::string cell(Trimmed(row.substr(begin + 1, end - begin - 1)));
    char* stop = nullptr;
    const double number = std::strtod(cell.c_str(), &stop);
    if (cell.empty() && numbers.empty()) continue;  // the corner of a grid's head
    if (cell.empty() || *stop != '\0') return {};
    numbers.push_back(number);
  }
  return numbers;
}

/// Follows the lines of a log from run to run.
class LOG_READER {
 public:
  void Take(std::string_view label, std::string_view text, std::size_t line) {
    if (text.starts_with("Varnoth Estimations varnoth")) StartRun();
    if (std::ranges::find(LOUD_LEVELS, label) != std::end(LOUD_LEVELS)) {
      TakeNotice(label, text, line);
    } else if (text.starts_with("|")) {
      TakeRow(NumbersOfRow(text));
    } else {
      TakeTold(text);
    }
  }

  RUN_LOG log;

 private:
  /// Some lines stand ahead of a run's banner; those of the run before it go.
  void StartRun() {
    RUN_LOG next;
    if (!has_banner || log.is_ended) {
      next.notices.assign(log.notices.begin() + static_cast<std::ptrdiff_t>(count_at_end),
                          log.notices.end());
      std::erase_if(next.notices, [](const NOTICE& notice) { return notice.level == "ALARM"; });
    }
    log = next;
    has_banner = true;
    count_at_end = 0;
    sweeps = 0;
    grid = nullptr;
  }

  void TakeNotice(std::string_view label, std::string_view text, std::size_t line) {
    const bool is_usual =
        text.starts_with("Configuration file ") && text.ends_with(" does not exist!");
    if (!is_usual) log.notices.push_back({std::string(label), FromLatin1(text), line});
    if (text.find("terminated with error!") != text.npos ||
        text.find("ZOD_MSG|ERROR|varnoth got fatal signal") != text.npos) {
      EndRun();
    }
  }

  void EndRun() {
    log.is_ended = true;
    count_at_end = log.notices.size();
  }

  void TakeRow(const std::vector<double>& row) {
    constexpr std::size_t SWEEP_COLUMNS = 6;
    constexpr std::size_t GRID_COLUMNS = 4;
    if (grid == nullptr) {
      if (row.size() == SWEEP_COLUMNS && sweeps > 0) log.phase[sweeps - 1].push_back(row.back());
    } else if (row.size() == GRID_COLUMNS) {
      grid->lines.push_back(row[0]);
      grid->values.push_back({row[1], row[2], row[3]});
    } else if (row.size() == GRID_COLUMNS - 1) {
      grid->samples = {row[0], row[1], row[2]};
    }
  }

  void TakeTold(std::string_view text) {
    constexpr std::string_view STARTED = "start time: ";
    constexpr std::string_view MISFIT = "Maximum error through ellipsoid appr. [cycl] : ";
    if (text.starts_with(STARTED)) {
      log.started = FromLatin1(text.substr(STARTED.size(), 24));
    } else if (text.starts_with("Azimuth position :")) {
      if (sweeps < 2) log.phase[sweeps++].clear();
    } else if (text.starts_with(MISFIT)) {
      log.misfit = std::strtod(std::string(text.substr(MISFIT.size())).c_str(), nullptr);
    } else if (text.starts_with("Effective Baseline for a 9-point grid")) {
      grid = &log.effective_baseline;
    } else if (text.starts_with("Baseline for a 9-point grid")) {
      grid = &log.baseline;
    } else if (text.starts_with("end time: ")) {
      EndRun();
    }
  }

  bool has_banner = false;
  std::size_t count_at_end = 0;  ///< of notices, when the run before ended
  std::size_t sweeps = 0;
  NINE_POINTS* grid = nullptr;
};

/// Why there is nothing to open; empty for a file.
std::string FaultOfPlace(const std::string& file) {
  std::error_code error;
  const std::filesystem::file_type type = std::filesystem::status(file, error).type();
  if (error) return error.message();
  if (type == std::filesystem::file_type::directory) return "is a directory";
  if (type != std::filesystem::file_type::regular) return "is no file";  // a pipe would block
  return "";
}

}  // namespace

const NOTICE* RUN_LOG::FirstAlarm() const {
  const auto found = std::ranges::find(notices, "ALARM", &NOTICE::level);
  return found == notices.end() ? nullptr : &*found;
}

RUN_LOG ReadRunLog(const std::string& file) {
  LOG_READER reader;
  reader.log.fault = FaultOfPlace(file);
  if (!reader.log.fault.empty()) return reader.log;
  std::ifstream lines(file, std::ios::binary);
  std::size_t number = 0;
  for (std::string line; std::getline(lines, line);) {
    ++number;
    const std::string_view text(line);
    if (text.size() < LABEL_LENGTH + NAME.size() ||
        text.substr(LABEL_LENGTH, NAME.size()) != NAME) {
      continue;
    }
    reader.Take(Trimmed(text.substr(0, LABEL_LENGTH)), text.substr(LABEL_LENGTH + NAME.size()),
                number);
  }
  if (!lines.eof()) reader.log.fault = std::strerror(errno);
  return reader.log;
}

}  // namespace varnoth::tools
