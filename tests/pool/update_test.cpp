#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <regex>

#include "pool/enumeration_entry.hpp"
#include "pool/join_key.hpp"
#include "pool/parameter_pool_read_write_change.hpp"
#include "pool/time_entries.hpp"
#include "support/log_capture.hpp"

namespace varnoth::test {
namespace {

namespace fs = std::filesystem;

/// The system call that fails once, behind as many that go well.
struct FAULT {
  std::string call;
  int well;
} fault;

bool Fails(const char* call) { return fault.call == call && fault.well-- == 0 && (errno = EIO); }

/// An entry as the writer lays it out.
std::string Entry(const std::string& key, int value) {
  return key + std::string(33 - std::min<std::size_t>(32, key.size()), ' ') + "INT_32          " +
         std::to_string(value) + "\n\n";
}

class PoolUpdateTest : public LoggedTest {
 protected:
  ~PoolUpdateTest() override { fs::current_path("/"); }
  PoolUpdateTest() {
    fs::create_directory(folder);
    fs::current_path(folder);
    WriteFile(path, "k INT_32 2\n");
  }
  /// The pool; its update comes with the end of the statement, or of the variable that takes it.
  PARAMETER_POOL_READ_WRITE_CHANGE Pool() const {
    return PARAMETER_POOL_READ_WRITE_CHANGE(path.c_str());
  }
  /// The file after a change of k to 5.
  std::string Changed(const std::string& before, const std::string& key = "k") const {
    WriteFile(path, before);
    Pool().Change(key.c_str(), 5, ARRAY<STRING>("new"));
    return ReadFile(path);
  }

  /// Adds the lines of an action at their levels to `told`, and what it threw.
  template <class ACTION>
  void Do(ACTION action) {
    TakeLog();
    std::string thrown;
    try {
      action();
    } catch (const ERROR_EXCEPTION& error) {
      thrown = error.what() + std::string("\n");
    }
    fault = {};
    told += std::regex_replace(Log(), std::regex("pool_\\w{6}"), "TMP") + thrown;
  }

