#ifndef OVUI_EXAMPLES_FORM_DEMO_SETTINGS_H_
#define OVUI_EXAMPLES_FORM_DEMO_SETTINGS_H_

#include <map>
#include <string>

#include "ovui.h"

class Catalogue;
class MenuContainerItem;

// The view model of the "Settings" tab of form_demo.ui: the preferences of
// a paged menu and one switch per roast for the stock table. A setting takes
// effect on the tab it is about as soon as it is written.
//
// The menu is "menu", a MenuContainerItem tree with its selection in
// "mcix_selected":
//   "show_prices"  switch: the order form's price and total rows
//   "accent"       icon switch: the order form's accent colour
//   "stock_sort"   text options: the column the stock table sorts by
//   "live_sales"   switch: the catalogue's sales ticker
//   "reset_filters" command: clears the catalogue's filters
// The roast switches are named after the roasts themselves ("Light",
// "Medium", ...) and listed, one per line, in "roasts", so that a check
// combo box shows them as its items; "stock_shown" says how many rows the
// stock table shows.
class Settings : public vm::ViewModel {
 public:
  // `catalogue` is the view model the settings act on; it must outlive them.
  explicit Settings(Catalogue* catalogue);
  ~Settings() override;

  // Stores the value, then applies it.
  bool SetPropW(const std::string& name, const base::Value& v) override;
  // Colours the window in the accent, which needs the window.
  bool InitWindow() override;
  // Empties both catalogue filters and shows every roast.
  bool ResetFilters();

  bool show_prices = true;
  int accent = 0;
  int stock_sort = 0;
  bool live_sales = true;
  int selected = -1;
  std::string roasts;

 private:
  bool GetMenu(base::Value& v) const;
  bool GetStockShown(base::Value& v) const;
  void Apply(const std::string& name);

  Catalogue* catalogue;
  MenuContainerItem* menu = nullptr;
  std::map<std::string, bool> shown_roasts;  // a map keeps each value in place
};

#endif  // OVUI_EXAMPLES_FORM_DEMO_SETTINGS_H_
