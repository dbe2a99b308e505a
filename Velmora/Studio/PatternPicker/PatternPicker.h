#pragma once

#include <QPointer>
#include <QWidget>
#include <optional>

#include "Velmora/Model/AppModel.h"
#include "Velmora/Model/ChangeListener.h"
#include "Velmora/Studio/PatternPicker/PickerButton.h"
#include "Velmora/Studio/PatternPicker/RenamePatternSheet.h"
#include "Velmora/Theme/CommandButton.h"
#include "Velmora/Theme/IconButton.h"

namespace velmora {

/// The strip over the editor: which track and which pattern are edited, and what can be done with the
/// pattern.
class PatternPicker final : public QWidget {
 public:
  /// The model must outlive it.
  explicit PatternPicker(AppModel& model, QWidget* parent = nullptr);

  PickerButton& tracks() { return tracks_; }
  PickerButton& patterns() { return patterns_; }
  QAbstractButton& playPatterns() { return play_; }
  QAbstractButton& actions() { return actions_; }
  RenamePatternSheet* renaming() const { return renaming_; }  ///< null while it isn't open

 private:
  void refresh();
  void fillTracks(QMenu& menu);
  void fillPatterns(QMenu& menu);
  void fillActions(QMenu& menu);
  void playSelectedPatterns();
  void newPattern();
  void duplicatePattern();
  void renamePattern();

  AppModel& model_;
  PickerButton tracks_;
  PickerButton patterns_;
  CommandButton play_;
  IconButton actions_;
  MenuOpener actionsOpener_;
  QPointer<RenamePatternSheet> renaming_;
  ChangeListener listener_;
};

}  // namespace velmora
