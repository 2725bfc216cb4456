#include "mvvm/model.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <deque>
#include <mutex>
#include <unordered_map>
#include <unordered_set>

#include "base/log.h"

namespace vm {

namespace {

const char kStdStringName[] = "NSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEE";

struct SpelledType {
  const char* name;
  char code;
};

const SpelledType kSpelledTypes[] = {
    {"signed char", 'a'},      {"bool", 'b'},  {"unsigned char", 'h'}, {"short", 's'},
    {"unsigned short", 't'},   {"int", 'i'},   {"unsigned int", 'j'},  {"__int64", 'x'},
    {"unsigned __int64", 'y'}, {"float", 'f'}, {"double", 'd'},
};

char StorageCode(const std::string& type_name, unsigned size) {
  if (type_name == kStdStringName) return 'z';
  if (type_name.size() == 1) {
    if (type_name[0] == 'l') return size == 8 ? 'x' : 'i';
    if (type_name[0] == 'm') return 'y';
    return type_name[0];
  }
  if (!type_name.empty()) {
    for (const SpelledType& t : kSpelledTypes) {
      if (type_name == t.name) return t.code;
    }
  }
  switch (size) {
    case 1:
      return 'a';
    case 2:
      return 's';
    case 4:
      return 'i';
    case 8:
      return 'x';
    default:
      break;
  }
  base::Log(__FILE__, __LINE__, 2, "Treat %s as I64\n", type_name.c_str());
  OVUI_ASSERT(!"Not Supported Type");
  return 0;
}

template <typename T>
T& At(void* addr) {
  return *static_cast<T*>(addr);
}

}  // namespace

bool Model::Prop::GetProp(const Model* model, base::Value& v) const {
  if (this->accessor) {
    // A setter alone reads as success with `v` untouched.
    return this->accessors->getter ? (model->*(this->accessors->getter))(v) : true;
  }
  switch (this->type) {
    case 'a':
      OVUI_ASSERT(this->size == sizeof(int8_t));
      v.I8(At<int8_t>(this->addr));
      break;
    case 'b':
      OVUI_ASSERT(this->size == sizeof(bool));
      v.Bool(At<bool>(this->addr));
      break;
    case 'h':
      OVUI_ASSERT(this->size == sizeof(uint8_t));
      v.U8(At<uint8_t>(this->addr));
      break;
    case 's':
      OVUI_ASSERT(this->size == sizeof(int16_t));
      v.I16(At<int16_t>(this->addr));
      break;
    case 't':
      OVUI_ASSERT(this->size == sizeof(uint16_t));
      v.U16(At<uint16_t>(this->addr));
      break;
    case 'i':
      OVUI_ASSERT(this->size == sizeof(int32_t));
      v.I32(At<int32_t>(this->addr));
      break;
    case 'j':
      OVUI_ASSERT(this->size == sizeof(uint32_t));
      v.U32(At<uint32_t>(this->addr));
      break;
    case 'x':
      OVUI_ASSERT(this->size == sizeof(int64_t));
      v.I64(At<int64_t>(this->addr));
      break;
    case 'y':
      OVUI_ASSERT(this->size == sizeof(uint64_t));
      v.U64(At<uint64_t>(this->addr));
      break;
    case 'f':
      OVUI_ASSERT(this->size == sizeof(float));
      v.F32(At<float>(this->addr));
      break;
    case 'd':
      OVUI_ASSERT(this->size == sizeof(double));
      v.F64(At<double>(this->addr));
      break;
    case 'z': {
      const std::string& s = At<std::string>(this->addr);
      v.Str(s.data(), static_cast<unsigned>(s.length()));
      break;
    }
    default:
      break;  // unknown code: nothing to read
  }
  return true;
}

bool Model::Prop::SetProp(Model* model, const base::Value& v) const {
  if (this->accessor) {
    return this->accessors->setter ? (model->*(this->accessors->setter))(v) : false;
  }
  if (!this->addr) return false;
  switch (this->type) {
    case 'a':
      OVUI_ASSERT(this->size == sizeof(int8_t));
      At<int8_t>(this->addr) = v.I8();
      break;
    case 'b':
      OVUI_ASSERT(this->size == sizeof(bool));
      At<bool>(this->addr) = v.Bool();
      break;
    case 'h':
      OVUI_ASSERT(this->size == sizeof(uint8_t));
      At<uint8_t>(this->addr) = v.U8();
      break;
    case 's':
      OVUI_ASSERT(this->size == sizeof(int16_t));
      At<int16_t>(this->addr) = v.I16();
      break;
    case 't':
      OVUI_ASSERT(this->size == sizeof(uint16_t));
      At<uint16_t>(this->addr) = v.U16();
      break;
    case 'i':
      OVUI_ASSERT(this->size == sizeof(int32_t));
      At<int32_t>(this->addr) = v.I32();
      break;
    case 'j':
      OVUI_ASSERT(this->size == sizeof(uint32_t));
      At<uint32_t>(this->addr) = v.U32();
      break;
    case 'x':
      OVUI_ASSERT(this->size == sizeof(int64_t));
      At<int64_t>(this->addr) = v.I64();
      break;
    case 'y':
      OVUI_ASSERT(this->size == sizeof(uint64_t));
      At<uint64_t>(this->addr) = v.U64();
      break;
    case 'f':
      OVUI_ASSERT(this->size == sizeof(float));
      At<float>(this->addr) = v.F32();
      break;
    case 'd':
      OVUI_ASSERT(this->size == sizeof(double));
      At<double>(this->addr) = v.F64();
      break;
    case 'z': {
      const char* text = v.Str();
      At<std::string>(this->addr) = text ? text : "";
      break;
    }
    default:
      break;  // unknown code: accepted, nothing written
  }
  return true;
}

namespace {

template <typename Props>
auto LowerBound(Props& props, const std::string& name) {
  return std::lower_bound(props.begin(), props.end(), name,
                          [](const auto& entry, const std::string& n) { return *entry.first < n; });
}

// The one shared copy of a property name; names live for the process. Each
// thread keeps its own index in front of the shared set, so installing the
// same few names on many rows takes no lock.
const std::string* Intern(const std::string& name) {
  thread_local std::unordered_map<std::string, const std::string*> known;
  auto hit = known.find(name);
  if (hit != known.end()) return hit->second;
  static std::mutex lock;  // models may be built on worker threads
  static std::unordered_set<std::string> names;
  const std::string* shared;
  {
    std::lock_guard<std::mutex> guard(lock);
    shared = &*names.insert(name).first;
  }
  known.emplace(name, shared);
  return shared;
}

}  // namespace

const Model::Accessors* Model::SharedAccessors(Getter getter, Setter setter) {
  thread_local const Accessors* last = nullptr;  // rows of one class repeat the same pair
  if (last && last->getter == getter && last->setter == setter) return last;
  static std::mutex lock;
  static std::deque<Accessors> all;  // stable addresses; a few dozen pairs at most
  std::lock_guard<std::mutex> guard(lock);
  for (const Accessors& a : all) {
    if (a.getter == getter && a.setter == setter) return last = &a;
  }
  all.push_back({getter, setter});
  return last = &all.back();
}

const Model::Prop* Model::FindProp(const std::string& name) const {
  // Most models have a handful of properties: a scan whose comparisons
  // mostly stop at the length beats a binary search of full compares.
  if (this->props.size() <= 8) {
    for (const auto& entry : this->props) {
      if (*entry.first == name) return &entry.second;
    }
    return nullptr;
  }
  auto iter = LowerBound(this->props, name);
  return iter != this->props.end() && *iter->first == name ? &iter->second : nullptr;
}

Model::Prop& Model::Slot(const std::string& name) {
  if (this->props.empty()) this->props.reserve(4);  // most models have a few
  auto iter = LowerBound(this->props, name);
  if (iter == this->props.end() || *iter->first != name) {
    iter = this->props.emplace(iter, Intern(name), Prop());
  }
  return iter->second;
}

bool Model::HasProp(const std::string& name) const {
  return FindProp(name) != nullptr;
}

bool Model::GetPropW(const std::string& name, base::Value& v) const {
  const Prop* p = FindProp(name);
  return p ? p->GetProp(this, v) : false;
}

bool Model::SetPropW(const std::string& name, const base::Value& v) {
  const Prop* p = FindProp(name);
  const bool found = p != nullptr;
  OVUI_CHECK(found, false);
  return Model::SetPropW(name, *p, v);
}

bool Model::SetPropW(const std::string& name, const Prop& p, const base::Value& v) {
  base::Value old;
  OVUI_CHECK(p.GetProp(this, old), false);
  if (old.Cmp(v) == 0) return true;
  if (!p.SetProp(this, v)) return false;
  EmitPropChange(name, old, v);
  return true;
}

bool Model::InstallProp(const std::string& name, Getter getter, Setter setter) {
  Prop& p = Slot(name);
  p = Prop();
  p.accessor = true;
  p.accessors = SharedAccessors(getter, setter);
  return true;
}

bool Model::InstallProp(const std::string& name, const std::string& type_name, void* addr,
                        unsigned size) {
  return InstallVariable(name, StorageCode(type_name, size), addr, size);
}

bool Model::InstallVariable(const std::string& name, char code, void* addr, unsigned size) {
  Prop& p = Slot(name);
  p = Prop();
  p.type = code;
  p.addr = addr;
  p.size = size;
  return true;
}

bool Model::UninstallProp(const std::string& name) {
  auto iter = LowerBound(this->props, name);
  if (iter == this->props.end() || *iter->first != name) return false;
  this->props.erase(iter);
  return true;
}

bool Model::UninstallAllProps() {
  this->props.clear();
  return true;
}

}  // namespace vm
