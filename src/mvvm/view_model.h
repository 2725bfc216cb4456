#ifndef OVUI_MVVM_VIEW_MODEL_H_
#define OVUI_MVVM_VIEW_MODEL_H_

#include <map>
#include <memory>
#include <string>

#include "mvvm/icommand.h"
#include "mvvm/iconverter.h"
#include "mvvm/ivalidator.h"
#include "mvvm/menu_data.h"
#include "mvvm/model.h"

namespace vm {

// What widgets bind to: a model of its own properties that may wrap a data
// model, with registries of commands, converters, validators and named sub
// view models.
//
// Ownership: SetModel, RegisterCommand, RegisterConverter, RegisterValidator
// and SetSubViewModel adopt the caller's reference (do not release it
// afterwards); the view model releases them on Reset and destruction. The
// parent link is weak.
//
// Properties: an own installed property shadows a model property of the same
// name. Listeners registered with On also go to the model and to the sub view
// models present at that moment (a sub view model added later does not get
// them).
class ViewModel : public Model {
 public:
  // GetType() codes.
  enum Type {
    VIEW_MODEL = 0,
    VIEW_MODEL_ARRAY = 1,
    VIEW_MODEL_ITEM = 2,
    VIEW_MODEL_TREE = 3,
  };

  // Adopts the caller's reference on `model` (which may be null).
  explicit ViewModel(IModel* model = nullptr);
  ~ViewModel() override;

  bool HasProp(const std::string& name) const override;
  bool SetPropW(const std::string& name, const base::Value& v) override;
  bool GetPropW(const std::string& name, base::Value& v) const override;
  bool On(const std::string& type, events::EventListener* listener) override;
  bool Off(const std::string& type, events::EventListener* listener) override;

  // A plain property name (no "$" and no "(") is read with GetPropW; anything
  // else is evaluated as an expression over this view model's properties
  // ($name). A numeric result is stored as an integer when it has no
  // fractional part above its truncation (so -2.5 gives -2, 2.5 stays 2.5).
  virtual bool EvalProp(const std::string& expr, base::Value& out) const;

  virtual bool ExecuteCommand(const std::string& name, const std::string& args);
  virtual bool CanExecuteCommand(const std::string& name, const std::string& args) const;
  // Runs the validator registered under `name` and remembers its verdict.
  virtual bool IsValidProp(const std::string& name, const base::Value& value, std::string& msg);
  virtual bool Convert(const std::string& name, const base::Value& from, base::Value& to);
  virtual bool ConvertBack(const std::string& name, const base::Value& from, base::Value& to);

  virtual bool HasCommand(const std::string& name) const;
  virtual bool HasConverter(const std::string& name) const;
  virtual bool HasValidator(const std::string& name) const;
  virtual bool RegisterCommand(const std::string& name, ICommand* command);
  virtual bool RegisterConverter(const std::string& name, IConverter* converter);
  virtual bool RegisterValidator(const std::string& name, IValidator* validator);
  // Release the registered object; false when nothing is registered there.
  virtual bool UnRegisterCommand(const std::string& name);
  virtual bool UnRegisterConverter(const std::string& name);
  virtual bool UnRegisterValidator(const std::string& name);

  virtual IModel* GetModel() const;
  // Releases the current model (if different) and adopts `m`.
  virtual bool SetModel(IModel* m);
  virtual int GetType() const;
  virtual ViewModel* GetParent() const;
  virtual bool SetParent(ViewModel* p);
  // The top of the parent chain (this view model when it has no parent).
  virtual ViewModel* GetRoot();
  virtual const ViewModel* GetRoot() const;

  // Hooks for subclasses.
  // Fills `out` with the context menu of the widget named `name`; false: none.
  virtual bool GetContextMenuData(const std::string& name, MenuData& out);
  // True makes the bindings of `name` read-only.
  virtual bool IsPropOneWay(const std::string& name) const;
  // Called once the window bound to this view model is set up.
  virtual bool InitWindow();

  // True while any validator's last check failed.
  bool HasValidatorError() const;
  // Marks every validator valid again.
  bool ClearValidatorError();

  // Adopts `vm` under `name`, releasing a different one held there. The
  // caller sets the child's parent.
  bool SetSubViewModel(const std::string& name, ViewModel* vm);
  ViewModel* GetSubViewModel(const std::string& name) const;
  const std::map<std::string, ViewModel*>& GetAllSubViewModel() const {
    return Registered().sub_view_models;
  }

  // Releases every registered object, sub view model and the model. Own
  // installed properties and listeners stay.
  void Reset();

  // View requests: events on this view model's own emitter that the view
  // (the binding context) carries out synchronously. "name" names the control
  // or window. With nobody listening, CloseWindow and SetControlMenu count as
  // done (true) and the others fail; otherwise each returns Emit's result
  // (false while events are blocked). Answers are read back only when Emit
  // succeeded.
  bool Rebind(const std::string& name, const std::string& value);
  // `menu` is passed by pointer and is valid only during the call.
  bool SetControlMenu(const std::string& name, const MenuData& menu);
  bool CloseWindow();
  bool WindowPos(const std::string& name, int& x, int& y, int& w, int& h);
  bool SetWindowPos(const std::string& name, int x, int y, int w, int h);
  bool GetStyleSheet(const std::string& name, std::string& style);
  bool SetStyleSheet(const std::string& name, const std::string& style);

 protected:
  // Clears `child`'s parent link when it names this view model: called on
  // the way out, so that a child its holder keeps never points at a
  // destroyed parent.
  void Orphan(ViewModel* child) const;

  IModel* model = nullptr;
  ViewModel* parent = nullptr;
  // The four registries, allocated on the first registration: most view
  // models (every row of a list) never register anything.
  struct Registries {
    std::map<std::string, ICommand*> commands;
    std::map<std::string, IConverter*> converters;
    std::map<std::string, IValidator*> validators;
    std::map<std::string, ViewModel*> sub_view_models;
  };
  // For reading: an empty set when nothing was ever registered.
  const Registries& Registered() const;
  // For registering: created on first use.
  Registries& Registry();

  std::unique_ptr<Registries> registries;
};

}  // namespace vm

#endif  // OVUI_MVVM_VIEW_MODEL_H_
