#include "pool/join_key.hpp"
#include "pool/parameter_pool.hpp"
#include "support/log_capture.hpp"

namespace varnoth::test {
namespace {

class PoolRefusalTest : public LoggedTest {
 protected:
  /// Reads key k of a file; the refusal must be of the very class and tell its reason.
  template <class V, class ERROR>
  void Fails(const std::string& file, const std::string& reason) {
    SCOPED_TRACE(reason);
    WriteFile(directory.Path("pool"), file);
    PARAMETER_POOL pool(directory.Path("pool").c_str());
    TakeLog();
    try {
      V value{};
      pool.Read("k", value);
      ADD_FAILURE() << "was read";
    } catch (const ERROR_EXCEPTION& error) {
      EXPECT_STREQ(error.what(), ERROR().what());
    }
    EXPECT_EQ(Log(), "ALARM : log : parameter pool: parameter key >> k << " + reason + "\n");
  }
  template <class V>
  void Broken(const std::string& file, const std::string& reason) {
    Fails<V, ERROR_PARAMETER_POOL>(file, reason);
  }
  template <class V>
  void Invalid(const std::string& file, const std::string& reason) {
    Fails<V, INVALID_PARAMETER_VALUE>(file, reason);
  }
  template <class V>
  void Word(const std::string& type, const std::string& word, const std::string& reason) {
    Invalid<V>("k " + type + " " + word + "\n",
               "read value is : " + word + " " + reason + " value expected");
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
  Word<unsigned char>("BYT", "1.5E3", "BYT (no floating)");
  Word<unsigned char>("BYT", "5-", "BYT (unsigned)");
  Word<unsigned char>("BYT", "1E5", "BYT (no additional character)");
  Word<char>("INT_8", "1.5E3", "BYT (no floating)");
  Word<char>("INT_8", "1.5", "INT_8 (no additional character)");
  Word<short>("INT_16", "1.5E3", "INT_8 (no floating)");
  Word<short>("INT_16", "x", "INT_8 (no additional character)");
  Word<int>("INT_32", "1.5E3", "INT_16 (no floating)");
  Word<int>("INT_32", "x", "INT_32 (no additional character)");
  Word<long long>("INT_64", "1.5E3", "INT_32 (no floating)");
  Word<long long>("INT_64", "x", "INT_64 (no additional character)");
  TooLarge<unsigned char>("BYT", "256");
  TooLarge<char>("INT_8", "-129");
  TooLarge<short>("INT_16", "32768");
  TooLarge<int>("INT_32", "2147483648");
  TooLarge<long long>("INT_64", "9223372036854775808");
  TooLarge<float>("FLT_6", "-1E39");
  TooLarge<double>("FLT_15", "1E999");
  Invalid<bool>("k BOL true\n", "read value is : true but TRUE or FALSE are expected");
  Invalid<int>("k INT_32 7",
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
  Broken<int>(Full("k"), "no type information found");
  Invalid<int>(Full("k INT_32"), "no parameter value in file");
  Invalid<COMPLEX<double>>(Full("k CPL_15 1"), "no imaginary part in CPL_6");
  Broken<RANGE<float>>(Full("k FLT_6_FLT_6 1"), "no second coordinate");
  Broken<INDEX<int, float>>(Full("k IDX_FLT_6 1"), "no value");
  Invalid<TUPLE<STRING>>(Full("k STR_STR \"a\""),
                         "no correct string tuple format (missing >>\"<< ?)");
  Invalid<ARRAY<int>>(Full("k INT_32_V 0"), "no correct range for VECTOR or MATRIX");
  Invalid<MATRIX<char>>(Full("k INT_8_M 0 1"), "no correct range for MATRIX");
  Fails<ARRAY<int>, ERROR_NO_MEMORY>("k INT_32_V 0 -1\n", "not enough memory to create ARRAY");
  Fails<MATRIX<STRING>, ERROR_NO_MEMORY>("k STR_M 0 -1 0 1\n",
                                         "not enough memory to create MATRIX");
}

// A count that the file can not hold takes no memory; what it can hold is read, however much.
TEST_F(PoolRefusalTest, OfABlockLongerThanItsFile) {
  Broken<ARRAY<int>>("k INT_32_V 0 70000\n[\n" + std::string(70000, '\n'),
                     "{ expected instead of [ for INT_32_V");
  Fails<ARRAY<STRING>, ERROR_NO_MEMORY>("k STR_V 0 2000000000\n{\n",
                                        "not enough memory to create ARRAY");
}

TEST_F(PoolRefusalTest, OfAKeyThatIsTooLong) {
  const std::string part(49, 'k');
  STRING key("old");
  EXPECT_THROW(join_key(key, {part.c_str(), "", part.c_str(), "x"}), PARAMETER_KEY_TOO_LONG);
  EXPECT_EQ(key, "old");
  join_key(key, {nullptr, part.c_str(), (part + "x").c_str(), ""});
  EXPECT_EQ(key, (part + "_" + part + "x").c_str());
}

TEST_F(PoolRefusalTest, OfABrokenBlock) {
  const std::string ints = "k INT_32_V 4 1";
  Broken<ARRAY<int>>(ints + " ", "no { due to end of file");
  Broken<ARRAY<int>>(ints + "\n" + Full(""), "{ expected for INT_32_V");
  Broken<ARRAY<int>>(ints + "\n[\n", "{ expected instead of [ for INT_32_V");
  Broken<ARRAY<int>>(ints + "\n{ ", "no value for index 4 due to end of file");
  Broken<ARRAY<int>>(ints + "\n{\n" + Full(""), "no value for index 4");
  Broken<ARRAY<int>>(ints + "\n{\n7 ", "no } due to end of file");
  Broken<ARRAY<int>>(ints + "\n{\n7\n" + Full(""), "no } at end of INT_32_V");
  using POINTS = ARRAY<POINT<float>>;
  const std::string pairs = "k FLT_6_FLT_6_V 0 0\n";
  Broken<POINTS>(pairs + "[\n", "{ expected instead of [ for INT_FLT_6_FLT_6_V");
  Broken<POINTS>(pairs + "{\n]\n", "} expected instead of ] for FLT_6_FLT_6_V");
  Broken<ARRAY<STRING>>("k STR_V 0 0\n{\n]\n", "STR_V length does not match entry count");
  using TEXTS = MATRIX<STRING>;
  Broken<TEXTS>("k STR_M 0 1 0 1\n[\n", "{ expected instead of [ for STR_15_M");
  Broken<TEXTS>("k STR_M 0 1 0 1\n{\n[\n", "{ expected instead of [ for STR_V");
  Broken<TEXTS>("k STR_M 0 0 0 0\n{\n]\n", "} expected instead of ] for STR_M");
}

}  // namespace
}  // namespace varnoth::test
