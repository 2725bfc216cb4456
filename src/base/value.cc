#include "base/value.h"

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace base {

const Value Value::null;

long long TruncToI64(double d) {
  if (std::isnan(d)) return 0;
  if (d >= 9223372036854775807.0) return INT64_MAX;
  if (d <= -9223372036854775808.0) return INT64_MIN;
  return static_cast<long long>(d);
}

namespace {

const char kEmpty[] = "";

}  // namespace

Value::Value(const char* s) {
  value_.i = 0;
  Str(s);
}

Value::Value(const std::string& s) {
  value_.i = 0;
  Str(s.c_str(), static_cast<unsigned>(s.size()));
}

Value::Value(const Value& other) {
  value_.i = 0;
  Copy(other);
}

Value::~Value() {
  FreeStr();
}

void Value::FreeStr() {
  if (type_ == TYPE_STR) {
    std::free(value_.s);
    value_.s = nullptr;
  }
}

void Value::Bool(bool v) {
  I64(v ? 1 : 0);
}

void Value::I64(long long v) {
  FreeStr();
  type_ = TYPE_INT;
  value_.i = v;
}

void Value::F64(double v) {
  FreeStr();
  type_ = TYPE_FLOAT;
  value_.d = v;
}

void Value::Pointer(void* p) {
  FreeStr();
  type_ = TYPE_POINTER;
  value_.p = p;
}

void Value::Str(const char* s, unsigned len) {
  // Copy before freeing: `s` may point into this value's own text.
  char* copy = nullptr;
  if (s) {
    const size_t n = strnlen(s, len);
    copy = static_cast<char*>(std::malloc(n + 1));
    if (copy) {
      std::memcpy(copy, s, n);
      copy[n] = '\0';
    }
  }
  FreeStr();
  type_ = TYPE_STR;
  value_.s = copy;
}

void Value::StrIfChanged(const char* s, unsigned len) {
  if (s && type_ == TYPE_STR && value_.s) {
    const size_t n = strnlen(s, len);
    if (std::strncmp(value_.s, s, n) == 0 && value_.s[n] == '\0') return;
  }
  Str(s, len);
}

void Value::Copy(const Value& other) {
  if (this == &other) return;
  FreeStr();
  switch (other.type_) {
    case TYPE_INT:
    case TYPE_FLOAT:
    case TYPE_POINTER:
      type_ = other.type_;
      value_ = other.value_;
      break;
    case TYPE_STR:
      Str(other.value_.s);
      break;
    default:
      break;  // a null source stores nothing
  }
}

long long Value::I64() const {
  switch (type_) {
    case TYPE_INT:
      return value_.i;
    case TYPE_FLOAT:
      return TruncToI64(value_.d);
    case TYPE_STR:
      return value_.s ? std::atoi(value_.s) : 0;
    default:
      return 0;
  }
}

unsigned long long Value::U64() const {
  if (type_ != TYPE_FLOAT) return static_cast<unsigned long long>(I64());
  const double d = value_.d;
  const float two63 = 9223372036854775808.0f;
  if (d >= two63) {
    if (d >= 2.0 * two63) return UINT64_MAX;
    return static_cast<unsigned long long>(TruncToI64(d - two63)) | (1ULL << 63);
  }
  return static_cast<unsigned long long>(TruncToI64(d));
}

bool Value::Bool() const {
  return static_cast<uint32_t>(I64()) != 0;
}

double Value::F64() const {
  switch (type_) {
    case TYPE_INT:
      return static_cast<double>(value_.i);
    case TYPE_FLOAT:
      return value_.d;
    case TYPE_STR:
      return value_.s ? std::atof(value_.s) : 0.0;
    default:
      return 0.0;
  }
}

const char* Value::Str() const {
  return type_ == TYPE_STR ? value_.s : kEmpty;
}

const char* Value::ToStr(char* buf, unsigned size) const {
  switch (type_) {
    case TYPE_INT:
      if (!buf) return nullptr;
      std::snprintf(buf, size, "%lld", value_.i);
      return buf;
    case TYPE_FLOAT:
      if (!buf) return nullptr;
      std::snprintf(buf, size, "%lf", value_.d);
      return buf;
    case TYPE_STR:
      return value_.s ? value_.s : kEmpty;
    default:
      return nullptr;
  }
}

int Value::Cmp(const Value& other) const {
  if (this == &other) return 0;
  if (type_ != other.type_) return -1;
  switch (type_) {
    case TYPE_INT: {
      // The low 32 bits of the difference: reliable only within 2^31.
      const uint64_t diff = static_cast<uint64_t>(value_.i) - static_cast<uint64_t>(other.value_.i);
      return static_cast<int32_t>(static_cast<uint32_t>(diff));
    }
    case TYPE_FLOAT: {
      const double d = value_.d - other.value_.d;
      return d > 0 ? 1 : (d < 0 ? -1 : 0);
    }
    case TYPE_STR:
      if (!value_.s || !other.value_.s) return -1;
      return std::strcmp(value_.s, other.value_.s);
    case TYPE_POINTER: {
      const auto a = reinterpret_cast<uintptr_t>(value_.p);
      const auto b = reinterpret_cast<uintptr_t>(other.value_.p);
      return a > b ? 1 : (a < b ? -1 : 0);
    }
    default:
      return -1;  // a null value equals only itself
  }
}

int Value::CmpInt(long long v) const {
  return Cmp(Value(v));
}

int Value::CmpFloat(double v) const {
  return Cmp(Value(v));
}

int Value::CmpStr(const char* s) const {
  return Cmp(Value(s));
}

void Value::Reset() {
  FreeStr();
}

}  // namespace base
