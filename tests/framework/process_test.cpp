#include <fcntl.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <sstream>

#include "framework/controller_ifc.hpp"
#include "framework/internal/fatal_signals.hpp"
#include "framework/software_log.hpp"
#include "support/log_capture.hpp"
#include "system/file_access.hpp"
#include "system/signal_safe/descriptor.hpp"
#include "system/signal_safe/uninterrupted.hpp"

namespace varnoth::test {
namespace {

int syncs = 0;
int sync_error = 0;

struct ControllerTest : LoggedTest {
  ControllerTest() { std::filesystem::create_directory(directory.Path("status")); }
  /// Sets the controller up in the test's directory with a configuration file and more arguments.
  void Init(const std::string& configuration = "", const std::vector<std::string>& more = {}) {
    WriteFile(directory.Path("pcf"), configuration);
    words = {"step"};
    for (const std::string name : {"status", "pcf", "lfn"}) {
      words.insert(words.end(), {"-" + name, directory.Path(name)});
    }
    words.insert(words.end(), more.begin(), more.end());
    for (std::string& word : words) arguments.push_back(word.data());
    controller.init(static_cast<int>(arguments.size()), arguments.data(), false);
  }
  std::string Find(const char* key) {
    STRING value("unchanged");
    const bool found = controller.find_parameter(key, value);
    return std::string(found ? "" : "! ") + value.c_str();
  }

  /// Whether the log, where the set-up has moved it, has a line.
  bool HasTold(const std::string& line) const {
    GlobalLog.flush();
    return ReadFile(directory.Path("lfn")).find(line + "\n") != std::string::npos;
  }

