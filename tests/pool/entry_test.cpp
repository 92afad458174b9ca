#include <bit>
#include <cfenv>

#include "pool/parameter_pool_read_write_change.hpp"
#include "support/log_capture.hpp"

namespace varnoth::test {
namespace {

using INVALID = INVALID_PARAMETER_VALUE;
using INTS = ARRAY<int>;
using NUMBERS = ARRAY<double>;

/// The text of an entry; "|" stands for a line end and the indent of a block.
std::string Entry(const std::string& type, const std::string& value) {
  std::string text = "key_a" + std::string(28, ' ') + type + std::string(16 - type.size(), ' ');
  for (const char c : value) text += c == '|' ? "\n" + std::string(47, ' ') : std::string(1, c);
  return text + "\n\n";
}

class EntryTest : public LoggedTest {
 protected:
  template <class V>
  V Read(const std::string& file, const std::string& key = "k") {
    WriteFile(path, file);
    PARAMETER_POOL pool(path.c_str());
    TakeLog();
    V value{};
    pool.Read(key.c_str(), value);
    return value;
  }
  template <class V>
  void Change(const V& value, const std::string& text) {
    PARAMETER_POOL_READ_WRITE_CHANGE(path.c_str()).Change("key_a", value);
    EXPECT_EQ(ReadFile(path), text);
  }
  /// Reads the value of an entry and writes it over its own text, which must come out the same.
  template <class V>
  void ComesBack(const std::string& type, const std::string& value) {
    Change(Read<V>(Entry(type, value), "key_a"), Entry(type, value));
  }
  /// The same for the scalar, the vector of two elements and the matrix where there is one.
  template <class X>
  void AllComeBack(const std::string& type, const std::string& a, const std::string& b) {
    ComesBack<X>(type, a);
    ComesBack<ARRAY<X>>(type + "_V", "-3\t2|{|  " + a + "|  " + b + "|}");
    if constexpr (POOL_TYPE<MATRIX<X>> != UNKNOWN) {
      ComesBack<MATRIX<X>>(type + "_M", "5\t2\t-1\t2|{|  {|    " + a + "|    " + a +
                                            "|  }|  {|    " + a + "|    " + b + "|  }|}");
    }
  }
  /// Reads key k of a file; the refusal must be of exactly that class and log its reason.
  template <class V, class ERROR = ERROR_PARAMETER_POOL>
  void Fails(const std::string& file, const std::string& reason) {
    std::string thrown = "nothing thrown";
    try {
      Read<V>("k " + file);
    } catch (const ERROR_EXCEPTION& error) {
      thrown = error.what();
    }
    EXPECT_EQ(thrown, ERROR().what()) << reason;
    EXPECT_EQ(TakeLines(), "ALARM parameter pool: parameter key >> k << " + reason + "\n");
  }
  template <class V, class ERROR = INVALID>
  void WordFails(const std::string& type, const std::string& word, const std::string& reason) {
    Fails<V, ERROR>(type + " " + word + "\n", "read value is : " + word + " " + reason);
  }
  template <class V>
  void TooLarge(const std::string& type, const std::string& word) {
    WordFails<V, PARAMETER_OUT_OF_BOUNDS>(type, word,
                                          "(value is out of range) " + type + " expected");
  }
  /// The refusals of a type, with the type words that two of them show.
  template <class V>
  void IntegerFails(const std::string& type, const std::string& floating,
                    const std::string& character, const std::string& too_large) {
    WordFails<V>(type, "1.5E3", floating + " (no floating) value expected");
    for (const std::string word : {"1E5", "1.5"}) {
      WordFails<V>(type, word, character + " (no additional character) value expected");
    }
    TooLarge<V>(type, too_large);
  }

