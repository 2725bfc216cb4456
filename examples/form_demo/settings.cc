#include "settings.h"

#include <cstdio>
#include <iterator>
#include <sstream>

#include "catalogue.h"
#include "qt/menu_container.h"

namespace {

struct Accent {
  const char* name;
  const char* icon;
  const char* colour;
};

const Accent kAccents[] = {
    {"Espresso", ":/form_demo/icons/espresso.png", "#6f4e37"},
    {"Caramel", ":/form_demo/icons/caramel.png", "#b5781a"},
    {"Mint", ":/form_demo/icons/mint.png", "#2e8b57"},
};

// The "stock_sort" options and the row properties they sort by.
const char* const kSortNames[] = {"Shelf", "Product", "Roast", "Bags"};
const char* const kSortKeys[] = {"shelf", "name", "roast", "bags"};

class ResetFiltersCommand : public vm::ICommand {
 public:
  explicit ResetFiltersCommand(Settings* settings) : settings(settings) {}
  bool CanExecute(const std::string&) override { return true; }
  bool Execute(const std::string&) override { return this->settings->ResetFilters(); }

 private:
  Settings* settings;
};

MenuContainerItem* NewMenu() {
  auto* root = new MenuContainerItem();
  root->SetAttribute("number_per_page", "4");
  root->SetAttribute("bt_next", "More settings ");
  root->SetAttribute("bt_w", "300");
  root->SetAttribute("bt_h", "44");
  root->SetAttribute("bt_gap", "4");
  root->SetAttribute("select_bk", "#eadfd3");
  root->SetAttribute("auto_fix_size", "true");
  root->AddSwitch("Show prices", "show_prices", "Shown", "Hidden");
  std::vector<MenuContainerItemIcon> accents;
  for (const Accent& accent : kAccents)
    accents.push_back({accent.icon, accent.name});
  root->AddSwitch("Accent colour", accents, "accent");
  root->AddTextDlg("Sort stock by", {std::begin(kSortNames), std::end(kSortNames)}, "stock_sort",
                   2);
  root->AddSwitch("Live sales", "live_sales", "On", "Paused");
  root->AddCommand("Reset filters", "reset_filters", "", "");
  return root;
}

}  // namespace

Settings::Settings(Catalogue* catalogue) : catalogue(catalogue), menu(NewMenu()) {
  InstallProp("menu", &Settings::GetMenu, nullptr);
  InstallProp("mcix_selected", &this->selected);
  InstallProp("show_prices", &this->show_prices);
  InstallProp("accent", &this->accent);
  InstallProp("stock_sort", &this->stock_sort);
  InstallProp("live_sales", &this->live_sales);
  this->roasts = catalogue->GetStock()->roasts;
  InstallProp("roasts", &this->roasts);
  std::istringstream lines(this->roasts);
  for (std::string roast; std::getline(lines, roast);) {
    bool& shown = this->shown_roasts[roast];
    shown = true;
    InstallProp(roast, &shown);
  }
  InstallProp("stock_shown", &Settings::GetStockShown, nullptr);
  RegisterCommand("reset_filters", new ResetFiltersCommand(this));
}

Settings::~Settings() {
  base::SafeRelease(this->menu);
}

bool Settings::SetPropW(const std::string& name, const base::Value& v) {
  if (!vm::ViewModel::SetPropW(name, v)) return false;
  Apply(name);
  return true;
}

bool Settings::InitWindow() {
  Apply("accent");
  return true;
}

bool Settings::ResetFilters() {
  this->catalogue->SetPropW("product_filter", base::Value(""));
  this->catalogue->GetStock()->SetPropW("filter", base::Value(""));
  for (const auto& roast : this->shown_roasts)
    SetPropW(roast.first, base::Value(true));
  return true;
}

void Settings::Apply(const std::string& name) {
  StockList* stock = this->catalogue->GetStock();
  const auto in_range = [](int index, size_t size) {
    return index >= 0 && index < static_cast<int>(size);
  };
  if (name == "accent" && in_range(this->accent, std::size(kAccents))) {
    const char* colour = kAccents[this->accent].colour;
    char sheet[160];
    std::snprintf(sheet, sizeof(sheet),
                  "QLabel#total { color: %s; } QListView { selection-background-color: %s; }",
                  colour, colour);
    SetStyleSheet("order_tab", sheet);
  } else if (name == "stock_sort" && in_range(this->stock_sort, std::size(kSortKeys))) {
    stock->Sort(std::string("1:") + kSortKeys[this->stock_sort]);
  } else if (name == "live_sales") {
    this->catalogue->SetLive(this->live_sales);
  } else if (this->shown_roasts.count(name)) {
    stock->ShowRoast(name, this->shown_roasts[name]);
  }
}

bool Settings::GetMenu(base::Value& v) const {
  v.Pointer(this->menu);
  return true;
}

bool Settings::GetStockShown(base::Value& v) const {
  StockList* stock = this->catalogue->GetStock();
  const size_t all = stock->GetAllItems().size();
  v.Str(("The stock table shows " + std::to_string(stock->Size()) + " of its " +
         std::to_string(all) + " rows.")
            .c_str());
  return true;
}
