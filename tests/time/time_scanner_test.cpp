#include "foundation/errors.hpp"
#include "support/log_capture.hpp"
#include "time/met_scanner.hpp"
#include "time/mission_elapsed_time.hpp"
#include "time/universal_time.hpp"
#include "time/utc_scanner.hpp"

namespace varnoth::test {
namespace {

using TimeScannerTest = LoggedTest;

struct FORM_CASE {
  const char* input;
  int form;
  const char* canonical;
};

constexpr FORM_CASE FORMS[] = {
    {"14-OCT-2004/10:11:12", 1, "14-OCT-2004/10:11:12.000000"},
    {"14-010-2004/10:11:12.5", 1, "14-OCT-2004/10:11:12.500000"},
    {"14-JAN-2004/23:59:62.1234567", 1, "14-JAN-2004/23:59:62.123456"},
    {"00-JAN-2004/10:11:12 . 5 trailing", 1, "00-JAN-2004/10:11:12.500000"},
    {"Wed Jan 14 10:11:12 2004", 2, "14-JAN-2004/10:11:12.000000"},
    {"Sun Feb  1 10:11:12 2004", 2, "01-FEB-2004/10:11:12.000000"},
    {"2004-02-29/10:11:12.000001", 3, "29-FEB-2004/10:11:12.000001"},
    {"2004-01-14T10:11:12Z", 4, "14-JAN-2004/10:11:12.000000"},
    {"2004-01-14T10:11:12.25 Z", 4, "14-JAN-2004/10:11:12.250000"},
    {"2004-01-14T10:11:12.Z", 4, "14-JAN-2004/10:11:12.000000"},
    {"2004-01-14T10:11:12Z5", 4, "14-JAN-2004/10:11:12.000000"},
    {"2004-01-14T10:11:12\nmore", 4, "14-JAN-2004/10:11:12.000000"},
    {"20040114T101112", 5, "14-JAN-2004/10:11:12.000000"},
    {"14-JAN-2004 10:11:12.034", 6, "14-JAN-2004/10:11:12.034000"},
};

TEST(UtcScanner, ReadsEveryFormAndItsOwnTextTheSame) {
  for (const auto& [input, form, canonical] : FORMS) {
    SCOPED_TRACE(input);
    EXPECT_EQ(UTC_SCANNER().DetectForm(input), form);
    const UNIVERSAL_TIME time(input);
    EXPECT_STREQ(time.c_str(), canonical);
    EXPECT_EQ(UNIVERSAL_TIME(time.c_str()), time);
    EXPECT_EQ(UNIVERSAL_TIME(ToPoolText(time, 6, true).c_str()), time);
  }
}

struct FAULT_CASE {
  const char* input;
  const char* log;
  const char* fault = nullptr;  ///< text that the line behind it shows
};

constexpr FAULT_CASE FAULTS[] = {
    {"", "", "invalid or unsupported format"},
    {"2004-1-14T10:11:12", "", "invalid or unsupported format"},
    {"2004-FEB-30T10:11:12", "", "invalid or unsupported format"},
    {"30-FEB-2004/10:11:12", "UTC_SCANNER: Invalid date: 30.2.2004\n"},
    {"2003-13-01T10:11:12", "UTC_SCANNER: Invalid date: 1.13.2003\n"},
    {"14-JAN-2004/24:00:00", "UTC_SCANNER: invalid hour: 24\n"},
    {"14-JAN-2004/23:60:00", "UTC_SCANNER: invalid minute: 60\n"},
    {"14-JAN-2004/23:59:63", "UTC_SCANNER: invalid second: 63\n"},
    {"14-JAN-2004/23:59:99999999999", "UTC_SCANNER: invalid second: 2147483647\n"},
    {"14-JAN-2004/12:59:60.0", "UTC_SCANNER: invalid leap second: 60\n"},
    {"14-JAN-2004/23:58:60", "UTC_SCANNER: invalid leap second: 60\n"},
    {"14-JUX-2004/10:11:12", "TIME_SCANNER: can not convert >> JU << to month\n"},
    {"14-jan-2004/10:11:12", "", "TIME: scanner: unhandled character"},
    {"14-JAN-2004/10:11:", "", "TIME: scanner: unexpected end of string"},
    {"14-JAN-2004/JAN:11:12", "found token: token_month\n", "unexpected token in GetNumber()"},
    {"14-JAN-2004/10+11:12", "found token: token_sign_plus\n",
     "unexpected token in GetSeparator()"},
    {"14-Z01-2004/10:11:12", "found token: token_zulu\n", "unexpected token in GetMonth()"},
    {"14-JAN-2004/10:11:12:5", "found token: token_separator\n", "unexpected token in GetPoint()"},
    {"14-JAN-2004/10:11:12.-5", "found token: token_sign_minus\n",
     "unexpected token in GetMilliAndMicroSeconds()"},
};

TEST_F(TimeScannerTest, AFaultyUtcTextIsLoggedAndRefused) {
  for (const auto& [input, log, fault] : FAULTS) {
    SCOPED_TRACE(input);
    std::string expected = log;
    if (fault != nullptr) expected += std::string("UTC_SCANNER: ") + fault + ": " + input + "\n";
    EXPECT_THROW(UNIVERSAL_TIME{input}, ERROR_DATA);
    EXPECT_EQ(TakeLog(), expected + "UTC_SCANNER: Error during scan of: " + input + "\n");
  }
}

TEST_F(TimeScannerTest, LongTokensAndYearsAreRefused) {
  const std::string digits(128, '0');
  EXPECT_NO_THROW(UNIVERSAL_TIME(("14-JAN-2004/10:11:12." + digits.substr(1)).c_str()));
  EXPECT_THROW(UNIVERSAL_TIME(("14-JAN-2004/10:11:12." + digits).c_str()), ERROR_DATA);
  EXPECT_EQ(TakeLog().rfind("TIME_SCANNER: token of 128 characters is too long\n", 0), 0);
  EXPECT_THROW(UNIVERSAL_TIME("Wed Jan 14 10:11:12 10000"), ERROR_DATA);
  EXPECT_THROW(UNIVERSAL_TIME("Wed Jan 14 10:11:12 99999999999999999999"), ERROR_DATA);
}

struct MET_CASE {
  const char* input;
  MET_VALUES values;
  const char* fault;
};

constexpr MET_CASE MET_TEXTS[] = {
    {"-0001/02:03:04.000005", {-1, 1, 2, 3, 4, 0, 5}, "nothing thrown"},
    {" -0001/02:03:04.5", {1, 1, 2, 3, 4, 500, 0}, "nothing thrown"},
    {"\t1-2-3-4Z", {1, 1, 2, 3, 4, 0, 0}, "nothing thrown"},
    {"+12 / 99:99:99 .1Z", {1, 12, 99, 99, 99, 100, 0}, "nothing thrown"},
    {"", {}, "TIME: scanner: unexpected end of string"},
    {" ", {}, "TIME: scanner: unexpected end of string"},
    {"-5/06:07", {-1, 5, 6, 7}, "TIME: scanner: unexpected end of string"},
    {"-5/06:xx", {-1, 5, 6}, "TIME: scanner: unhandled character"},
    {"--5", {-1}, "unexpected token in GetNumber()"},
};

TEST_F(TimeScannerTest, AMetTextFillsTheFieldsUpToTheFault) {
  for (const auto& [input, values, fault] : MET_TEXTS) {
    SCOPED_TRACE(input);
    MET_SCANNER scanner;
    scanner.Scan("-9/9:9:9.999999");
    EXPECT_EQ(ThrownText([&] { scanner.Parse(input); }), fault);
    TakeLog();
    const bool sound = std::string(fault) == "nothing thrown";
    EXPECT_EQ(scanner.Scan(input), sound);
    EXPECT_EQ(scanner.values, values);
    const std::string log = TakeLog();
    const std::string last = std::string("MET_SCANNER: ") + fault + "\n";
    EXPECT_TRUE(sound ? log.empty() : log.ends_with(last)) << log;
  }
}

}  // namespace
}  // namespace varnoth::test
