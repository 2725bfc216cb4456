#ifndef OVUI_BASE_VALUE_H_
#define OVUI_BASE_VALUE_H_

#include <string>
#include <type_traits>

namespace base {

// The library's one variant type: null, 64-bit integer (booleans and every
// integer width), double, owned string or untyped pointer.
//
// Conversions are deliberately simple and are part of the contract:
// - text reads as an integer through C atoi (32-bit range);
// - Bool() looks at the low 32 bits of the integer only;
// - assigning a null value keeps the destination's previous kind;
// - values of different kinds never compare equal (Cmp gives -1 both ways).
class Value {
 public:
  enum Type : unsigned {
    TYPE_NULL = 0,
    TYPE_INT = 1,
    TYPE_FLOAT = 2,
    TYPE_STR = 3,
    TYPE_POINTER = 4,
  };

  // Shared null value returned by look-ups that find nothing.
  static const Value null;

  Value() { value_.i = 0; }
  Value(long long v) : type_(TYPE_INT) { value_.i = v; }
  Value(bool v) : type_(TYPE_INT) { value_.i = v ? 1 : 0; }
  Value(double v) : type_(TYPE_FLOAT) { value_.d = v; }
  Value(void* p) : type_(TYPE_POINTER) { value_.p = p; }
  // A copy of `s` (null `s` gives a string value with no text).
  Value(const char* s);
  Value(const std::string& s);
  // Any other integer type, so that Value(1) or Value(size) is not ambiguous.
  template <typename T,
            std::enable_if_t<std::is_integral<T>::value && !std::is_same<T, bool>::value, int> = 0>
  Value(T v) : type_(TYPE_INT) {
    value_.i = static_cast<long long>(v);
  }
  Value(const Value& other);
  Value& operator=(const Value& other) {
    Copy(other);
    return *this;
  }
  ~Value();

  unsigned Type() const { return type_; }
  bool IsNull() const { return type_ == TYPE_NULL; }

  // Setters. Each frees a previous string first.
  void Bool(bool v);
  void Int(long long v) { I64(v); }
  void I64(long long v);
  void I8(signed char v) { I64(v); }
  void I16(short v) { I64(v); }
  void I32(int v) { I64(v); }
  void U8(unsigned char v) { I64(v); }
  void U16(unsigned short v) { I64(v); }
  void U32(unsigned int v) { I64(static_cast<long long>(v)); }
  void U64(unsigned long long v) { I64(static_cast<long long>(v)); }
  void F32(float v) { F64(v); }
  void Float(double v) { F64(v); }
  void F64(double v);
  void Pointer(void* p);
  // Stores a copy of at most `len` bytes of `s`; (unsigned)-1 copies all of it.
  void Str(const char* s, unsigned len = static_cast<unsigned>(-1));
  // Stores `s` unless this already is a string with exactly that text, in
  // which case nothing is reallocated.
  void StrIfChanged(const char* s, unsigned len);
  // Copies `other`. Copying a null value stores nothing (the old kind stays).
  void Copy(const Value& other);

  // Getters, converting on demand.
  long long I64() const;
  long long Int() const { return I64(); }
  signed char I8() const { return static_cast<signed char>(I64()); }
  short I16() const { return static_cast<short>(I64()); }
  int I32() const { return static_cast<int>(I64()); }
  unsigned long long U64() const;
  unsigned char U8() const { return static_cast<unsigned char>(U64()); }
  unsigned short U16() const { return static_cast<unsigned short>(U64()); }
  unsigned int U32() const { return static_cast<unsigned int>(U64()); }
  bool Bool() const;
  double F64() const;
  double Float() const { return F64(); }
  float F32() const { return static_cast<float>(F64()); }
  void* Pointer() const { return type_ == TYPE_POINTER ? value_.p : nullptr; }
  // The internal text of a string (null when it has none); "" for other kinds.
  const char* Str() const;

  // Text of the value: integers "%lld" and doubles "%lf" into `buf` (null when
  // `buf` is null), strings their own text ("" when none), null and pointers
  // give null.
  const char* ToStr(char* buf, unsigned size) const;

  // strcmp-like comparison; see the class comment for the cross-kind rule.
  int Cmp(const Value& other) const;
  int CmpInt(long long v) const;
  int CmpFloat(double v) const;
  int CmpStr(const char* s) const;

  // Frees a string's text (the value stays a string); other kinds untouched.
  void Reset();

 private:
  void FreeStr();

  unsigned type_ = TYPE_NULL;
  union {
    long long i;
    double d;
    char* s;
    void* p;
  } value_;
};

// Truncates toward zero; NaN gives 0 and values beyond the 64-bit range
// saturate, where a plain cast would be undefined.
long long TruncToI64(double d);

}  // namespace base

#endif  // OVUI_BASE_VALUE_H_
