#include "qt/widget_binder.h"

#include <QAbstractItemView>
#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QStatusBar>
#include <QStringList>
#include <QTableView>
#include <QTreeView>
#include <QVariant>
#include <QWidget>

#include "base/log.h"
#include "mvvm/command_binding.h"
#include "mvvm/data_binding_parser.h"
#include "mvvm/view_model_array.h"
#include "mvvm/view_model_htable.h"
#include "mvvm/view_model_tree.h"
#include "qt/binding_context.h"
#include "qt/chart_binding.h"
#include "qt/data_binding_item.h"
#include "qt/header_view_ext.h"
#include "qt/htable_model.h"
#include "qt/list_model.h"
#include "qt/menu_container.h"
#include "qt/pop_menu.h"
#include "qt/table_model.h"
#include "qt/tree_model.h"

namespace vm {

namespace {

std::string PropertyText(QObject* obj, const char* name) {
  const QVariant v = obj->property(name);
  return v.isValid() ? v.toString().toUtf8().toStdString() : std::string();
}

// A rule worth parsing: longer than "{}" and opening with a brace.
bool IsRule(const std::string& text) {
  return text.size() > 2 && text[0] == '{';
}

bool WritesBack(const DataBinding* rule) {
  return (rule->mode == DataBinding::MODE_TWO_WAY ||
          rule->mode == DataBinding::MODE_ONE_WAY_TO_MODEL) &&
         rule->trigger != DataBinding::TRIGGER_EXPLICIT;
}

bool Connect(QWidget* widget, const char* signal, BindingContext* ctx) {
  return QObject::connect(widget, signal, ctx, SLOT(OnChanged()));
}

// The widget's rule for `prop`, parsed; null (nothing bound) without one.
DataBinding* ParseRule(QWidget* widget) {
  const std::string text = BindingContext::RuleText(widget);
  return text.empty() ? nullptr : DataBindingParser::FromString(text);
}

}  // namespace

void AttachContextMenu(QWidget* view, ViewModel* vm) {
  // A child of the view: it goes with it, before the view model the view's
  // item model keeps alive.
  auto* menu = new PopMenuSupport(view, vm, true);
  menu->setParent(view);
}

bool DisplayWidgetBinder::Bind(BindingContext* ctx, QWidget* widget, ViewModel* vm) {
  OVUI_CHECK(ctx != NULL && widget != NULL && vm != NULL, false);
  DataBinding* rule = ParseRule(widget);
  if (!rule) return false;
  rule->AsOneWay();
  return ctx->AddDataBinding(new DataBindingItemQt(widget, vm, rule, this->prop, true));
}

bool InputWidgetBinder::Bind(BindingContext* ctx, QWidget* widget, ViewModel* vm) {
  OVUI_CHECK(ctx != NULL && widget != NULL && vm != NULL, false);
  DataBinding* rule = ParseRule(widget);
  if (!rule) return false;
  ctx->AddDataBinding(new DataBindingItemQt(widget, vm, rule, this->prop, true));
  if (WritesBack(rule)) {
    if (rule->trigger == DataBinding::TRIGGER_CHANGING) ConnectWidgetChangingEvents(ctx, widget);
    ConnectWidgetChangedEvents(ctx, widget);
  }
  return true;
}

bool InputWidgetBinder::ConnectWidgetChangingEvents(BindingContext* ctx, QWidget* widget) {
  if (widget->inherits("QDoubleSpinBox")) {
    Connect(widget, SIGNAL(valueChanged(double)), ctx);
  } else if (widget->inherits("QSpinBox") || widget->inherits("QAbstractSlider")) {
    Connect(widget, SIGNAL(valueChanged(int)), ctx);
  } else if (widget->inherits("QLineEdit")) {
    Connect(widget, SIGNAL(textEdited(const QString&)), ctx);
  } else if (widget->inherits("QDateTimeEdit")) {  // time and date editors too
    Connect(widget, SIGNAL(dateTimeChanged(const QDateTime&)), ctx);
  } else if (widget->inherits("QPlainTextEdit") || widget->inherits("QTextEdit")) {
    Connect(widget, SIGNAL(textChanged()), ctx);
  }
  return true;
}

bool InputWidgetBinder::ConnectWidgetChangedEvents(BindingContext* ctx, QWidget* widget) {
  if (widget->inherits("QAbstractSpinBox") || widget->inherits("QLineEdit")) {
    Connect(widget, SIGNAL(editingFinished()), ctx);
  } else if (widget->inherits("QCheckBox") || widget->inherits("QRadioButton")) {
    Connect(widget, SIGNAL(toggled(bool)), ctx);
  } else if (widget->inherits("QAbstractSlider")) {
    Connect(widget, SIGNAL(sliderReleased()), ctx);
  } else if (widget->inherits("QStackedWidget") || widget->inherits("QTabWidget")) {
    Connect(widget, SIGNAL(currentChanged(int)), ctx);
  }
  // Text editors have no "edit finished" signal: with Trigger=Changed they
  // never write back, only with Changing or an explicit model update.
  return true;
}

bool ComboBoxWidgetBinder::Bind(BindingContext* ctx, QWidget* widget, ViewModel* vm) {
  OVUI_CHECK(ctx != NULL && widget != NULL && vm != NULL, false);
  const std::string options = PropertyText(widget, "binding.options");
  if (IsRule(options)) {
    if (DataBinding* rule = DataBindingParser::FromString(options)) {
      rule->AsOneWay();
      ctx->AddDataBinding(new DataBindingItemComboBox(widget, vm, rule, "options", true));
    }
  }
  const std::string value = PropertyText(widget, "binding.value");
  DataBinding* rule = IsRule(value) ? DataBindingParser::FromString(value) : nullptr;
  if (!rule) return true;
  auto* item = new DataBindingItemComboBox(widget, vm, rule, "currentText", true);
  // A number selects by position, anything else by text.
  base::Value current;
  if (vm->EvalProp(rule->path, current) && current.Type() == base::Value::TYPE_INT) {
    item->prop = "currentIndex";
  }
  ctx->AddDataBinding(item);
  if (WritesBack(rule)) {
    // Changed and Changing behave alike here.
    Connect(widget, SIGNAL(activated(QString)), ctx);
    Connect(widget, SIGNAL(editTextChanged(QString)), ctx);
    Connect(widget, SIGNAL(currentTextChanged(QString)), ctx);
  }
  return true;
}

bool ListViewWidgetBinder::Bind(BindingContext* ctx, QWidget* widget, ViewModel* vm) {
  OVUI_CHECK(ctx != NULL && widget != NULL && vm != NULL, false);
  OVUI_CHECK(vm->GetType() == ViewModel::VIEW_MODEL_ARRAY, false);
  auto* view = qobject_cast<QAbstractItemView*>(widget);
  if (!view) return false;
  if (!ListModelOverViewModel::Create(static_cast<ViewModelArray*>(vm), view)) return false;
  AttachContextMenu(view, vm);
  return true;
}

bool TreeViewWidgetBinder::Bind(BindingContext* ctx, QWidget* widget, ViewModel* vm) {
  OVUI_CHECK(ctx != NULL && widget != NULL && vm != NULL, false);
  OVUI_CHECK(vm->GetType() == ViewModel::VIEW_MODEL_TREE, false);
  auto* view = qobject_cast<QTreeView*>(widget);
  if (!view) return false;
  if (!TreeModelOverViewModel::Create(static_cast<ViewModelTree*>(vm), view)) return false;
  AttachContextMenu(view, vm);
  return true;
}

bool TableViewWidgetBinder::Bind(BindingContext* ctx, QWidget* widget, ViewModel* vm) {
  OVUI_CHECK(ctx != NULL && widget != NULL && vm != NULL, false);
  auto* view = qobject_cast<QTableView*>(widget);
  if (!view) return false;
  bool made = false;
  if (!widget->property("binding.attribute").isValid()) {
    auto* a = dynamic_cast<ViewModelArray*>(vm);
    OVUI_CHECK(a, false);
    // Before the model, which connects to the header it finds.
    if (PropertyText(widget, "binding.header") == "ext") QHeaderViewExt::Install(view);
    made = TableModelOverViewModel::Create(a, view) != nullptr;
  } else {
    auto* ht = dynamic_cast<ViewModelHTable*>(vm);
    OVUI_CHECK(ht, false);
    made = HighTableModelOverViewModel::Create(ht, view) != nullptr;
  }
  if (made) AttachContextMenu(view, vm);
  return made;
}

bool MenuWidgetBinder::Bind(BindingContext* ctx, QWidget* widget, ViewModel* vm) {
  OVUI_CHECK(ctx != NULL && widget != NULL && vm != NULL, false);
  for (QAction* action : widget->actions()) {
    const QVariant rule = action->property("binding.command");
    if (!rule.isValid()) continue;
    auto* item = new CommandBindingItemQt(
        action, vm, CommandBindingParser::FromString(rule.toString().toUtf8().toStdString()), true);
    // Built for the action, which is no widget: its Attach fails harmlessly.
    item->menu_support = new PopMenuSupport(nullptr, vm, false);
    item->menu_support->Attach(action, vm);
    // An action shared by a menu and a tool bar is connected once.
    if (!action->property("cmd-binding").isValid()) {
      QObject::connect(action, SIGNAL(triggered(bool)), ctx, SLOT(OnCommand()));
    }
    ctx->AddCommandBinding(item);
  }
  return true;
}

bool StatusBarWidgetBinder::Bind(BindingContext* ctx, QWidget* widget, ViewModel* vm) {
  OVUI_CHECK(ctx != NULL && widget != NULL && vm != NULL, false);
  auto* bar = qobject_cast<QStatusBar*>(widget);
  if (!bar) return false;
  // One rule per line, one field per rule, in order.
  const QStringList lines = (widget->property("binding.value").toString() + "\n").split('\n');
  for (const QString& line : lines) {
    if (line.size() <= 3) continue;
    DataBinding* rule = DataBindingParser::FromString(line.toUtf8().toStdString());
    if (!rule) continue;
    rule->AsOneWay();
    auto* label = new QLabel(bar);
    label->setMinimumSize(label->sizeHint());
    label->setAlignment(Qt::AlignHCenter);
    bar->addWidget(label, 0);
    ctx->AddDataBinding(new DataBindingItemQt(label, vm, rule, "text", true));
  }
  return true;
}

bool ChartWidgetBinder::Bind(BindingContext* ctx, QWidget* widget, ViewModel* vm) {
  OVUI_CHECK(ctx != NULL && widget != NULL && vm != NULL, false);
  DataBinding* rule = ParseRule(widget);
  if (!rule) return false;
  rule->AsOneWay();
  return ctx->AddDataBinding(new DataBindingItemChart(widget, vm, rule, this->prop, true));
}

bool MenuContainerBinder::Bind(BindingContext* ctx, QWidget* widget, ViewModel* vm) {
  OVUI_CHECK(ctx != NULL && widget != NULL && vm != NULL, false);
  auto* container = qobject_cast<CMenuContainer*>(widget);
  OVUI_CHECK(container != NULL, false);
  return container->bindToVm(vm);
}

namespace {

// The binders of the library's widget classes, registered once at load.
struct Registrar {
  Registrar() {
    struct Row {
      const char* class_name;
      WidgetBinder* binder;
    };
    const Row rows[] = {
        {"QLabel", new DisplayWidgetBinder("text")},
        {"QLCDNumber", new DisplayWidgetBinder("value")},
        {"QTextBrowser", new DisplayWidgetBinder("html")},
        {"QProgressBar", new DisplayWidgetBinder("value")},
        {"QGroupBox", new DisplayWidgetBinder("title")},
        {"QPushButton", new DisplayWidgetBinder("text")},
        {"QTimeEdit", new InputWidgetBinder("dateTime")},
        {"QDateEdit", new InputWidgetBinder("dateTime")},
        {"QDateTimeEdit", new InputWidgetBinder("dateTime")},
        {"QStackedWidget", new InputWidgetBinder("currentIndex")},
        {"QTabWidget", new InputWidgetBinder("currentIndex")},
        {"QLineEdit", new InputWidgetBinder("text")},
        {"QRadioButton", new InputWidgetBinder("checked")},
        {"QCheckBox", new InputWidgetBinder("checked")},
        {"QPlainTextEdit", new InputWidgetBinder("plainText")},
        {"QTextEdit", new InputWidgetBinder("html")},
        {"QAbstractSpinBox", new InputWidgetBinder("value")},
        {"QSlider", new InputWidgetBinder("value")},
        {"QDial", new InputWidgetBinder("value")},
        {"QDoubleSpinBox", new InputWidgetBinder("value")},
        {"QSpinBox", new InputWidgetBinder("value")},
        {"QMenu", new MenuWidgetBinder()},
        {"QToolBar", new MenuWidgetBinder()},
        {"QStatusBar", new StatusBarWidgetBinder()},
        {"QComboBox", new ComboBoxWidgetBinder()},
        {"QListView", new ListViewWidgetBinder()},
        {"QTableView", new TableViewWidgetBinder()},
        {"QTreeView", new TreeViewWidgetBinder()},
        {"QtCharts::QChartView", new ChartWidgetBinder("value")},
        {"ChartViewEx", new ChartWidgetBinder("value")},
        {"CMenuContainer", new MenuContainerBinder()},
    };
    for (const Row& row : rows)
      BindingContext::RegisterWidgetBinder(row.class_name, row.binder);
  }
};

const Registrar registrar;

}  // namespace

}  // namespace vm
