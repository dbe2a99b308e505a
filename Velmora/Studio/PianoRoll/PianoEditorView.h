#pragma once

#include <QWidget>
#include <cstdint>
#include <optional>

#include "Velmora/Model/ChangeListener.h"
#include "Velmora/Studio/PianoRoll/NoteCommands.h"
#include "Velmora/Studio/PianoRoll/PianoRollZoom.h"

namespace velmora {

class AuditionKeyboard;
class NoteInspector;
class PianoRollCanvasView;
class PianoRollScrollArea;
class PianoToolbar;

/// The editor of one pattern of a synthesizer track: tools, the piano roll, the selected note's values and
/// keys to try the sound. Octave, zoom and the switches are the view's own and start over with it.
class PianoEditorView final : public QWidget {
 public:
  PianoEditorView(AppModel& model, UUID patternID, UUID trackID, QWidget* parent = nullptr);
  ~PianoEditorView() override;

 protected:
  void showEvent(QShowEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  enum class SizeClass : std::uint8_t { compact, regular };

  PianoToolbar* makeToolbar();
  PianoRollScrollArea* makeRoll();
  void refresh();
  void refreshInspector();
  void setOctave(int octave);
  void addNote();
  void zoom(void (PianoRollZoom::*change)());
  SizeClass verticalSizeClass() const;
  bool showsKeyboard() const;
  void placeKeyboard();

  NoteCommands commands_;
  const UUID trackID_;
  int octave_ = 4;
  PianoRollZoom zoom_;
  std::optional<bool> keyboardVisible_;  // the user's choice; empty means by the size class

  PianoToolbar* toolbar_ = nullptr;
  PianoRollCanvasView* canvas_ = nullptr;
  PianoRollScrollArea* roll_ = nullptr;
  NoteInspector* inspector_ = nullptr;
  AuditionKeyboard* keyboard_ = nullptr;
  ChangeListener listener_;
};

}  // namespace velmora
