// Reading and writing pools against the least that their bytes and numbers cost.

#include <benchmark/benchmark.h>

#include <charconv>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "orbit/general_orbit.hpp"
#include "pool/entry_reader.hpp"
#include "pool/entry_text.hpp"
#include "pool/parameter_pool_read_write_change.hpp"
#include "pool_file.hpp"

namespace varnoth {

namespace {

using bench::POOL_FILE;

/// Entries as they stand in a scene's pool, texts and numbers and a vector.
std::string Entries(int count) {
  std::string text;
  for (int i = 0; i < count; ++i) {
    const std::string name = "parameter_" + std::to_string(i);
    text += name + "                      FLT_15           1.00012500000000000E+03\n\n";
    text += name + "_text                 STR              \"of a scene\"\n\n";
    text += name + "_vector               FLT_15_V         0\t2\n                  {\n";
    text +=
        "                    6.37813700000000000E+06\n                    "
        "6.35675231420000000E+06\n";
    text += "                  }\n\n";
  }
  return text;
}

long CountLines(const char* bytes, std::size_t length) {
  long lines = 0;
  for (const char* const end = bytes + length; bytes < end; ++lines) {
    const void* const found = std::memchr(bytes, '\n', static_cast<std::size_t>(end - bytes));
    if (found == nullptr) break;
    bytes = static_cast<const char*>(found) + 1;
  }
  return lines;
}

/// Every line of a file.
void Lines(benchmark::State& state) {
  const POOL_FILE file(Entries(static_cast<int>(state.range(0))));
  POOL_STREAM stream;
  if (!stream.Open(file.Path(), POOL_STREAM::MODE::READ)) state.SkipWithError("no file");
  ENTRY_READER reader(stream);
  for (auto _ : state) {
    long lines = 0;
    for (reader.Rewind(); reader.NextLine();) ++lines;
    benchmark::DoNotOptimize(lines);
  }
}
BENCHMARK(Lines)->Arg(400);

void LinesFloor(benchmark::State& state) {
  const std::string text = Entries(static_cast<int>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(CountLines(text.data(), text.size()));
}
BENCHMARK(LinesFloor)->Arg(400);

constexpr int SEARCHES = 75;  // of a run, in one pool

/// The searches of a run, for keys at the end of a pool.
void Searches(benchmark::State& state) {
  bench::ShowNothing();
  const POOL_FILE file(Entries(static_cast<int>(state.range(0))) + "last INT_32 1\n");
  PARAMETER_POOL pool(file.Path());
  for (auto _ : state) {
    for (int i = 0; i < SEARCHES; ++i) {
      if (!pool.find_key("last")) state.SkipWithError("the key is not found");
    }
  }
}
BENCHMARK(Searches)->Arg(40)->Arg(4000)->Unit(benchmark::kMicrosecond);

void SearchesFloor(benchmark::State& state) {
  const std::string text = Entries(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    for (int i = 0; i < SEARCHES; ++i) {
      benchmark::DoNotOptimize(CountLines(text.data(), text.size()));
    }
  }
}
BENCHMARK(SearchesFloor)->Arg(40)->Arg(4000)->Unit(benchmark::kMicrosecond);

constexpr int RESULTS = 39;  // of a run

/// An update with the results of a run, for pools of different sizes.
void Update(benchmark::State& state) {
  bench::ShowNothing();
  const std::string text = Entries(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    state.PauseTiming();
    const POOL_FILE file(text);
    state.ResumeTiming();
    PARAMETER_POOL_READ_WRITE_CHANGE pool(file.Path());
    for (int i = 0; i < RESULTS; ++i) {
      pool.Change(("result_" + std::to_string(i)).c_str(), static_cast<double>(i));
    }
  }
}
BENCHMARK(Update)->Arg(40)->Arg(400)->Arg(4000)->Unit(benchmark::kMicrosecond);

constexpr const char* NUMBER = "-3.40161812345678912E+06";

/// A number out of a word.
void NumberIn(benchmark::State& state) {
  const POOL_FILE file(NUMBER + std::string("\n"));
  POOL_STREAM stream;
  if (!stream.Open(file.Path(), POOL_STREAM::MODE::READ)) state.SkipWithError("no file");
  ENTRY_READER reader(stream);
  if (!reader.NextLine() || !reader.NextToken()) state.SkipWithError("no word");
  for (auto _ : state) {
    double value = 0.0;
    reader.Parse(value);
    benchmark::DoNotOptimize(value);
  }
}
BENCHMARK(NumberIn);

void NumberInFloor(benchmark::State& state) {
  const char* text = NUMBER;
  for (auto _ : state) {
    benchmark::DoNotOptimize(text);
    double value = 0.0;
    std::from_chars(text, text + std::strlen(text), value);
    benchmark::DoNotOptimize(value);
  }
}
BENCHMARK(NumberInFloor);

ARRAY<double> Numbers(int count) {
  ARRAY<double> numbers(0, count);
  for (int i = 0; i < count; ++i) numbers.GetBase()[i] = -3401618.1 / (i + 0.7);
  return numbers;
}

/// A vector's numbers, with their indents and line ends.
void NumbersOut(benchmark::State& state) {
  const ARRAY<double> numbers = Numbers(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    ENTRY_TEXT text("key", POOL_TYPE<ARRAY<double>>, ARRAY<STRING>());
    text.Append(numbers);
    benchmark::DoNotOptimize(text);
  }
}
BENCHMARK(NumbersOut)->Arg(1000);

void NumbersOutFloor(benchmark::State& state) {
  const ARRAY<double> numbers = Numbers(static_cast<int>(state.range(0)));
  char text[32];
  for (auto _ : state) {
    for (int i = 0; i < numbers.GetLength(); ++i) {
      std::to_chars(text, std::end(text), numbers.GetBase()[i], std::chars_format::scientific, 17);
      benchmark::DoNotOptimize(text);
    }
  }
}
BENCHMARK(NumbersOutFloor)->Arg(1000);

/// Loads an orbit of five hours or of two days.
void OrbitLoad(benchmark::State& state) {
  bench::ShowNothing();
  const POOL_FILE file(bench::OrbitText(static_cast<int>(state.range(0)), 8));
  for (auto _ : state) {
    PARAMETER_POOL pool(file.Path());
    SCENE_ORBIT orbit;
    orbit.read(pool);
    benchmark::DoNotOptimize(orbit.core.get());
  }
}
BENCHMARK(OrbitLoad)->Arg(1700)->Arg(17000)->Unit(benchmark::kMillisecond);

/// Reads the bytes once and takes the number of every line that has one.
void OrbitLoadFloor(benchmark::State& state) {
  const POOL_FILE file(bench::OrbitText(static_cast<int>(state.range(0)), 8));
  for (auto _ : state) {
    std::ifstream stream(file.Path(), std::ios::binary | std::ios::ate);
    std::string text(static_cast<std::size_t>(stream.tellg()), '\0');
    stream.seekg(0).read(text.data(), static_cast<std::streamsize>(text.size()));
    double sum = 0.0;
    const char* const end = text.data() + text.size();
    for (const char* line = text.data(); line < end;) {
      const auto* line_end = static_cast<const char*>(std::memchr(line, '\n', end - line));
      if (*line == ' ') {
        double value = 0.0;
        constexpr int INDENT = 49;
        std::from_chars(line + INDENT, line_end, value);
        sum += value;
      }
      line = line_end + 1;
    }
    benchmark::DoNotOptimize(sum);
  }
}
BENCHMARK(OrbitLoadFloor)->Arg(17000)->Unit(benchmark::kMillisecond);

}  // namespace

}  // namespace varnoth
