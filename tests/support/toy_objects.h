#ifndef OVUI_TESTS_SUPPORT_TOY_OBJECTS_H_
#define OVUI_TESTS_SUPPORT_TOY_OBJECTS_H_

#include <string>
#include <vector>

#include "mvvm/icommand.h"
#include "mvvm/iconverter.h"
#include "mvvm/ivalidator.h"

namespace ovui_test {

// Counts its own destruction through a caller-owned counter.
template <typename Base>
class Tracked : public Base {
 public:
  explicit Tracked(int* destroyed = nullptr) : destroyed(destroyed) {}
  ~Tracked() override {
    if (destroyed) ++*destroyed;
  }

 private:
  int* destroyed;
};

// Records the arguments it ran with; `enabled` answers CanExecute.
class ToyCommand : public Tracked<vm::ICommand> {
 public:
  using Tracked::Tracked;
  bool CanExecute(const std::string&) override { return enabled; }
  bool Execute(const std::string& args) override {
    runs.push_back(args);
    return true;
  }
  std::vector<std::string> runs;
  bool enabled = true;
};

// Multiplies numbers by `factor` for the view and divides on the way back;
// refuses non-numbers both ways.
class ScaleConverter : public Tracked<vm::IConverter> {
 public:
  explicit ScaleConverter(long long factor = 10, int* destroyed = nullptr)
      : Tracked(destroyed), factor(factor) {}
  bool Convert(const base::Value& from, base::Value& to) override {
    if (from.Type() != base::Value::TYPE_INT) return false;
    to.I64(from.I64() * factor);
    return true;
  }
  bool ConvertBack(const base::Value& from, base::Value& to) override {
    if (from.Type() != base::Value::TYPE_INT) return false;
    to.I64(from.I64() / factor);
    return true;
  }

 private:
  long long factor;
};

// Accepts integers in [min, max]; otherwise says "must be between min and max".
class RangeValidator : public Tracked<vm::IValidator> {
 public:
  RangeValidator(long long min, long long max, int* destroyed = nullptr)
      : Tracked(destroyed), min(min), max(max) {}
  bool IsValid(const base::Value& v, std::string& msg) override {
    if (v.I64() >= min && v.I64() <= max) return true;
    msg = "must be between " + std::to_string(min) + " and " + std::to_string(max);
    return false;
  }

 private:
  long long min, max;
};

}  // namespace ovui_test

#endif  // OVUI_TESTS_SUPPORT_TOY_OBJECTS_H_
