#include <unistd.h>

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <optional>
#include <stdexcept>

#include "tools/geometry/fixed_text.hpp"
#include "tools/geometry/writer.hpp"
#include "tools/whole_file.hpp"

namespace varnoth::tools {

namespace {

class TEXT_WRITER : public GEOMETRY_WRITER {
 public:
  explicit TEXT_WRITER(const std::string& name) {
    if (!name.empty()) file.emplace(name);
  }
  void Begin() override { Put(Head()); }
  void Write(const std::vector<ROW>& /*rows*/, std::size_t /*first*/,
             const std::string& text) override {
    Put(text);
  }
  void Finish() override {
    Put(Tail());
    if (file) file->Finish();
  }

 protected:
  virtual std::string Head() const { return ""; }
  virtual std::string Tail() const { return ""; }

 private:
  void Put(const std::string& text) {
    if (file) {
      file->Write(text);
    } else if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size()) {
      throw std::runtime_error(std::strerror(errno));
    }
  }

  std::optional<WHOLE_FILE> file;  ///< none for standard output
};

/// A value a line, with what it means.
class PLAIN_WRITER final : public TEXT_WRITER {
 public:
  using TEXT_WRITER::TEXT_WRITER;
  void Format(const std::vector<ROW>& rows, std::size_t first, std::string& text) const override {
    constexpr std::size_t NAME_WIDTH = 22;
    constexpr std::size_t VALUE_WIDTH = 44;
    for (const ROW& row : rows) {
      if (first++ > 0) text += '\n';
      for (std::size_t i = 0; i < COLUMN_COUNT; ++i) {
        const std::size_t begin = text.size();
        text += COLUMNS[i].name;
        text.resize(begin + NAME_WIDTH, ' ');
        AppendFixed(text, row[i], COLUMNS[i].decimals);
        text.resize(std::max(begin + VALUE_WIDTH, text.size() + 1), ' ');
        text += COLUMNS[i].meaning;
        text += '\n';
      }
    }
  }
};

class CSV_WRITER final : public TEXT_WRITER {
 public:
  using TEXT_WRITER::TEXT_WRITER;
  void Format(const std::vector<ROW>& rows, std::size_t /*first*/,
              std::string& text) const override {
    char line[COLUMN_COUNT * (FIXED_ROOM + 1)];
    for (const ROW& row : rows) {
      char* at = line;
      for (std::size_t i = 0; i < COLUMN_COUNT; ++i) {
        at = PutFixed(at, row[i], COLUMNS[i].decimals);
        *at++ = i + 1 < COLUMN_COUNT ? ',' : '\n';
      }
      text.append(line, at);
    }
  }

 private:
  std::string Head() const override {
    std::string text;
    for (const COLUMN& column : COLUMNS) text += std::string(text.empty() ? "" : ",") + column.name;
    return text + '\n';
  }
};

class JSON_WRITER final : public TEXT_WRITER {
 public:
  using TEXT_WRITER::TEXT_WRITER;
  void Format(const std::vector<ROW>& rows, std::size_t first, std::string& text) const override {
    for (const ROW& row : rows) {
      text += first++ > 0 ? ",\n{" : "\n{";
      for (std::size_t i = 0; i < COLUMN_COUNT; ++i) {
        text += i > 0 ? ",\"" : "\"";
        text += COLUMNS[i].name;
        text += "\":";
        if (std::isfinite(row[i])) {
          AppendFixed(text, row[i], COLUMNS[i].decimals);
        } else {
          text += "null";
        }
      }
      text += '}';
    }
  }

 private:
  std::string Head() const override {
    JSON definitions;
    for (const COLUMN& column : COLUMNS) {
      const std::string unit =
          column.unit == std::string("1") ? "" : std::string(", ") + column.unit;
      definitions[column.name] = column.meaning + unit;
    }
    return "{\"definitions\":" + definitions.dump() + ",\"points\":[";
  }
  std::string Tail() const override { return "\n]}\n"; }
};

}  // namespace

std::unique_ptr<GEOMETRY_WRITER> MakeTextWriter(const std::string& format,
                                                const std::string& file) {
  if (format == "csv") return std::make_unique<CSV_WRITER>(file);
  if (format == "json") return std::make_unique<JSON_WRITER>(file);
  return std::make_unique<PLAIN_WRITER>(file);
}

}  // namespace varnoth::tools
