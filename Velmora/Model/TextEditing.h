#pragma once

#include "Velmora/Model/AppModel.h"

namespace velmora {

/// Holds the model's `isEditingText` for as long as it lives, inside another one, too.
class TextEditing {
 public:
  explicit TextEditing(AppModel& model) : model_(model) { model_.isEditingText.set(true); }
  ~TextEditing() { model_.isEditingText.set(wasEditing_); }
  TextEditing(const TextEditing&) = delete;
  TextEditing& operator=(const TextEditing&) = delete;

 private:
  AppModel& model_;
  const bool wasEditing_ = model_.isEditingText();
};

}  // namespace velmora
