#ifndef OVUI_MVVM_VIEW_MODEL_ARRAY_H_
#define OVUI_MVVM_VIEW_MODEL_ARRAY_H_

#include <string>
#include <vector>

#include "mvvm/view_model.h"

namespace vm {

// A view model holding an ordered list of child view models (the rows of a
// list, table or tree level) and a current position.
//
// Children are adopted with the caller's reference and released when removed
// or reset; a child without a parent gets this array as its parent, and a
// child that belongs to another array, or is already in this one, is
// refused. Properties "_size_" (read-only) and "_current_" are built in;
// writing "_current_" is SetCurrent, and a value outside the unsigned 32-bit
// range is refused, not truncated.
//
// Events, each emitted on this array and then, when the array is nested, on
// the root array of the nest (so one listener there hears every level):
//   "before-item-add", "item-add", "before-item-remove", "item-remove"
//       "item" (ViewModel*), "parent" (the ViewModelArray* holding the child),
//       "start" and "end" (both the child's index)
//   "current-changed"  "value": the new current index
//   "resize-height"    "resize": the flag of EnableAutoResizeHeight
//   "update-model"     no parameters: re-read every row
// and, on this array only:
//   "before-remove-all", "remove-all"   "parent": this array's parent array
// Pointer parameters are base::Value pointers to exactly these types.
//
// Every operation reaches the list through GetItems(), so subclasses can
// present another list (the visible children of a filtered list).
class ViewModelArray : public ViewModel {
 public:
  explicit ViewModelArray(IModel* model = nullptr);
  ~ViewModelArray() override;

  int GetType() const override;
  // The array's own model, or else the current child's.
  IModel* GetModel() const override;

  virtual unsigned int Size() const;
  // Inserts before `index` (out of range: appends) and makes the child current.
  virtual bool Add(ViewModel* item, int index = -1);
  // Inserts without moving the current position when `keep_current` is true.
  virtual bool AddWithoutSetCurrent(ViewModel* item, int index, bool keep_current);
  // Removing a child that is not in the list counts as done (true).
  virtual bool Remove(ViewModel* item);
  virtual bool Remove(unsigned int index);
  // So that Remove(0) is not ambiguous between the two above.
  bool Remove(int index) { return Remove(static_cast<unsigned int>(index)); }
  // Releases every child; the current position goes back to 0 without a
  // "current-changed".
  virtual bool Reset();
  virtual ViewModel* Get(unsigned int index) const;
  virtual int IndexOf(const ViewModel* item) const;
  virtual unsigned int GetCurrent() const;
  virtual bool SetCurrent(unsigned int index);
  // Blocks events; EndBatch unblocks them, asks the view to rebind ("rebind"
  // with an empty name and value) and makes the last child current.
  virtual bool BeginBatch();
  virtual bool EndBatch();
  virtual bool EnableAutoResizeHeight(bool flag);
  virtual bool UpdateViewModel();
  virtual std::vector<ViewModel*>& GetItems();
  const std::vector<ViewModel*>& GetItems() const {
    return const_cast<ViewModelArray*>(this)->GetItems();
  }

  // The child selected last anywhere in the nest (kept by the root array).
  ViewModel* GetCurrentViewModel() const;
  bool IsAutoResizeHeight() const { return this->auto_resize_height; }

 protected:
  // Inserts `item` into `items` (out of range: appends, and `index` becomes
  // the position used) and parents it to this array.
  bool Add(std::vector<ViewModel*>& items, ViewModel* item, int& index);
  // Releases every child of `items` and empties it.
  void ResetArray(std::vector<ViewModel*>& items);
  // Reset's work for any list layout: releases every child of `owned` after
  // emptying `borrowed` (a visible list borrowing from it, or null), clears
  // the current position without "current-changed", and announces
  // "remove-all" (preceded by "before-remove-all" when `announce_before`).
  bool ResetChildren(std::vector<ViewModel*>& owned, std::vector<ViewModel*>* borrowed,
                     bool announce_before);
  // Emits `e` on this array and then on the root array if that is another.
  void EmitHereAndOnRoot(events::Event* e);
  void EmitItemEvent(const char* type, ViewModel* item, int index);
  // The topmost array of the nest this array belongs to (itself if none).
  ViewModelArray* RootArray() const;
  // Forgets every selection that names `item` or lies below it (this
  // array's own and the root's), for a child leaving without Remove(index).
  void ForgetSelected(ViewModel* item);
  static bool Contains(const std::vector<ViewModel*>& items, const ViewModel* item);
  // Forgets the root's current child when it lies among `released` (or
  // below one of them), so that it never points at a released view model.
  void ForgetCurrentAmong(const std::vector<ViewModel*>& released);
  // The root's selected child when it is one of `among` or lies below one of
  // them (read before they are released); null otherwise.
  ViewModel* SelectedAmong(const std::vector<ViewModel*>& among) const;

  unsigned int current = 0;
  ViewModel* current_view_model = nullptr;
  std::vector<ViewModel*> items;
  bool auto_resize_height = false;

 private:
  bool GetSizeProp(base::Value& v) const;
  bool GetCurrentProp(base::Value& v) const;
  bool SetCurrentProp(const base::Value& v);
};

}  // namespace vm

#endif  // OVUI_MVVM_VIEW_MODEL_ARRAY_H_
