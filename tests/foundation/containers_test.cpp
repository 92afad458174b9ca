#include <climits>
#include <numeric>
#include <stdexcept>

#include "foundation/matrix.hpp"
#include "foundation/split.hpp"
#include "foundation/vector.hpp"
#include "log/log.hpp"
#include "support/log_capture.hpp"

namespace varnoth::test {
namespace {

TEST(Array, ResizeKeepsPositionsNotIndicesAndABadRangeChangesNothing) {
  for (const RANGE<int>& wanted : {RANGE<int>(0, 2), RANGE<int>(-7, 3), RANGE<int>(5, 6)}) {
    ARRAY<int> array(5, 3);
    std::iota(array.GetElementBase(0), array.GetElementBase(0) + 3, 1);
    ASSERT_EQ(array.Resize(wanted), 0);
    for (const RANGE<int>& bad : {RANGE<int>(0, -1), RANGE<int>(INT_MAX, 1)}) {
      EXPECT_EQ(array.Create(bad), 3);
      EXPECT_EQ(array.Resize(bad), 3);
    }
    EXPECT_EQ(array.GetBase()[wanted.First() + 1], 2);
    EXPECT_EQ(ARRAY<int>(array).GetRange(), wanted);
    array = ARRAY<int>(0, 0);
    EXPECT_EQ(array.GetBase(), nullptr);
  }
  EXPECT_EQ(ThrownText([] { ARRAY<int>(0, -1); }), "ARRAY : can not copy array");
  ARRAY<char> ends;
  EXPECT_EQ(ends.Create({INT_MIN, 0}), ARRAY_BAD_RANGE) << "the last index is one less";
  EXPECT_EQ(ends.Create({INT_MIN, 1}) + ends.Create({INT_MAX - 1, 1}), ARRAY_OK);
  EXPECT_EQ(ThrownText([&] { ends.NeedRange({0, -1}, "no room"); }), "no room");
}

TEST_F(LoggedTest, AListOfTextsEndsAtItsLastTextAndAViewOwnsNothing) {
  const ARRAY<STRING> texts("a", nullptr, "c", nullptr);
  EXPECT_EQ(texts.GetRange(), RANGE<int>(0, 3));
  EXPECT_EQ(texts.GetBase()[1] + texts.GetBase()[2], "c");
  SUB_ARRAY<STRING> view;
  view.Attach(texts, {7, 2}, 1);
  view.SetFirstIndex(4);
  EXPECT_EQ(view.GetBase() + 5, texts.GetBase() + 2);
  const ARRAY<STRING> copy = std::move(view);
  EXPECT_NE(copy.begin(), texts.begin() + 1);
  EXPECT_EQ(copy.begin()[1], "c");
  SUB_ARRAY<STRING> other(view);
  EXPECT_EQ(other.GetBase() + 5, texts.GetBase() + 2);
  for (const int status : {view.Create({0, 1}), view.CreateRaw({0, 1}), view.Resize({0, -1})}) {
    EXPECT_EQ(status, ARRAY_BAD_RANGE);
  }
  EXPECT_THROW(other = view, ERROR_NOT_IMPLEMENTED);
  EXPECT_EQ(TakeLines(), "ALARM never call: SUB_ARRAY<T>::operator=( const SUB_ARRAY< T >& )\n");
  other.Delete();
  EXPECT_EQ(other.begin(), nullptr);
  EXPECT_EQ(view.begin()[1], "c");
}

TEST(String, MayBeMadeOfItselfAndEndsAtItsTerminator) {
  STRING text("abc");
  text = text.c_str() + 1;
  text += text;
  EXPECT_EQ(text, "bcbc");
  EXPECT_EQ(text[4], '\0');
  EXPECT_THROW(text[5], std::out_of_range);
  EXPECT_EQ(std::as_const(text)[1], 'c');
  text = static_cast<const char*>(nullptr);
  EXPECT_TRUE(text.IsEmpty());
  text[0] = '\0';
  EXPECT_STREQ(text.c_str(), "");
  STRING source("abc");
  text = STRING(std::move(source));
  EXPECT_EQ(text + source, "abc");
  EXPECT_TRUE(source.IsEmpty());
  const ARRAY<STRING> pieces = Split(" one, two,", ", ");
  EXPECT_EQ(pieces.GetRange(), RANGE<int>(0, 2));
  EXPECT_EQ(pieces.GetBase()[0] + pieces.GetBase()[1], "onetwo");
}

VECTOR<double> Vector(int first, std::initializer_list<double> values) {
  VECTOR<double> vector(first, static_cast<int>(values.size()));
  std::copy(values.begin(), values.end(), vector.GetElementBase(0));
  return vector;
}

TEST(Vector, OperatorsGoByPositionInTheRangeOfTheFirstOperand) {
  VECTOR<double> a = Vector(3, {1, 2}) + Vector(-1, {10, 30}) - Vector(8, {1, 4});
  a /= 4;
  EXPECT_EQ(Length(a - Vector(0, {2.5, 7})), 0.0);
  VECTOR<double> b = Vector(1, {1, 2, 3});
  CrossProduct(b, b, Vector(7, {4, 5, 6}));
  EXPECT_EQ(Length(b - Vector(0, {-3, 6, -3})), 0.0);
  EXPECT_EQ(ThrownText([&] { a += b; }), "VECTOR operator += : vectors have different dimensions");
  EXPECT_EQ(ThrownText([&] { a -= b; }), "VECTOR operator -= : vectors have different dimensions");
  EXPECT_EQ(ThrownText([&] { a + b; }), "VECTOR operator + : vectors have different dimensions");
  EXPECT_EQ(ThrownText([&] { a - b; }), "VECTOR operator - : vectors have different dimensions");
  EXPECT_EQ(ThrownText([&] { DotProduct(b, a); }), "DotProduct: vectors have different dimensions");
  for (const auto& [v, w, name] : {std::tuple(&a, &b, 'a'), {&b, &a, 'b'}}) {
    EXPECT_EQ(ThrownText([&, v = v, w = w] { CrossProduct(b, *v, *w); }),
              std::string("CrossProduct: vector ") + name + " has not dimension of 3");
  }
  EXPECT_EQ(ThrownText([&] { a /= -0.0; }), "VECTOR operator /= : division by 0.0");
  // Summed from the last element; the other order loses the 1 beside 1e100.
  EXPECT_EQ(DotProduct(Vector(1, {1, 1e100, -1e100}), Vector(0, {1, 1, 1})), 1.0);
  EXPECT_EQ(Length(VECTOR_3D<double>{3, 4, 12}), 13.0);
  const double from[] = {4, 6, 13}, to[] = {1, 2, 1};  // the sides of the same box
  EXPECT_EQ(Distance(from, to), 13.0);
}

TEST_F(LoggedTest, AMatrixTakesOnTheOthersIndicesAndKeepsItsRowsApart) {
  MATRIX<int> one({1, 2}, {3, 4});
  std::iota(one.GetBlock(), one.GetBlock() + 8, 0);
  MATRIX<int> other({0, 3}, {3, 4});
  EXPECT_EQ(other.Rows()[0] + 3, other.GetBlock());
  other = one;
  EXPECT_EQ(other.Rows()[2][3], 4);
  EXPECT_EQ(other.Rows(-1)[1][2], 3);
  EXPECT_EQ(MATRIX<int>(other).Rows()[1][6], 3);
  Print(other, PARAMETER, "m", 1);
  EXPECT_EQ(TakeLines(), "PARAM m: Matrix{ 2 x 4 }\nPARAM  |     0  .. |\nPARAM    :     .. |\n");
  EXPECT_EQ(std::accumulate(one.begin(), one.end(), 0), 28);
  EXPECT_EQ(std::as_const(one).begin() + one.size(), std::as_const(one).end());
  EXPECT_EQ(std::as_const(one).Rows(0)[2][3], 7);
  EXPECT_FALSE(other.Create({0, 65536}, {0, 65536})) << "2^32 elements, 0 as an int";
  EXPECT_FALSE(other.Create({0, 1}, {0, -1}));
  EXPECT_THROW(MATRIX<int>({0, -1}, {0, 1}), ERROR_NO_MEMORY);
  EXPECT_FALSE(other.Create({0, -1}, {0, 1}));
  EXPECT_EQ(other.Rows(), nullptr);
}

}  // namespace
}  // namespace varnoth::test
