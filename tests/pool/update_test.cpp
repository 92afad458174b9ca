#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <filesystem>
#include <thread>

#include "pool/join_key.hpp"
#include "pool/parameter_pool_read_write_change.hpp"
#include "pool/time_entries.hpp"
#include "support/log_capture.hpp"

namespace varnoth::test {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;
/// Updates at the end of the statement, or of the scope of its variable.
using POOL = PARAMETER_POOL_READ_WRITE_CHANGE;

/// The system call that fails once, after as many that go well.
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
    WriteFile("pool", "k INT_32 2\n");
  }
  /// The lines of an action at their levels, and what it threw.
  template <class ACTION>
  std::string Told(ACTION action) {
    TakeLog();
    std::string thrown;
    try {
      action();
    } catch (const ERROR_EXCEPTION& error) {
      thrown = error.what() + std::string("\n");
    }
    fault = {};
    std::string lines = TakeLines();
    for (std::size_t at = 0; (at = lines.find("//pool_", at)) != lines.npos;) {
      lines.replace(at, 13, "//TMP");  // six characters are random
    }
    return lines + thrown;
  }

  const std::string folder = directory.Path("folder");
};

TEST_F(PoolUpdateTest, BytesStayButForReplacedEntriesAndAnUnfinishedLine) {
  const std::string odd(2000, 'x'), zero("\0 \n", 3), hundred(100, 'y');
  const std::string text = "#c\n\nk INT_32  5\r\n  \n" + odd + "\r\xFF\n" + zero;
  for (const char* rest : {"", "k INT_32 6", "#"}) {
    WriteFile("pool", text + rest);
    POOL("pool");
    EXPECT_EQ(ReadFile("pool"), text);
  }
  WriteFile("pool",
            "#of k\nk INT_32_V 0 1\n  {\n   7\n  }\n\n#of y\n" + hundred + "y STR_V 0 1\n{\n");
  POOL("pool").Change("k", 5, ARRAY<STRING>("new"));
  POOL("pool").Change(hundred.c_str(), 5);
  EXPECT_EQ(ReadFile("pool"),
            "#of k\n#new\n" + Entry("k", 5) + "#of y\n" + Entry(hundred, 5) + "{\n")
      << "what stands unindented is taken for entries";
}

TEST_F(PoolUpdateTest, NewKeysStandReversedAtTheEndWithTheirLastValue) {
  POOL pool("pool");
  pool.Write("a", "1");
  pool.Change("a", 1);
  pool.Change("b", 1);
  EXPECT_EQ(Told([&] { pool.Write("c", 3); }), "TRACE PP.Write pool c INT_32\n");
  EXPECT_EQ(Told([&] { pool.Change("b", 2); }), "TRACE PP.Change pool b INT_32\n");
  const RANGE<int> one(0, 1);
  POOL blocks("blocks");
  EXPECT_EQ(
      Told([&] { blocks.Write("v", ARRAY<int>(0, 1)), blocks.Write("m", MATRIX<int>(one, one)); }),
      "TRACE PP.Write blocks v INT_32_V\nTRACE PP.Write blocks m INT_32_M\n");
  for (const char* key : {"k", "a"}) EXPECT_THROW(pool.Write(key, 3), PARAMETER_KEY_EXISTS);
  WriteFile("pool", "l INT_32 3\n");
  EXPECT_TRUE(pool.find_key("l") && !pool.find_key("a")) << "seen is the file as it stands";
  pool.update();
  EXPECT_EQ(ReadFile("pool"), "l INT_32 3\n" + Entry("b", 2) + Entry("c", 3) + Entry("a", 1));
}

TEST_F(PoolUpdateTest, ALargePoolKeepsItsOrderAndRepeatedKeys) {
  std::string before, after;
  for (int i = 0; i < 5000; ++i) {
    const std::string key = "k" + std::to_string(i % 4900);
    before += Entry(key, i);
    after += Entry(key, i == 70 || i == 4000 ? -i : i);
  }
  WriteFile("pool", before);
  {
    POOL pool("pool");
    for (const int changed : {70, 4000}) {
      pool.Change(("k" + std::to_string(changed)).c_str(), -changed);
    }
    pool.Write("new", 1);
  }
  EXPECT_TRUE(ReadFile("pool") == after + Entry("new", 1));
}

TEST_F(PoolUpdateTest, WaitsForAnotherUpdateAndKeepsWhatThatLeft) {
  POOL_STREAM other, third;
  other.Open("pool", POOL_STREAM::MODE::READ_WRITE);
  EXPECT_TRUE(other.SetLock(POOL_STREAM::LOCK::EXCLUSIVE, 0));
  POOL pool("pool");
  pool.Change("a", 1);
  std::thread end_of_other([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    other.Truncate();
    other.Write("z INT_32 3\n");
    other.Close();
  });
  EXPECT_TRUE(PARAMETER_POOL("pool").find_key("z")) << "a key that is missing is looked for again";
  end_of_other.join();
  pool.Lock();
  third.Open("pool", POOL_STREAM::MODE::READ_WRITE);
  EXPECT_FALSE(third.SetLock(POOL_STREAM::LOCK::SHARED, 0));
  EXPECT_FALSE(pool.find_key("k"));
  pool.update();
  EXPECT_TRUE(third.SetLock(POOL_STREAM::LOCK::EXCLUSIVE, 0));
  EXPECT_EQ(ReadFile("pool"), "z INT_32 3\n" + Entry("a", 1));
}

