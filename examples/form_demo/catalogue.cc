#include "catalogue.h"

#include <algorithm>
#include <cstdio>

#include "order_form.h"
#include "qt/timer.h"

namespace {

std::string Lower(const std::string& text) {
  return base::StrUtils::ToLower(text);
}

bool ContainsText(const std::string& text, const std::string& part) {
  return Lower(text).find(Lower(part)) != std::string::npos;
}

// Refuses product names shorter than three letters.
class NameValidator : public vm::IValidator {
 public:
  bool IsValid(const base::Value& v, std::string& msg) override {
    const char* text = v.Str();
    if (text && std::string(text).find_first_not_of(' ') != std::string::npos &&
        std::string(text).size() >= 3) {
      return true;
    }
    msg = "A product needs a name of at least 3 letters.";
    return false;
  }
};

// Refuses a negative stock or more bags than the shelf holds.
class BagsValidator : public vm::IValidator {
 public:
  bool IsValid(const base::Value& v, std::string& msg) override {
    const long long bags = v.I64();
    if (bags >= 0 && bags <= 99) return true;
    msg = "Between 0 and 99 bags, please.";
    return false;
  }
};

// Whole euros for the monthly figures: 4210.5 shows as "€ 4,211".
class EurosConverter : public vm::IConverter {
 public:
  bool Convert(const base::Value& from, base::Value& to) override {
    const long long euros = static_cast<long long>(from.F64() + 0.5);
    char text[32];
    if (euros >= 1000) {
      std::snprintf(text, sizeof(text), "\xE2\x82\xAC %lld,%03lld", euros / 1000, euros % 1000);
    } else {
      std::snprintf(text, sizeof(text), "\xE2\x82\xAC %lld", euros);
    }
    to.Str(text);
    return true;
  }
  bool ConvertBack(const base::Value&, base::Value&) override { return false; }
};

// One row of the stock table.
class StockRow : public vm::ViewModelItem {
 public:
  StockRow(int shelf, const std::string& name, const std::string& roast, int bags, double price)
      : shelf(shelf), name(name), roast(roast), bags(bags), price(price) {
    InstallProp("shelf", &this->shelf);
    InstallProp("name", &this->name);
    InstallProp("roast", &this->roast);
    InstallProp("bags", &this->bags);
    InstallProp("price", &this->price);
    // Cell edits run the row's own validators and converters.
    RegisterValidator("name", new NameValidator());
    RegisterValidator("bags", new BagsValidator());
    RegisterConverter("money", NewMoneyConverter());
  }
  int shelf;
  std::string name;
  std::string roast;
  int bags;
  double price;
};

// Sales booked by the ticker, in turn.
const double kSales[] = {18.50, 42.00, 25.80, 9.20, 33.60, 61.40, 12.90};

}  // namespace

// Books a sale on every tick of the catalogue's timer.
class Catalogue::Ticker : public vm::TimerHandler {
 public:
  explicit Ticker(Catalogue* catalogue) : catalogue(catalogue) {}
  bool OnTimer(const std::string&) override {
    this->catalogue->Tick();
    return true;
  }

 private:
  Catalogue* catalogue;
};

CatalogueNode::CatalogueNode(const std::string& name) : name(name), category(true) {
  InstallProp("name", &this->name);
  InstallProp("origin", &this->origin);
  InstallProp("kind", &CatalogueNode::GetKind, nullptr);
  InstallProp("price_text", &CatalogueNode::GetPriceText, nullptr);
  InstallProp("stock_text", &CatalogueNode::GetStockText, nullptr);
}

CatalogueNode::CatalogueNode(const std::string& name, const std::string& origin, double price,
                             bool in_stock)
    : CatalogueNode(name) {
  this->origin = origin;
  this->price = price;
  this->in_stock = in_stock;
  this->category = false;
  InstallProp("price", &this->price);
  InstallProp("in_stock", &this->in_stock);
}

CatalogueNode* CatalogueNode::AddCoffee(const std::string& coffee, const std::string& from,
                                        double euros, bool available) {
  auto* node = new CatalogueNode(coffee, from, euros, available);
  Add(node);
  return node;
}

bool CatalogueNode::FilterOne(vm::ViewModel* node, const std::string& rule) {
  const auto* n = static_cast<const CatalogueNode*>(node);
  return ContainsText(n->name, rule) || ContainsText(n->origin, rule);
}

