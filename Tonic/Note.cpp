#include "Tonic/Note.h"

#include <cstddef>

namespace tonic {

namespace {

constexpr auto natural = Accidental::natural;
constexpr auto sharp = Accidental::sharp;

constexpr NoteClass spelling[12] = {
    {Letter::C, natural}, {Letter::C, sharp},   {Letter::D, natural}, {Letter::D, sharp},
    {Letter::E, natural}, {Letter::F, natural}, {Letter::F, sharp},   {Letter::G, natural},
    {Letter::G, sharp},   {Letter::A, natural}, {Letter::A, sharp},   {Letter::B, natural},
};

}  // namespace

Note::Note(Pitch pitch)
    : noteClass(spelling[static_cast<std::size_t>(pitch.pitchClass())]),
      octave((pitch.intValue() - pitch.pitchClass()) / 12 - 2) {}

std::string Note::text() const { return noteClass.text() + std::to_string(octave); }

}  // namespace tonic
