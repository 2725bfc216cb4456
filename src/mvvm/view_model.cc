#include "mvvm/view_model.h"

#include "base/log.h"
#include "mvvm/eval.h"

namespace vm {

namespace {

// Stores `obj` under `name`, adopting the caller's reference and releasing a
// different object held there before.
template <typename T>
void Adopt(std::map<std::string, T*>& registry, const std::string& name, T* obj) {
  T*& slot = registry[name];
  if (slot && slot != obj) slot->Release();
  slot = obj;
}

template <typename T>
bool Drop(std::map<std::string, T*>& registry, const std::string& name) {
  auto iter = registry.find(name);
  if (iter == registry.end()) return false;
  T* obj = iter->second;
  registry.erase(iter);
  base::SafeRelease(obj);
  return true;
}

template <typename T>
void DropAll(std::map<std::string, T*>& registry) {
  std::map<std::string, T*> old;
  old.swap(registry);
  for (auto& entry : old)
    base::SafeRelease(entry.second);
}

// The line OVUI_LOG_FAILED writes, for a check made on behalf of `func`.
void LogFailedFor(const char* func, int line, const char* condition_text) {
  base::Log(__FILE__, line, 2, "%s:%d %s\n", func, line, condition_text);
}

// The entry for `name` in `registry`, or null. An unknown name is logged as
// `missing` and an empty entry as `empty`, both under the calling operation's
// own name and line, so the log shows which operation was refused.
template <typename T>
T* FindRegistered(const std::map<std::string, T*>& registry, const std::string& name,
                  const char* func, int line, const char* missing, const char* empty) {
  const auto iter = registry.find(name);
  if (iter == registry.end()) {
    LogFailedFor(func, line, missing);
    return nullptr;
  }
  if (!iter->second) LogFailedFor(func, line, empty);
  return iter->second;
}

// Variables of computed properties are this view model's properties: a string
// stays a string, anything else is read as a number. Other names (PI, ...)
// go to the evaluator's constants.
int ResolveProperty(void* ctx, const std::string& name, EvalValue& out) {
  base::Value v;
  if (!static_cast<const ViewModel*>(ctx)->GetPropW(name, v)) {
    return EvalDefaultVariable(nullptr, name, out);
  }
  if (v.Type() == base::Value::TYPE_STR) {
    const char* text = v.Str();
    out.SetString(text ? text : "");
  } else {
    out.SetNumber(v.F64());
  }
  return EVAL_OK;
}

}  // namespace

ViewModel::ViewModel(IModel* model) : model(model) {}

ViewModel::Registries& ViewModel::Registry() {
  if (!this->registries) this->registries = std::make_unique<Registries>();
  return *this->registries;
}

const ViewModel::Registries& ViewModel::Registered() const {
  static const Registries none;
  return this->registries ? *this->registries : none;
}

ViewModel::~ViewModel() {
  for (auto& entry : Registered().sub_view_models)
    Orphan(entry.second);
  Reset();
}

void ViewModel::Orphan(ViewModel* child) const {
  if (child && child->parent == this) child->SetParent(nullptr);
}

bool ViewModel::HasProp(const std::string& name) const {
  if (FindProp(name)) return true;
  return this->model ? this->model->HasProp(name) : false;
}

bool ViewModel::GetPropW(const std::string& name, base::Value& v) const {
  if (const Prop* p = FindProp(name)) return p->GetProp(this, v);
  return this->model ? this->model->GetPropW(name, v) : false;
}

bool ViewModel::SetPropW(const std::string& name, const base::Value& v) {
  if (const Prop* p = FindProp(name)) return Model::SetPropW(name, *p, v);
  OVUI_CHECK(model != NULL, false);
  return this->model->SetPropW(name, v);
}

bool ViewModel::On(const std::string& type, events::EventListener* listener) {
  if (this->model) this->model->On(type, listener);
  for (auto& entry : Registered().sub_view_models) {
    if (entry.second) entry.second->On(type, listener);
  }
  return IModel::On(type, listener);
}

bool ViewModel::Off(const std::string& type, events::EventListener* listener) {
  if (this->model) this->model->Off(type, listener);
  for (auto& entry : Registered().sub_view_models) {
    if (entry.second) entry.second->Off(type, listener);
  }
  return IModel::Off(type, listener);
}

bool ViewModel::EvalProp(const std::string& expr, base::Value& out) const {
  if (expr.find_first_of("$(") == std::string::npos) return GetPropW(expr, out);
  EvalValue result;
  const int err =
      EvalProgram::Cached(expr)->Run(&ResolveProperty, const_cast<ViewModel*>(this), result);
  if (err != EVAL_OK) {
    OVUI_LOG_FAILED(EvalErrorText(err));
    out.F64(0.0);
    return false;
  }
  EvalResultToValue(result, out);
  return true;
}

bool ViewModel::ExecuteCommand(const std::string& name, const std::string& args) {
  ICommand* cmd = FindRegistered(Registered().commands, name, __func__, __LINE__,
                                 "iter != this->commands.end()", "cmd != NULL");
  return cmd && cmd->Execute(args);
}

bool ViewModel::CanExecuteCommand(const std::string& name, const std::string& args) const {
  ICommand* cmd = FindRegistered(Registered().commands, name, __func__, __LINE__,
                                 "iter != this->commands.end()", "cmd != NULL");
  return cmd && cmd->CanExecute(args);
}

bool ViewModel::IsValidProp(const std::string& name, const base::Value& value, std::string& msg) {
  IValidator* v = FindRegistered(Registered().validators, name, __func__, __LINE__,
                                 "iter != this->validators.end()", "v != NULL");
  if (!v) return false;
  v->valid = v->IsValid(value, msg);
  return v->valid;
}

bool ViewModel::Convert(const std::string& name, const base::Value& from, base::Value& to) {
  IConverter* c = FindRegistered(Registered().converters, name, __func__, __LINE__,
                                 "iter != this->converters.end()", "c != NULL");
  return c && c->Convert(from, to);
}

bool ViewModel::ConvertBack(const std::string& name, const base::Value& from, base::Value& to) {
  IConverter* c = FindRegistered(Registered().converters, name, __func__, __LINE__,
                                 "iter != this->converters.end()", "c != NULL");
  return c && c->ConvertBack(from, to);
}

bool ViewModel::HasCommand(const std::string& name) const {
  return Registered().commands.count(name);
}

bool ViewModel::HasConverter(const std::string& name) const {
  return Registered().converters.count(name);
}

bool ViewModel::HasValidator(const std::string& name) const {
  return Registered().validators.count(name);
}

bool ViewModel::RegisterCommand(const std::string& name, ICommand* command) {
  OVUI_CHECK(command != NULL, false);
  Adopt(Registry().commands, name, command);
  return true;
}

bool ViewModel::RegisterConverter(const std::string& name, IConverter* converter) {
  OVUI_CHECK(converter != NULL, false);
  Adopt(Registry().converters, name, converter);
  return true;
}

bool ViewModel::RegisterValidator(const std::string& name, IValidator* validator) {
  OVUI_CHECK(validator != NULL, false);
  Adopt(Registry().validators, name, validator);
  return true;
}

bool ViewModel::UnRegisterCommand(const std::string& name) {
  if (!this->registries) return false;
  return Drop(this->registries->commands, name);
}

bool ViewModel::UnRegisterConverter(const std::string& name) {
  if (!this->registries) return false;
  return Drop(this->registries->converters, name);
}

bool ViewModel::UnRegisterValidator(const std::string& name) {
  if (!this->registries) return false;
  return Drop(this->registries->validators, name);
}

IModel* ViewModel::GetModel() const {
  return this->model;
}

bool ViewModel::SetModel(IModel* m) {
  if (m != this->model) {
    IModel* old = this->model;
    this->model = m;
    base::SafeRelease(old);
  }
  return true;
}

int ViewModel::GetType() const {
  return VIEW_MODEL;
}

ViewModel* ViewModel::GetParent() const {
  return this->parent;
}

bool ViewModel::SetParent(ViewModel* p) {
  this->parent = p;
  return true;
}

ViewModel* ViewModel::GetRoot() {
  ViewModel* root = this;
  for (ViewModel* p = root->GetParent(); p; p = p->GetParent())
    root = p;
  return root;
}

const ViewModel* ViewModel::GetRoot() const {
  return const_cast<ViewModel*>(this)->GetRoot();
}

bool ViewModel::GetContextMenuData(const std::string& name, MenuData& out) {
  (void)name;
  (void)out;
  return false;
}

bool ViewModel::IsPropOneWay(const std::string& name) const {
  (void)name;
  return false;
}

bool ViewModel::InitWindow() {
  return true;
}

bool ViewModel::HasValidatorError() const {
  for (const auto& entry : Registered().validators) {
    if (entry.second && !entry.second->valid) return true;
  }
  return false;
}

bool ViewModel::ClearValidatorError() {
  for (auto& entry : Registered().validators) {
    if (entry.second) entry.second->valid = true;
  }
  return true;
}

bool ViewModel::SetSubViewModel(const std::string& name, ViewModel* vm) {
  OVUI_CHECK(vm != NULL, false);
  Adopt(Registry().sub_view_models, name, vm);
  return true;
}

ViewModel* ViewModel::GetSubViewModel(const std::string& name) const {
  const auto& sub_view_models = Registered().sub_view_models;
  auto iter = sub_view_models.find(name);
  return iter == sub_view_models.end() ? nullptr : iter->second;
}

void ViewModel::Reset() {
  if (this->registries) {
    DropAll(this->registries->commands);
    DropAll(this->registries->converters);
    DropAll(this->registries->validators);
    DropAll(this->registries->sub_view_models);
  }
  SetModel(nullptr);
}

bool ViewModel::Rebind(const std::string& name, const std::string& value) {
  EventLease lease(this, "rebind");
  events::Event* e = lease.get();
  if (!e) return false;
  e->SetParam("name", name);
  e->SetParam("value", value);
  return Emit(e);
}

bool ViewModel::SetControlMenu(const std::string& name, const MenuData& menu) {
  EventLease lease(this, "set_menu");
  events::Event* e = lease.get();
  if (!e) return true;  // no view: nothing to update
  e->SetParam("name", name);
  e->SetParam("value", static_cast<void*>(const_cast<MenuData*>(&menu)));
  return Emit(e);
}

bool ViewModel::CloseWindow() {
  EventLease lease(this, "close_window");
  events::Event* e = lease.get();
  if (!e) return true;  // no view: nothing to close
  return Emit(e);
}

bool ViewModel::WindowPos(const std::string& name, int& x, int& y, int& w, int& h) {
  EventLease lease(this, "window_pos");
  events::Event* e = lease.get();
  if (!e) return false;
  e->SetParam("name", name);
  if (!Emit(e)) return false;
  x = e->GetParam("x").I32();
  y = e->GetParam("y").I32();
  w = e->GetParam("w").I32();
  h = e->GetParam("h").I32();
  return true;
}

bool ViewModel::SetWindowPos(const std::string& name, int x, int y, int w, int h) {
  EventLease lease(this, "set_window_pos");
  events::Event* e = lease.get();
  if (!e) return false;
  e->SetParam("name", name);
  e->SetParam("x", x);
  e->SetParam("y", y);
  e->SetParam("w", w);
  e->SetParam("h", h);
  return Emit(e);
}

bool ViewModel::GetStyleSheet(const std::string& name, std::string& style) {
  EventLease lease(this, "get_style_sheet");
  events::Event* e = lease.get();
  if (!e) return false;
  e->SetParam("name", name);
  if (!Emit(e)) return false;
  const char* text = e->GetParam("style_sheet").Str();
  style = text ? text : "";
  return true;
}

bool ViewModel::SetStyleSheet(const std::string& name, const std::string& style) {
  EventLease lease(this, "set_style_sheet");
  events::Event* e = lease.get();
  if (!e) return false;
  e->SetParam("name", name);
  e->SetParam("style_sheet", style);
  return Emit(e);
}

}  // namespace vm
