#include "mvvm/model.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

#include "support/recording_listener.h"

using base::Value;
using ovui_test::RecordingListener;
using Texts = std::vector<std::string>;

namespace {

struct ModelTest : testing::Test {
  ModelTest() { model->InstallProp("p", "i", &p, 4); }
  ~ModelTest() override { model->Release(); }
  int p = 0, q = 0;
  RecordingListener listener;  // outlives the model, which holds a reference
  vm::Model* model = new vm::Model();
};

}  // namespace

TEST_F(ModelTest, StorageCodesTypeNamesAndTypedVariablesRoundTrip) {
  const char kString[] = "NSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEE";  // std::string
  // Type, size (0: std::string), value written, text read back: the codes, then names.
  const std::tuple<const char*, unsigned, Value, const char*> cases[] = {
      {"a", 1, -5, "-5"},           {"i", 4, -2000000000, "-2000000000"},
      {"b", 1, true, "1"},          {"j", 4, 4000000000LL, "4000000000"},
      {"h", 1, 250, "250"},         {"x", 8, -9000000000LL, "-9000000000"},
      {"s", 2, -30000, "-30000"},   {"l", 8, (1LL << 40) + 1, "1099511627777"},
      {"t", 2, 60000, "60000"},     {"l", 4, (1LL << 32) + 7, "7"},
      {"y", 8, -1, "-1"},           {"m", 8, 7, "7"},
      {"f", 4, 1.5, "1.500000"},    {"unsigned int", 4, -1, "4294967295"},
      {"d", 8, 2.25, "2.250000"},   {"struct Whatever", 2, 70000, "4464"},
      {kString, 0, "text", "text"}, {kString, 0, static_cast<const char*>(nullptr), ""}};
  long long slot[16] = {}, *next = slot;  // 8 bytes a row: wide enough for any type
  std::string z;
  Value out;
  for (const auto& [type, size, in, text] : cases) {
    SCOPED_TRACE(type);
    ASSERT_TRUE(model->InstallProp(type, type, size ? next++ : static_cast<void*>(&z), size));
    EXPECT_TRUE(model->SetPropW(type, in));
    EXPECT_TRUE(model->GetPropW(type, out));
    char buf[64];
    EXPECT_STREQ(out.ToStr(buf, sizeof(buf)), text);
  }

  // Typed installs pick the storage from the type, on every standard library.
  static_assert(vm::Model::kInstallable<std::string> && vm::Model::kInstallable<unsigned long>);
  static_assert(!vm::Model::kInstallable<char> && !vm::Model::kInstallable<long double> &&
                !vm::Model::kInstallable<wchar_t> && !vm::Model::kInstallable<int*>);
  std::string text;
  unsigned long long big = 0;
  signed char small = 0;
  bool flag = false;
  ASSERT_TRUE(model->InstallProp("text", &text));
  ASSERT_TRUE(model->InstallProp("big", &big));
  ASSERT_TRUE(model->InstallProp("small", &small));
  ASSERT_TRUE(model->InstallProp("flag", &flag));
  EXPECT_TRUE(model->SetPropW("text", Value("hello")));
  EXPECT_TRUE(model->SetPropW("big", Value(-1)));
  EXPECT_TRUE(model->SetPropW("small", Value(-7)));
  EXPECT_TRUE(model->SetPropW("flag", Value(true)));
  EXPECT_EQ(big, ~0ULL);
  EXPECT_EQ(small, -7);
  EXPECT_TRUE(flag);
  EXPECT_TRUE(model->GetPropW("text", out));
  EXPECT_EQ(text, "hello");
  EXPECT_EQ(text, out.Str());
}

