// The example of the README, kept compiling and running here.
#include <cstdio>

#include "ovui.h"

// The application's data: properties installed over plain fields.
class Cart : public vm::Model {
 public:
  Cart() {
    InstallProp("price", &price);
    InstallProp("quantity", &quantity);
  }
  double price = 2.5;
  int quantity = 1;
};

static bool Print(void*, events::Event* e) {
  std::printf("%s\n", e->ToString().c_str());
  return false;  // not handled: later listeners still get the event
}

int main() {
  auto* cart = new vm::ViewModel(new Cart());  // the view model adopts the model
  auto* printer = new events::FunctionListener(&Print, nullptr);
  cart->On("prop-changed", printer);  // the emitter takes its own reference

  cart->SetPropW("quantity", base::Value(3));
  // prints "prop-changed:kind=PropChange name=quantity old=1 value=3 "

  // A rule as a form designer writes it into a widget's "binding.value".
  vm::DataBinding* total = vm::DataBindingParser::FromString("{Binding $price * $quantity}");
  base::Value v;
  total->GetPropW(cart, v);
  std::printf("total = %g\n", v.F64());  // prints "total = 7.5"

  total->Release();
  cart->Off("prop-changed", printer);
  printer->Release();
  cart->Release();  // releases the model too
}