  CONTROLLER_IFC controller;
  std::vector<std::string> words;
  std::vector<char*> arguments;
};

TEST_F(ControllerTest, TheLastPairOfTheArgumentsWinsAndTheFileIsReadOnFromTheLastHit) {
  Init("file 1 rest\nk file\n# file 5\nfile 3\n" + std::string(1023, 'y') + "long 4\n",
       {"-k", "a", "-k", "b", "-v", "-w", "-last"});
  EXPECT_EQ(Find("k"), "b");
  EXPECT_EQ(Find("v"), "-w") << "a value may look like a key";
  EXPECT_EQ(Find("w"), "-last");
  EXPECT_EQ(Find("last"), "! unchanged") << "the last argument is only a value";
  for (const char* expected : {"1", "3", "1"}) EXPECT_EQ(Find("file"), expected);
  EXPECT_EQ(Find("long"), "4") << "behind 1023 bytes a new line starts";
}

TEST_F(ControllerTest, WithoutASetUpItsNameIsUnknownAndToldOnce) {
  EXPECT_EQ(controller.get_binary_name() + controller.get_binary_name(), "unknownunknown");
  EXPECT_EQ(TakeLines(),
            "WARN  CONTROLLER_IFC::get_binary_name: Controller interface not initialized!\n"
            "WARN  Function CONTROLLER_IFC::init must be called before accessing a controller "
            "object!\n");
}

TEST_F(ControllerTest, ADurableMarkIsOnTheDisk) {
  Init();
  controller.SetDurable();
  const int before = syncs;
  EXPECT_EQ(controller.mark_ok(), 0);
  EXPECT_EQ(syncs, before + 1);
  sync_error = EIO;
  controller.mark_error();
  sync_error = 0;
  EXPECT_TRUE(
      HasTold("WARN  : log : Can not wait for the disk to hold the marks: Input/output error"));
}

TEST_F(ControllerTest, AnAnswerInTimeTakesTheAlarmBack) {
  Init();
  WriteFile(directory.Path("keyboard"), "  answer and more\n");
  ASSERT_NE(std::freopen(directory.Path("keyboard").c_str(), "r", stdin), nullptr);
  setenv("SECONDS_ON_PARAMETER_INPUT", "2147483647", 1);
  STRING value;
  EXPECT_TRUE(controller.get_parameter("k", value));
  EXPECT_EQ(alarm(0), 0U) << "seconds to the end of the run";
  EXPECT_EQ(value, "answer");
  EXPECT_TRUE(HasTold("DEBUG : log : waiting 2147483647 seconds for input"));
  EXPECT_TRUE(HasTold("TRACE : log : rewinding file position"));
  EXPECT_TRUE(HasTold("TRACE : log : binary name is step"));
  EXPECT_TRUE(HasTold("TRACE : log : status path is [" + directory.Path("status/]")));
  unsetenv("SECONDS_ON_PARAMETER_INPUT");
}

TEST_F(ControllerTest, EachMarkGoesBeforeTheOtherComes) {
  const int watch = inotify_init1(IN_NONBLOCK);
  inotify_add_watch(watch, directory.Path("status").c_str(), IN_CREATE | IN_DELETE);
  Init();
  controller.mark_ok();
  EXPECT_EQ(controller.mark_error(), 1);
  alignas(inotify_event) char events[4096];
  const ssize_t size = read(watch, events, sizeof events);
  close(watch);
  std::string order;
  for (const char* at = events; at < events + size;) {
    const auto* event = reinterpret_cast<const inotify_event*>(at);
    order += ((event->mask & IN_DELETE) != 0 ? " -" : " +") + std::string(event->name);
    at += sizeof *event + event->len;
  }
  EXPECT_EQ(order, " +ERROR.step -ERROR.step +OK.step -OK.step +ERROR.step");
}

int Overflow(int depth) {
  volatile char page[4096] = {};
  return depth < 0 ? 0 : Overflow(depth + 1) + page[0];
}

using ControllerDeathTest = ControllerTest;

TEST_F(ControllerDeathTest, TheHandlerHasAStackOfItsOwnWhereTheOtherIsFull) {
  EXPECT_EXIT((Init(), controller.set_supervised(), Overflow(0)), testing::ExitedWithCode(1), "");
  const std::string text = "got fatal signal 11: segmentation violation\n";
  EXPECT_PRED_FORMAT2(testing::IsSubstring,
                      "\nALARM : log : " + text + "ALARM : log : ZOD_MSG|ERROR|step " + text,
                      ReadFile(directory.Path("lfn")));
}

TEST_F(ControllerDeathTest, AHeldSignalArrivesAtTheEndOfItsScope) {
  const auto hold = [&] {
    {
      const HELD_SIGNALS held;
      std::raise(SIGTERM);
      std::fputs("held", stderr);
    }
    std::fputs("passed", stderr);
  };
  EXPECT_EXIT(hold(), testing::KilledBySignal(SIGTERM), "held$");
}

TEST_F(ControllerDeathTest, ASignalInAnUninterruptedStretchEndsTheProcessAtItsEnd) {
  const auto stretch = [&] {
    Init();
    const UNINTERRUPTED outer;
    {
      const UNINTERRUPTED inner;
      std::raise(SIGTERM);
    }
    GlobalLog.set(INFO) << "still here\n";
  };
  EXPECT_EXIT(stretch(), testing::ExitedWithCode(1), "");
  EXPECT_PRED_FORMAT2(testing::IsSubstring,
                      "still here\nALARM : log : got fatal signal 15: software",
                      ReadFile(directory.Path("lfn")));
}

TEST_F(ControllerDeathTest, AFaultOfTheHandlerEndsAtOnceBehindTheMark) {
  const auto fail = [&] {
    Init();
    FATAL_EXIT_PLAN plan = controller.fatal_exit_plan();
    plan.log = reinterpret_cast<LOG_OUTLETS*>(4096);  // nobody's memory
    PlanFatalExit(plan);
    std::remove(directory.Path("status/ERROR.step").c_str());
    std::raise(SIGTERM);
  };
  EXPECT_EXIT(fail(), testing::KilledBySignal(SIGSEGV), "");
  EXPECT_EQ(ReadFile(directory.Path("status/ERROR.step")), "1");
}

TEST(SoftwareIdentity, TheBuildLineHasPlainValuesAndTheDay) {
  SoftwareIdentity identity;
  identity.set("step", "", "$Revision: 1.2", "$Date: 2026/11/24 21:06:38 $", "build", "user");
  STRING line;
  make_build_line(line, identity, "gcc");
  EXPECT_EQ(line + PlainVersion("$Revision: $"), "step 1.2  2026-11-24 compiled by gcc");
}

TEST_F(LoggedTest, AReplacedFileIsTheCallersOwn) {
  const std::string path = directory.Path("file"), other = directory.Path("other");
  WriteFile(other, "kept");
  WriteFile(path, "a longer text");
  const std::function<void()> makers[] = {[] {}, [&] { mkfifo(path.c_str(), 0600); },
                                          [&] { std::filesystem::create_symlink(other, path); },
                                          [&] { std::filesystem::create_hard_link(other, path); }};
  for (const auto& make : makers) {
    make();
    ASSERT_TRUE(ReplaceFile(path.c_str(), "new"));
    EXPECT_EQ(ReadFile(path) + ReadFile(other), "newkept") << &make - makers;
    unlink(path.c_str());
  }
  EXPECT_FALSE(ReplaceFile((path + "/x").c_str(), "new") || SyncName((path + "/x").c_str()));
}

TEST_F(LoggedTest, AStreamGoesToAndFroAndTellsOfAFullDisk) {
  const std::string path = directory.Path("file");
  std::fputs("abc", OpenStream(path.c_str(), O_WRONLY | O_CREAT).get());
  const OWNED_FILE file = OpenStream(path.c_str(), O_RDONLY);
  EXPECT_EQ(std::fseek(file.get(), -1, SEEK_END) + std::fgetc(file.get()), 'c');
  OWNED_FILE full = OpenStream("/dev/full", O_WRONLY);
  std::fputs("abc", full.get());
  EXPECT_NE(std::fclose(full.release()), 0);
}

struct SoftwareLogTest : LoggedTest {
  /// A run of 90 s that ends now.
  SoftwareIdentity Run(const char* version) {
    SoftwareIdentity identity;
    identity.start_seconds -= 90;
    identity.set("step", "title", version, "$Date: 2026/11/24 21:06:38 $", "build", "user");
    PARAMETER_POOL_READ_WRITE_CHANGE pool(path.c_str());
    SoftwareLog log;
    log.add(SoftwareIdentity());  // only what the pool has counts
    log.update_pool(pool, identity);
    return identity;
  }
  /// The pool with one blank between its words.
  std::string Words() const {
    std::istringstream pool(ReadFile(path));
    std::string words;
    for (std::string word; pool >> word;) words += word + " ";
    return words;
  }

