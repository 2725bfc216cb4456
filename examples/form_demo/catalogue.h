#ifndef OVUI_EXAMPLES_FORM_DEMO_CATALOGUE_H_
#define OVUI_EXAMPLES_FORM_DEMO_CATALOGUE_H_

#include <memory>
#include <string>
#include <vector>

#include "ovui.h"

// The view models of the "Catalogue" tab of form_demo.ui: a product tree
// with a detail form, the stock table, the monthly figures and a chart. Like
// the order form they know nothing of the widgets; only the sales ticker
// uses the Qt layer's timer, and only in catalogue.cc.

namespace vm {
class Timer;
}

// A row of the product tree: a category, or a coffee under one. Every node
// answers "name", "kind", "price_text", "stock_text" and "notes", so the
// detail form bound to the tree root shows whichever is selected; coffees
// also have "price", "origin" and "in_stock" (the tree's check column).
class CatalogueNode : public vm::ViewModelTreeExt {
 public:
  // A category.
  explicit CatalogueNode(const std::string& name);
  // A coffee.
  CatalogueNode(const std::string& name, const std::string& origin, double price, bool in_stock);

  bool IsCategory() const { return this->category; }
  // Appends a coffee to this category and returns it.
  CatalogueNode* AddCoffee(const std::string& name, const std::string& origin, double price,
                           bool in_stock);

  // Case-blind: a node passes when its name or origin contains the rule.
  bool FilterOne(vm::ViewModel* node, const std::string& rule) override;

  std::string name;
  std::string origin;
  double price = 0;
  bool in_stock = false;

 private:
  bool GetKind(base::Value& v) const;
  bool GetPriceText(base::Value& v) const;
  bool GetStockText(base::Value& v) const;
  bool GetNotes(base::Value& v) const;

  bool category;
};

// The stock table: one row per bag size of a coffee. Rows filter on their
// product name and roast and sort by any column; "filter" (the header
// filter's text) filters as it is written. Rows also have "shelf", their
// place in the order they were added.
class StockList : public vm::ViewModelArrayExt {
 public:
  StockList();

  // Appends a row; `roast` is one of the "roasts" choices.
  void Append(const std::string& name, const std::string& roast, int bags, double price);
  // Hides or shows the rows of one roast.
  void ShowRoast(const std::string& roast, bool shown);
  // The rule is the filter text, then one hidden roast per line.
  bool FilterOne(vm::ViewModel* item, const std::string& rule) override;

  std::string roasts;  // the combo editor's choices, one per line

 private:
  bool GetFilter(base::Value& v) const;
  bool SetFilter(const base::Value& v);
  void Refilter();

  std::string text;
  std::vector<std::string> hidden_roasts;
};

// The monthly figures, one record per month, shown on its side: months are
// columns, fields are rows. "orders" edits; "average" follows from it.
class MonthlyFigures : public vm::ViewModelHTable {
 public:
  MonthlyFigures();

  unsigned int Size() const override;
  bool GetCell(unsigned int row, const std::string& name, base::Value& value) const override;
  bool SetCell(unsigned int row, const std::string& name, const base::Value& value) override;

  // Books a sale of `amount` in the last month.
  void Book(double amount);

  struct Month {
    std::string name;
    double revenue;
    int orders;
    double target;
  };
  const std::vector<Month>& Months() const { return this->months; }

 private:
  std::vector<Month> months;
};

// The tab's view model: sub view models "products" (the tree), "stock" and
// "months", the tree filter "product_filter" and "chart", a pointer to the
// chart's data. Once the window is up, a sale is booked every
// `tick_ms` milliseconds and the chart is announced again.
class Catalogue : public vm::ViewModel {
 public:
  explicit Catalogue(int tick_ms = 1000);
  ~Catalogue() override;

  CatalogueNode* GetProducts() const { return this->products; }
  StockList* GetStock() const { return this->stock; }
  MonthlyFigures* GetMonths() const { return this->months; }
  const vm::ChartData& GetChartData() const { return this->chart; }

  bool InitWindow() override;
  // Books the next sale and redraws the chart.
  void Tick();
  // Pauses or resumes the sales ticker.
  void SetLive(bool on);
  bool IsLive() const { return this->live; }

 private:
  class Ticker;

  bool GetFilter(base::Value& v) const;
  bool SetFilter(const base::Value& v);
  bool GetChart(base::Value& v) const;
  // Brings the chart data in line with the figures.
  void FillChart();

  CatalogueNode* products = nullptr;  // held in the sub view model registry
  StockList* stock = nullptr;
  MonthlyFigures* months = nullptr;
  vm::ChartData chart;
  std::string revenue_id;
  std::string target_id;
  int tick_ms;
  bool live = true;
  unsigned sales = 0;
  std::unique_ptr<Ticker> ticker;
  // Declared after its handler, so destroyed before it.
  std::unique_ptr<vm::Timer> timer;
};

#endif  // OVUI_EXAMPLES_FORM_DEMO_CATALOGUE_H_
