#include <vector>

#include "foundation/errors.hpp"
#include "support/log_capture.hpp"
#include "time/met_scanner.hpp"
#include "time/mission_elapsed_time.hpp"
#include "time/universal_time.hpp"
#include "time/utc_scanner.hpp"

namespace varnoth::test {
namespace {

using TimeScannerTest = LoggedTest;

const struct {
  const char* input;
  const char* canonical;
  std::vector<std::size_t> marks;  ///< positions that settle the form
} TEXTS[] = {
    {"14-010-2004/10:11:12", "14-OCT-2004/10:11:12.000000", {2, 6, 11}},
    {"14-JAN-2004/23:59:62.1234567", "14-JAN-2004/23:59:62.123456", {2, 6, 11}},
    {"00-JAN-2004/10:11:12 . 5 trailing", "00-JAN-2004/10:11:12.500000", {2, 6, 11}},
    {"Sun Feb  1 10:11:12 2004", "01-FEB-2004/10:11:12.000000", {3}},
    {"2004-02-29/10:11:12.000001", "29-FEB-2004/10:11:12.000001", {4, 7, 10, 13, 16}},
    {"2004-01-14T10:11:12.25 Z", "14-JAN-2004/10:11:12.250000", {4, 7, 10, 13, 16}},
    {"2004-01-14T10:11:12.Z5", "14-JAN-2004/10:11:12.000000", {}},
    {"2004-01-14T10:11:12\nmore", "14-JAN-2004/10:11:12.000000", {}},
    {"20040114T101112", "14-JAN-2004/10:11:12.000000", {8}},
    {"14-JAN-2004 10:11:12.034", "14-JAN-2004/10:11:12.034000", {2, 6, 11}},
};

TEST_F(TimeScannerTest, ReadsEveryFormByItsMarksAndItsOwnTextTheSame) {
  for (const auto& [input, canonical, marks] : TEXTS) {
    const UNIVERSAL_TIME time(input);
    EXPECT_STREQ(time.c_str(), canonical) << input;
    EXPECT_EQ(UNIVERSAL_TIME(time.c_str()), time) << input;
    EXPECT_EQ(UNIVERSAL_TIME(ToPoolText(time, 6, true).c_str()), time) << input;
    for (const std::size_t mark : marks) {
      const std::string other = std::string(input).replace(mark, 1, "x");
      EXPECT_EQ(UTC_SCANNER().DetectForm(other.c_str()), 0) << other;
    }
  }
}

constexpr struct {
  const char* input;
  const char* log;
  const char* fault = nullptr;  ///< text that the line behind it shows
} FAULTS[] = {
    {"2004-1-14T10:11:12", "", "invalid or unsupported format"},
    {"30-FEB-2004/10:11:12", "UTC_SCANNER: Invalid date: 30.2.2004\n"},
    {"2003-13-01T10:11:12", "UTC_SCANNER: Invalid date: 1.13.2003\n"},
    {"14-JAN-2004/24:00:00", "UTC_SCANNER: invalid hour: 24\n"},
    {"14-JAN-2004/23:60:00", "UTC_SCANNER: invalid minute: 60\n"},
    {"14-JAN-2004/23:59:63", "UTC_SCANNER: invalid second: 63\n"},
    {"14-JAN-2004/23:59:99999999999", "UTC_SCANNER: invalid second: 2147483647\n"},
    {"14-JAN-2004/12:59:60.0", "UTC_SCANNER: invalid leap second: 60\n"},
    {"14-JAN-2004/23:58:60", "UTC_SCANNER: invalid leap second: 60\n"},
    {"14-JUX-2004/10:11:12", "TIME_SCANNER: can not convert >> JU << to month\n"},
    {"14-Z01-2004/10:11:12", "found token: token_zulu\n", "unexpected token in GetMonth()"},
    {"14-JAN-2004/10:11:12 5", "found token: token_number\n", "unexpected token in GetPoint()"},
    {"14-JAN-2004/10:11:12.:", "found token: token_separator\n",
     "unexpected token in GetMilliAndMicroSeconds()"},
};

TEST_F(TimeScannerTest, AFaultyUtcTextIsToldAndRefused) {
  const std::string head = "EXCEP : log : ";
  for (const auto& [input, log, fault] : FAULTS) {
    std::string expected = *log != '\0' ? head + log : "";
    if (fault != nullptr) expected += head + "UTC_SCANNER: " + fault + ": " + input + "\n";
    TakeLog();
    EXPECT_THROW(UNIVERSAL_TIME{input}, ERROR_DATA) << input;
    EXPECT_EQ(Log(), expected + head + "UTC_SCANNER: Error during scan of: " + input + "\n");
  }
  TakeLog();
  const std::string digits(128, '0');
  EXPECT_NO_THROW(UNIVERSAL_TIME(("14-JAN-2004/10:11:12." + digits.substr(1)).c_str()));
  EXPECT_THROW(UNIVERSAL_TIME(("14-JAN-2004/10:11:12." + digits).c_str()), ERROR_DATA);
  EXPECT_TRUE(Log().starts_with("ALARM : log : TIME_SCANNER: token of 128 characters is too lo"));
  EXPECT_THROW(UNIVERSAL_TIME("Wed Jan 14 10:11:12 10000"), ERROR_DATA);
}

constexpr struct {
  const char* input;
  MET_VALUES values;
  const char* fault;
  const char* found = "";
} METS[] = {
    {"-0001/02:03:04.000005", {-1, 1, 2, 3, 4, 0, 5}, ""},
    {" -0001/02:03:04.5", {1, 1, 2, 3, 4, 500, 0}, ""},
    {"\t1-2-3-4Z", {1, 1, 2, 3, 4, 0, 0}, ""},
    {"+12 / 99:99:99 .1Z", {1, 12, 99, 99, 99, 100, 0}, ""},
    {"-5/06:07", {-1, 5, 6, 7}, "TIME: scanner: unexpected end of string"},
    {"-5/06:xx", {-1, 5, 6}, "TIME: scanner: unhandled character"},
    {"--5", {-1}, "unexpected token in GetNumber()", "found token: token_sign_minus\n"},
    {"+JAN", {1}, "unexpected token in GetNumber()", "found token: token_month\n"},
    {"1+", {1, 1}, "unexpected token in GetSeparator()", "found token: token_sign_plus\n"},
    {"1/2:3.", {1, 1, 2, 3}, "unexpected token in GetSeparator()", "found token: token_point\n"},
};

TEST_F(TimeScannerTest, AMetTextFillsTheFieldsUpToTheFault) {
  const std::string head = "EXCEP : log : ";
  for (const auto& [input, values, fault, found] : METS) {
    const bool is_sound = *fault == '\0';
    MET_SCANNER scanner;
    scanner.Scan("-9/9:9:9.999999");
    EXPECT_EQ(ThrownText([&] { scanner.Parse(input); }), is_sound ? "nothing thrown" : fault);
    TakeLog();
    EXPECT_EQ(scanner.Scan(input), is_sound) << input;
    EXPECT_EQ(scanner.values, values) << input;
    const std::string line = *found != '\0' ? head + found : "";
    EXPECT_EQ(Log(), is_sound ? "" : line + head + "MET_SCANNER: " + fault + "\n") << input;
  }
}

}  // namespace
}  // namespace varnoth::test
