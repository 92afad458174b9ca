#include "tools/report/progress.hpp"

#include <unistd.h>

#include <cstdio>
#include <string>

namespace varnoth::tools {

PROGRESS::PROGRESS(std::size_t pairs) : is_shown(isatty(STDERR_FILENO) == 1), total(pairs) {}

PROGRESS::~PROGRESS() { Clear(); }

void PROGRESS::Step() {
  constexpr std::size_t WIDTH = 40;
  constexpr std::chrono::milliseconds PAUSE(100);
  ++done;
  const auto now = std::chrono::steady_clock::now();
  if (!is_shown || (is_drawn && done < total && now - drawn_at < PAUSE)) return;
  const std::string bar(WIDTH * done / total, '#');
  std::fprintf(stderr, "\r[%-*s] %zu of %zu pairs", static_cast<int>(WIDTH), bar.c_str(), done,
               total);
  std::fflush(stderr);
  is_drawn = true;
  drawn_at = now;
}

void PROGRESS::Clear() {
  if (is_drawn) std::fputs("\r\033[K", stderr);
  is_drawn = false;
}

}  // namespace varnoth::tools
