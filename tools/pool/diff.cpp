#include <algorithm>
#include <cmath>
#include <cstdio>
#include <stdexcept>

#include "tools/pool/commands.hpp"
#include "tools/pool/document.hpp"
#include "tools/pool/value_text.hpp"
#include "tools/pool/value_words.hpp"

namespace varnoth {

namespace {

class COMPARISON {
 public:
  explicit COMPARISON(const DIFF_LIMITS& wanted) : limits(wanted) {}

  void Compare(const POOL_ENTRY& one, const POOL_ENTRY& other) {
    if (one.type != other.type) {
      Report(one.key, one.type, other.type);
      return;
    }
    const auto row = limits.of_key.find(one.key);
    absolute = row != limits.of_key.end() ? row->second : 0.0;
    code = one.code;
    const SHAPE shape = ShapeOf(code);
    if (shape == SHAPE::SCALAR) {
      CompareElement(one.key, one.value, other.value);
      return;
    }
    const JSON& a = one.value["values"];
    const JSON& b = other.value["values"];
    if (shape == SHAPE::VECTOR) {
      CompareFirst(one.key + " first index", one.value["first"], other.value["first"]);
      CompareRow(one.key + "[", one.value["first"], a, b, one.key, "elements");
      return;
    }
    CompareFirst(one.key + " first row", one.value["first_row"], other.value["first_row"]);
    CompareFirst(one.key + " first column", one.value["first_column"], other.value["first_column"]);
    if (a.size() != b.size()) ReportCount(one.key, a.size(), b.size(), "rows");
    for (std::size_t r = 0; r < std::min(a.size(), b.size()); ++r) {
      const std::string number =
          std::to_string(one.value["first_row"].get<long long>() + static_cast<long long>(r));
      CompareRow(one.key + "[" + number + ",", one.value["first_column"], a[r], b[r],
                 one.key + "[" + number + "]", "columns");
    }
  }

  void Report(const std::string& place, const std::string& one, const std::string& other) {
    std::printf("%s: %s | %s\n", place.c_str(), one.c_str(), other.c_str());
    ++differences;
  }

  std::size_t differences = 0;

 private:
  void CompareFirst(const std::string& place, const JSON& one, const JSON& other) {
    if (one != other) Report(place, one.dump(), other.dump());
  }
  void ReportCount(const std::string& place, std::size_t one, std::size_t other,
                   const std::string& what) {
    Report(place, std::to_string(one) + " " + what, std::to_string(other) + " " + what);
  }
  void CompareRow(const std::string& place, const JSON& first, const JSON& a, const JSON& b,
                  const std::string& whole, const std::string& what) {
    if (a.size() != b.size()) ReportCount(whole, a.size(), b.size(), what);
    for (std::size_t i = 0; i < std::min(a.size(), b.size()); ++i) {
      const long long index = first.get<long long>() + static_cast<long long>(i);
      CompareElement(place + std::to_string(index) + "]", a[i], b[i]);
    }
  }
  void CompareElement(const std::string& place, const JSON& one, const JSON& other) {
    const bool is_same =
        one.is_array() ? IsSame(one[0], other[0]) && IsSame(one[1], other[1]) : IsSame(one, other);
    if (!is_same) Report(place, ElementText(one, code, true), ElementText(other, code, true));
  }
  bool IsSame(const JSON& one, const JSON& other) const {
    if (one == other) return true;  // exact for integers too
    if (!one.is_number() || !other.is_number()) return false;
    const auto a = one.get<double>();
    const auto b = other.get<double>();
    const double difference = std::fabs(a - b);
    if (absolute > 0.0 && difference <= absolute) return true;
    return limits.relative > 0.0 &&
           difference <= limits.relative * std::max(std::fabs(a), std::fabs(b));
  }

  const DIFF_LIMITS& limits;
  double absolute = 0.0;  ///< of the key under way
  TYPE_CODE code = UNKNOWN;
};

/// Whether an entry was read; tells of it otherwise.
bool IsRead(const POOL_DOCUMENT& pool, const POOL_ENTRY& entry) {
  if (entry.value.is_null()) {
    Tell(pool.file, entry.line, SEVERITY::ERROR,
         entry.key + " " + entry.type + " can't be read (" + entry.failure + ")");
  }
  return !entry.value.is_null();
}

std::string ValueText(const POOL_ENTRY& entry) {
  if (ShapeOf(entry.code) == SHAPE::SCALAR) return ElementText(entry.value, entry.code, true);
  return std::to_string(entry.value["values"].size()) +
         (ShapeOf(entry.code) == SHAPE::VECTOR ? " elements" : " rows");
}

}  // namespace

TOOL_STATUS DiffPools(const std::string& one, const std::string& other, const DIFF_LIMITS& limits) {
  POOL_DOCUMENT pools[2];
  const std::string* files[] = {&one, &other};
  for (int i = 0; i < 2; ++i) {
    try {
      pools[i] = ReadDocument(*files[i]);
    } catch (const std::runtime_error& error) {
      Tell(*files[i], 1, SEVERITY::ERROR, error.what());
      return FINDINGS;
    }
  }
  COMPARISON comparison(limits);
  bool all_read = true;
  for (const POOL_ENTRY& entry : pools[0].entries) {
    if (pools[0].Find(entry.key) != &entry) continue;  // a run doesn't see it
    const POOL_ENTRY* const partner = pools[1].Find(entry.key);
    const bool is_read = IsRead(pools[0], entry);
    const bool partner_is_read = partner == nullptr || IsRead(pools[1], *partner);
    all_read = all_read && is_read && partner_is_read;
    if (!is_read || !partner_is_read) continue;
    if (partner == nullptr) {
      comparison.Report(entry.key, ValueText(entry), "missing");
    } else {
      comparison.Compare(entry, *partner);
    }
  }
  for (const POOL_ENTRY& entry : pools[1].entries) {
    if (pools[1].Find(entry.key) != &entry || pools[0].Find(entry.key) != nullptr) continue;
    if (IsRead(pools[1], entry)) {
      comparison.Report(entry.key, "missing", ValueText(entry));
    } else {
      all_read = false;
    }
  }
  return comparison.differences == 0 && all_read ? GOOD : FINDINGS;
}

}  // namespace varnoth
