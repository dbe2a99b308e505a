#pragma once

#include <QWidget>
#include <functional>
#include <vector>

#include "Velmora/Theme/CommandButton.h"
#include "VelmoraCore/Song/TrackKind.h"

class QComboBox;
class QHBoxLayout;

namespace velmora {

class Stepper;

/// The tools above the piano roll. Where the width doesn't hold their words only their symbols show.
class PianoToolbar final : public QWidget {
 public:
  struct Actions {
    std::function<void(SynthPreset)> setPreset;
    std::function<void(int)> setOctave;
    std::function<void(bool)> setEditsNotes;
    std::function<void()> flipKeyboard;
    std::function<void()> addNote;
    std::function<void()> zoomOut;
    std::function<void()> zoomIn;
    std::function<void()> deleteNote;
  };
  explicit PianoToolbar(Actions actions, QWidget* parent = nullptr);

  void showPreset(SynthPreset preset);
  void showOctave(int octave);
  void showKeyboardVisible(bool isVisible);
  void setCanDelete(bool canDelete);

  QSize sizeHint() const override { return {wordsWidth_, toolbarHeight}; }
  QSize minimumSizeHint() const override { return {symbolsWidth_, toolbarHeight}; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  static constexpr int toolbarHeight = 44;

  struct Button;
  void addPresets();
  void speakPreset();
  void choosePreset(int index);
  void addOctave();
  void addSwitch();
  CommandButton* addButton(const Button& button);
  void setWordsShown(CommandButton::Label label);
  void measure();
  void fit();

  const Actions actions_;
  QHBoxLayout* row_ = nullptr;
  QComboBox* presets_ = nullptr;
  Stepper* octave_ = nullptr;
  CommandButton* keyboard_ = nullptr;
  CommandButton* delete_ = nullptr;
  std::vector<CommandButton*> worded_;
  int wordsWidth_ = 0;
  int symbolsWidth_ = 0;
};

}  // namespace velmora
