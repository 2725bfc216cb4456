// A console tour of ovui: models announce their changes as events, view
// models add commands, converters, validators and computed properties, and
// binding rules tie it together the way widgets will use it.
#include <cstdio>
#include <string>
#include <utility>

#include "ovui.h"

namespace {

bool PrintEvent(void*, events::Event* e) {
  std::printf("    event: %s\n", e->ToString().c_str());
  return false;  // not handled: let other listeners see it too
}

std::string Text(const base::Value& v) {
  char buf[64];
  const char* s = v.ToStr(buf, sizeof(buf));
  return s ? s : "(null)";
}

// A model with two properties over plain fields.
class Person : public vm::Model {
 public:
  Person() {
    InstallProp("name", &this->name);
    InstallProp("age", &this->age);
  }
  std::string name = "Ada";
  int age = 36;
};

// The data of a shopping cart line.
class CartLine : public vm::Model {
 public:
  CartLine() {
    InstallProp("price", &this->price);
    InstallProp("quantity", &this->quantity);
  }
  double price = 2.5;
  int quantity = 1;
};

// "add_one" raises the quantity of the cart line it is given.
class AddOne : public vm::ICommand {
 public:
  explicit AddOne(vm::ViewModel* cart) : cart(cart) {}
  bool Execute(const std::string&) override {
    base::Value q;
    cart->GetPropW("quantity", q);
    return cart->SetPropW("quantity", base::Value(q.I64() + 1));
  }

 private:
  vm::ViewModel* cart;  // weak: the command lives inside the cart
};

// Shows a price as whole cents and reads cents back as a price.
class Cents : public vm::IConverter {
 public:
  bool Convert(const base::Value& from, base::Value& to) override {
    to.I64(static_cast<long long>(from.F64() * 100 + 0.5));
    return true;
  }
  bool ConvertBack(const base::Value& from, base::Value& to) override {
    to.F64(from.F64() / 100);
    return true;
  }
};

// Refuses more than ten of anything.
class AtMostTen : public vm::IValidator {
 public:
  bool IsValid(const base::Value& v, std::string& msg) override {
    if (v.I64() <= 10) return true;
    msg = "at most 10 per order";
    return false;
  }
};

void ModelEvents() {
  std::printf("1. A model announces every real change\n");
  auto* person = new Person();
  auto* printer = new events::FunctionListener(&PrintEvent, nullptr);
  person->On("prop-changed", printer);
  std::printf("  set name = Grace\n");
  person->SetPropW("name", base::Value("Grace"));
  std::printf("  set age = 37\n");
  person->SetPropW("age", base::Value(37));
  std::printf("  set age = 37 again (no change, no event)\n");
  person->SetPropW("age", base::Value(37));
  person->Off("prop-changed", printer);
  printer->Release();
  person->Release();
}

void ViewModelAndBindings() {
  std::printf("\n2. A view model with a command, a converter, a validator and a total\n");
  auto* cart = new vm::ViewModel(new CartLine());  // adopts the model
  cart->RegisterCommand("add_one", new AddOne(cart));
  cart->RegisterConverter("cents", new Cents());
  cart->RegisterValidator("at_most_ten", new AtMostTen());
  auto* printer = new events::FunctionListener(&PrintEvent, nullptr);
  cart->On("prop-changed", printer);

  // The rules a form designer would put on widgets.
  vm::DataBinding* total = vm::DataBindingParser::FromString("{Binding $price * $quantity}");
  vm::DataBinding* price = vm::DataBindingParser::FromString("{Binding price, Converter=cents}");
  vm::DataBinding* quantity =
      vm::DataBindingParser::FromString("{Binding quantity, Validator=at_most_ten}");
  vm::CommandBinding* button = vm::CommandBindingParser::FromString("{Command add_one}");

  base::Value v;
  total->GetPropW(cart, v);
  std::printf("  total, %-29s = %s\n", total->path.c_str(), Text(v).c_str());
  price->GetPropW(cart, v);
  std::printf("  price, shown through the converter   = %s cents\n", Text(v).c_str());

  std::printf("  click %s\n", vm::CommandBindingParser::ToString(button).c_str());
  cart->ExecuteCommand(button->name, button->args);
  total->GetPropW(cart, v);
  std::printf("  total, recomputed after the change   = %s\n", Text(v).c_str());

  std::printf("  type 299 into the price field\n");
  std::string error;
  price->SetPropW(cart, base::Value(299), error);
  total->GetPropW(cart, v);
  std::printf("  total, recomputed after the change   = %s\n", Text(v).c_str());

  std::printf("  type 12 into the quantity field\n");
  if (!quantity->SetPropW(cart, base::Value(12), error)) {
    std::printf("    refused: \"%s\" (validator error: %s)\n", error.c_str(),
                cart->HasValidatorError() ? "yes" : "no");
  }
  cart->GetPropW("quantity", v);
  std::printf("  quantity is still %s\n", Text(v).c_str());

  for (vm::DataBinding* b : {total, price, quantity})
    b->Release();
  button->Release();
  cart->Off("prop-changed", printer);
  printer->Release();
  cart->Release();  // releases the model, command, converter and validator
}

// A list of people that shows those whose name contains the filter text.
class PeopleList : public vm::ViewModelArrayExt {
 public:
  bool FilterOne(vm::ViewModel* item, const std::string& rule) override {
    base::Value name;
    item->GetPropW("name", name);
    return std::string(name.Str()).find(rule) != std::string::npos;
  }
};

void PrintRows(vm::ViewModelArray* list) {
  for (unsigned int i = 0; i < list->Size(); ++i) {
    base::Value name, age;
    list->Get(i)->GetPropW("name", name);
    list->Get(i)->GetPropW("age", age);
    std::printf("    %u. %-10s %s\n", i, name.Str(), Text(age).c_str());
  }
}

void FilteredSortedList() {
  std::printf("\n3. A list, filtered and sorted\n");
  auto* people = new PeopleList();
  auto* printer = new events::FunctionListener(&PrintEvent, nullptr);
  for (const char* type : {"filtered", "sorted", "current-changed"})
    people->On(type, printer);

  const struct {
    const char* name;
    int age;
  } rows[] = {{"Ada", 36}, {"Grace", 45}, {"Alan", 41}, {"Barbara", 29}, {"Anita", 41}};
  people->BeginBatch();  // one "rebind" for the view instead of an event per row
  for (const auto& row : rows) {
    auto* person = new Person();
    person->name = row.name;
    person->age = row.age;
    people->Add(new vm::ViewModelItem(person));
  }
  people->EndBatch();
  std::printf("  %u people\n", people->Size());

  std::printf("  sort by age, descending (rule \"0:age\")\n");
  people->Sort("0:age");
  PrintRows(people);
  std::printf("  filter names containing \"r\"\n");
  people->Filter("r");
  PrintRows(people);
  std::printf("  add Katherine, 52 (shown, sorted into place) and Linus, 30 (hidden)\n");
  for (const auto& row : {std::make_pair("Katherine", 52), std::make_pair("Linus", 30)}) {
    auto* person = new Person();
    person->name = row.first;
    person->age = row.second;
    people->Add(new vm::ViewModelItem(person));
  }
  PrintRows(people);
  std::printf("  clear the filter\n");
  people->Filter("");
  PrintRows(people);

  for (const char* type : {"filtered", "sorted", "current-changed"})
    people->Off(type, printer);
  printer->Release();
  people->Release();  // releases every row and its model
}

}  // namespace

int main() {
  ModelEvents();
  ViewModelAndBindings();
  FilteredSortedList();
  return 0;
}
