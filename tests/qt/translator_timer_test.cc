#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <vector>

#include "qt/timer.h"
#include "qt/translator.h"

namespace {

// Keeps the timer for `ticks` ticks, recording the names it was called with.
class CountingHandler : public vm::TimerHandler {
 public:
  explicit CountingHandler(int ticks) : ticks(ticks) {}
  bool OnTimer(const std::string& name) override {
    names.push_back(name);
    return static_cast<int>(names.size()) < ticks;
  }
  int ticks;
  std::vector<std::string> names;
};

// Runs the event loop until `timer` stops, for two seconds at most.
void RunUntilStopped(const vm::Timer& timer) {
  QElapsedTimer clock;
  clock.start();
  while (timer.IsActive() && clock.elapsed() < 2000)
    QCoreApplication::processEvents();
}

}  // namespace

TEST(TranslatorTest, CataloguesByLanguage) {
  EXPECT_EQ(vm::Translator::Tr("Hello", "greeting"), "Hello");  // nothing installed yet

  EXPECT_TRUE(vm::Translator::Init(OVUI_TEST_TRANSLATIONS, "ovui_test", "de"));
  EXPECT_EQ(vm::Translator::language, "de");
  EXPECT_EQ(vm::Translator::Tr("Hello", "greeting"), "Hallo");
  EXPECT_EQ(vm::Translator::Tr("Goodbye", "greeting"), "Tsch\xC3\xBCss");  // UTF-8 out
  EXPECT_EQ(vm::Translator::Tr("Hello", "other context"), "Hello");

  // A missing catalogue installs an empty translator, which Qt reports as false.
  EXPECT_FALSE(vm::Translator::SetLanguage("fr"));
  EXPECT_EQ(vm::Translator::language, "fr");
  EXPECT_EQ(vm::Translator::Tr("Hello", "greeting"), "Hello");
  EXPECT_FALSE(vm::Translator::SetLanguage(""));
  EXPECT_EQ(vm::Translator::language, "");
  EXPECT_TRUE(vm::Translator::SetLanguage("de"));
  EXPECT_EQ(vm::Translator::Tr("Hello", "greeting"), "Hallo");
}

TEST(TimerTest, StopsWhenTheHandlerSaysSo) {
  CountingHandler three(3);
  vm::Timer timer("tick", 1, &three);
  timer.Start();
  RunUntilStopped(timer);
  EXPECT_FALSE(timer.IsActive());
  EXPECT_EQ(three.names, (std::vector<std::string>{"tick", "tick", "tick"}));

  CountingHandler once(1);
  vm::Timer first("first", 1, &once);
  first.Start();
  RunUntilStopped(first);
  EXPECT_EQ(once.names.size(), 1u);

  vm::Timer idle("idle", 1, nullptr);  // no handler: keeps running, harmlessly
  idle.Start();
  QCoreApplication::processEvents();
  EXPECT_TRUE(idle.IsActive());
}