// A listener writing during a delivery: later ones still read the change they were sent,
// and the reused event is free again afterwards.
TEST_F(ModelTest, NestedChangesDoNotRewriteTheOuterDelivery) {
  model->InstallProp("q", &q);
  RecordingListener* writer = new RecordingListener();
  writer->hook = [&](events::Event* e) {
    if (e->GetParam("name").Str() == std::string("p")) model->SetPropW("q", Value(5));
  };
  model->On("prop-changed", writer);
  model->On("prop-changed", &listener);
  EXPECT_TRUE(model->SetPropW("p", Value(1)));
  EXPECT_TRUE(model->SetPropW("p", Value(2)));
  EXPECT_EQ(listener.events, (Texts{"prop-changed:kind=PropChange name=q old=0 value=5 ",
                                    "prop-changed:kind=PropChange name=p old=0 value=1 ",
                                    "prop-changed:kind=PropChange name=p old=1 value=2 "}));
  writer->Release();
}

TEST(ModelDeathTest, SizeMismatchAndUnsupportedTypesStopTheProgram) {
  vm::Model m;
  long long wide = 0;
  EXPECT_DEATH(m.InstallProp("odd", "Odd", &wide, 3), "Not Supported Type");
  m.InstallProp("w", "int", &wide, 8);
  Value v;
  EXPECT_DEATH(m.GetPropW("w", v), "this->size == sizeof\\(int32_t\\)");
}

TEST_F(ModelTest, RealChangesAreAnnouncedUnlessBlocked) {
  EXPECT_FALSE(model->EmitPropChange("p", 1, 2));
  EXPECT_FALSE(model->Off("prop-changed", &listener));
  ASSERT_TRUE(model->On("prop-changed", &listener));
  EXPECT_TRUE(model->SetPropW("p", Value(7)));
  EXPECT_TRUE(model->SetPropW("p", Value(7)));    // unchanged: silent
  EXPECT_TRUE(model->SetPropW("p", Value("7")));  // another kind: a change
  EXPECT_EQ(p, 7);
  // PropsChange reuses the one event: old and value are stale.
  EXPECT_TRUE(model->EmitPropsChange());
  EXPECT_EQ(listener.events, (Texts{"prop-changed:kind=PropChange name=p old=0 value=7 ",
                                    "prop-changed:kind=PropChange name=p old=7 value=7 ",
                                    "prop-changed:kind=PropsChange name= old=7 value=7 "}));

  // Blocked changes are written but dropped, not queued.
  EXPECT_TRUE(model->BlockEvents());
  EXPECT_TRUE(model->BlockEvents());
  EXPECT_TRUE(model->SetPropW("p", Value(1)));  // written, though nothing is emitted
  EXPECT_EQ(p, 1);
  EXPECT_TRUE(model->UnblockEvents());
  EXPECT_FALSE(model->EmitPropsChange());  // still blocked once
  EXPECT_TRUE(model->UnblockEvents());
  EXPECT_EQ(listener.events.size(), 3u);  // nothing replayed
  EXPECT_TRUE(model->EmitPropsChange());
  EXPECT_EQ(listener.events.size(), 4u);

  EXPECT_FALSE(model->UninstallProp("missing"));
  EXPECT_TRUE(model->UninstallProp("p"));
  Value v(5);
  EXPECT_FALSE(model->GetPropW("p", v));
  EXPECT_EQ(v.I64(), 5);
}

TEST(AccessorModelTest, SetterOnlyProperty) {
  struct Person : vm::Model {
    Person() { InstallProp("age", nullptr, static_cast<Setter>(&Person::SetAge)); }
    bool SetAge(const Value& v) {
      if (v.I64() < 0) return false;
      age = v.I32();
      return true;
    }
    int age = 30;
  } p;
  EXPECT_TRUE(p.SetPropW("age", Value(31)));
  EXPECT_FALSE(p.SetPropW("age", Value(-1)));
  EXPECT_EQ(p.age, 31);
  Value untouched(99);  // no getter: reads succeed without touching the value
  EXPECT_TRUE(p.GetPropW("age", untouched));
  EXPECT_EQ(untouched.I64(), 99);
}
