#include <numeric>
#include <stdexcept>

#include "foundation/vector.hpp"
#include "support/log_capture.hpp"

namespace varnoth::test {
namespace {

TEST(Array, ResizeKeepsPositionsNotIndicesAndABadRangeChangesNothing) {
  for (const RANGE<int>& wanted : {RANGE<int>(0, 2), RANGE<int>(-7, 3), RANGE<int>(5, 6)}) {
    ARRAY<int> array(5, 3);
    std::iota(array.GetElementBase(0), array.GetElementBase(0) + 3, 1);
    ASSERT_EQ(array.Resize(wanted), 0);
    EXPECT_EQ(array.Create({0, -1}), 3);
    EXPECT_EQ(array.Resize({0, -1}), 3);
    EXPECT_EQ(array.GetBase()[wanted.First() + 1], 2);
  }
}

TEST(String, MayBeMadeOfItselfAndEndsAtItsTerminator) {
  STRING text("abc");
  text = text.c_str() + 1;
  text += text;
  EXPECT_EQ(text, "bcbc");
  EXPECT_EQ(text[4], '\0');
  EXPECT_THROW(text[5], std::out_of_range);
}

VECTOR<double> Vector(int first, std::initializer_list<double> values) {
  VECTOR<double> vector(first, static_cast<int>(values.size()));
  std::copy(values.begin(), values.end(), vector.GetElementBase(0));
  return vector;
}

TEST(Vector, OperatorsGoByPositionInTheRangeOfTheFirstOperand) {
  VECTOR<double> a = Vector(3, {1, 2}) + Vector(-1, {10, 30}) - Vector(8, {1, 4});
  a /= 4;
  EXPECT_EQ(a.GetBase()[3], 2.5);
  EXPECT_EQ(a.GetBase()[4], 7.0);
  VECTOR<double> b = Vector(1, {1, 2, 3});
  CrossProduct(b, b, Vector(7, {4, 5, 6}));
  EXPECT_EQ(Length(b - Vector(0, {-3, 6, -3})), 0.0);
  EXPECT_EQ(ThrownText([&] { a += b; }), "VECTOR operator += : vectors have different dimensions");
  EXPECT_EQ(ThrownText([&] { a /= -0.0; }), "VECTOR operator /= : division by 0.0");
}

TEST(Vector, ProductsAreSummedFromTheLastElement) {
  // The other order loses the 1 beside 1e100.
  EXPECT_EQ(DotProduct(Vector(1, {1, 1e100, -1e100}), Vector(0, {1, 1, 1})), 1.0);
  EXPECT_EQ(Length(VECTOR_3D<double>{3, 4, 12}), 13.0);
}

}  // namespace
}  // namespace varnoth::test
