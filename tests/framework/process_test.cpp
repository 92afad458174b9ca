#include <sys/inotify.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "framework/controller_ifc.hpp"
#include "framework/software_log.hpp"
#include "support/log_capture.hpp"
#include "system/signal_safe/uninterrupted.hpp"

namespace varnoth::test {
namespace {

class ControllerTest : public LoggedTest {
 protected:
  ~ControllerTest() override {
    for (int number = 1; number < 32; ++number) std::signal(number, SIG_DFL);
  }
  /// Sets the controller up in the test's directory with a configuration file and more arguments.
  void Init(const std::string& configuration, const std::vector<std::string>& more = {}) {
    WriteFile(directory.Path("pcf"), configuration);
    std::filesystem::create_directory(directory.Path("status"));
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

  CONTROLLER_IFC controller;
  std::vector<std::string> words;
  std::vector<char*> arguments;
};

TEST_F(ControllerTest, TheLastPairOfTheArgumentsWinsAndTheFileIsReadOnFromTheLastHit) {
  Init("file 1 rest\nk file\n# file 5\nother\t2\nfile 3\n" + std::string(1023, 'y') + "long 4\n",
       {"-k", "a", "-k", "b", "-v", "-w", "-last"});
  EXPECT_EQ(Find("k"), "b");
  EXPECT_EQ(Find("v"), "-w") << "a value may look like a key";
  EXPECT_EQ(Find("w"), "-last");
  EXPECT_EQ(Find("last"), "! unchanged") << "the last argument is only a value";
  setenv("last", "some words", 1);
  EXPECT_EQ(Find("last"), "some words") << "the environment comes last";
  unsetenv("last");
  for (const char* expected : {"1", "3", "1"}) EXPECT_EQ(Find("file"), expected);
  EXPECT_EQ(Find("other"), "2");
  EXPECT_EQ(Find("long"), "4") << "behind 1023 bytes a new line starts";
}

TEST_F(ControllerTest, AnAnswerInTimeTakesTheAlarmBack) {
  setenv("SECONDS_ON_PARAMETER_INPUT", "50", 1);
  Init("");
  WriteFile(directory.Path("keyboard"), "  answer and more\n");
  ASSERT_NE(std::freopen(directory.Path("keyboard").c_str(), "r", stdin), nullptr);
  testing::internal::CaptureStdout();
  STRING value;
  EXPECT_TRUE(controller.get_parameter("k", value));
  EXPECT_EQ(alarm(0), 0U) << "seconds to the end of the run";
  EXPECT_TRUE(testing::internal::GetCapturedStdout().ends_with("k := "));
  EXPECT_EQ(value, "answer");
  unsetenv("SECONDS_ON_PARAMETER_INPUT");
}

// The failure mark stands from the start on and goes before the success mark comes; what stood
// under a mark's name is replaced, with nothing left of it and nothing written behind a link.
TEST_F(ControllerTest, MarksComeAndGoInOrderAndReplaceWhatStoodThere) {
  const std::string status = directory.Path("status/");
  const int watch = inotify_init1(IN_NONBLOCK);
  std::filesystem::create_directory(status);
  WriteFile(status + "ERROR.step", "a longer one");
  WriteFile(directory.Path("victim"), "precious");
  inotify_add_watch(watch, status.c_str(), IN_CREATE | IN_DELETE);
  Init("");
  EXPECT_EQ(ReadFile(status + "ERROR.step"), "1");
  std::filesystem::create_symlink("../victim", status + "OK.step");
  controller.mark_ok();
  EXPECT_EQ(ReadFile(status + "OK.step"), "0");
  std::filesystem::create_hard_link(directory.Path("victim"), status + "ERROR.step");
  EXPECT_EQ(controller.mark_error(), 1);
  EXPECT_EQ(ReadFile(status + "ERROR.step"), "1");
  EXPECT_EQ(ReadFile(directory.Path("victim")), "precious");
  alignas(inotify_event) char events[4096];
  const ssize_t size = read(watch, events, sizeof events);
  std::string order;
  for (const char* at = events; at < events + size;) {
    const auto* event = reinterpret_cast<const inotify_event*>(at);
    order += ((event->mask & IN_DELETE) != 0 ? " -" : " +") + std::string(event->name);
    at += sizeof *event + event->len;
  }
  close(watch);
  EXPECT_EQ(order,
            " +OK.step -ERROR.step -OK.step +OK.step +ERROR.step -OK.step -ERROR.step +ERROR.step");
}

int Overflow(int depth) {
  if (depth < 0) return 0;
  volatile char page[4096];
  page[0] = static_cast<char>(depth);
  return Overflow(depth + 1) + page[0];
}

class ControllerDeathTest : public ControllerTest {
 protected:
  void ExpectTold(const char* signal) {
    const std::string log = ReadFile(directory.Path("lfn"));
    EXPECT_NE(log.find(std::string("\nALARM : log : got fatal signal ") + signal),
              std::string::npos)
        << log;
    EXPECT_EQ(ReadFile(directory.Path("status/ERROR.step")), "1");
  }
};

// The handler needs a stack of its own.
TEST_F(ControllerDeathTest, AFullStackIsTold) {
  EXPECT_EXIT((Init(""), controller.set_supervised(), Overflow(0)), testing::ExitedWithCode(1), "");
  ExpectTold("11: segmentation violation\nALARM : log : ZOD_MSG|ERROR|step got fatal signal 11: ");
}

// Neither may the handler allocate, nor find what it needs on the heap.
TEST_F(ControllerDeathTest, AHeapInDisorderIsTold) {
#if defined(__SANITIZE_ADDRESS__)
  GTEST_SKIP() << "the sanitizer finds it first";
#else
  const auto overwrite = [&] {
    Init("");
    GlobalLog.set(INFO) << "broken line";
    std::vector<char*> blocks;
    for (int i = 0; i < 64; ++i) blocks.push_back(new char[100]);
    char* volatile start = blocks.front();
    std::memset(start - 16, 0x5a, 64 * 100);
    for (char* block : blocks) delete[] block;
  };
  EXPECT_EXIT(overwrite(), testing::ExitedWithCode(1), "");
  ExpectTold("6: IOT instruction");
#endif
}

TEST_F(ControllerDeathTest, ASignalInAnUninterruptedStretchEndsTheProcessAtItsEnd) {
  const auto stretch = [&] {
    Init("");
    const UNINTERRUPTED outer;
    {
      const UNINTERRUPTED inner;
      std::raise(SIGTERM);
      EXPECT_EQ(ReadFile(directory.Path("status/ERROR.step")), "1");
    }
    GlobalLog.set(INFO) << "still here\n";
  };
  EXPECT_EXIT(stretch(), testing::ExitedWithCode(1), "");
  ExpectTold("15: software termination signal from kill");
  EXPECT_NE(ReadFile(directory.Path("lfn")).find("still here"), std::string::npos);
}

TEST_F(ControllerDeathTest, AFaultOfTheHandlerEndsAtOnceBehindTheMark) {
  const auto fail = [&] {
    Init("");
    FATAL_EXIT_PLAN plan = controller.fatal_exit_plan();
    plan.log = reinterpret_cast<LOG_OUTLETS*>(4096);  // nobody's memory
    PlanFatalExit(plan);
    std::remove(directory.Path("status/ERROR.step").c_str());
    std::raise(SIGTERM);
  };
  EXPECT_EXIT(fail(), testing::KilledBySignal(SIGSEGV), "");
  EXPECT_EQ(ReadFile(directory.Path("status/ERROR.step")), "1");
}

TEST(SoftwareIdentity, KeywordsAreCutToTheirValuesAndTimesAreLocal) {
  setenv("TZ", "EAST-5:30", 1);
  tzset();
  SoftwareIdentity identity;
  identity.start_seconds = 1700000000;
  identity.set("", "", "$Revision: 1.2 $", "$Date: 2004/01/14 10:11:12 $", "", "");
  EXPECT_EQ(identity.start_time, "2023-11-15T03:43:20");
  EXPECT_EQ(identity.version + " " + identity.date, "1.2 2004-01-14T10:11:12");
}

class SoftwareLogTest : public LoggedTest {
 protected:
  /// A run of 90 s that ends now.
  SoftwareIdentity Run(const char* name, const char* version) {
    SoftwareIdentity identity;
    identity.start_seconds -= 90;
    identity.set(name, "title", version, "2026-11-24T21:06:38", "build", "user");
    PARAMETER_POOL_READ_WRITE_CHANGE pool(path.c_str());
    SoftwareLog().update_pool(pool, identity);
    return identity;
  }
  template <class V>
  V Read(const char* key) {
    V value{};
    PARAMETER_POOL(path.c_str()).Read(key, value);
    return value;
  }

