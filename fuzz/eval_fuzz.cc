// Computed-property expressions through EvalProp on a view model whose model
// has a property of each kind. Every text must give a value or a clean
// failure, and the same answer twice (the second run comes from the cache
// of compiled expressions).
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>

#include "base/log.h"
#include "base/value.h"
#include "fuzz_check.h"
#include "mvvm/view_model.h"

namespace {

class Order : public vm::Model {
 public:
  Order() {
    InstallProp("a", &this->a);
    InstallProp("b", &this->b);
    InstallProp("name", &this->name);
    InstallProp("paid", &this->paid);
  }
  int a = 6;
  double b = 2.5;
  std::string name = "Widget";
  bool paid = true;
};

bool Same(const base::Value& x, const base::Value& y) {
  if (x.Type() != y.Type()) return false;
  if (x.IsNull()) return true;
  if (x.Type() == base::Value::TYPE_FLOAT) {
    return (std::isnan(x.F64()) && std::isnan(y.F64())) || x.F64() == y.F64();
  }
  return x.Cmp(y) == 0 || (x.Type() == base::Value::TYPE_STR && !x.Str() && !y.Str());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  // Failures are logged: keep the formatting of the log line under the fuzzer too.
  static const bool log_open = (base::LogInit("/dev/null", 0), true);
  (void)log_open;
  static vm::ViewModel* const view_model = new vm::ViewModel(new Order());

  const std::string expr(reinterpret_cast<const char*>(data), size);
  base::Value first, second;
  const bool ok = view_model->EvalProp(expr, first);
  FUZZ_EXPECT(view_model->EvalProp(expr, second) == ok);
  FUZZ_EXPECT(Same(first, second));
  if (!ok && expr.find_first_of("$(") != std::string::npos) {
    FUZZ_EXPECT(first.Type() == base::Value::TYPE_FLOAT && first.F64() == 0.0);
  }
  return 0;
}