TEST_F(PoolUpdateTest, APoolThatWasEmptiedOrIsClosedIsTold) {
  POOL pool("pool");
  pool.Change("a", "x");
  WriteFile("pool", "");
  std::string told = Told([&] { pool.update(); });
  pool.close();
  told += Told([&] { pool.find_key("k"); });
  EXPECT_EQ(told, R"(ALARM parameter pool pool was emptied meanwhile, look for pool_XXXXXX beside it
pool error - corrupted parameter pool file
ALARM No file pointer given for parameter pool
algorithm error
)");
}

TEST_F(PoolUpdateTest, WhatNoReaderTakesWholeIsToldAndRefused) {
  const std::string text(972, 'x');  // with 49 bytes of head, two quotes and a line end: 1024
  const std::string part(49, 'k'), key = part + "_" + part + "x";
  EXPECT_EQ(select_part({"a", "b"}, false) + select_part({"a", "b"}, true), "ab");
  EXPECT_EQ(join_key({nullptr, part.c_str(), (part + "x").c_str(), ""}), key.c_str());
  POOL("pool").Change("k", text.c_str());
  EXPECT_EQ(ReadFile("pool").size(), 1025);
  POOL pool("pool");
  const std::string head = "ALARM parameter pool: parameter key >> " + key;
  const std::string tail = " << is longer than 100 characters\npool error - key too long\n";
  EXPECT_EQ(Told([&] { pool.Change("k", (text + "y").c_str()); }),
            "ALARM parameter pool: parameter key >> k << value or comment makes a line longer than "
            "1024 bytes\npool error - no or invalid parameter value in file\n");
  EXPECT_EQ(Told([&] { join_key({key.c_str(), "", "x"}); }), head + "_x" + tail);
  EXPECT_EQ(Told([&] { pool.Change((key + "y").c_str(), 5); }), head + "y" + tail);
}

TEST_F(PoolUpdateTest, OpeningsAndProbesAreToldAtTheirLevels) {
  PARAMETER_POOL pool;
  STRING value;
  WriteFile("pool", "k STR c\n");
  std::string told = Told([] { PARAMETER_POOL(), PARAMETER_POOL("/"); });
  // A running program can't be opened for writing, not even by the superuser.
  told += Told([] { POOL("/proc/self/exe"); });
  pool.open("pool"), pool.set_not_found_log_level(WARNING), pool.set_read_log_level(INFO);
  told += Told([&] { pool.get_type("x"); });
  told += Told([&] { pool.Read("k", value); });
  EXPECT_EQ(told, R"(TRACE init pool
DEBUG open pool: /
ALARM parameter file / is a directory!
ALARM can not open parameter file /
pool error - can not open parameter pool
DEBUG open pool: /proc/self/exe
ALARM can not open pool file for update /proc/self/exe
pool error - can not open parameter pool
WARN  parameter pool: parameter key >> x << not found
pool error - key not found
INFO  PP.Read pool k STR
)");
}

TEST_F(PoolUpdateTest, AReadErrorIsNoMissingKey) {
  WriteFile("pool", "k FLT_15 5");
  for (const auto& [key, well] : {std::pair("k", 1), {"l", 2}, {"l", 1}, {"l", 0}}) {
    PARAMETER_POOL pool("pool");
    double value = 0;
    fault = {"pread", well};
    EXPECT_EQ(Told([&, name = key] { pool.Read(name, value); }),
              "ALARM can not read parameter file pool: Input/output error\n"
              "can not read from file\n")
        << key << " with reads that go well: " << well;
  }
}

