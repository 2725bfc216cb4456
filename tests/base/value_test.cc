#include "base/value.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

using base::Value;

// ToStr's text, "<null>" when it gives none.
static std::string Text(const Value& v) {
  char buf[64];
  const char* s = v.ToStr(buf, sizeof(buf));
  return s ? s : "<null>";
}

static const Value kNoText(static_cast<const char*>(nullptr));

TEST(ValueTest, TextConversionsComparisonsAndOwnership) {
  char small[4] = {'x', 'x', 'x', 'x'};  // must come back truncated and terminated
  const std::vector<std::string> texts = {
      Text(2.5),     Text(-7LL),    Text(static_cast<void*>(small)),
      Text(Value()), Text(kNoText), Text("ab")};
  EXPECT_EQ(texts, (std::vector<std::string>{"2.500000", "-7", "<null>", "<null>", "", "ab"}));
  EXPECT_EQ(Value(2.5).ToStr(nullptr, 0), nullptr);
  EXPECT_STREQ(Value(123456LL).ToStr(small, sizeof(small)), "123");
  EXPECT_STREQ(Value(1.25).ToStr(small, sizeof(small)), "1.2");

  // Text reads through atoi: leading digits, 32-bit range.
  const std::vector<long long> ints = {
      Value(-3.99).I64(), Value(1e300).I64(), Value("12abc").I64(),      Value("  -5").I64(),
      Value("abc").I64(), kNoText.I64(),      Value("99999999999").I64()};
  EXPECT_EQ(ints, (std::vector<long long>{-3, INT64_MAX, 12, -5, 0, 0, atoi("99999999999")}));
  EXPECT_EQ(Value(1e19).U64(), 10000000000000000000ULL);
  EXPECT_EQ(Value("3.7").F64(), 3.7);

  // Bool looks at the low 32 bits only.
  const std::vector<bool> bools = {Value(0x100000000LL).Bool(), Value(0x100000001LL).Bool(),
                                   Value(1.5).Bool(),           Value(0.5).Bool(),
                                   Value("2").Bool(),           Value("true").Bool()};
  EXPECT_EQ(bools, (std::vector<bool>{false, true, true, false, true, false}));

  // Different kinds never match; ints give the low 32 bits of the difference
  // (not just its sign); a null value equals only itself.
  const std::vector<int> got = {Value(1).Cmp(1.0), Value(1.0).Cmp(1), Value(10).CmpInt(3),
                                Value(0x100000000LL).CmpInt(0), Value(0.5).CmpFloat(0.25)};
  EXPECT_EQ(got, (std::vector<int>{-1, -1, 7, 0, 1}));
  Value a, p(static_cast<void*>(&a));
  EXPECT_EQ((std::vector<int>{a.Cmp(a), a.Cmp(Value()), p.Cmp(static_cast<void*>(&a + 1)),
                              Value("abc").CmpStr("abc"), kNoText.CmpStr("x"),
                              Value("abc").CmpStr("abd") < 0}),
            (std::vector<int>{0, -1, -1, 0, -1, 1}));

  char source[] = "hello";
  Value v(source);
  source[0] = 'J';
  EXPECT_STREQ(v.Str(), "hello");
  v.Str("hello", 3);
  EXPECT_STREQ(v.Str(), "hel");
  v.Str(v.Str() + 1);  // from its own text, which it frees: an owned copy
  EXPECT_STREQ(v.Str(), "el");

  Value copy(v), assigned;
  assigned = v;
  v.Str("changed");  // frees the old text: a shared one would be read after free
  EXPECT_EQ(std::string(copy.Str()) + assigned.Str() + Value(5).Str(), "elel");

  Value s("text"), i(42), r("abc");
  s = Value();
  i = Value();
  r.Reset();
  EXPECT_EQ(s.Type(), Value::TYPE_STR);
  EXPECT_EQ(s.Str(), nullptr);
  EXPECT_EQ(r.Type(), Value::TYPE_STR);
  EXPECT_EQ(r.Str(), nullptr);
  EXPECT_EQ(i.I64(), 42);
  EXPECT_EQ(Value(Value()).Type(), Value::TYPE_NULL);
}
