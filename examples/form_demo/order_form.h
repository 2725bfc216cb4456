#ifndef OVUI_EXAMPLES_FORM_DEMO_ORDER_FORM_H_
#define OVUI_EXAMPLES_FORM_DEMO_ORDER_FORM_H_

#include <string>

#include "ovui.h"

class Catalogue;
class Settings;

// Prices for display: 7.5 shows as "€ 7.50". Display only.
vm::IConverter* NewMoneyConverter();

// The view model of the order form in form_demo.ui. None of it knows Qt:
// the form's widgets find what they show through the rules in the .ui.

// One order as the application would load and store it. Choosing a product
// sets its unit price.
class Order : public vm::Model {
 public:
  Order();

  // The products on offer, one per line (the combo box's items).
  static std::string ProductList();

  std::string customer = "Ada Lovelace";
  std::string product;
  double price = 0;
  int quantity = 2;
  bool gift = true;
  std::string gift_note = "Happy birthday!";

 private:
  bool GetProduct(base::Value& v) const;
  bool SetProduct(const base::Value& v);
};

// The orders saved so far, shown in the list view "orders". Its context
// menu offers to remove the current order or all of them.
class SavedOrders : public vm::ViewModelArray {
 public:
  // Appends an order called `name` and makes it current.
  void Append(const std::string& name);
  // The current order's name; empty when the list is empty.
  std::string CurrentName() const;

  bool GetContextMenuData(const std::string& name, vm::MenuData& out) override;
};

// The form: the order's fields, a status line, the saved orders (sub view
// model "orders"), the catalogue and settings tabs (sub view models
// "catalogue" and "settings") and the commands "save", "remove" and
// "remove_all". "show_prices" follows the setting of that name.
//
// "save" may run while the customer field holds an accepted name: the
// validator "required" refuses an empty one, and until a name is accepted
// again the save button stays disabled. Saving asks the navigator for a
// toast.
class OrderForm : public vm::ViewModel {
 public:
  OrderForm();

  Order* GetOrder() const { return static_cast<Order*>(GetModel()); }
  SavedOrders* GetSavedOrders() const { return this->saved; }
  // The second tab's view model (sub view model "catalogue").
  Catalogue* GetCatalogue() const { return this->catalogue; }
  // The third tab's view model (sub view model "settings").
  Settings* GetSettings() const { return this->settings; }

  bool Save();
  bool CanSave() const;
  bool RemoveCurrent();
  bool RemoveAll();

  std::string status = "Ready";
  std::string summary;  // "2 saved orders"
  std::string products;

 private:
  void SetText(const char* name, const std::string& text);
  void UpdateSummary();
  bool GetShowPrices(base::Value& v) const;

  SavedOrders* saved = nullptr;    // held in the sub view model registry
  Catalogue* catalogue = nullptr;  // likewise
  Settings* settings = nullptr;    // likewise
};

#endif  // OVUI_EXAMPLES_FORM_DEMO_ORDER_FORM_H_
