#include <cfenv>

#include "pool/parameter_pool_read_write_change.hpp"
#include "support/log_capture.hpp"

namespace varnoth::test {
namespace {

class PoolGrammarTest : public LoggedTest {
 protected:
  template <class V>
  V Read(const std::string& file, const std::string& key = "k") {
    WriteFile(directory.Path("pool"), file);
    PARAMETER_POOL pool(directory.Path("pool").c_str());
    TakeLog();
    V value{};
    pool.Read(key.c_str(), value);
    return value;
  }
};

TEST_F(PoolGrammarTest, KeyLinesAreFound) {
  const std::string hundred(100, 'x');
  EXPECT_EQ(Read<int>("kk INT_32 4\r\n#k INT_32 3\n k INT_32 2\nk INT_32\t5 m\nk INT_32 6\n"), 5);
  EXPECT_EQ(Read<int>(hundred + "y INT_32 5\n", hundred), 5) << "a key is cut at 100 bytes";
  EXPECT_THROW(Read<int>(hundred + "y INT_32 5\n", hundred + "y"), PARAMETER_KEY_NOT_FOUND);
}

TEST_F(PoolGrammarTest, ALineEndsAfter1024Bytes) {
  EXPECT_EQ(Read<STRING>("k STR " + std::string(1018, 'a') + "b\n").Length(), 1018);
  EXPECT_EQ(Read<int>("other " + std::string(1018, 'a') + "k INT_32 5\n"), 5);
}

TEST_F(PoolGrammarTest, NumbersAreTakenFromTheStartOfTheirWord) {
  EXPECT_EQ(Read<int>("k INT_32 1-2\n"), 1);
  EXPECT_EQ(Read<int>("k INT_32\r\n"), 0);
  EXPECT_EQ(Read<double>("k FLT_15 2.5"), 2.5) << "beside the mark of the file's end";
  EXPECT_EQ(Read<double>("k FLT_15 1E5\n"), 100000.0);
  EXPECT_EQ(Read<double>("k FLT_15\n"), 0.0);
  EXPECT_EQ(Log(), "TRACE : log : PP.Read pool k FLT_15\n") << "a missing value is no word worth";
}

TEST_F(PoolGrammarTest, ConversionsRaiseNoTrap) {
  constexpr int TRAPS = FE_INVALID | FE_DIVBYZERO | FE_OVERFLOW;
  feenableexcept(TRAPS);
  EXPECT_THROW(Read<double>("k FLT_15 1E999\n"), PARAMETER_OUT_OF_BOUNDS);
  EXPECT_THROW(Read<float>("k FLT_6 1E39\n"), PARAMETER_OUT_OF_BOUNDS);
  const float nan = Read<float>("k FLT_6 nan\n");
  EXPECT_EQ(fedisableexcept(TRAPS), TRAPS);
  EXPECT_NE(nan, nan);
}

TEST_F(PoolGrammarTest, TextsWithAndWithoutQuotes) {
  EXPECT_EQ(Read<STRING>("k STR two  words \r\n"), "two  words ");
  EXPECT_EQ(Read<STRING>("k STR\n"), "");
  EXPECT_EQ(Read<STRING>("k STR open"), "open\xFF");
  EXPECT_EQ(Read<STRING>("k STR \"open end \r\n"), "open end ");
  EXPECT_EQ(Read<STRING>("k STR \"a \\\"b\\\"\" rest\n"), "a \"b\"");
  EXPECT_EQ(Read<STRING>("k STR \"a\\b\\\\\"\n"), "ab\"");
  EXPECT_EQ(Read<TUPLE<STRING>>("k STR_STR \"a b\"  c d\n").second, "c d");
}

TEST_F(PoolGrammarTest, BlocksGoLineByLine) {
  using NUMBERS = ARRAY<double>;
  EXPECT_EQ(Read<NUMBERS>("k FLT_15_V 7 2\n{ x\n1 y\n\n}\n").GetBase()[8], 0.0);
  EXPECT_EQ(Read<NUMBERS>("k FLT_15_V 7 1\n{\n5\n6\n}\n").GetBase()[7], 5.0) << "surplus closes";
  EXPECT_EQ(Read<NUMBERS>("k FLT_15_V 7 2\n{\n5\n}\nx\n").GetBase()[8], 0.0) << "} is no number";
  EXPECT_EQ(Read<MATRIX<char>>("k INT_8_M 0 1 0 1\n{\n{\n5\n]\n}\n").Rows()[0][0], 5);
  EXPECT_THROW(Read<NUMBERS>("k FLT_15_V 7 1\r\n{\r\n5\r\n}\r\n"), ERROR_PARAMETER_POOL);
}

/// The text of an entry whose value starts with `range` and goes on in lines at these indents.
std::string Entry(const std::string& type, const std::string& range,
                  const std::vector<std::string>& lines = {}) {
  std::string text =
      "key_a" + std::string(28, ' ') + type + std::string(16 - type.size(), ' ') + range;
  for (const std::string& line : lines) text += "\n" + std::string(47, ' ') + line;
  return text + "\n\n";
}

class EntryLayoutTest : public LoggedTest {
 protected:
  using POOL = PARAMETER_POOL_READ_WRITE_CHANGE;