bool CatalogueNode::GetKind(base::Value& v) const {
  const auto* parent = dynamic_cast<const CatalogueNode*>(GetParent());
  v.Str(this->category || !parent ? "Category" : parent->name.c_str());
  return true;
}

bool CatalogueNode::GetPriceText(base::Value& v) const {
  if (this->category) {
    v.Str("");
    return true;
  }
  char text[32];
  std::snprintf(text, sizeof(text), "\xE2\x82\xAC %.2f", this->price);
  v.Str(text);
  return true;
}

bool CatalogueNode::GetStockText(base::Value& v) const {
  if (!this->category) {
    v.Str(this->in_stock ? "In stock" : "Sold out");
    return true;
  }
  // Counted over every coffee, also those the filter hides.
  auto& all = const_cast<CatalogueNode*>(this)->GetAllItems();
  size_t available = 0;
  for (vm::ViewModel* child : all) {
    if (static_cast<const CatalogueNode*>(child)->in_stock) ++available;
  }
  v.Str((std::to_string(available) + " of " + std::to_string(all.size()) + " in stock").c_str());
  return true;
}

StockList::StockList() {
  this->roasts = "Light\nMedium\nDark";
  InstallProp("roasts", &this->roasts);
  InstallProp("filter", &StockList::GetFilter, &StockList::SetFilter);
}

void StockList::Append(const std::string& name, const std::string& roast, int bags, double price) {
  const int shelf = static_cast<int>(GetAllItems().size());
  AddWithoutSetCurrent(new StockRow(shelf, name, roast, bags, price), -1, true);
}

void StockList::ShowRoast(const std::string& roast, bool shown) {
  auto& hidden = this->hidden_roasts;
  const auto it = std::find(hidden.begin(), hidden.end(), roast);
  if (shown == (it == hidden.end())) return;
  if (shown) {
    hidden.erase(it);
  } else {
    hidden.push_back(roast);
  }
  Refilter();
}

bool StockList::FilterOne(vm::ViewModel* item, const std::string& rule) {
  const auto* row = static_cast<StockRow*>(item);
  size_t end = rule.find('\n');
  if (!ContainsText(row->name, rule.substr(0, end))) return false;
  while (end != std::string::npos) {
    const size_t start = end + 1;
    end = rule.find('\n', start);
    if (rule.substr(start, end - start) == row->roast) return false;
  }
  return true;
}

void StockList::Refilter() {
  // With every roast shown an empty text is no rule at all.
  std::string rule = this->text;
  for (const std::string& roast : this->hidden_roasts)
    rule += '\n' + roast;
  Filter(rule);
}

bool StockList::GetFilter(base::Value& v) const {
  v.Str(this->text.c_str());
  return true;
}

bool StockList::SetFilter(const base::Value& v) {
  const char* text = v.Str();
  this->text = text ? text : "";
  Refilter();
  return true;
}

MonthlyFigures::MonthlyFigures() {
  this->months = {
      {"Jan", 4210.50, 212, 4000}, {"Feb", 3870.20, 195, 4000}, {"Mar", 4960.00, 240, 4500},
      {"Apr", 5320.80, 251, 4500}, {"May", 5050.30, 238, 5000}, {"Jun", 2405.60, 118, 5000},
  };
  RegisterConverter("euros", new EurosConverter());
  RegisterConverter("money", NewMoneyConverter());
}

unsigned int MonthlyFigures::Size() const {
  return static_cast<unsigned int>(this->months.size());
}

bool MonthlyFigures::GetCell(unsigned int row, const std::string& name, base::Value& value) const {
  if (row >= Size()) return false;
  const Month& m = this->months[row];
  if (name == "month") {
    value.Str(m.name.c_str());
  } else if (name == "revenue") {
    value = base::Value(m.revenue);
  } else if (name == "orders") {
    value = base::Value(m.orders);
  } else if (name == "average") {
    value = base::Value(m.orders > 0 ? m.revenue / m.orders : 0.0);
  } else if (name == "met") {
    value = base::Value(m.revenue >= m.target);
  } else {
    return false;
  }
  return true;
}

bool MonthlyFigures::SetCell(unsigned int row, const std::string& name, const base::Value& value) {
  if (row >= Size() || name != "orders" || value.I64() < 0) return false;
  this->months[row].orders = static_cast<int>(value.I64());
  Update();  // the average follows
  return true;
}

void MonthlyFigures::Book(double amount) {
  Month& last = this->months.back();
  last.revenue += amount;
  ++last.orders;
  Update();
}

