#include "support/log_capture.hpp"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "log/log.hpp"

namespace varnoth::test {

TEMPORARY_DIRECTORY::TEMPORARY_DIRECTORY()
    : directory(std::filesystem::temp_directory_path() / "varnoth_test_XXXXXX") {
  if (mkdtemp(directory.data()) == nullptr) throw std::runtime_error("no temporary directory");
}

TEMPORARY_DIRECTORY::~TEMPORARY_DIRECTORY() { std::filesystem::remove_all(directory); }

std::string ReadFile(const std::string& path) {
  return (std::ostringstream() << std::ifstream(path, std::ios::binary).rdbuf()).str();
}

void WriteFile(const std::string& path, const std::string& content) {
  std::ofstream(path, std::ios::binary) << content;
}

LoggedTest::LoggedTest() {
  GlobalLog.open_file(directory.Path("log").c_str(), "log", NO_LEVEL, TRACE);
}

std::string LoggedTest::Log() const {
  GlobalLog.flush();
  return ReadFile(directory.Path("log"));
}

std::string LoggedTest::Take(std::size_t head, std::size_t count) {
  std::istringstream lines(Log());
  std::string texts;
  for (std::string line; std::getline(lines, line);) texts += line.erase(head, count) + "\n";
  std::filesystem::resize_file(directory.Path("log"), 0);
  return texts;
}

}  // namespace varnoth::test