  /// Reads the value of an entry and writes it over its own text, which must come out the same.
  template <class V>
  void ComesBack(const std::string& text) {
    WriteFile(path, text);
    V value{};
    PARAMETER_POOL(path.c_str()).Read("key_a", value);
    POOL(path.c_str()).Change("key_a", value);
    EXPECT_EQ(ReadFile(path), text);
  }
  /// The same for the scalar and the vector of two elements.
  template <class X>
  void Check(const std::string& type, const std::string& a, const std::string& b) {
    ComesBack<X>(Entry(type, a));
    ComesBack<ARRAY<X>>(Entry(type + "_V", "-3\t2", {"{", "  " + a, "  " + b, "}"}));
  }
  /// And for the matrix.
  template <class X>
  void CheckAll(const std::string& type, const std::string& a, const std::string& b) {
    Check<X>(type, a, b);
    ComesBack<MATRIX<X>>(Entry(
        type + "_M", "5\t2\t-1\t2",
        {"{", "  {", "    " + a, "    " + a, "  }", "  {", "    " + a, "    " + b, "  }", "}"}));
  }

  const std::string path = directory.Path("pool");
};

TEST_F(EntryLayoutTest, EveryTypeComesBackInItsLayout) {
  const char* const floats = "1.000000E-01\t-2.000000E+00";
  const char* const doubles = "1.000000000000000E-01\t-2.000000000000000E+00";
  Check<bool>("BOL", "TRUE", "FALSE");
  CheckAll<unsigned char>("BYT", "0", "255");
  CheckAll<char>("INT_8", "-128", "127");
  CheckAll<short>("INT_16", "-32768", "32767");
  CheckAll<int>("INT_32", "-2147483648", "2147483647");
  Check<long long>("INT_64", "-9223372036854775808", "9223372036854775807");
  CheckAll<float>("FLT_6", "1.0000000149E-01", "-2.5000000000E+00");
  CheckAll<double>("FLT_15", "1.00000000000000006E-01", "1.79769313486231571E+308");
  Check<double>("FLT_15", "NAN", "-2.22507385850720138E-308");
  CheckAll<STRING>("STR", "\"say \\\"hi\\\" \"", "\"\"");
  CheckAll<COMPLEX<float>>("CPL_6", floats, "0.000000E+00\t1.000000E+09");
  CheckAll<COMPLEX<double>>("CPL_15", doubles, doubles);
  Check<POINT<int>>("INT_32_INT_32", "-1\t2", "3\t4");
  Check<RANGE<int>>("INT_32_INT_32", "-1\t2", "3\t4");
  Check<POINT<long long>>("INT_64_INT_64", "-9223372036854775808\t2", "3\t4");
  Check<POINT<float>>("FLT_6_FLT_6", floats, floats);
  Check<RANGE<float>>("FLT_6_FLT_6", floats, floats);
  Check<POINT<double>>("FLT_15_FLT_15", doubles, doubles);
  Check<RANGE<double>>("FLT_15_FLT_15", doubles, doubles);
  Check<INDEX<int, int>>("IDX_INT_32", "-1\t2", "3\t4");
  Check<INDEX<int, float>>("IDX_FLT_6", "-1\t1.000000E-01", "3\t4.000000E+00");
  Check<INDEX<int, double>>("IDX_FLT_15", "-1\t1.000000000000000E-01", "2\t0.000000000000000E+00");
  Check<TUPLE<STRING>>("STR_STR", "\"a\" \"b c\"", "\"\" \"\\\"\"");
}

TEST_F(EntryLayoutTest, PartsCommentsAndLongKeysStandInOrder) {
  const std::string key(40, 'k'), pad(55, ' ');
  POOL(path.c_str()).Write(key.c_str(), ARRAY<char>(3, 0), ARRAY<STRING>(" one", "two"));
  POOL(path.c_str()).Write("key_a", COMPLEX<float>{1, 2});
  POOL(path.c_str()).Change("key_b", TUPLE<STRING>("a\\", "b"));
  EXPECT_EQ(ReadFile(path),
            "# one\n#two\n" + key + " INT_8_V         3\t0\n" + pad + "{\n" + pad + "}\n\n" +
                Entry("CPL_6", "1.000000E+00\t2.000000E+00") +
                "key_b                            STR_STR         \"a\\\" \"b\"\n\n");
}

using INVALID = INVALID_PARAMETER_VALUE;

class PoolRefusalTest : public PoolGrammarTest {
 protected:
  /// Reads key k of a file; the refusal must be of the very class and tell its reason.
  template <class V, class ERROR = ERROR_PARAMETER_POOL>
  void Fails(const std::string& file, const std::string& reason) {
    std::string thrown = "nothing thrown";
    try {
      Read<V>(file);
    } catch (const ERROR_EXCEPTION& error) {
      thrown = error.what();
    }
    EXPECT_EQ(thrown, ERROR().what()) << reason;
    EXPECT_EQ(Log(), "ALARM : log : parameter pool: parameter key >> k << " + reason + "\n");
  }
  /// The refusals of a type, with the type words that two of them show.
  template <class V>
  void Integer(const std::string& type, const std::string& floating, const std::string& character,
               const std::string& too_large) {
    const std::string text = "k " + type + " ", read = "read value is : ";
    Fails<V, INVALID>(text + "1.5E3\n",
                      read + "1.5E3 " + floating + " (no floating) value expected");
    for (const std::string word : {"1E5", "x", "1.5"}) {
      Fails<V, INVALID>(text + word + "\n", read + word + " " + character +
                                                " (no additional character) value expected");
    }
    TooLarge<V>(type, too_large);
  }
  template <class V>
  void TooLarge(const std::string& type, const std::string& word) {
    Fails<V, PARAMETER_OUT_OF_BOUNDS>(
        "k " + type + " " + word + "\n",
        "read value is : " + word + " (value is out of range) " + type + " expected");
  }
};

TEST_F(PoolRefusalTest, OfAWordThatIsNoValueOfItsType) {
  // The type words that don't fit are what users know and search for.
  Integer<unsigned char>("BYT", "BYT", "BYT", "256");
  Integer<char>("INT_8", "BYT", "INT_8", "-129");
  Integer<short>("INT_16", "INT_8", "INT_8", "32768");
  Integer<int>("INT_32", "INT_16", "INT_32", "2147483648");
  Integer<long long>("INT_64", "INT_32", "INT_64", "9223372036854775808");
  Fails<unsigned char, INVALID>("k BYT 5-\n", "read value is : 5- BYT (unsigned) value expected");
  TooLarge<float>("FLT_6", "-1E39");
  TooLarge<double>("FLT_15", "1E999");
  Fails<bool, INVALID>("k BOL true\n", "read value is : true but TRUE or FALSE are expected");
  Fails<int, INVALID>("k INT_32 7",
                      "read value is : 7\xFF INT_32 (no additional character) value expected");
}

/// A line without an end that is full: where it stops, no further word can be looked for.
std::string Full(std::string line) {
  line.resize(1024, ' ');
  return line;
}

TEST_F(PoolRefusalTest, OfAnIncompleteKeyLine) {
  Fails<int, PARAMETER_KEY_NOT_FOUND>("", "not found");
  Fails<double, WRONG_PARAMETER_TYPE>("k flt_15 5\n", "type FLT_15 expected");
  Fails<int>(Full("k"), "no type information found");
  Fails<int, INVALID>(Full("k INT_32"), "no parameter value in file");
  Fails<COMPLEX<double>, INVALID>(Full("k CPL_15 1"), "no imaginary part in CPL_6");
  Fails<RANGE<float>>(Full("k FLT_6_FLT_6 1"), "no second coordinate");
  Fails<INDEX<int, float>>(Full("k IDX_FLT_6 1"), "no value");
  Fails<TUPLE<STRING>, INVALID>(Full("k STR_STR \"a\""),
                                "no correct string tuple format (missing >>\"<< ?)");
  Fails<ARRAY<int>, INVALID>(Full("k INT_32_V 0"), "no correct range for VECTOR or MATRIX");
  Fails<MATRIX<char>, INVALID>(Full("k INT_8_M 0 1"), "no correct range for MATRIX");
  Fails<ARRAY<int>, ERROR_NO_MEMORY>("k INT_32_V 0 -1\n", "not enough memory to create ARRAY");
  Fails<MATRIX<STRING>, ERROR_NO_MEMORY>("k STR_M 0 -1 0 1\n",
                                         "not enough memory to create MATRIX");
}

TEST_F(PoolRefusalTest, OfABrokenBlock) {
  // A count that the file can not hold takes no memory; what it can hold is read, however much.
  Fails<ARRAY<int>>("k INT_32_V 0 70000\n[\n" + std::string(70000, '\n'),
                    "{ expected instead of [ for INT_32_V");
  Fails<ARRAY<STRING>, ERROR_NO_MEMORY>("k STR_V 0 2000000000\n{\n",
                                        "not enough memory to create ARRAY");
  const std::string ints = "k INT_32_V 4 1";
  Fails<ARRAY<int>>(ints + " ", "no { due to end of file");
  Fails<ARRAY<int>>(ints + "\n" + Full(""), "{ expected for INT_32_V");
  Fails<ARRAY<int>>(ints + "\n[\n", "{ expected instead of [ for INT_32_V");
  Fails<ARRAY<int>>(ints + "\n{ ", "no value for index 4 due to end of file");
  Fails<ARRAY<int>>(ints + "\n{\n" + Full(""), "no value for index 4");
  Fails<ARRAY<int>>(ints + "\n{\n7 ", "no } due to end of file");
  Fails<ARRAY<int>>(ints + "\n{\n7\n" + Full(""), "no } at end of INT_32_V");
  using POINTS = ARRAY<POINT<float>>;
  const std::string pairs = "k FLT_6_FLT_6_V 0 0\n";
  Fails<POINTS>(pairs + "[\n", "{ expected instead of [ for INT_FLT_6_FLT_6_V");
  Fails<POINTS>(pairs + "{\n]\n", "} expected instead of ] for FLT_6_FLT_6_V");
  Fails<ARRAY<STRING>>("k STR_V 0 0\n{\n]\n", "STR_V length does not match entry count");
  Fails<ARRAY<TUPLE<STRING>>>("k STR_STR_V 0 0\n{\n]\n",
                              "STR_STR_V length does not match entry count");
  Fails<ARRAY<INDEX<int, int>>>("k IDX_INT_32_V 0 0\n{\n]\n",
                                "} expected instead of ] for IDX_INT_32_V");
  const std::string doubles = "k FLT_15_FLT_15_V 0 0\n";
  using DOUBLES = ARRAY<POINT<double>>;
  Fails<DOUBLES>(doubles + Full(""), "{ expected for INT_FLT_15_FLT_15_V");
  Fails<DOUBLES>(doubles + "[\n", "{ expected instead of [ for INT_FLT_15_FLT__V");
  Fails<DOUBLES>(doubles + "{\n]\n", "} expected instead of ] for FLT_15_FLT_15_V");
  using TEXTS = MATRIX<STRING>;
  Fails<TEXTS>("k STR_M 0 1 0 1\n[\n", "{ expected instead of [ for STR_15_M");
  Fails<TEXTS>("k STR_M 0 1 0 1\n{\n[\n", "{ expected instead of [ for STR_V");
  Fails<TEXTS>("k STR_M 0 0 0 0\n{\n]\n", "} expected instead of ] for STR_M");
}

}  // namespace
}  // namespace varnoth::test
