#include <filesystem>

#include "pool/parameter_pool_read_write_change.hpp"
#include "pool/time_entries.hpp"
#include "support/log_capture.hpp"

namespace varnoth::test {
namespace {

namespace fs = std::filesystem;

/// An entry as the writer lays it out.
std::string Entry(const std::string& key, int value) {
  return key + std::string(33 - std::min<std::size_t>(32, key.size()), ' ') + "INT_32          " +
         std::to_string(value) + "\n\n";
}

class PoolUpdateTest : public LoggedTest {
 protected:
  PoolUpdateTest() {
    fs::create_directory(folder);
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

  const std::string folder = directory.Path("folder");
  const std::string path = folder + "/pool";
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

TEST_F(PoolUpdateTest, WhatNoReaderTakesWholeIsRefused) {
  const std::string text(972, 'x');  // with 49 bytes of head, two quotes and a line end: 1024
  Pool().Change("k", text.c_str());
  EXPECT_EQ(ReadFile(path).size(), 1025);
  EXPECT_THROW(Pool().Change("k", (text + "y").c_str()), INVALID_PARAMETER_VALUE);
  EXPECT_THROW(Pool().Change(std::string(101, 'k').c_str(), 5), PARAMETER_KEY_TOO_LONG);
  EXPECT_EQ(ReadFile(path).size(), 1025);
}

TEST_F(PoolUpdateTest, OnlyWritableFilesAreOpened) {
  EXPECT_THROW(PARAMETER_POOL((path + "2").c_str()).get_type("k"), PARAMETER_KEY_NOT_FOUND);
  EXPECT_TRUE(fs::is_empty(path + "2")) << "a missing pool is created";
  // A running program can't be opened for writing, not even by the superuser.
  EXPECT_FALSE(PARAMETER_POOL("/proc/self/exe").find_key("k k"));
  EXPECT_THROW(PARAMETER_POOL_READ_WRITE_CHANGE pool("/proc/self/exe"), CAN_NOT_OPEN_POOL);
  EXPECT_TRUE(TakeLog().ends_with("can not open pool file for update /proc/self/exe\n"));
}

TEST_F(PoolUpdateTest, AnUnwindingExceptionUpdatesAndIsNeverReplaced) {
  const auto unwind = [&](const std::string& target) {
    auto pool = Pool();
    pool.Change("k", 5);
    fs::rename(folder, target);
    throw "first";
  };
  EXPECT_EQ(ThrownText([&] { unwind(folder); }), "first");
  EXPECT_EQ(ReadFile(path), Entry("k", 5));
  EXPECT_EQ(ThrownText([&] { unwind(directory.Path("moved")); }), "first");
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
}  // namespace varnoth::test
