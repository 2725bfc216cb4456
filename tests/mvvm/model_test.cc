#include "mvvm/model.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "support/log_capture.h"
#include "support/recording_listener.h"

using base::Value;
using ovui_test::LogCapture;
using ovui_test::RecordingListener;

namespace {

// A write-only accessor property whose setter refuses negative numbers.
class Person : public vm::Model {
 public:
  Person() { InstallProp("age", nullptr, static_cast<Setter>(&Person::SetAge)); }
  bool SetAge(const Value& v) {
    if (v.I64() < 0) return false;
    age = v.I32();
    return true;
  }
  int age = 30;
};

struct ModelTest : testing::Test {
  vm::Model* model = new vm::Model();
  RecordingListener* listener = new RecordingListener();
  ~ModelTest() override {
    model->Release();
    listener->Release();
  }
};

}  // namespace

TEST_F(ModelTest, StorageCodesAndTypeNamesRoundTrip) {
  const char kString[] = "NSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEE";  // std::string
  long long slot[16] = {};  // 8 bytes for each row: wide enough for any type
  std::string z;
  struct Case {
    const char* type;
    void* addr;
    unsigned size;
    Value in;
    std::string text;  // as read back
  };
  const Case cases[] = {
      {"a", &slot[0], 1, Value(-5), "-5"},
      {"b", &slot[1], 1, Value(true), "1"},
      {"h", &slot[2], 1, Value(250), "250"},
      {"s", &slot[3], 2, Value(-30000), "-30000"},
      {"t", &slot[4], 2, Value(60000), "60000"},
      {"i", &slot[5], 4, Value(-2000000000), "-2000000000"},
      {"j", &slot[6], 4, Value(4000000000LL), "4000000000"},
      {"x", &slot[7], 8, Value(-9000000000LL), "-9000000000"},
      {"y", &slot[8], 8, Value(-1LL), "-1"},  // all 64 bits; reads back through I64
      {"f", &slot[9], 4, Value(1.5), "1.500000"},
      {"d", &slot[10], 8, Value(2.25), "2.250000"},
      {kString, &z, 0, Value("text"), "text"},
      // Other names: "l" by its size, "m", spelled names, and anything else by size.
      {"l", &slot[11], 8, Value((1LL << 40) + 1), "1099511627777"},
      {"l", &slot[12], 4, Value((1LL << 32) + 7), "7"},
      {"m", &slot[13], 8, Value(7), "7"},
      {"unsigned int", &slot[14], 4, Value(-1), "4294967295"},
      {"struct Whatever", &slot[15], 2, Value(70000), "4464"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.type);
    ASSERT_TRUE(model->InstallProp(c.type, c.type, c.addr, c.size));
    EXPECT_TRUE(model->SetPropW(c.type, c.in));
    Value out;
    EXPECT_TRUE(model->GetPropW(c.type, out));
    char buf[64];
    EXPECT_EQ(out.ToStr(buf, sizeof(buf)), c.text);
  }
  EXPECT_EQ(slot[8], -1);  // all 64 bits of the "y" slot
  EXPECT_EQ(z, "text");
  // Differing only above the low 32 bits compares equal, so nothing is written.
  model->SetPropW("x", Value(-9000000000LL + (1LL << 40)));
  EXPECT_EQ(slot[7], -9000000000LL);
  // A string property takes a value's own text: none for a number or a null text.
  model->SetPropW(kString, Value(42));
  EXPECT_EQ(z, "");
  z = "old";
  model->SetPropW(kString, Value(static_cast<const char*>(nullptr)));
  EXPECT_EQ(z, "");
}

TEST(ModelDeathTest, SizeMismatchAndUnsupportedTypesStopTheProgram) {
  vm::Model m;
  char odd[3];
  EXPECT_DEATH(m.InstallProp("odd", "Odd", odd, 3), "Not Supported Type");
  long long wide = 0;
  m.InstallProp("w", "int", &wide, 8);
  Value v;
  EXPECT_DEATH(m.GetPropW("w", v), "this->size == sizeof\\(int32_t\\)");
}

