#include <gtest/gtest.h>

#include "Tonic/Note.h"

namespace tonic {
namespace {

TEST(NoteTest, spellsPitchesInCMajorAndWritesAccidentals) {
  const std::pair<int, const char*> spellings[] = {{0, "C-2"},  {59, "B2"},  {60, "C3"}, {61, "C♯3"},
                                                   {70, "A♯3"}, {127, "G8"}, {-1, "B-3"}};
  for (const auto& [pitch, text] : spellings) EXPECT_EQ(Note(Pitch(pitch)).text(), text) << pitch;
  std::string octave;
  for (int pitch = 24; pitch < 36; ++pitch)
    octave += isNatural(Pitch(pitch)) ? Note(Pitch(pitch)).noteClass.text() : "-";
  EXPECT_EQ(octave, "C-D-EF-G-A-B");

  std::string texts;
  for (int i = 0; i < 5; ++i) texts += NoteClass{Letter::G, static_cast<Accidental>(i)}.text();
  EXPECT_EQ(texts, "G𝄫G♭GG♯G𝄪");
}

}  // namespace
}  // namespace tonic
