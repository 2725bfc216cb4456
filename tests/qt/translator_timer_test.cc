#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QTest>
#include <vector>

#include "qt/timer.h"
#include "qt/translator.h"

using vm::Translator;

namespace {

// Keeps the timer for `ticks` ticks, recording the names it was called with.
struct CountingHandler : vm::TimerHandler {
  explicit CountingHandler(int ticks) : ticks(ticks) {}
  bool OnTimer(const std::string& name) override {
    names.push_back(name);
    return static_cast<int>(names.size()) < ticks;
  }
  int ticks;
  std::vector<std::string> names;
};

}  // namespace

TEST(TranslatorTest, CataloguesByLanguage) {
  EXPECT_EQ(Translator::Tr("Hello", "greeting"), "Hello");  // nothing installed yet
  EXPECT_TRUE(Translator::Init(OVUI_TEST_TRANSLATIONS, "ovui_test", "de"));
  EXPECT_EQ(Translator::Tr("Goodbye", "greeting"), "Tsch\xC3\xBCss");  // UTF-8 out
  EXPECT_EQ(Translator::Tr("Hello", "other context"), "Hello");
  // A missing catalogue is installed empty, which Qt reports as false; texts stay unchanged.
  const char* const steps[][2] = {{"de", "Hallo"}, {"fr", "Hello"}, {"", "Hello"}, {"de", "Hallo"}};
  for (const auto& [language, hello] : steps) {
    EXPECT_EQ(Translator::SetLanguage(language), std::string(hello) == "Hallo") << language;
    EXPECT_EQ(Translator::language, language);
    EXPECT_EQ(Translator::Tr("Hello", "greeting"), hello) << language;
  }
}

TEST(TimerTest, StopsWhenTheHandlerSaysSo) {
  for (const int ticks : {3, 1}) {
    CountingHandler handler(ticks);
    vm::Timer timer("tick", 1, &handler);
    timer.Start();
    EXPECT_TRUE(QTest::qWaitFor([&] { return !timer.IsActive(); }, 2000));
    EXPECT_EQ(handler.names, std::vector<std::string>(ticks, "tick"));
  }
  vm::Timer idle("idle", 1, nullptr);  // no handler: keeps running, harmlessly
  idle.Start();
  QCoreApplication::processEvents();
  EXPECT_TRUE(idle.IsActive());
}

TEST(TimerTest, AHandlerMayDeleteItsTimer) {
  struct Deleting : vm::TimerHandler {
    bool OnTimer(const std::string& name) override {
      names.push_back(name);
      delete timer;
      timer = nullptr;
      return false;
    }
    vm::Timer* timer = nullptr;
    std::vector<std::string> names;
  } handler;
  handler.timer = new vm::Timer("once", 1, &handler);
  handler.timer->Start();
  EXPECT_TRUE(QTest::qWaitFor([&] { return handler.timer == nullptr; }, 2000));
  EXPECT_EQ(handler.names, std::vector<std::string>{"once"});
}
