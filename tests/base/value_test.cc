#include "base/value.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

using base::Value;

namespace {

std::string Text(const Value& v) {
  char buf[64];
  const char* s = v.ToStr(buf, sizeof(buf));
  return s ? s : "<null>";
}

}  // namespace

TEST(ValueTest, KindsAndTextOfEachConstructor) {
  EXPECT_EQ(Value().Type(), Value::TYPE_NULL);
  EXPECT_TRUE(Value::null.IsNull());
  EXPECT_EQ(Value(true).I64(), 1);
  EXPECT_EQ(Value(7).Type(), Value::TYPE_INT);
  EXPECT_EQ(Value(2.5).Type(), Value::TYPE_FLOAT);
  EXPECT_EQ(Text(Value(2.5)), "2.500000");
  EXPECT_EQ(Text(Value(-7LL)), "-7");
  int x = 0;
  EXPECT_EQ(Text(Value(static_cast<void*>(&x))), "<null>");
  EXPECT_EQ(Text(Value()), "<null>");
  EXPECT_EQ(Value(2.5).ToStr(nullptr, 0), nullptr);
  char small[4];  // truncated and terminated
  std::memset(small, 'x', sizeof(small));
  EXPECT_STREQ(Value(123456LL).ToStr(small, sizeof(small)), "123");
  EXPECT_STREQ(Value(1.25).ToStr(small, sizeof(small)), "1.2");
}

TEST(ValueTest, StringsAreOwnedCopies) {
  char source[] = "hello";
  Value v(source);
  source[0] = 'J';
  EXPECT_STREQ(v.Str(), "hello");

  v.Str("hello", 3);
  EXPECT_STREQ(v.Str(), "hel");
  v.Str("hello", 100);
  EXPECT_STREQ(v.Str(), "hello");
  v.Str(v.Str() + 1, 2);  // from its own text
  EXPECT_STREQ(v.Str(), "el");

  Value copy(v);
  Value assigned;
  assigned = v;
  v.Str("changed");  // frees the old text: a shared one would be read after free
  EXPECT_STREQ(copy.Str(), "el");
  EXPECT_STREQ(assigned.Str(), "el");

  Value none(static_cast<const char*>(nullptr));
  EXPECT_EQ(none.Type(), Value::TYPE_STR);
  EXPECT_EQ(none.Str(), nullptr);
  EXPECT_EQ(Text(none), "");
  EXPECT_EQ(none.I64(), 0);
  EXPECT_STREQ(Value(5).Str(), "");
}

TEST(ValueTest, AssigningNullKeepsTheOldKind) {
  Value s("text");
  s = Value();
  EXPECT_EQ(s.Type(), Value::TYPE_STR);
  EXPECT_EQ(s.Str(), nullptr);

  Value i(42);
  i = Value();
  EXPECT_EQ(i.I64(), 42);
  EXPECT_EQ(Value(Value()).Type(), Value::TYPE_NULL);

  Value r("abc");
  r.Reset();
  EXPECT_EQ(r.Type(), Value::TYPE_STR);
  EXPECT_EQ(r.Str(), nullptr);
  Value n(3);
  n.Reset();
  EXPECT_EQ(n.I64(), 3);
}

TEST(ValueTest, IntegerConversionsAtTheirLimits) {
  EXPECT_EQ(Value(3.99).I64(), 3);
  EXPECT_EQ(Value(-3.99).I64(), -3);
  EXPECT_EQ(Value(1e19).U64(), 10000000000000000000ULL);
  EXPECT_EQ(Value(1e300).I64(), INT64_MAX);  // saturates instead of overflowing
  EXPECT_EQ(Value("12abc").I64(), 12);
  EXPECT_EQ(Value("  -5").I32(), -5);
  EXPECT_EQ(Value("abc").I64(), 0);
  EXPECT_EQ(Value("99999999999").I64(), static_cast<long long>(atoi("99999999999")));
  EXPECT_EQ(Value("3.7").F64(), 3.7);

  Value v;
  v.U64(0xFFFFFFFFFFFFFFFFULL);
  EXPECT_EQ(v.I64(), -1);
  EXPECT_EQ(v.U64(), 0xFFFFFFFFFFFFFFFFULL);
  v.U32(0xFFFFFFFFu);  // zero-extended
  EXPECT_EQ(v.I64(), 0xFFFFFFFFLL);
  EXPECT_EQ(Value(300).U8(), 44);
}

TEST(ValueTest, BoolSeesOnlyTheLow32Bits) {
  EXPECT_FALSE(Value(0x100000000LL).Bool());
  EXPECT_TRUE(Value(0x100000001LL).Bool());
  EXPECT_TRUE(Value(0.5 + 1).Bool());
  EXPECT_FALSE(Value(0.5).Bool());
  EXPECT_TRUE(Value("2").Bool());
  EXPECT_FALSE(Value("true").Bool());
  int x;
  EXPECT_FALSE(Value(static_cast<void*>(&x)).Bool());
}

TEST(ValueTest, CompareWithinAndAcrossKinds) {
  EXPECT_EQ(Value(1).Cmp(Value(1.0)), -1);
  EXPECT_EQ(Value(1.0).Cmp(Value(1)), -1);
  EXPECT_EQ(Value("abc").CmpStr("abc"), 0);
  EXPECT_LT(Value("abc").CmpStr("abd"), 0);
  EXPECT_EQ(Value(static_cast<const char*>(nullptr)).CmpStr("x"), -1);

  EXPECT_EQ(Value(10).CmpInt(3), 7);             // the difference, not just its sign
  EXPECT_EQ(Value(0x100000000LL).CmpInt(0), 0);  // low 32 bits only
  EXPECT_EQ(Value(2.5).CmpFloat(1.0), 1);
  EXPECT_EQ(Value(1.0).CmpFloat(2.5), -1);

  Value a, b;
  EXPECT_EQ(a.Cmp(a), 0);
  EXPECT_EQ(a.Cmp(b), -1);  // a null value equals only itself

  int arr[2];
  EXPECT_EQ(Value(static_cast<void*>(&arr[1])).Cmp(Value(static_cast<void*>(&arr[0]))), 1);
  EXPECT_EQ(Value(static_cast<void*>(arr)).Cmp(Value(static_cast<void*>(arr))), 0);
}
