#ifndef OVUI_BASE_REF_OBJ_H_
#define OVUI_BASE_REF_OBJ_H_

namespace base {

// Intrusive reference count. A new object starts at 1; Release() deletes it
// through the virtual destructor once the count falls below 1.
// The count is a plain int on purpose: reference-counted objects live on the
// user-interface thread only.
template <typename T>
class RefObj {
 public:
  RefObj() = default;
  RefObj(const RefObj&) = delete;
  RefObj& operator=(const RefObj&) = delete;
  virtual ~RefObj() = default;

  void AddRef() { ++ref_count_; }
  void Release() {
    if (--ref_count_ < 1) delete this;
  }
  int RefCount() const { return ref_count_; }

 private:
  int ref_count_ = 1;
};

// Releases `p` unless it is null.
template <typename T>
void SafeRelease(T* p) {
  if (p) p->Release();
}

// Empty polymorphic base that forbids copying and assignment.
class NoneClonable {
 public:
  NoneClonable() = default;
  NoneClonable(const NoneClonable&) = delete;
  NoneClonable& operator=(const NoneClonable&) = delete;
  virtual ~NoneClonable() = default;
};

}  // namespace base

#endif  // OVUI_BASE_REF_OBJ_H_
