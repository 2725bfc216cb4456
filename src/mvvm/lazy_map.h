#ifndef OVUI_MVVM_LAZY_MAP_H_
#define OVUI_MVVM_LAZY_MAP_H_

#include <map>
#include <memory>
#include <string>

namespace vm {

// A std::map by name that costs one pointer until something is inserted:
// most view models (every row of a list) never register anything, and four
// empty maps would otherwise be most of their size.
template <typename V>
class LazyMap {
 public:
  using Map = std::map<std::string, V>;
  using iterator = typename Map::iterator;
  using const_iterator = typename Map::const_iterator;

  iterator begin() { return Get().begin(); }
  iterator end() { return Get().end(); }
  const_iterator begin() const { return Get().begin(); }
  const_iterator end() const { return Get().end(); }
  iterator find(const std::string& key) { return Get().find(key); }
  const_iterator find(const std::string& key) const { return Get().find(key); }
  size_t count(const std::string& key) const { return this->map ? this->map->count(key) : 0; }
  bool empty() const { return !this->map || this->map->empty(); }
  V& operator[](const std::string& key) {
    if (!this->map) this->map = std::make_unique<Map>();
    return (*this->map)[key];
  }
  void erase(iterator iter) { this->map->erase(iter); }
  // Empties the map, handing its entries to `out`.
  void swap(Map& out) {
    if (!this->map) this->map = std::make_unique<Map>();
    this->map->swap(out);
  }
  const Map& AsMap() const { return Get(); }

 private:
  // Without entries, every iterator comes from one shared empty map, so
  // find() and end() agree.
  Map& Get() const { return this->map ? *this->map : Empty(); }
  static Map& Empty() {
    static Map empty;
    return empty;
  }

  std::unique_ptr<Map> map;
};

}  // namespace vm

#endif  // OVUI_MVVM_LAZY_MAP_H_