Catalogue::Catalogue(int tick_ms) : tick_ms(tick_ms) {
  this->products = new CatalogueNode("Catalogue");
  CatalogueNode* blends = new CatalogueNode("Blends");
  this->products->Add(blends);
  blends->AddCoffee("House blend", "Brazil, Colombia", 8.50, true);
  blends->AddCoffee("Espresso Roma", "Brazil, India", 9.80, true);
  blends->AddCoffee("Breakfast blend", "Honduras, Peru", 7.90, false);
  auto* single = new CatalogueNode("Single origin");
  this->products->Add(single);
  single->AddCoffee("Ethiopia Yirgacheffe", "Ethiopia", 12.90, true);
  single->AddCoffee("Colombia Huila", "Colombia", 11.40, true);
  single->AddCoffee("Kenya AA", "Kenya", 14.20, false);
  auto* decaf = new CatalogueNode("Decaf");
  this->products->Add(decaf);
  decaf->AddCoffee("Decaf Colombia", "Colombia", 9.20, true);
  decaf->AddCoffee("Swiss water decaf", "Peru", 10.10, true);
  blends->SetCurrent(0);  // the detail form starts on the house blend
  SetSubViewModel("products", this->products);

  this->stock = new StockList();
  this->stock->Append("House blend", "Medium", 6, 8.50);
  this->stock->Append("Espresso Roma", "Dark", 4, 9.80);
  this->stock->Append("Breakfast blend", "Light", 0, 7.90);
  this->stock->Append("Ethiopia Yirgacheffe", "Light", 7, 12.90);
  this->stock->Append("Colombia Huila", "Medium", 3, 11.40);
  this->stock->Append("Kenya AA", "Light", 0, 14.20);
  this->stock->Append("Decaf Colombia", "Medium", 5, 9.20);
  this->stock->Append("Swiss water decaf", "Dark", 2, 10.10);
  SetSubViewModel("stock", this->stock);

  this->months = new MonthlyFigures();
  SetSubViewModel("months", this->months);

  InstallProp("product_filter", &Catalogue::GetFilter, &Catalogue::SetFilter);
  InstallProp("chart", &Catalogue::GetChart, nullptr);
  this->chart.title = "Revenue per month (k\xE2\x82\xAC)";
  this->revenue_id = this->chart.AddSeries("Revenue", vm::ChartSeriesData::BAR).id;
  this->target_id = this->chart.AddSeries("Target", vm::ChartSeriesData::BAR).id;
  FillChart();
}

Catalogue::~Catalogue() = default;

bool Catalogue::InitWindow() {
  this->products->ExpandAll();
  if (!this->timer) {
    this->ticker = std::make_unique<Ticker>(this);
    this->timer = std::make_unique<vm::Timer>("sales", this->tick_ms, this->ticker.get());
  }
  if (this->live) this->timer->Start();
  return true;
}

void Catalogue::SetLive(bool on) {
  this->live = on;
  if (!this->timer) return;  // starts with the window
  if (on) {
    this->timer->Start();
  } else {
    this->timer->Stop();
  }
}

void Catalogue::Tick() {
  this->months->Book(kSales[this->sales++ % (sizeof(kSales) / sizeof(kSales[0]))]);
  FillChart();
  // The pointer stays the same; the chart view re-reads what it points to.
  const base::Value data(static_cast<void*>(&this->chart));
  EmitPropChange("chart", data, data);
}

bool Catalogue::GetFilter(base::Value& v) const {
  v.Str(this->products->GetFilterRule().c_str());
  return true;
}

bool Catalogue::SetFilter(const base::Value& v) {
  const char* text = v.Str();
  this->products->Filter(text ? text : "");
  this->products->ExpandAll();  // matches under collapsed categories show too
  return true;
}

bool Catalogue::GetChart(base::Value& v) const {
  v.Pointer(const_cast<vm::ChartData*>(&this->chart));
  return true;
}

void Catalogue::FillChart() {
  vm::ChartSeriesData* revenue = this->chart.FindSeries(this->revenue_id);
  vm::ChartSeriesData* target = this->chart.FindSeries(this->target_id);
  revenue->values.clear();
  target->values.clear();
  for (const MonthlyFigures::Month& m : this->months->Months()) {
    revenue->values.emplace_back(m.name, m.revenue / 1000);
    target->values.emplace_back(m.name, m.target / 1000);
  }
}
