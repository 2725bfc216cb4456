// Data-binding rules come from hand-edited forms: any text must parse to a
// binding or a null, and whatever parses must print.
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "fuzz_check.h"
#include "mvvm/data_binding_parser.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);

  if (vm::DataBinding* b = vm::DataBindingParser::FromString(text)) {
    const std::string printed = vm::DataBindingParser::ToString(b);
    FUZZ_EXPECT(printed.size() >= 2 && printed.front() == '{' && printed.back() == '}');
    // The printed text is a rule too; it need not give the same binding back.
    if (vm::DataBinding* again = vm::DataBindingParser::FromString(printed)) again->Release();
    b->Release();
  } else {
    FUZZ_EXPECT(size <= 2);
  }

  std::vector<vm::DataBinding*> bindings;
  FUZZ_EXPECT(vm::DataBindingParser::FromString(text, bindings));
  FUZZ_EXPECT(bindings.size() <= size / 3 + 1);
  for (vm::DataBinding* b : bindings) {
    vm::DataBindingParser::ToString(b);
    b->Release();
  }
  return 0;
}
