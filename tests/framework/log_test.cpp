#include <fcntl.h>
#include <sys/resource.h>

#include <filesystem>

#include "foundation/errors.hpp"
#include "support/log_capture.hpp"
#include "system/signal_safe/text_sink.hpp"
#include "tables/log_table.hpp"

namespace varnoth::test {
namespace {

namespace fs = std::filesystem;

TEST_F(LoggedTest, EveryLevelHasItsLabelAndItsExactName) {
  GlobalLog.set_file_level(0);
  for (const char* name : {"info", "TRACE", "DEBUG", "PARAMETER", "INFO", "QA_WARNING", "WARNING",
                           "EXCEPTION", "ALARM"}) {
    GlobalLog.printf_line(LogLevelFromName(name) % 9, "%d", LogLevelFromName(name));
  }
  EXPECT_EQ(TakeLines(),
            "LEV_? 9\nTRACE 1\nDEBUG 2\nPARAM 3\nINFO  4\nQA_WA 5\nWARN  6\nEXCEP 7\nALARM 8\n");
}

TEST_F(LoggedTest, LinesOfAnyLengthAreWholeAndNumbersHaveTheFormatOfTheirType) {
  const std::string text(100000, 'x');
  GlobalLog.printf_line(INFO, "%s", text.c_str());
  EXPECT_EQ(TakeLog(), text + "\n");
  const unsigned short small = 65535;
  GlobalLog.set(INFO) << 'A' << static_cast<unsigned char>('B') << short{-5} << " " << small << " "
                      << -7 << " " << 4000000000U << " " << -8L << " " << 8UL << " " << 9000000000LL
                      << " ";
  GlobalLog << 0.1f << " " << 1234567.0 << " " << 1e-10L << "\n";
  EXPECT_EQ(TakeLog(), "AB-5 65535 -7 4000000000 -8 8 9000000000 0.100000 1234567.000000 1E-10\n");
}

TEST_F(LoggedTest, ScreenAndFileHaveThresholdsOfTheirOwn) {
  GlobalLog.set_file_level("WARNING");
  EXPECT_TRUE(GlobalLog.set_screen_level("INFO"));
  EXPECT_FALSE(GlobalLog.set_file_level("no level") || GlobalLog.set_screen_level("info"));
  GlobalLog.set_capture(true);
  testing::internal::CaptureStdout();
  GlobalLog.set(DEBUG) << "nowhere\n";
  GlobalLog.set(INFO) << "screen " << 1234567.0 << "\n";
  for (const int level : {EXCEPTION, ALARM, WARNING}) GlobalLog.printf_line(level, "both");
  GlobalLog.set_screen_level(NO_LEVEL);
  GlobalLog.set_capture(false);
  EXPECT_EQ(
      testing::internal::GetCapturedStdout(),
      "INFO  : log : screen 1.23457e+06\n\033[1mEXCEP : log : both\n\033[0m\033[7mALARM : log : "
      "both\n\033[0m\033[4mWARN  : log : both\n\033[0m");
  GlobalLog.printf_line(QA_WARNING, "seen all the same");
  EXPECT_TRUE(GlobalLog.qa_warning_seen());
  EXPECT_EQ(TakeLines(), "EXCEP both\nALARM both\nWARN  both\n");
  EXPECT_EQ(*std::next(GlobalLog.captured().rbegin(), 3), "screen 1234567.000000");
  EXPECT_EQ(GlobalLog.last_captured_line(), "both");
}

/// In its scope no file can be opened.
struct NO_FILES {
  NO_FILES() {
    getrlimit(RLIMIT_NOFILE, &usual);
    const rlimit none{0, usual.rlim_max};
    setrlimit(RLIMIT_NOFILE, &none);
  }
  ~NO_FILES() { setrlimit(RLIMIT_NOFILE, &usual); }
  rlimit usual{};
};

TEST_F(LoggedTest, TheScreenTellsWhatTheFileCanNot) {
  fs::current_path(directory.Path(""));
  testing::internal::CaptureStdout();
  (NO_FILES(), LOG().printf_line(DEBUG, "no file"));
  EXPECT_FALSE(GlobalLog.open_file("no/log", "w", NO_LEVEL, TRACE) || GlobalLog.flush());
  for (const char* path : {"/dev/full", "log"}) {
    GlobalLog.open_file(path, "w", NO_LEVEL, TRACE);
    GlobalLog.printf_line(INFO, "lost");
  }
  fs::remove("log");
  GlobalLog.change_file("other");
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            R"(ALARM : global :  :  can not open logging file: /tmp/log.
ALARM : global :  :  can not open logging file: /var/tmp/log.
ALARM : global :  :  can not open logging file: ./log.
DEBUG : global : no file
ALARM : w :  :  can not open logging file: no/log
ALARM : w :  :   log file is incomplete: /dev/full
ALARM : w :  :   can not reopen tmp logging file: log
)");
  const std::string fixed = "/proc/self/oom_score_adj";  // a file that nobody can remove
  GlobalLog.open_file(fixed.c_str(), "log", NO_LEVEL, TRACE);
  GlobalLog.change_file("early");
  GlobalLog.change_file("log");
  EXPECT_FALSE(fs::exists("early"));
  GlobalLog.start_banner("part");
  GlobalLog.flush();
  const std::string lines = ReadFile("log");
  const std::size_t first = lines.find('\n') + 1;  // behind the line of the fixed file
  EXPECT_EQ(lines.substr(first, lines.find("start time") - first),
            "WARN  : log : can not remove tmp file: " + fixed +
                "\nWARN  : log : reason: Operation not permitted\nINFO  : log : " +
                std::string(59, '*') + "\nINFO  : log : part\nINFO  : log : ");
  fs::current_path("/");
}

TEST_F(LoggedTest, ASinkEndsOpenLinesAloneAndLetsItsFileGo) {
  TEXT_SINK sink;
  sink.Open(open(directory.Path("sink").c_str(), O_CREAT | O_WRONLY, 0600));
  for (const char* text : {"a\n", "", "b", "c"}) sink.Append(text), sink.EndLine();
  sink.AppendUnseen("escape");
  sink.EndLine();
  EXPECT_TRUE(sink.Close() && !sink.IsOpen());
  EXPECT_EQ(ReadFile(directory.Path("sink")), "a\nb\nc\nescape");
}

TEST(ExecutionTime, IsToldInItsUnits) {
  EXPECT_EQ(ExecutionTimeText(0), "execution time: less than 1 second");
  EXPECT_EQ(ExecutionTimeText(59), "execution time: 59 second(s)");
  EXPECT_EQ(ExecutionTimeText(90061), "execution time: 1 day(s) 1 hour(s) 1 minute(s) 1 second(s)");
}

struct LogTableTest : LoggedTest {
  /// What a table of mark-up looks like in the log; a "-" that begins a line is a rule.
  std::string Table(const std::string& markup) {
    LOG_TABLE table;
    table.printf("%s", markup.c_str());
    table.flush(PARAMETER);
    return TakeLines();
  }
};

TEST_F(LogTableTest, CellsAreAlignedByTheirMarkAndRulesFollowTheFirstRow) {
  EXPECT_EQ(Table("-\n|a$b#c~d:e*f&\n"), "PARAM +- -+-#-+-*- \nPARAM |a b|cHd:e*f \n");
  EXPECT_EQ(Table("|@la|@rb|c~d|\n-\n|eeee|ffff|gggg|h|\n"),
            "PARAM |a   |   b| c  Hd|\nPARAM +----+----+----#-+\nPARAM |eeee|ffff|gggg|h|\n");
}

TEST_F(LogTableTest, RulesHaveTheirFillAndRowsReachACapturingLog) {
  LOG_TABLE table;
  table.set_rule('=', '?');
  table.rule();
  table.printf("|%s|", "a"), table.new_line();
  GlobalLog.set_capture(true);
  table.row("|b|");
  GlobalLog.set_capture(false);
  EXPECT_EQ(GlobalLog.last_captured_line(), "|b|");
  table.flush(INFO);
  EXPECT_EQ(TakeLines(), "INFO  +=+\nINFO  |a|\nINFO  |b|\n");
}

TEST_F(LogTableTest, ATemporaryFileThatIsMissingIsTold) {
  std::string path;
  const auto lose = [&] {
    LOG_TABLE table;
    path = fs::directory_iterator(directory.Path("tables"))->path();
    fs::remove(path);
    table.flush(INFO);
  };
  fs::create_directory(directory.Path("tables"));
  setenv("TMPDIR", directory.Path("tables///").c_str(), 1);
  EXPECT_EQ(ThrownText(lose), "can not open tmp file");
  EXPECT_EQ(path.size(), directory.Path("tables/table_XXXXXX").size());
  EXPECT_EQ(ThrownText([] { (NO_FILES(), LOG_TABLE()); }), "can not write to /tmp");
  EXPECT_EQ(TakeLines(), "EXCEP LOG_TABLE: can not open tmp file: " + path +
                             "\nWARN  can not remove tmp file: " + path +
                             "\nWARN  reason: No such file or directory\n"
                             "EXCEP LOG_TABLE: can not open tmp file: /tmp/table_0815\n");
  unsetenv("TMPDIR");
}

TEST_F(LogTableTest, CellsHoldUpTo255Characters) {
  const std::string row = "|" + std::string(255, 'x');
  EXPECT_EQ(Table(row + "|"), "PARAM " + row + "|\n");
  EXPECT_EQ(Table("|a|" + std::string(300, 'j') + "\n|c|"), "PARAM |a|\nPARAM |c|\n");
  EXPECT_THROW(Table(row + "x|"), ERROR_ARGUMENT);
  EXPECT_EQ(TakeLines(), "ALARM LOG_TABLE: cell of 256 characters is longer than 255\n");
}

}  // namespace
}  // namespace varnoth::test
