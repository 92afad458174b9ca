#include "records/mdb.hpp"

#include <algorithm>
#include <array>
#include <filesystem>

#include "foundation/errors.hpp"
#include "records/place_words.hpp"
#include "support/log_capture.hpp"

namespace varnoth::test {
namespace {

using namespace std::string_literals;

constexpr auto IN = std::ios::in, OUT = std::ios::out;

RECORD_ITEM Item(const char* name, const std::string& value) {
  RECORD_ITEM item;
  item.Parse(value.c_str());
  item.key_name = name;
  return item;
}

class MdbTest : public LoggedTest {
 protected:
  /// Sets up a record type of two items and a data file with that content.
  void Prepare(const std::string& content, const std::string& items = "t:int\"\n\"n:int") {
    WriteFile(root + "format.dat", "f STR_V 0 2\n{\n\"" + items + "\"\n}\n");
    std::filesystem::create_directories(path.substr(0, path.size() - 2));
    WriteFile(path, content);
    TakeLog();
    mdb.SetPathAndFile(root.c_str(), 4, 12, 3, 5, 7, 1, "f");
  }
  void Write(const char* time, int number) {
    ARRAY<RECORD_ITEM> items(0, 1);
    items.GetBase()[0] = Item("n", std::to_string(number));
    mdb.SetRecord(items, Item("t", time));
    mdb.Write();
  }
  /// The numbers of the records from the next one on.
  std::string Rest() {
    std::string numbers;
    while (mdb.Read()) numbers += mdb.FindItem("n").Text().c_str();
    return numbers;
  }

