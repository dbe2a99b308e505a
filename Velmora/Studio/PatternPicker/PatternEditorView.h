#pragma once

#include <QVBoxLayout>
#include <QWidget>
#include <optional>

#include "Velmora/Model/AppModel.h"
#include "Velmora/Model/ChangeListener.h"
#include "Velmora/Studio/PatternPicker/PatternEditors.h"
#include "Velmora/Studio/PatternPicker/PatternPicker.h"

namespace velmora {

/// The lower half of the studio: the picker and, under it, the editor of the selected track.
///
/// Another track or pattern gets a new editor; edits of the same one keep it.
class PatternEditorView final : public QWidget {
 public:
  /// The model must outlive it.
  PatternEditorView(AppModel& model, PatternEditors editors, QWidget* parent = nullptr);

  PatternPicker& picker() { return picker_; }
  QWidget* editor() const { return editor_; }  ///< what stands under the picker now

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  /// Which editor stands under the picker, and for what.
  struct Content {
    enum class Kind { placeholder, audio, stepGrid, pianoRoll };

    Kind kind = Kind::placeholder;
    UUID trackID{};
    UUID patternID{};

    bool operator==(const Content&) const = default;
  };

  Content wantedContent() const;
  void refresh();
  QWidget* make(const Content& content);
  QWidget* makePlaceholder();

  AppModel& model_;
  const PatternEditors editors_;
  PatternPicker picker_;
  QVBoxLayout column_;
  std::optional<Content> content_;
  QWidget* editor_ = nullptr;
  ChangeListener listener_;
};

}  // namespace velmora
