// The least that a run's work on files costs: what a run does with files and nothing else, by plain
// system calls. Works in the current directory, on the three pools of a pair.
//
//     floor_file_work <log lines> <length> <screen lines> <length> <results> <length> <software
//     rows> <length>
//
// where each length is the mean of the lines or entries whose number comes before it.

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <initializer_list>

namespace {

constexpr std::size_t LARGEST = 1 << 20;
char filling[LARGEST];
char block[LARGEST];

struct ITEMS {
  int count;
  std::size_t length;
};

void Need(bool holds) {
  if (!holds) _exit(1);
}

void Write(int file, const char* bytes, std::size_t length) {
  Need(write(file, bytes, length) == static_cast<ssize_t>(length));
}

void WriteSmallFile(const char* name, const char* content) {
  const int file = open(name, O_WRONLY | O_CREAT | O_CLOEXEC, 0666);
  Need(file >= 0);
  Write(file, content, std::strlen(content));
  Need(ftruncate(file, static_cast<off_t>(std::strlen(content))) == 0);
  close(file);
}

std::size_t ReadWhole(int file) {
  std::size_t length = 0;
  for (ssize_t count = 1; count > 0; length += static_cast<std::size_t>(count)) {
    count = pread(file, block + length, LARGEST - length, static_cast<off_t>(length));
    Need(count >= 0);
  }
  return length;
}

/// Builds the new pool beside the old one, with a write per entry, and copies it over.
void Update(int pool, ITEMS entries) {
  char name[] = "pool_XXXXXX";
  const int temporary = mkstemp(name);
  Need(temporary >= 0);
  Write(temporary, block, ReadWhole(pool));
  for (int i = 0; i < entries.count; ++i) Write(temporary, filling, entries.length);
  const std::size_t length = ReadWhole(temporary);
  Need(ftruncate(pool, 0) == 0);
  Need(pwrite(pool, block, length, 0) == static_cast<ssize_t>(length));
  close(pool);
  close(temporary);
  unlink(name);
}

}  // namespace

int main(int argc, char** argv) {
  Need(argc == 9);
  const auto items = [&](int at) {
    const ITEMS of{std::atoi(argv[at]), static_cast<std::size_t>(std::atoi(argv[at + 1]))};
    Need(of.length < LARGEST);
    return of;
  };
  const ITEMS log_lines = items(1);
  const ITEMS screen_lines = items(3);
  const ITEMS results = items(5);
  const ITEMS software_rows = items(7);
  std::size_t longest = 0;
  for (const ITEMS& each : {log_lines, screen_lines, results, software_rows}) {
    longest = each.length > longest ? each.length : longest;
  }
  std::memset(filling, 'x', longest);

  // The log: one line in a temporary file, which then moves.
  const char* const preferred = std::getenv("TMPDIR");
  const char* const directory = preferred != nullptr ? preferred : "/tmp";
  char log_name[256];
  Need(std::strlen(directory) + sizeof "/log.XXXXXX" <= sizeof log_name);
  std::strcat(std::strcpy(log_name, directory), "/log.XXXXXX");
  const int early_log = mkstemp(log_name);
  Need(early_log >= 0);
  Write(early_log, filling, log_lines.length);
  const int log = open("log.varnoth", O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666);
  Need(log >= 0);
  Write(log, block, ReadWhole(early_log));
  close(early_log);
  unlink(log_name);

  struct stat status {};
  Need(stat("STOP.varnoth", &status) != 0);
  WriteSmallFile("ERROR.varnoth", "1");
  WriteSmallFile("current_process.pid", "12345\n");
  WriteSmallFile("parent_process.pid", "12345\n");

  const int insar = open("insar.pool", O_RDWR | O_CLOEXEC);
  const int software = open("log.pool", O_RDWR | O_CREAT | O_CLOEXEC, 0666);
  Need(insar >= 0 && software >= 0);
  ReadWhole(insar);
  for (const char* name : {"master.pool", "slave.pool"}) {
    const int scene = open(name, O_RDONLY | O_CLOEXEC);
    Need(scene >= 0);
    ReadWhole(scene);
    close(scene);
  }
  for (int i = 1; i < log_lines.count; ++i) Write(log, filling, log_lines.length);
  for (int i = 0; i < screen_lines.count; ++i) Write(STDOUT_FILENO, filling, screen_lines.length);
  Update(software, software_rows);
  Update(insar, results);
  unlink("ERROR.varnoth");
  WriteSmallFile("OK.varnoth", "0");
  close(log);
}