  const std::string root = directory.Path("");
  const std::string path = root + "/KOVA1/hddc_BRNR012/dt_005.007/pri/f";
  MDB mdb;
};

TEST(PlaceWords, EveryNumberHasItsWord) {
  const auto hold = [](auto word_of, auto number_of, std::initializer_list<const char*> words) {
    EXPECT_STREQ(word_of(static_cast<int>(words.size())), "");
    for (int number = 0; const char* word : words) {
      EXPECT_STREQ(word_of(number), word) << number;
      EXPECT_EQ(number_of(word), number++) << word;
    }
    EXPECT_EQ(number_of("none"), 0);
  };
  hold(MissionWord, MissionNumber, {"unknown", "ZEL1", "ZEL2", "ZEL3", "KOVA1"});
  hold(TapeSourceWord, TapeSourceNumber, {"", "AQAR", "AQAV", "BRNR", "CXMR", "CXMV", "DTYR"});
  hold(ChannelWord, ChannelNumber, {"unknown", "pri", "sec"});
}

/// A type and its values at the places below.
using SERIES = std::array<const char*, 8>;
class MdbSearchTest : public MdbTest, public testing::WithParamInterface<SERIES> {};

/// The records that the stops before, exact, nearest and after find, x for none. Outside the
/// records the log says that the nearest one is the nearest.
constexpr struct {
  const char* name;
  const char* found;
  const char* told = "";
} PLACES[] = {
    {"ahead of the first", "xx12", "the first record (its really the nearest!)\n"},
    {"first", "x112", "the first record (its really the nearest!)\n"},
    {"as near to the first as to the second", "1x23"},
    {"second", "1223"},
    {"behind the second", "2x2x"},
    {"third", "233x"},
    {"behind the last", "xx3x", "the last record (its really the nearest!) \n"},
};

TEST_P(MdbSearchTest, StopsAsTold) {
  std::string content;
  for (const int n : {1, 2, 3}) {
    content += "\r\n \n\nt : "s + GetParam()[2 * n] + "\n\n  n : " + std::to_string(n);
  }
  Prepare(content, "t:"s + GetParam()[0] + "\"\n\"n:int");
  mdb.Open(IN);
  for (int value = 0; const auto& [name, found, told] : PLACES) {
    const RECORD_ITEM wanted = Item("t", GetParam()[++value]);
    for (int stop = mdb_stop_before; stop <= mdb_stop_after; ++stop) {
      SCOPED_TRACE(name + ", stop "s + std::to_string(stop));
      TakeLog();
      const auto search = [&] { mdb.GotoRecord(wanted, static_cast<MDB_STOP>(stop)); };
      const bool is_found = ThrownText(search) == "nothing thrown";
      const std::string lines = TakeLines();
      EXPECT_TRUE(stop == mdb_stop_nearest ? lines.ends_with(told) : lines.empty()) << lines;
      EXPECT_EQ(is_found ? mdb.FindItem("n").Text() : "x", STRING(found + stop - 1, 1));
      EXPECT_TRUE(!is_found || Rest() == "123"s.substr(found[stop - 1] - '0'));
    }
  }
}

// The mission elapsed times pass a day, the universal ones a leap second.
INSTANTIATE_TEST_SUITE_P(
    Types, MdbSearchTest,
    testing::Values(SERIES{"int", "-9", "-8", "-6", "-4", "-3", "0", "7"},
                    SERIES{"double", "-1.0", "0.5", "1.5", "2.5", "3.0", "4.5", "4.6"},
                    SERIES{"met", "0/0:0:1", "0/0:0:9", "0/12:0:0", "0/23:59:51", "1/0:0:0",
                           "9/0:0:0", "9/0:0:1"},
                    SERIES{"utc", "31-DEC-2016/23:59:49", "31-DEC-2016/23:59:50",
                           "31-DEC-2016/23:59:55", "31-DEC-2016/23:59:60", "01-JAN-2017/00:00:03",
                           "01-JAN-2017/00:00:09", "01-JAN-2017/00:00:10"}));

TEST_F(MdbTest, RefusesWhatIsOutOfOrder) {
  RECORD_ITEM wanted = Item("t", "5");
  const auto open = [&] { mdb.Open(IN); };
  const auto search = [&] { mdb.GotoRecord(wanted, mdb_stop_exact); };
  const auto expect_each = [&](const std::string& lack) {
    EXPECT_EQ(ThrownText(search), "MDB::GotoRecord(): " + lack);
    EXPECT_EQ(ThrownText([&] { mdb.Read(); }), "MDB::Read(): " + lack);
    EXPECT_EQ(ThrownText([&] { mdb.ReadStep(1); }), "MDB::Read(): " + lack);
    EXPECT_EQ(ThrownText([&] { mdb.Write(); }), "MDB::Write(): " + lack);
  };
  EXPECT_EQ(ThrownText(open), "MDB::Open(): no path selected");
  EXPECT_EQ(ThrownText([&] { mdb.GetPathInfo(); }), "MDB::GetPathInfo(): no path was set before");
  EXPECT_EQ(ThrownText([&] { mdb.Rewind(); }), "MDB::Rewind(): no file open");
  mdb.SetPath(root.c_str(), 1, 2, 3, 4, 5, 2);
  EXPECT_EQ(ThrownText(open), "MDB::Open(): no file selected");
  expect_each("no file open");
  for (const std::string wrong : {"n", "n:", " : int", "n:INT"}) {
    EXPECT_EQ(ThrownText([&] { Prepare("", "t:int\"\n\"" + wrong); }),
              "MDB: unknown type in record type definition");
    EXPECT_TRUE(
        TakeLines().ends_with("ALARM MDB: record type f: >>" + wrong + "<< defines no item\n"));
  }
  mdb.Open(IN);  // the path is that of the test, the record type faulty
  expect_each("no valid record type");
  Prepare("t : 1 n : 1");
  mdb.Open(IN | OUT);
  EXPECT_EQ(ThrownText(search), "MDB::GotoRecord(): is opened read only");
  EXPECT_EQ(ThrownText([&] { mdb.Rewind(); }), "MDB::Rewind(): is opened read only");
  open();
  EXPECT_TRUE(TakeLines().ends_with("DEBUG mdb file: " + path + "\n"));
  EXPECT_THROW(mdb.GotoRecord(wanted, mdb_stop_invalid), ERROR_UNHANDLED_CASE);
  EXPECT_THROW(mdb.GotoRecord(wanted, static_cast<MDB_STOP>(5)), ERROR_UNHANDLED_CASE);
  EXPECT_EQ(ThrownText([&] { mdb.Write(); }), "MDB is opened read only: can not write data record");
  wanted.key_name = "y";
  EXPECT_EQ(ThrownText(search), "MDB: RECORD_ITEM: can not find key_name in record");
  mdb.SetPath(root.c_str(), 1, 1012, 3, 5, 7, 1);
  EXPECT_EQ(mdb.GetPathInfo().segment, 1012);
  EXPECT_EQ(mdb.GetDirectory(), (root + "/ZEL1/hddc_BRNR1012/dt_005.007/pri").c_str());
  EXPECT_EQ(ThrownText(open), "can not open mdb-file");
  EXPECT_EQ(ThrownText([&] { mdb.Open(OUT); }), "MDB: can not create directory");
  mdb.Reset();
  EXPECT_EQ(ThrownText(open), "MDB::Open(): no path selected");
  EXPECT_THROW(mdb.FindItem("n"), const char*);
  mdb.SetPath(root.c_str(), 4, 12, 3, 5, 7, 1);
  WriteFile(root + "format.dat", "f STR_V 0 0\n{\n}\n");
  EXPECT_EQ(ThrownText([&] { mdb.SetFile("f"); }), "MDB: unknown type in record type definition");
  std::filesystem::remove(path);
  std::filesystem::create_directory(path);
  EXPECT_EQ(ThrownText(open), "can not open mdb-file") << "a directory is no file";
}

TEST_F(MdbTest, FaultyFilesAreTold) {
  const auto read = [&](const std::string& content) {
    Prepare(content);
    mdb.Open(IN);
    TakeLog();
    return mdb.Read();
  };
  EXPECT_FALSE(read(""));
  const auto search = [&] { mdb.GotoRecord(Item("t", "1"), mdb_stop_nearest); };
  EXPECT_EQ(ThrownText(search) + Log(), "search_value not found") << "no last record to give";
  EXPECT_FALSE(read("t : 1\n  n :"));
  EXPECT_EQ(TakeLines(),
            "WARN  MDB::Read(): file f ends within item n\n"
            "WARN  MDB::Read(): file f ends within record 1\n");
  EXPECT_TRUE(read("t : 1:x\n  n : 1\n"));
  EXPECT_EQ(TakeLines(), "EXCEP MET_SCANNER: TIME: scanner: unhandled character\n");
  EXPECT_STREQ(mdb.GetKeyItem().Text().c_str(), "+0001/00:00:00.000000");
  for (const std::string& value : {"= 1"s, ": 1x"s, ": 1E5"s, ": 2147483648"s, ": 1.0e999"s,
                                   ": -1/0:0:0"s, ": " + std::string(100000, '1'), ": 1\0x"s}) {
    EXPECT_ANY_THROW(read("t " + value + "\n  n : 1\n"));
    EXPECT_NE(Log().find("ALARM : log : MDB::Read(): >>t "s + value.c_str()), std::string::npos);
  }
#ifndef _LIBCPP_VERSION  // its file streams take a failed read for the end of the file
  Prepare("");
  std::filesystem::remove(path);
  std::filesystem::create_symlink("/proc/self/mem", path);  // opens, but has no first byte
  mdb.Open(IN);
  EXPECT_THROW(mdb.Read(), ERROR_CAN_NOT_READ_FILE);
  EXPECT_TRUE(TakeLines().ends_with("/f\nALARM MDB::Read(): can not read file f\n"));
#endif
}

TEST_F(MdbTest, RecordsGoBehindTheLastOneOrAreTold) {
  const std::string old = "t : 1\n  n : 1\nt : 2\n  n : 2";
  Prepare(old);
  mdb.Open(IN | std::ios::trunc);
  EXPECT_EQ(Rest(), "12") << "reading empties no file";
  mdb.GotoRecord(mdb.GetKeyItem(), mdb_stop_before);
  EXPECT_EQ(Rest(), "2");
  mdb.Open(IN | OUT);
  EXPECT_TRUE(mdb.Read());
  Write("3", 3);
  EXPECT_TRUE(mdb.ReadStep(-4));
  EXPECT_EQ(Rest(), "3");
  Write("4", 4);
  const auto written = [&](std::ios::openmode mode) {
    mdb.Open(mode);
    Write("5", 5);
    mdb.Close();
    return ReadFile(path);
  };
  const std::string fifth = "t : 5\n  n : 5\n";
  EXPECT_EQ(written(OUT), old + "\nt : 3\n  n : 3\nt : 4\n  n : 4\n" + fifth);
  EXPECT_EQ(written(OUT | std::ios::trunc), fifth);
  std::filesystem::remove(path);
  mdb.SetNameWidth(3);
  EXPECT_EQ(written(OUT), "t : 5\n  n   : 5\n") << "makes a missing file";
  std::filesystem::remove(path);
  std::filesystem::create_symlink("/dev/full", path);
  mdb.Open(OUT);
  Write("1", 1);
  EXPECT_EQ(ThrownText([&] { mdb.Close(); }), "can not write MDB_RECORD into mdb-file");
  {
    MDB unclosed;
    unclosed.SetPathAndFile(root.c_str(), 4, 12, 3, 5, 7, 1, "f");
    unclosed.Open(OUT);
    unclosed.SetRecord({}, Item("t", "1"));
    unclosed.Write();
  }
  EXPECT_TRUE(TakeLines().ends_with("ALARM can not write MDB_RECORD into mdb-file\n"));
}

TEST(RecordItem, ComparesDurationsAndGivesNumbersAndTexts) {
  const RECORD_ITEM day{"a", RECORD_DURATION, {}, {}, {1, 0, 0}};
  const RECORD_ITEM less{"b", RECORD_DURATION, {}, {}, {0, 1500, 0}};
  EXPECT_TRUE(day.IsAtOrAfter(less) && !less.IsAtOrAfter(day) && !day.Equals(less));
  EXPECT_TRUE(day.IsAtOrAfter(day));
  EXPECT_EQ(day.DistanceFrom(less), 86398.5L);
  EXPECT_EQ(ThrownText([&] { day.Equals(Item("n", "5")); }), "MDB: RECORD_ITEM: unknown type");
  EXPECT_EQ(less.ToDouble() + Item("n", "-5").ToDouble() + Item("n", "+2.5").ToDouble(), -1.0);
  EXPECT_EQ(ThrownText([] { Item("n", "1/2:3:4").ToDouble(); }), "can not cast from MET to double");
  EXPECT_STREQ(Item("n", "2.5").Text().c_str(), " 2.5000000000000000e+00");
}

using LineStreamTest = LoggedTest;

TEST_F(LineStreamTest, StepsAgreeWithACountFromEveryPosition) {
  WriteFile(directory.Path("lines"), "\nx\n\n\nxxxxxxxx\nxxxxxx\nxxx");
  constexpr int STARTS[] = {0, 1, 3, 4, 5, 14, 21}, LENGTH = 24;
  for (const std::size_t block : {1, 4, 512}) {
    LINE_STREAM stream(block);
    stream.open(directory.Path("lines"), IN);
    stream.setstate(std::ios::failbit);  // as after a word that is no number
    EXPECT_FALSE(stream.GoToEnd());
    EXPECT_EQ(stream.tellg(), LENGTH);
    for (int position = 0; position <= LENGTH; ++position) {
      const auto* const line = std::upper_bound(STARTS, std::end(STARTS), position) - 1;
      for (int step = -7; step <= 7; ++step) {
        const bool is_there = step < 0 ? line - STARTS >= -step : std::end(STARTS) - line > step;
        stream.ignore(position + 2);  // at times beyond the end
        stream.GoTo(position);
        ASSERT_EQ(step > 0 ? stream.StepForward(step) : stream.StepBack(step), is_there)
            << step << " lines from " << position << " in blocks of " << block;
        ASSERT_EQ(stream.tellg(), is_there ? line[step] : position) << step << " from " << position;
      }
    }
  }
}

}  // namespace
}  // namespace varnoth::test