  const std::string path = directory.Path("pool");
};

TEST_F(SoftwareLogTest, ARunReplacesItsOwnRowAndLeavesTheOthers) {
  std::string text = "software_execution_times INT_32_V 7 1\n {\n 5\n }\n";
  for (const std::string column : {"names", "versions", "dates", "start_times", "end_times"}) {
    text += "software_" + column + " STR_V 7 1\n {\n old\n }\n";
  }
  WriteFile(path, text);
  Run("new", "1");
  const SoftwareIdentity run = Run("new", "2");
  for (const auto& [column, row] : {std::pair("names", run.name),
                                    {"versions", "2"},
                                    {"dates", run.date},
                                    {"start_times", run.start_time},
                                    {"end_times", run.end_time}}) {
    const auto rows = Read<ARRAY<STRING>>((std::string("software_") + column).c_str());
    ASSERT_EQ(rows.GetRange(), RANGE<int>(7, 2));
    EXPECT_EQ(rows.GetBase()[7] + rows.GetBase()[8], STRING("old") + row);
  }
  const auto seconds = Read<ARRAY<int>>("software_execution_times");
  ASSERT_EQ(seconds.GetRange(), RANGE<int>(7, 2));
  EXPECT_EQ(seconds.GetBase()[7], 5);
  EXPECT_EQ(seconds.GetBase()[8], run.end_seconds - run.start_seconds);
}

TEST_F(SoftwareLogTest, AFlaggedWarningIsNeverCleared) {
  Run("step", "1");
  EXPECT_FALSE(Read<bool>("QA_WARNING_FLAG"));
  GlobalLog.set(QA_WARNING) << "doubtful\n";
  Run("step", "1");
  GlobalLog.open_file(directory.Path("log").c_str(), "log", NO_LEVEL, TRACE);
  Run("step", "1");
  EXPECT_TRUE(Read<bool>("QA_WARNING_FLAG"));
}

}  // namespace
}  // namespace varnoth::test
