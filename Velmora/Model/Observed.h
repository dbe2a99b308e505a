#pragma once

#include <QProperty>
#include <functional>
#include <utility>

namespace velmora {

class AppModel;

/// A field that views watch and only the object that owns it writes: a new value tells the notifiers, an
/// equal one doesn't.
template <class Value, class Owner = AppModel>
class Observed {
 public:
  Observed() = default;
  explicit Observed(Value value) : property_(std::move(value)) {}

  /// Numbers and enumerations by value, all else by reference.
  decltype(auto) operator()() const { return property_.valueBypassingBindings(); }

  /// `onChange` runs after every change, as long as the notifier lives.
  [[nodiscard]] QPropertyNotifier addNotifier(std::function<void()> onChange) const {
    return property_.addNotifier(std::move(onChange));
  }

 protected:
  friend Owner;
  void set(Value value) { property_.setValue(std::move(value)); }

 private:
  mutable QProperty<Value> property_;
};

/// A field that views write, too: what is open, what is shown.
template <class Value, class Owner = AppModel>
class Shared : public Observed<Value, Owner> {
 public:
  using Observed<Value, Owner>::Observed;
  using Observed<Value, Owner>::set;
};

}  // namespace velmora