  const std::string path = directory.Path("pool");
};

TEST_F(SoftwareLogTest, ARunReplacesItsOwnRowAndLeavesTheOthers) {
  std::string text = "software_execution_times INT_32_V 7 1\n {\n 5\n }\n";
  for (const std::string column : {"names", "versions", "dates", "start_times", "end_times"}) {
    text += "software_" + column + " STR_V 7 1\n {\n old_" + column + "\n }\n";
  }
  WriteFile(path, text);
  Run("1");
  const SoftwareIdentity run = Run("$Revision: 1.2 $");
  std::string expected = "software_execution_times INT_32_V 7 2 { 5 " +
                         std::to_string(run.end_seconds - run.start_seconds) + " } ";
  for (const auto& [column, row] : {std::pair<std::string, STRING>("names", "step"),
                                    {"versions", "1.2"},
                                    {"dates", "2026-11-24T21:06:38"},
                                    {"start_times", run.start_time},
                                    {"end_times", run.end_time}}) {
    expected +=
        "software_" + column + " STR_V 7 2 { \"old_" + column + "\" \"" + row.c_str() + "\" } ";
  }
  EXPECT_EQ(Words(), expected + "QA_WARNING_FLAG BOL FALSE ");
}

TEST_F(SoftwareLogTest, AFlaggedWarningIsNeverCleared) {
  GlobalLog.set(QA_WARNING) << "doubtful\n";
  Run("1");
  GlobalLog.open_file(directory.Path("log").c_str(), "log", NO_LEVEL, TRACE);
  Run("1");
  EXPECT_PRED_FORMAT2(testing::IsSubstring, "QA_WARNING_FLAG BOL TRUE", Words());
  EXPECT_PRED_FORMAT2(testing::IsSubstring, "names STR_V 0 1 ", Words());
}

}  // namespace

// This takes the place of the library's function.
extern "C" int fsync(int /*file*/) { return ++syncs, errno = sync_error, sync_error != 0 ? -1 : 0; }

}  // namespace varnoth::test