  std::string told;
  const std::string folder = directory.Path("folder");
  const std::string path = "pool";
};

TEST_F(PoolUpdateTest, WithoutWritesTheBytesStayButForAnUnfinishedLine) {
  const std::string text =
      "#c\n\nk INT_32  5\r\n  \n" + std::string(3000, 'x') + "\r\xFF\n" + std::string("\0 \n", 3);
  for (const char* rest : {"", "k INT_32 6", "#"}) {
    WriteFile(path, text + rest);
    Pool();
    EXPECT_EQ(ReadFile(path), text);
  }
}

TEST_F(PoolUpdateTest, AReplacedEntryKeepsItsPlaceAndEveryComment) {
  EXPECT_EQ(Changed("#of k\nk INT_32_V 0 1\n  {\n   7\n  }\n\n#of l\nl INT_32 2\n"),
            "#of k\n#new\n" + Entry("k", 5) + "#of l\nl INT_32 2\n");
  EXPECT_EQ(Changed("k INT_32_V 0 1\n{\n7\n}\n"), "#new\n" + Entry("k", 5) + "{\n7\n}\n")
      << "what stands unindented is taken for entries";
  const std::string hundred(100, 'x');
  EXPECT_EQ(Changed(hundred + "y INT_32 2\n", hundred), "#new\n" + Entry(hundred, 5));
}

TEST_F(PoolUpdateTest, NewKeysStandReversedAtTheEndWithTheirLastValue) {
  {
    auto pool = Pool();
    pool.Write("a", 1);
    pool.Change("b", 1);
    pool.Write("c", 3);
    TakeLog();
    pool.Change("b", 2);
    EXPECT_EQ(TakeLog(), "PP.Change pool b INT_32\n");
    EXPECT_THROW(pool.Write("k", 3), PARAMETER_KEY_EXISTS);
    EXPECT_THROW(pool.Write("a", 3), PARAMETER_KEY_EXISTS);
    EXPECT_FALSE(pool.find_key("a")) << "a search sees the file alone";
    WriteFile(path, "k INT_32 2\nl INT_32 3\n");
    EXPECT_TRUE(pool.find_key("l")) << "a search sees the file as it stands";
  }
  EXPECT_EQ(ReadFile(path),
            "k INT_32 2\nl INT_32 3\n" + Entry("b", 2) + Entry("c", 3) + Entry("a", 1));
}

TEST_F(PoolUpdateTest, WhatNoReaderTakesWholeIsToldAndRefused) {
  const std::string text(972, 'x');  // with 49 bytes of head, two quotes and a line end: 1024
  const std::string part(49, 'k'), key = part + "_" + part + "x";
  EXPECT_EQ(join_key({nullptr, part.c_str(), (part + "x").c_str(), ""}), key.c_str());
  STRING kept("old");
  Pool().Change("k", text.c_str());
  EXPECT_EQ(ReadFile(path).size(), 1025);
  auto pool = Pool();
  Do([&] { pool.Change("k", (text + "y").c_str()); });
  Do([&] { join_key(kept, {key.c_str(), "", "x"}); });
  Do([&] { pool.Change((key + "y").c_str(), 5); });
  EXPECT_EQ(kept, "old");
  const std::string head = "ALARM : log : parameter pool: parameter key >> ";
  const std::string tail = " << is longer than 100 characters\npool error - key too long\n";
  EXPECT_EQ(told, head +
                      "k << value or comment makes a line longer than 1024 bytes\n"
                      "pool error - no or invalid parameter value in file\n" +
                      head + key + "_x" + tail + head + key + "y" + tail);
}

TEST_F(PoolUpdateTest, OpeningsAndProbesAreToldAtTheirLevels) {
  PARAMETER_POOL pool;
  STRING value("old");
  constexpr const char* VALID[] = {"a", "b"};
  WriteFile(path, "k STR c\n");
  EXPECT_FALSE(PARAMETER_POOL("/proc/self/exe").find_key("k k"));
  Do([] { PARAMETER_POOL(); });
  Do([&] { Pool(); });
  Do([] { PARAMETER_POOL("/"); });
  Do([] { PARAMETER_POOL("x/y"); });
  // A running program can't be opened for writing, not even by the superuser.
  Do([] { PARAMETER_POOL_READ_WRITE_CHANGE("/proc/self/exe"); });
  Do([&] { pool.open(path.c_str()), pool.set_not_found_log_level(WARNING), pool.get_type("x"); });
  pool.set_read_log_level(INFO);
  Do([&] { ReadEnumeration(pool, "k", VALID, value); });
  Do([&] { pool.close(), pool.find_key("k"); });
  EXPECT_EQ(value, "old");
  EXPECT_EQ(told, R"(TRACE : log : init pool
DEBUG : log : open pool: pool
DEBUG : log : construct pool_rwc: pool
DEBUG : log : open pool: .//TMP
DEBUG : log : copy .//TMP to pool
DEBUG : log : open pool: /
ALARM : log : parameter file / is a directory!
ALARM : log : can not open parameter file /
pool error - can not open parameter pool
DEBUG : log : open pool: x/y
ALARM : log : can not open parameter file x/y
ALARM : log : can not open parameter file x/y
pool error - can not open parameter pool
DEBUG : log : open pool: /proc/self/exe
ALARM : log : can not open pool file for update /proc/self/exe
pool error - can not open parameter pool
WARN  : log : parameter pool: parameter key >> x << not found
pool error - key not found
INFO  : log : PP.Read pool k STR
ALARM : log : parameter pool: parameter key >> k << of pool << read value is : c Valid values are: 'a' 'b' 
pool error - no or invalid parameter value in file
ALARM : log : No file pointer given for parameter pool
algorithm error
)");
}

TEST_F(PoolUpdateTest, AReadErrorIsNoMissingKey) {
  WriteFile(path, "k FLT_15 5");
  for (const auto& [key, well] : {std::pair("k", 1), std::pair("l", 1), std::pair("l", 0)}) {
    PARAMETER_POOL pool(path.c_str());
    fault = {"pread", well};
    double value = 0;
    told = "";
    Do([&] { pool.Read(key, value); });
    EXPECT_EQ(told,
              "ALARM : log : can not read parameter file pool: Input/output error\n"
              "can not read from file\n")
        << key << " with reads that go well: " << well;
  }
}

TEST_F(PoolUpdateTest, AFaultOfAnUpdateIsToldAndLosesNothing) {
  const std::string old = "k INT_32 2\n", A = "ALARM : log : ";
  const std::string corrupted = A + "can not update parameter pool: pool\n" + A +
                                "the corrupted parameter pool is:.//TMP\n" + A +
                                "the original parameter pool is NOT CHANGED !!\n"
                                "pool error - corrupted parameter pool file\n";
  const std::string copy = "DEBUG : log : copy .//TMP to pool\n";
  const std::string kept = A + "the complete content is kept in: .//TMP\n";
  const std::string failed = A + "Input/output error\n";
  const std::string unread =
      copy + failed + A + "Error opening file .//TMP\n" + kept + "I/O error\n";
  const std::string unwritten =
      copy + A + "can not update pool pool\n" + failed + kept + "parameter pool error\n";
  const struct {
    FAULT fault;
    std::string told, pool, kept;
  } CASES[] = {
      {{"pread", 0}, corrupted, old, Entry("k", 5)},
      {{"pread", 1}, corrupted, old, Entry("k", 5)},
      {{"pwrite", 0}, corrupted, old, ""},
      {{"pread", 2}, unread, old, Entry("k", 5)},
      {{"pread", 3}, unread, old, Entry("k", 5)},
      {{"ftruncate", 0}, unwritten, old, Entry("k", 5)},
      {{"pwrite", 1}, unwritten, "", Entry("k", 5)},
      {{"unlink", 0},
       copy + "WARN  : log : can not remove tmp file: .//TMP\n",
       Entry("k", 5),
       Entry("k", 5)},
  };
  for (const auto& row : CASES) {
    SCOPED_TRACE(row.fault.call + " behind " + std::to_string(row.fault.well));
    WriteFile(path, old);
    auto pool = Pool();
    pool.Change("k", 5);
    fault = row.fault;
    told = "";
    Do([&] { pool.update(); });
    EXPECT_EQ(told, "DEBUG : log : open pool: .//TMP\n" + row.told);
    EXPECT_EQ(ReadFile(path), row.pool);
    fs::remove(path);
    std::string kept_there = "none";
    for (const auto& file : fs::directory_iterator(".")) {
      kept_there = ReadFile(file.path());
      fs::remove(file);
    }
    EXPECT_EQ(kept_there, row.kept);
  }
}

TEST_F(PoolUpdateTest, AnUpdateKeepsModeNodeAndLinksOfItsFile) {
  fs::remove(path);
  const mode_t mask = umask(0027);
  PARAMETER_POOL(path.c_str());
  umask(mask);
  fs::create_hard_link(path, "hard");
  fs::create_symlink(path, "soft");
  struct stat before {
  }, after{};
  stat("pool", &before);
  PARAMETER_POOL_READ_WRITE_CHANGE("soft").Change("k", 5);
  stat("pool", &after);
  EXPECT_EQ(before.st_mode & 07777, 0640) << "as the mask leaves of 0666";
  EXPECT_EQ(after.st_mode, before.st_mode);
  EXPECT_EQ(after.st_ino, before.st_ino);
  EXPECT_TRUE(fs::is_symlink("soft"));
  EXPECT_EQ(ReadFile("hard"), Entry("k", 5));
}

TEST_F(PoolUpdateTest, ACopiedItemIsWholeAndItsListGivesItBack) {
  PARAMETER_POOL_LIST list;
  list.add("a", 5, ARRAY<STRING>("note"));
  ASSERT_EQ(list.find("a"), 1);
  const PARAMETER_POOL_ITEM copy(list.current());
  PARAMETER_POOL_ITEM assigned("b", 1.0, {});
  assigned.Text();
  assigned = copy;
  EXPECT_EQ(copy.Text().Text(), "#note\n" + Entry("a", 5));
  EXPECT_EQ(assigned.Text().Text(), "#note\n" + Entry("a", 5));
  int value = 0;
  list.get("a", value);
  EXPECT_EQ(value, 5);
  EXPECT_THROW(list.get("b", value), PARAMETER_KEY_NOT_FOUND);
  STRING other;
  EXPECT_THROW(list.get("a", other), WRONG_PARAMETER_TYPE);
  const PARAMETER_POOL_ITEM none, copy_of_none(none);
  EXPECT_THROW((assigned = copy_of_none).Text(), ERROR_UNHANDLED_CASE);
}

TEST_F(PoolUpdateTest, AnUnwindingExceptionUpdatesAndIsNeverReplaced) {
  const auto unwind = [&](const char* failing) {
    auto pool = Pool();
    pool.Change("k", 5);
    fault = {failing, 0};
    throw "first";
  };
  EXPECT_EQ(ThrownText([&] { unwind("none"); }), "first");
  EXPECT_EQ(ReadFile(path), Entry("k", 5));
  EXPECT_EQ(ThrownText([&] { unwind("pwrite"); }), "first");
  EXPECT_TRUE(Log().ends_with("ALARM : log : the original parameter pool is NOT CHANGED !!\n"));
}

TEST_F(PoolUpdateTest, WithoutAFileBesideItNothingIsUpdated) {
  auto pool = Pool();
  fs::remove_all(folder);
  Do([&] { pool.update(); });
  EXPECT_EQ(told,
            "ALARM : log : No such file or directory\nDEBUG : log : open pool: .//TMP\n"
            "ALARM : log : can not open parameter file .//TMP\n"
            "ALARM : log : can not open parameter file .//TMP\n"
            "ALARM : log : no permission to change pool file: pool\n"
            "pool error - parameter pool update(): insufficient file permission\n");
}

TEST_F(PoolUpdateTest, TimesAreEntriesOfTheirOwnForm) {
  ARRAY<UNIVERSAL_TIME> times(3, 1), read;
  times.GetBase()[3] = UNIVERSAL_TIME("2004-01-14T10:11:12.123456");
  {
    auto pool = Pool();
    WriteTime(pool, {"scene", "", "start"}, times.GetBase()[3], 6, true);
    WriteTimes(pool, {"epochs"}, times, 6);
  }
  PARAMETER_POOL pool(path.c_str());
  ReadTimes(pool, {"epochs"}, read);
  EXPECT_EQ(read.GetBase()[3], times.GetBase()[3]);
  ReadTime(pool, {"scene", "start"}, read.GetBase()[3]);
  EXPECT_STREQ(read.GetBase()[3].c_str(), "14-JAN-2004/10:11:12.123450");
}

}  // namespace

// These take the place of the library's functions.
extern "C" {
ssize_t pread(int file, void* to, size_t size, off_t at) {
  return Fails("pread") ? -1 : syscall(SYS_pread64, file, to, size, at);
}
ssize_t pwrite(int file, const void* from, size_t size, off_t at) {
  return Fails("pwrite") ? -1 : syscall(SYS_pwrite64, file, from, size, at);
}
int ftruncate(int file, off_t size) noexcept {
  return Fails("ftruncate") ? -1 : static_cast<int>(syscall(SYS_ftruncate, file, size));
}
int unlink(const char* path) noexcept { return Fails("unlink") ? -1 : unlinkat(AT_FDCWD, path, 0); }
}

}  // namespace varnoth::test