  const std::string path = directory.Path("pool");
};

TEST_F(EntryTest, KeysAndNumbersAreRead) {
  const std::string hundred(100, 'x'), long_text(1018, 'a');
  EXPECT_EQ(Read<int>("kk INT_32 4\r\n#k INT_32 3\n k INT_32 2\nk INT_32\t5 m\nk INT_32 6\n"), 5);
  EXPECT_EQ(Read<int>(hundred + "y INT_32 5\n", hundred), 5) << "a key is cut at 100 bytes";
  EXPECT_EQ(Read<STRING>("k STR " + long_text + "b\n").Length(), 1018);
  EXPECT_EQ(Read<int>("other " + long_text + "k INT_32 5\n"), 5);
  EXPECT_EQ(Read<int>("a\nother " + long_text + "k INT_32 5\n"), 5) << "passed over, not read";
  EXPECT_EQ(Read<int>("a\nother\rk INT_32 5\n"), 5);
  EXPECT_EQ(Read<int>("k INT_32\r\n"), 0);
  EXPECT_EQ(Read<double>("k FLT_15 2.5"), 2.5) << "beside the mark of the file's end";
  EXPECT_EQ(Read<double>("k FLT_15\n"), 0.0);
  constexpr int TRAPS = FE_INVALID | FE_DIVBYZERO | FE_OVERFLOW;
  feclearexcept(TRAPS);
  feenableexcept(TRAPS);
  const int traps = fegetexcept();  // none on a processor that only has flags
  TooLarge<double>("FLT_15", "1E999");
  TooLarge<float>("FLT_6", "-1E39");
  const float nan = Read<float>("k FLT_6 nan\n");
  EXPECT_EQ(fedisableexcept(TRAPS), traps);
  EXPECT_EQ(fetestexcept(TRAPS), 0);
  EXPECT_NE(nan, nan);
}

TEST_F(EntryTest, AWordInABlockIsReadAsOneBehindAKey) {
  for (const std::string word : {"-1.5e3", "1.5D3", "0x10", "12,5", "7}", "+3", ".5", "-.5", "5.",
                                 "x1", "-", "--1", "-nan", "1e-999", "\t5\t6", "5\t"}) {
    const auto [type, words] = std::pair("k FLT_15_V 7 1\n{\n  ", word + "\n}\n");
    EXPECT_EQ(std::bit_cast<long>(Read<NUMBERS>(type + words).GetBase()[7]),
              std::bit_cast<long>(Read<double>("k FLT_15 " + word + "\n")))
        << word;
  }
  for (const std::string word : {"1e999", "-1e39", "inf"}) {
    EXPECT_THROW(Read<ARRAY<float>>("k FLT_6_V 0 1\n{\n" + word + "\n}\n"),
                 PARAMETER_OUT_OF_BOUNDS);
  }
}

TEST_F(EntryTest, TextsAndBlocksAreRead) {
  EXPECT_EQ(Read<STRING>("k STR two  words \r\n"), "two  words ");
  EXPECT_EQ(Read<STRING>("k STR open"), "open\xFF");
  EXPECT_EQ(Read<STRING>("k STR \"open end \r\n"), "open end ");
  EXPECT_EQ(Read<STRING>("k STR \"a \\\"b\\\"\" rest\n"), "a \"b\"");
  EXPECT_EQ(Read<STRING>("k STR \"a\\b\\\\\"\n"), "ab\"");
  EXPECT_EQ(Read<TUPLE<STRING>>("k STR_STR \"a b\"  c d\n").second, "c d");
  EXPECT_EQ(Read<NUMBERS>("k FLT_15_V 7 1\n{\n5\n6\n}\n").GetBase()[7], 5.0) << "surplus closes";
  EXPECT_EQ(Read<NUMBERS>("k FLT_15_V 7 2\n{\n5\n}\nx\n").GetBase()[8], 0.0) << "} is no number";
  EXPECT_EQ(Read<MATRIX<char>>("k INT_8_M 0 1 0 1\n{\n{\n5\n]\n}\n").Rows()[0][0], 5);
  EXPECT_THROW(Read<NUMBERS>("k FLT_15_V 7 1\r\n{\r\n5\r\n}\r\n"), ERROR_PARAMETER_POOL);
}

TEST_F(EntryTest, EveryTypeComesBackInItsLayout) {
  const char* const floats = "1.000000E-01\t-2.000000E+00";
  const char* const doubles = "1.000000000000000E-01\t-2.000000000000000E+00";
  AllComeBack<bool>("BOL", "TRUE", "FALSE");
  AllComeBack<unsigned char>("BYT", "0", "255");
  AllComeBack<char>("INT_8", "-128", "127");
  AllComeBack<short>("INT_16", "-32768", "32767");
  AllComeBack<int>("INT_32", "-2147483648", "2147483647");
  AllComeBack<long long>("INT_64", "-9223372036854775808", "9223372036854775807");
  AllComeBack<float>("FLT_6", "1.0000000149E-01", "-2.5000000000E+00");
  AllComeBack<double>("FLT_15", "1.00000000000000006E-01", "1.79769313486231571E+308");
  AllComeBack<double>("FLT_15", "NAN", "-2.22507385850720138E-308");
  AllComeBack<STRING>("STR", "\"say \\\"hi\\\" \"", "\"\"");
  AllComeBack<COMPLEX<float>>("CPL_6", floats, "0.000000E+00\t1.000000E+09");
  AllComeBack<COMPLEX<double>>("CPL_15", doubles, doubles);
  AllComeBack<POINT<int>>("INT_32_INT_32", "-1\t2", "3\t4");
  AllComeBack<RANGE<int>>("INT_32_INT_32", "-1\t2", "3\t4");
  AllComeBack<POINT<long long>>("INT_64_INT_64", "-9223372036854775808\t2", "3\t4");
  AllComeBack<POINT<float>>("FLT_6_FLT_6", floats, floats);
  AllComeBack<RANGE<double>>("FLT_15_FLT_15", doubles, doubles);
  AllComeBack<INDEX<int, int>>("IDX_INT_32", "-1\t2", "3\t4");
  AllComeBack<INDEX<int, float>>("IDX_FLT_6", "-1\t1.000000E-01", "3\t4.000000E+00");
  AllComeBack<INDEX<int, double>>("IDX_FLT_15", "-1\t1.000000000000000E-01",
                                  "2\t-1.000000000000000E+00");
  AllComeBack<TUPLE<STRING>>("STR_STR", "\"a\" \"b c\"", "\"\" \"\\\"\"");
  Change(TUPLE<STRING>("a\\", "b"), Entry("STR_STR", "\"a\\\" \"b\""));
}

TEST_F(EntryTest, AWordThatIsNoValueOfItsTypeIsRefused) {
  // The type words that don't fit are what users know and search for.
  IntegerFails<unsigned char>("BYT", "BYT", "BYT", "256");
  IntegerFails<char>("INT_8", "BYT", "INT_8", "-129");
  IntegerFails<short>("INT_16", "INT_8", "INT_8", "32768");
  IntegerFails<int>("INT_32", "INT_16", "INT_32", "2147483648");
  IntegerFails<long long>("INT_64", "INT_32", "INT_64", "9223372036854775808");
  WordFails<unsigned char>("BYT", "5-", "BYT (unsigned) value expected");
  WordFails<bool>("BOL", "true", "but TRUE or FALSE are expected");
}

/// A full line without an end: where it stops, the reader can't look for a further word.
std::string Full(std::string line) {
  line.resize(1022, ' ');
  return line;
}

TEST_F(EntryTest, AnIncompleteKeyLineIsRefused) {
  EXPECT_THROW(Read<int>(""), PARAMETER_KEY_NOT_FOUND);
  EXPECT_EQ(TakeLines(), "ALARM parameter pool: parameter key >> k << not found\n");
  Fails<double, WRONG_PARAMETER_TYPE>("flt_15 5\n", "type FLT_15 expected");
  Fails<int>(Full(""), "no type information found");
  Fails<int, INVALID>(Full("INT_32"), "no parameter value in file");
  Fails<COMPLEX<double>, INVALID>(Full("CPL_15 1"), "no imaginary part in CPL_6");
  Fails<RANGE<float>>(Full("FLT_6_FLT_6 1"), "no second coordinate");
  Fails<INDEX<int, int>>(Full("IDX_INT_32 1"), "no value");
  Fails<TUPLE<STRING>, INVALID>(Full("STR_STR \"a\""),
                                "no correct string tuple format (missing >>\"<< ?)");
  Fails<INTS, INVALID>(Full("INT_32_V 0"), "no correct range for VECTOR or MATRIX");
}

TEST_F(EntryTest, ABrokenBlockIsRefused) {
  const std::string ints = "INT_32_V 4 1", wrong = "{ expected instead of [ for ";
  const std::string full(1024, ' '), unclosed = "} expected instead of ] for ";
  const std::string memory = "not enough memory to create ";
  Fails<INTS, ERROR_NO_MEMORY>("INT_32_V 0 -1\n", memory + "ARRAY");
  Fails<MATRIX<STRING>, ERROR_NO_MEMORY>("STR_M 0 -1 0 1\n", memory + "MATRIX");
  // A count that the file can not hold takes no memory; what it can hold is read.
  Fails<ARRAY<STRING>, ERROR_NO_MEMORY>("STR_V 0 2000000000\n{\n", memory + "ARRAY");
  Fails<INTS>("INT_32_V 0 70000\n[\n" + std::string(70000, '\n'), wrong + "INT_32_V");
  Fails<SUB_ARRAY<int>, ERROR_NO_MEMORY>(ints + "\n", "not enough memory");
  Fails<INTS>(ints + " ", "no { due to end of file");
  Fails<INTS>(ints + "\n" + full, "{ expected for INT_32_V");
  Fails<INTS>(ints + "\n{\n" + full, "no value for index 4");
  Fails<INTS>(ints + "\n{\n7\n" + full, "no } at end of INT_32_V");
  Fails<ARRAY<POINT<float>>>("FLT_6_FLT_6_V 0 0\n{\n]\n", unclosed + "FLT_6_FLT_6_V");
  Fails<ARRAY<TUPLE<STRING>>>("STR_STR_V 0 0\n{\n]\n",
                              "STR_STR_V length does not match entry count");
  Fails<ARRAY<INDEX<int, int>>>("IDX_INT_32_V 0 0\n{\n]\n", unclosed + "IDX_INT_32_V");
  Fails<ARRAY<POINT<double>>>("FLT_15_FLT_15_V 0 0\n" + full, "{ expected for INT_FLT_15_FLT_15_V");
  Fails<ARRAY<POINT<double>>>("FLT_15_FLT_15_V 0 0\n[\n", wrong + "INT_FLT_15_FLT__V");
  Fails<MATRIX<STRING>>("STR_M 0 0 0 0\n{\n]\n", unclosed + "STR_M");
}

}  // namespace
}  // namespace varnoth::test
