#include "order_form.h"

#include <cstdio>
#include <functional>
#include <utility>

#include "catalogue.h"
#include "settings.h"

namespace {

struct Product {
  const char* name;
  double price;
};

const Product kProducts[] = {
    {"House blend", 8.50},
    {"Ethiopia Yirgacheffe", 12.90},
    {"Decaf Colombia", 9.20},
};

const Product* FindProduct(const std::string& name) {
  for (const Product& p : kProducts) {
    if (name == p.name) return &p;
  }
  return nullptr;
}

// A command made of two functions, so that the form keeps its logic in its
// own members.
class Command : public vm::ICommand {
 public:
  Command(std::function<bool()> run, std::function<bool()> can)
      : run(std::move(run)), can(std::move(can)) {}
  bool CanExecute(const std::string&) override { return this->can(); }
  bool Execute(const std::string&) override { return this->can() && this->run(); }

 private:
  std::function<bool()> run;
  std::function<bool()> can;
};

// Refuses an empty (or all-blank) text.
class RequiredValidator : public vm::IValidator {
 public:
  bool IsValid(const base::Value& v, std::string& msg) override {
    const std::string text = v.Str();
    if (text.find_first_not_of(" \t") != std::string::npos) return true;
    msg = "Please enter the customer's name.";
    return false;
  }
};

class MoneyConverter : public vm::IConverter {
 public:
  bool Convert(const base::Value& from, base::Value& to) override {
    if (from.Type() != base::Value::TYPE_INT && from.Type() != base::Value::TYPE_FLOAT) {
      return false;
    }
    char text[32];
    std::snprintf(text, sizeof(text), "\xE2\x82\xAC %.2f", from.F64());
    to.Str(text);
    return true;
  }
  bool ConvertBack(const base::Value&, base::Value&) override { return false; }
};

class SavedOrder : public vm::ViewModelItem {
 public:
  explicit SavedOrder(const std::string& name) : name(name) { InstallProp("name", &this->name); }
  std::string name;
};

vm::MenuData* MenuEntry(const std::string& text, const std::string& command) {
  auto* entry = new vm::MenuData();
  entry->text = text;
  entry->command = command;
  return entry;
}

}  // namespace

vm::IConverter* NewMoneyConverter() {
  return new MoneyConverter();
}

Order::Order() {
  this->product = kProducts[0].name;
  this->price = kProducts[0].price;
  InstallProp("customer", &this->customer);
  InstallProp("product", &Order::GetProduct, &Order::SetProduct);
  InstallProp("price", &this->price);
  InstallProp("quantity", &this->quantity);
  InstallProp("gift", &this->gift);
  InstallProp("gift_note", &this->gift_note);
}

std::string Order::ProductList() {
  std::string list;
  for (const Product& p : kProducts) {
    if (!list.empty()) list += '\n';
    list += p.name;
  }
  return list;
}

bool Order::GetProduct(base::Value& v) const {
  v.Str(this->product.c_str());
  return true;
}

bool Order::SetProduct(const base::Value& v) {
  const Product* p = FindProduct(v.Str());
  if (!p) return false;
  this->product = p->name;
  // Announced like any other change, so the price and total follow.
  SetPropW("price", base::Value(p->price));
  return true;
}

void SavedOrders::Append(const std::string& name) {
  Add(new SavedOrder(name));
}

std::string SavedOrders::CurrentName() const {
  base::Value name;
  if (Size() == 0 || !Get(GetCurrent())->GetPropW("name", name)) return std::string();
  return name.Str();
}

bool SavedOrders::GetContextMenuData(const std::string& name, vm::MenuData& out) {
  if (name != "orders") return false;
  const std::string current = CurrentName();
  out.AddChild(MenuEntry(current.empty() ? "Remove" : "Remove \"" + current + "\"", "remove"));
  auto* separator = new vm::MenuData();
  separator->separator = 1;
  out.AddChild(separator);
  out.AddChild(MenuEntry("Remove all", "remove_all"));
  return true;
}

OrderForm::OrderForm() : vm::ViewModel(new Order()) {
  this->products = Order::ProductList();
  InstallProp("status", &this->status);
  InstallProp("summary", &this->summary);
  InstallProp("products", &this->products);
  RegisterValidator("required", new RequiredValidator());
  RegisterConverter("money", NewMoneyConverter());
  RegisterCommand("save", new Command([this] { return Save(); }, [this] { return CanSave(); }));

  this->saved = new SavedOrders();
  this->saved->SetParent(this);
  SetSubViewModel("orders", this->saved);
  this->saved->Append("1 x Decaf Colombia for Charles Babbage");
  this->saved->Append("3 x House blend for Grace Hopper");
  const auto has_orders = [this] { return this->saved->Size() > 0; };
  this->saved->RegisterCommand("remove",
                               new Command([this] { return RemoveCurrent(); }, has_orders));
  this->saved->RegisterCommand("remove_all",
                               new Command([this] { return RemoveAll(); }, has_orders));
  UpdateSummary();

  this->catalogue = new Catalogue();
  SetSubViewModel("catalogue", this->catalogue);
  this->settings = new Settings(this->catalogue);
  SetSubViewModel("settings", this->settings);
  // Read where it is set: the settings' change reaches the form's rules in
  // the same deferred update.
  InstallProp("show_prices", &OrderForm::GetShowPrices, nullptr);
}

bool OrderForm::GetShowPrices(base::Value& v) const {
  v = base::Value(this->settings->show_prices);
  return true;
}

bool OrderForm::CanSave() const {
  // An empty name never reaches the model; the validator's verdict tells
  // whether the field currently holds one.
  return !HasValidatorError() && !GetOrder()->customer.empty();
}

bool OrderForm::Save() {
  const Order* order = GetOrder();
  const std::string name =
      std::to_string(order->quantity) + " x " + order->product + " for " + order->customer;
  this->saved->Append(name);
  SetText("status", "Saved: " + name);
  UpdateSummary();
  vm::Navigator::Toast("Order saved", 1500);
  return true;
}

bool OrderForm::RemoveCurrent() {
  const std::string name = this->saved->CurrentName();
  if (!this->saved->Remove(this->saved->GetCurrent())) return false;
  SetText("status", "Removed: " + name);
  UpdateSummary();
  return true;
}

bool OrderForm::RemoveAll() {
  this->saved->Reset();
  SetText("status", "Removed every saved order");
  UpdateSummary();
  return true;
}

void OrderForm::SetText(const char* name, const std::string& text) {
  SetPropW(name, base::Value(text));
}

void OrderForm::UpdateSummary() {
  const unsigned n = this->saved->Size();
  SetText("summary", n == 0   ? "No saved orders"
                     : n == 1 ? "1 saved order"
                              : std::to_string(n) + " saved orders");
}