TEST_F(ModelTest, WritesAnnounceRealChangesOnly) {
  int x = 0;
  model->InstallProp("x", "int", &x, 4);
  ASSERT_TRUE(model->On("prop-changed", listener));
  EXPECT_TRUE(model->SetPropW("x", Value(7LL)));
  EXPECT_TRUE(model->SetPropW("x", Value(7LL)));  // unchanged: silent
  EXPECT_EQ(x, 7);
  // Different kinds never compare equal: "7" is a change, stored as 7.
  EXPECT_TRUE(model->SetPropW("x", Value("7")));
  // PropsChange reuses the one event: old and value are stale.
  EXPECT_TRUE(model->EmitPropsChange());
  EXPECT_EQ(listener->events,
            (std::vector<std::string>{"prop-changed:kind=PropChange name=x old=0 value=7 ",
                                      "prop-changed:kind=PropChange name=x old=7 value=7 ",
                                      "prop-changed:kind=PropsChange name= old=7 value=7 "}));
}

TEST_F(ModelTest, BlockedChangesAreWrittenButDropped) {
  int x = 0;
  model->InstallProp("x", "i", &x, 4);
  model->On("prop-changed", listener);
  EXPECT_TRUE(model->BlockEvents());
  EXPECT_TRUE(model->BlockEvents());
  EXPECT_TRUE(model->SetPropW("x", Value(1)));  // true even though nothing is emitted
  EXPECT_EQ(x, 1);
  EXPECT_TRUE(model->UnblockEvents());
  EXPECT_FALSE(model->EmitPropsChange());  // still blocked once
  EXPECT_TRUE(model->UnblockEvents());
  EXPECT_TRUE(listener->events.empty());  // nothing replayed
  EXPECT_TRUE(model->EmitPropsChange());
  EXPECT_EQ(listener->events.size(), 1u);

  LogCapture log;
  EXPECT_FALSE(model->UnblockEvents());
  EXPECT_TRUE(log.HasFailedCheck("UnblockEvents", "this->block_event_nr > 0"));
}

TEST_F(ModelTest, FailuresAreLoggedAndRefused) {
  LogCapture log;
  int x = 0;
  model->InstallProp("x", "i", &x, 4);
  EXPECT_FALSE(model->EmitPropChange("x", Value(1), Value(2)));  // nobody listens
  EXPECT_FALSE(model->Off("prop-changed", listener));
  EXPECT_TRUE(log.HasFailedCheck("Off", "listener != NULL && this->emitter != NULL"));
  EXPECT_FALSE(model->On("prop-changed", nullptr));
  EXPECT_TRUE(log.HasFailedCheck("On", "listener != NULL && this->emitter != NULL"));

  EXPECT_FALSE(model->SetPropW("missing", Value(1)));
  EXPECT_TRUE(log.HasFailedCheck("SetPropW", "found"));
  EXPECT_FALSE(model->UninstallProp("missing"));
  EXPECT_TRUE(model->UninstallProp("x"));
  EXPECT_FALSE(model->HasProp("x"));
  Value v(5);
  EXPECT_FALSE(model->GetPropW("x", v));
  EXPECT_EQ(v.I64(), 5);
}

// Getters, and getters without setters, are the arrays' "_size_" and "_current_".
TEST(AccessorModelTest, SettersAndSetterOnlyProperties) {
  Person p;
  EXPECT_TRUE(p.SetPropW("age", Value(31)));
  EXPECT_EQ(p.age, 31);
  EXPECT_FALSE(p.SetPropW("age", Value(-1)));  // the setter refuses
  EXPECT_EQ(p.age, 31);
  Value untouched(99);
  EXPECT_TRUE(p.GetPropW("age", untouched));  // reads succeed without touching the value
  EXPECT_EQ(untouched.I64(), 99);
}
