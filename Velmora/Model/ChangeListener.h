#pragma once

#include <QObject>
#include <QProperty>
#include <functional>
#include <utility>
#include <vector>

#include "Velmora/Model/Observed.h"

namespace velmora {

/// Hears the changes of some fields and answers once for all of them, from the event loop: an edit that
/// writes ten fields costs a view one refresh.
class ChangeListener {
 public:
  /// `onChange` isn't called any more once the listener is gone. Hears the given fields, which outlive it.
  template <class... Values, class... Owners>
  explicit ChangeListener(std::function<void()> onChange, const Observed<Values, Owners>&... fields)
      : onChange_(std::move(onChange)) {
    (hear(fields), ...);
  }

  template <class Value, class Owner>
  void hear(const Observed<Value, Owner>& field) {
    notifiers_.push_back(field.addNotifier([this] { schedule(); }));
  }

 private:
  void schedule() {
    if (std::exchange(isScheduled_, true)) return;
    QMetaObject::invokeMethod(
        &context_, [this] { answer(); }, Qt::QueuedConnection);
  }
  void answer() {
    isScheduled_ = false;
    onChange_();
  }

  std::function<void()> onChange_;
  bool isScheduled_ = false;
  QObject context_;  // its destruction drops an answer that is on its way
  std::vector<QPropertyNotifier> notifiers_;
};

}  // namespace velmora
