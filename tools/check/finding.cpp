#include "tools/check/finding.hpp"

#include <cstdio>

namespace varnoth::tools {

namespace {

JSON OrNull(const std::string& text) { return text.empty() ? JSON(nullptr) : JSON(text); }
std::string OrEmpty(const JSON& json) { return json.is_null() ? "" : json.get<std::string>(); }

}  // namespace

JSON ToJson(const FINDING& finding) {
  return {{"level", finding.level == SEVERITY::ERROR ? "error" : "warning"},
          {"code", finding.code},
          {"file", OrNull(finding.file)},
          {"line", finding.line > 0 ? JSON(finding.line) : JSON(nullptr)},
          {"key", OrNull(finding.key)},
          {"message", finding.message},
          {"remedy", finding.remedy}};
}

FINDING FindingFromJson(const JSON& json) {
  FINDING finding;
  finding.level = json["level"] == "error" ? SEVERITY::ERROR : SEVERITY::WARNING;
  finding.code = json["code"];
  finding.file = OrEmpty(json["file"]);
  finding.line = json["line"].is_null() ? 0 : json["line"].get<std::size_t>();
  finding.key = OrEmpty(json["key"]);
  finding.message = json["message"];
  finding.remedy = json["remedy"];
  return finding;
}

void Tell(const FINDING& finding) {
  const std::string key = finding.key.empty() ? "" : finding.key + ": ";
  const std::string text = key + finding.message + ": " + finding.remedy;
  if (!finding.file.empty()) {
    varnoth::Tell(finding.file, finding.line > 0 ? finding.line : 1, finding.level, text);
    return;
  }
  std::fprintf(stderr, "varnoth-tools: %s: %s\n",
               finding.level == SEVERITY::ERROR ? "error" : "warning", Printable(text).c_str());
}

std::string Short(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.6g", value);
  return text;
}

}  // namespace varnoth::tools