TEST_F(PoolUpdateTest, AFaultOfAnUpdateIsToldAndLosesNothing) {
  const std::string old = "k INT_32 2\n", made = Entry("k", 5);
  const std::string copy = "DEBUG copy .//TMP to pool\n", failed = "ALARM Input/output error\n";
  const std::string kept = "ALARM the complete content is kept in: .//TMP\n";
  const std::string corrupted = R"(ALARM can not update parameter pool: pool
ALARM the corrupted parameter pool is:.//TMP
ALARM the original parameter pool is NOT CHANGED !!
pool error - corrupted parameter pool file
)";
  const std::string unread = failed + "ALARM Error opening file .//TMP\n" + kept + "I/O error\n";
  const std::string unwritten =
      "ALARM can not update pool pool\n" + failed + kept + "parameter pool error\n";
  const struct {
    FAULT fault;
    std::string told, pool, kept;
  } CASES[] = {
      {{"pread", 0}, corrupted, old, made},
      {{"pwrite", 0}, corrupted, old, ""},
      {{"pread", 2}, copy + unread, old, made},
      {{"ftruncate", 0}, copy + unwritten, old, made},
      {{"pwrite", 1}, copy + unwritten, "", made},
      {{"close", 1}, corrupted, old, made},
      {{"close", 2}, copy + unwritten, made, made},
      {{"fsync", 0}, corrupted, old, made},
      {{"fsync", 1}, corrupted, old, made},
      {{"fsync", 2}, copy + unwritten, made, made},
      {{"unlink", 0}, copy + "WARN  can not remove tmp file: .//TMP\n", made, made},
  };
  for (const auto& row : CASES) {
    SCOPED_TRACE(row.fault.call + " behind " + std::to_string(row.fault.well));
    WriteFile("pool", old);
    POOL pool("pool");
    pool.Change("k", 5);
    pool.SetDurable(true);
    fault = row.fault;
    EXPECT_EQ(Told([&] { pool.update(); }), "DEBUG open pool: .//TMP\n" + row.told);
    EXPECT_EQ(ReadFile("pool"), row.pool);
    fs::remove("pool");
    const fs::path temporary = fs::directory_iterator(".")->path();
    EXPECT_EQ(ReadFile(temporary), row.kept);
    fs::remove(temporary);
  }
}

TEST_F(PoolUpdateTest, ACopiedItemIsWholeAndItsListGivesItBack) {
  PARAMETER_POOL_LIST list;
  ARRAY<POINT<int>> points(3, 1);
  points.GetBase()[3] = {6, 7};
  list.add("p", points, {});
  list.add("a", POINT<int>{5, 8}, ARRAY<STRING>("note"));
  ASSERT_EQ(list.find("a"), 1);
  const PARAMETER_POOL_ITEM copy(list.current());
  EXPECT_THROW(PARAMETER_POOL_ITEM().Text(), ERROR_UNHANDLED_CASE);
  POINT<int> point;
  list.get("a", point);
  EXPECT_EQ(point.x * 10 + point.y, 58);
  EXPECT_EQ(copy.Text().Text(), "#note\na" + std::string(32, ' ') + "INT_32_INT_32   5\t8\n\n");
  RANGE<int> pair;
  ARRAY<RANGE<int>> pairs;
  list.get("a", pair), list.get("p", pairs);
  EXPECT_EQ(pair, (RANGE<int>{5, 8}));
  EXPECT_EQ(pairs.GetBase()[3], (RANGE<int>{6, 7}));
  EXPECT_THROW(list.get("b", pair), PARAMETER_KEY_NOT_FOUND);
  EXPECT_THROW(list.get("p", pair), WRONG_PARAMETER_TYPE);
}

TEST_F(PoolUpdateTest, AnUnwindingExceptionUpdatesAndIsNeverReplaced) {
  for (const auto& [failing, left] : {std::pair("pwrite", "k INT_32 2\n"s), {"", Entry("k", 5)}}) {
    const auto unwind = [call = failing] {
      POOL pool("pool");
      pool.Change("k", 5);
      fault = {call, 0};
      throw "first";
    };
    EXPECT_EQ(ThrownText(unwind), "first");
    EXPECT_EQ(ReadFile("pool"), left);
  }
}

TEST_F(PoolUpdateTest, TimesAreEntriesOfTheirOwnForm) {
  ARRAY<UNIVERSAL_TIME> times(3, 1), read;
  const UNIVERSAL_TIME time("2004-01-14T10:11:12.123456");
  times.GetBase()[3] = time;
  POOL pool("pool");
  WriteTime(pool, {"scene", "", "start"}, time, 6, true);
  WriteTimes(pool, {"epochs"}, times, 6);
  pool.update();
  for (const std::string end : {"3456\"\n ", "345\"\n\n"}) {
    EXPECT_NE(ReadFile("pool").find("\"2004-01-14T10:11:12.12" + end), std::string::npos) << end;
  }
  pool.open("pool");
  ReadTimes(pool, {"epochs"}, read);
  EXPECT_EQ(read.GetBase()[3], time);
  ReadTime(pool, {"scene", "start"}, read.GetBase()[3]);
  EXPECT_STREQ(read.GetBase()[3].c_str(), "14-JAN-2004/10:11:12.123450");
  int fraction = 0;
  pool.Read("scene_start_usecs", fraction);
  EXPECT_EQ(fraction, 123456);
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
int close(int file) {
  const bool fails = Fails("close");
  syscall(SYS_close, file);
  return fails ? errno = EIO, -1 : 0;
}
int fsync(int /*file*/) { return Fails("fsync") ? -1 : 0; }
int unlink(const char* path) noexcept { return Fails("unlink") ? -1 : unlinkat(AT_FDCWD, path, 0); }
}

}  // namespace varnoth::test
