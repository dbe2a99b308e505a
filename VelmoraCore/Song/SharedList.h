#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <initializer_list>
#include <utility>
#include <vector>

namespace velmora {

/// A list that shares its storage with its copies until one of them is written to.
///
/// Copying costs one reference count; two lists that share storage compare equal at once. Reading is const
/// only, so that no read can cost a copy; `write` gives the one mutable view and separates the storage first
/// if it is shared. A list is used by one thread at a time; different copies may live on different threads.
template <class T>
class SharedList {
 public:
  using value_type = T;
  using const_iterator = typename std::vector<T>::const_iterator;

  SharedList() = default;
  SharedList(std::initializer_list<T> items) {
    if (items.size() > 0) write() = items;
  }
  explicit SharedList(std::vector<T> items)
      : storage_(items.empty() ? nullptr : new Storage{std::move(items)}) {}
  SharedList(const SharedList& other) noexcept : storage_(other.storage_) { retain(); }
  SharedList(SharedList&& other) noexcept : storage_(std::exchange(other.storage_, nullptr)) {}
  SharedList& operator=(SharedList other) noexcept {
    std::swap(storage_, other.storage_);
    return *this;
  }
  ~SharedList() { release(); }

  const std::vector<T>& items() const noexcept { return storage_ ? storage_->items : emptyItems(); }
  const_iterator begin() const noexcept { return items().begin(); }
  const_iterator end() const noexcept { return items().end(); }
  std::size_t size() const noexcept { return items().size(); }
  bool empty() const noexcept { return items().empty(); }
  const T& operator[](std::size_t index) const noexcept { return items()[index]; }
  const T& front() const noexcept { return items().front(); }
  const T& back() const noexcept { return items().back(); }

  /// The items for change; valid until this list is copied or assigned.
  std::vector<T>& write() {
    if (!storage_) {
      storage_ = new Storage{};
    } else if (storage_->references.load(std::memory_order_acquire) > 1) {
      Storage* own = new Storage{storage_->items};
      release();
      storage_ = own;
    }
    return storage_->items;
  }

  /// Whether both lists look at the same memory: a cheap, sufficient test of equality.
  bool sharesStorage(const SharedList& other) const noexcept { return storage_ == other.storage_; }

  friend bool operator==(const SharedList& a, const SharedList& b) {
    return a.sharesStorage(b) || a.items() == b.items();
  }

 private:
  struct Storage {
    std::vector<T> items{};
    std::atomic<std::size_t> references{1};
  };

  static const std::vector<T>& emptyItems() noexcept {
    static const std::vector<T> none;
    return none;
  }
  void retain() noexcept {
    if (storage_) storage_->references.fetch_add(1, std::memory_order_relaxed);
  }
  void release() noexcept {
    if (storage_ && storage_->references.fetch_sub(1, std::memory_order_acq_rel) == 1) delete storage_;
  }

  Storage* storage_ = nullptr;
};

/// The first record with the id, or null; valid until the list is written to.
template <class Record, class ID>
const Record* findByID(const SharedList<Record>& list, const ID& id) {
  const auto found =
      std::find_if(list.begin(), list.end(), [&](const Record& record) { return record.id == id; });
  return found == list.end() ? nullptr : &*found;
}

/// Removes the items that match and tells how many; with no match the storage stays shared.
template <class T, class Predicate>
std::size_t eraseIf(SharedList<T>& list, Predicate matches) {
  return std::any_of(list.begin(), list.end(), matches) ? std::erase_if(list.write(), matches) : 0;
}

/// Replaces the record with the same id in place or appends it; with no change the storage stays shared.
template <class Record>
void replaceOrAppend(SharedList<Record>& list, const Record& record) {
  const Record* found = findByID(list, record.id);
  if (!found) {
    list.write().push_back(record);
  } else if (!(*found == record)) {
    const auto index = static_cast<std::size_t>(found - list.items().data());
    list.write()[index] = record;
  }
}

}  // namespace velmora
