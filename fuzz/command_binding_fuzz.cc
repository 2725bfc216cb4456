// Command rules: any text parses, and a binding whose fields hold none of the
// rule's own syntax prints to a rule that parses back to the same binding.
#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzz_check.h"
#include "mvvm/command_binding.h"

namespace {

// A field the printed rule can carry unchanged.
bool Plain(const std::string& s) {
  if (s.find_first_of(",{}=|\"") != std::string::npos) return false;
  return s.empty() || (s.front() != ' ' && s.back() != ' ');
}

bool Printable(const vm::CommandBinding& b) {
  if (!Plain(b.name) || !Plain(b.args)) return false;
  for (const std::string& t : b.triggers) {
    if (!Plain(t)) return false;
  }
  return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  vm::CommandBinding* b = vm::CommandBindingParser::FromString(text);
  FUZZ_EXPECT(b != nullptr);
  const std::string printed = vm::CommandBindingParser::ToString(b);
  vm::CommandBinding* back = vm::CommandBindingParser::FromString(printed);
  FUZZ_EXPECT(back != nullptr);
  if (Printable(*b)) {
    FUZZ_EXPECT(back->name == b->name);
    FUZZ_EXPECT(back->args == b->args);
    FUZZ_EXPECT(back->triggers == b->triggers);
    FUZZ_EXPECT(back->close_window == b->close_window);
    FUZZ_EXPECT(back->update_model == b->update_model);
  }
  back->Release();
  b->Release();
  return 0;
}
