#ifndef OVUI_MVVM_MODEL_H_
#define OVUI_MVVM_MODEL_H_

#include <cstddef>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "mvvm/imodel.h"

namespace vm {

// A model whose properties are installed at run time, each bound either to a
// variable in memory or to a getter/setter pair of member functions.
//
// Raw variables are described by a type name and a size. Accepted names are
// the one-letter type codes that typeid(T).name() prints with GCC and Clang
// ("a" signed char, "b" bool, "h" unsigned char, "s" short, "t" unsigned
// short, "i" int, "j" unsigned int, "l"/"x" 64-bit (or 32-bit "l" of size 4),
// "m"/"y" unsigned 64-bit, "f" float, "d" double), std::string's type name,
// and the spelled-out names "signed char", "bool", "unsigned char", "short",
// "unsigned short", "int", "unsigned int", "__int64", "unsigned __int64",
// "float", "double". Any other name is classified by its size (1, 2, 4 or 8
// bytes as a signed integer); other sizes, and a size that does not match
// the type, stop the program.
//
// The model never owns the variables: keep them alive while installed.
class Model : public IModel {
 public:
  using Getter = bool (Model::*)(base::Value&) const;
  using Setter = bool (Model::*)(const base::Value&);

  Model() = default;

  bool HasProp(const std::string& name) const override;
  // Compares with the current value first: an equal value is not written and
  // not announced. Values of different kinds never compare equal.
  bool SetPropW(const std::string& name, const base::Value& v) override;
  bool GetPropW(const std::string& name, base::Value& v) const override;

  // Installs (or replaces) a property over accessors called on this model.
  virtual bool InstallProp(const std::string& name, Getter getter, Setter setter);
  // Installs (or replaces) a property over the variable at `addr`.
  virtual bool InstallProp(const std::string& name, const std::string& type_name, void* addr,
                           unsigned size);
  virtual bool UninstallProp(const std::string& name);
  virtual bool UninstallAllProps();

  // Accessors declared on a subclass: InstallProp("age", &Person::GetAge, &Person::SetAge).
  template <typename T>
  bool InstallProp(const std::string& name, bool (T::*getter)(base::Value&) const,
                   bool (T::*setter)(const base::Value&)) {
    static_assert(std::is_base_of<Model, T>::value, "accessors must belong to a Model");
    return InstallProp(name, static_cast<Getter>(getter), static_cast<Setter>(setter));
  }
  // A read-only property over a subclass getter.
  template <typename T>
  bool InstallProp(const std::string& name, bool (T::*getter)(base::Value&) const, std::nullptr_t) {
    static_assert(std::is_base_of<Model, T>::value, "accessors must belong to a Model");
    return InstallProp(name, static_cast<Getter>(getter), static_cast<Setter>(nullptr));
  }
  // The storage code of a variable of type T, or 0 when T cannot be stored:
  // bool, signed and unsigned integers of 1, 2, 4 or 8 bytes (not the
  // character types char, wchar_t, char16_t, char32_t), float, double and
  // std::string.
  template <typename T>
  static constexpr char StorageCodeOf() {
    using U = std::remove_cv_t<T>;
    constexpr bool character = std::is_same<U, char>::value || std::is_same<U, wchar_t>::value ||
                               std::is_same<U, char16_t>::value || std::is_same<U, char32_t>::value;
    if constexpr (std::is_same<U, std::string>::value) return 'z';
    if constexpr (std::is_same<U, bool>::value) return 'b';
    if constexpr (std::is_same<U, float>::value) return 'f';
    if constexpr (std::is_same<U, double>::value) return 'd';
    if constexpr (std::is_integral<U>::value && !character) {
      constexpr bool is_signed = std::is_signed<U>::value;
      switch (sizeof(U)) {
        case 1:
          return is_signed ? 'a' : 'h';
        case 2:
          return is_signed ? 's' : 't';
        case 4:
          return is_signed ? 'i' : 'j';
        case 8:
          return is_signed ? 'x' : 'y';
        default:
          break;
      }
    }
    return 0;
  }
  template <typename T>
  static constexpr bool kInstallable = StorageCodeOf<T>() != 0;

  // A variable, typed by the compiler: InstallProp("age", &this->age). Types
  // that cannot be stored (see StorageCodeOf) do not compile.
  template <typename T>
  bool InstallProp(const std::string& name, T* addr) {
    static_assert(kInstallable<T>,
                  "only bool, non-character integers, float, double and std::string can be "
                  "installed");
    return InstallVariable(name, StorageCodeOf<T>(), addr, sizeof(T));
  }

 protected:
  // A getter/setter pair; each distinct pair is stored once per process,
  // since every instance of a class installs the same ones.
  struct Accessors {
    Getter getter;
    Setter setter;
  };
  struct Prop {
    union {
      const Accessors* accessors = nullptr;  // when `accessor`
      void* addr;                            // otherwise: the variable
    };
    unsigned size = 0;
    char type = 0;  // storage code; 0 for accessors
    bool accessor = false;

    bool GetProp(const Model* model, base::Value& v) const;
    bool SetProp(Model* model, const base::Value& v) const;
  };

  // The record of `name`, or null: one lookup for subclasses that would
  // otherwise ask HasProp first and look the name up again. The pointer is
  // valid until a property is installed or uninstalled.
  const Prop* FindProp(const std::string& name) const;
  // SetPropW's compare, write and announce over a record already found.
  bool SetPropW(const std::string& name, const Prop& p, const base::Value& v);

  // Sorted by name. One block per model rather than a node per property,
  // and names shared process-wide: a list of many rows would otherwise spend
  // its time allocating nodes and copies of the same few names.
  std::vector<std::pair<const std::string*, Prop>> props;

 private:
  bool InstallVariable(const std::string& name, char code, void* addr, unsigned size);
  Prop& Slot(const std::string& name);
  static const Accessors* SharedAccessors(Getter getter, Setter setter);
};

}  // namespace vm

#endif  // OVUI_MVVM_MODEL_H_
