#include "mvvm/navigator.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using vm::Navigator;

namespace {

// Serves one target: records each request's text and answers `result`; a null one fails.
struct FakeHandler : vm::NavigatorHandler {
  FakeHandler(const std::string& target, base::Value result)
      : NavigatorHandler(target), result(result) {}
  bool OnRequest(vm::NavigatorRequest* request) override {
    seen.push_back(request->ToString());
    request->OnResult(result);
    return !result.IsNull();
  }
  base::Value result;
  std::vector<std::string> seen;
};

}  // namespace

// The standard input_float handler answers an int; failures leave the outputs as they were.
TEST(NavigatorTest, RequestsHandlersAndFailures) {
  FakeHandler files("pick_file", "/a/x.txt?/a/y.txt"), ints("input_int", 7),
      floats("input_float", 2), toast("toast", 0), confirm("confirm", {});
  std::string paths = "start";
  int value = 3;
  double real = 0.5;
  EXPECT_TRUE(Navigator::PickFiles("Open", "Text (*.txt)", paths));
  EXPECT_TRUE(Navigator::InputInt("T", "L", value, 5, 5));  // equal bounds still sent
  EXPECT_TRUE(Navigator::InputFloat("T", "L", real, 0, 1));
  EXPECT_TRUE(Navigator::Toast("hi", 3000));
  EXPECT_FALSE(Navigator::Confirm("Sure?", "Really", true, 4, 5));
  EXPECT_EQ(paths, "/a/x.txt?/a/y.txt");
  EXPECT_EQ(value, 7);
  EXPECT_EQ(real, 2.0);
  EXPECT_EQ(files.seen.back() + ints.seen.back() + toast.seen.back() + confirm.seen.back(),
            "pick_file default=start for_save=0 mime_types=Text (*.txt) pick_files=1 title=Open "
            "input_int default=3 label=L max=5 min=5 title=T toast content=hi timeout=3000 "
            "confirm at_cursor_pos=1 content=Really title=Sure? x=4 y=5 ");

  auto* first = new FakeHandler("custom", 1);
  FakeHandler second("custom", 2);  // replaces the first
  EXPECT_TRUE(Navigator::To("custom"));
  EXPECT_TRUE(first->seen.empty());
  EXPECT_EQ(second.seen.size(), 1u);
  delete first;  // unregisters the target, not its own entry, though the second serves it
  EXPECT_FALSE(Navigator::HasHandler("custom"));
  FakeHandler refusing("input_text", {});
  std::string text = "kept";
  EXPECT_FALSE(Navigator::InputText("T", "L", text));
  EXPECT_EQ(text, "kept");
  EXPECT_TRUE(Navigator::UnRegisterHandler("never registered"));

  // x and y read -1 unless both are present; an absent at_cursor_pos is left as it was.
  vm::NavigatorRequest request("info");
  int x = 5, y = 5;
  bool at_cursor = true;
  request.params["x"] = 10;
  request.GetPos(x, y, at_cursor);
  EXPECT_EQ(std::vector<int>({x, y, at_cursor}), std::vector<int>({-1, -1, 1}));
  request.SetPos(3, -4, false);
  request.GetPos(x, y, at_cursor);
  EXPECT_EQ(std::vector<int>({x, y, at_cursor}), std::vector<int>({3, -4, 0}));
}
