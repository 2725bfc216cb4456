#include "mvvm/navigator.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "mvvm/chart_data.h"
#include "support/log_capture.h"

using vm::Navigator;
using vm::NavigatorRequest;

namespace {

// Serves one target: records each request's text and answers with `result`
// and `ok`. It replaces whatever served the target before.
class FakeHandler : public vm::NavigatorHandler {
 public:
  FakeHandler(const std::string& target, base::Value result, bool ok = true)
      : NavigatorHandler(target), result(result), ok(ok) {}
  bool OnRequest(NavigatorRequest* request) override {
    seen.push_back(request->ToString());
    request->OnResult(result);
    return ok;
  }
  base::Value result;
  bool ok;
  std::vector<std::string> seen;
};

}  // namespace

TEST(NavigatorTest, ConvenienceCallsSendTheirParametersAndReadResults) {
  {
    FakeHandler files("pick_file", base::Value("/a/x.txt?/a/y.txt"));
    std::string paths = "start";
    EXPECT_TRUE(Navigator::PickFiles("Open", "Text (*.txt)", paths));
    EXPECT_EQ(paths, "/a/x.txt?/a/y.txt");
    EXPECT_EQ(files.seen.back(),
              "pick_file default=start for_save=0 mime_types=Text (*.txt) pick_files=1 "
              "title=Open ");
  }
  {
    FakeHandler ints("input_int", base::Value(7));
    int value = 3;
    EXPECT_TRUE(Navigator::InputInt("T", "L", value, 5, 5));  // equal bounds still sent
    EXPECT_EQ(value, 7);
    EXPECT_EQ(ints.seen.back(), "input_int default=3 label=L max=5 min=5 title=T ");
  }
  {
    FakeHandler floats("input_float", base::Value(2));  // the standard handler answers an int
    double value = 0.5;
    EXPECT_TRUE(Navigator::InputFloat("T", "L", value, 0, 1));
    EXPECT_EQ(value, 2.0);
  }
  {
    FakeHandler toast("toast", base::Value());
    FakeHandler confirm("confirm", base::Value(), false);
    EXPECT_TRUE(Navigator::Toast("hi", 3000));
    EXPECT_EQ(toast.seen.back(), "toast content=hi timeout=3000 ");
    EXPECT_FALSE(Navigator::Confirm("Sure?", "Really", true, 4, 5));
    EXPECT_EQ(confirm.seen.back(), "confirm at_cursor_pos=1 content=Really title=Sure? x=4 y=5 ");
  }
}

TEST(NavigatorTest, FailuresLeaveOutputsUntouched) {
  FakeHandler refusing("input_text", base::Value("ignored"), false);
  std::string text = "kept";
  EXPECT_FALSE(Navigator::InputText("T", "L", text));
  EXPECT_EQ(text, "kept");

  ovui_test::LogCapture log;
  EXPECT_FALSE(Navigator::To("nobody"));
  EXPECT_TRUE(log.HasFailedCheck("To", "iter != navigator->handlers.end()"));
  EXPECT_FALSE(Navigator::RegisterHandler("", &refusing));
  EXPECT_TRUE(log.HasFailedCheck("RegisterHandler", "target.size() && handler != NULL"));
  EXPECT_FALSE(Navigator::HasHandler(""));
  EXPECT_TRUE(log.HasFailedCheck("HasHandler", "target.size()"));
  EXPECT_FALSE(Navigator::UnRegisterHandler(""));
  EXPECT_TRUE(log.HasFailedCheck("UnRegisterHandler", "target.size()"));
  EXPECT_TRUE(Navigator::UnRegisterHandler("never registered"));
  vm::NavigatorHandler base_handler("plain");
  EXPECT_FALSE(Navigator::To("plain"));  // the base serves nothing
}

TEST(NavigatorTest, HandlersLiveExactlyAsLongAsTheirRegistration) {
  auto* first = new FakeHandler("custom", base::Value(1));
  {
    FakeHandler second("custom", base::Value(2));  // replaces the first
    EXPECT_TRUE(Navigator::To("custom"));
    EXPECT_TRUE(first->seen.empty());
    EXPECT_EQ(second.seen.size(), 1u);
  }
  // The destructor unregisters the target, not its own entry: the first
  // handler is alive but no longer reachable.
  EXPECT_FALSE(Navigator::HasHandler("custom"));
  delete first;
}

TEST(NavigatorRequestTest, PositionsAndText) {
  NavigatorRequest request("info");
  int x = 5, y = 5;
  bool at_cursor = true;
  request.params["x"] = 10;  // "y" missing: both read -1
  request.GetPos(x, y, at_cursor);
  EXPECT_EQ(x, -1);
  EXPECT_EQ(y, -1);
  EXPECT_TRUE(at_cursor);  // absent: left as it was
  request.SetPos(3, -4, false);
  request.GetPos(x, y, at_cursor);
  EXPECT_EQ(x, 3);
  EXPECT_EQ(y, -4);
  EXPECT_FALSE(at_cursor);
  EXPECT_EQ(request.ToString(), "info at_cursor_pos=0 x=3 y=-4 ");
}

TEST(ChartSeriesTest, IdentifiersCountUp) {
  const int first = std::stoi(vm::ChartSeries::GenerateID());
  EXPECT_EQ(vm::ChartSeries::GenerateID(), std::to_string(first + 1));
}
