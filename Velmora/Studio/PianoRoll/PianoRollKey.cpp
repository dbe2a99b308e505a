#include "Velmora/Studio/PianoRoll/PianoRollKey.h"

#include <QKeyEvent>
#include <algorithm>
#include <iterator>

#include "VelmoraCore/Song/Limits.h"

namespace velmora {

namespace {

using Act = PianoRollKey::Act;

constexpr int toTheEnd = limits::mostStepsInPattern;
constexpr int velocityStep = 8;
constexpr Qt::KeyboardModifiers none = Qt::NoModifier;
constexpr Qt::KeyboardModifiers shift = Qt::ShiftModifier;
constexpr Qt::KeyboardModifiers shiftAlt = Qt::ShiftModifier | Qt::AltModifier;
constexpr Qt::KeyboardModifiers shiftControl = Qt::ShiftModifier | Qt::ControlModifier;

struct Row {
  int key;
  Qt::KeyboardModifiers modifiers;
  PianoRollKey meaning;
};

const Row rows[] = {
    {Qt::Key_Left, none, {Act::moveCursor, -1}},
    {Qt::Key_Right, none, {Act::moveCursor, 1}},
    {Qt::Key_Down, none, {Act::moveCursor, 0, -1}},
    {Qt::Key_Up, none, {Act::moveCursor, 0, 1}},
    {Qt::Key_Home, none, {Act::moveCursor, -toTheEnd}},
    {Qt::Key_End, none, {Act::moveCursor, toTheEnd}},
    {Qt::Key_PageDown, none, {Act::changeOctave, -1}},
    {Qt::Key_PageUp, none, {Act::changeOctave, 1}},
    {Qt::Key_Left, shift, {Act::moveNote, -1}},
    {Qt::Key_Right, shift, {Act::moveNote, 1}},
    {Qt::Key_Down, shift, {Act::moveNote, 0, -1}},
    {Qt::Key_Up, shift, {Act::moveNote, 0, 1}},
    {Qt::Key_Left, shiftAlt, {Act::resizeNote, -1}},
    {Qt::Key_Right, shiftAlt, {Act::resizeNote, 1}},
    {Qt::Key_Left, shiftControl, {Act::resizeNote, -1}},
    {Qt::Key_Right, shiftControl, {Act::resizeNote, 1}},
    {Qt::Key_Plus, none, {Act::changeVelocity, velocityStep}},
    {Qt::Key_Plus, shift, {Act::changeVelocity, velocityStep}},
    {Qt::Key_Equal, none, {Act::changeVelocity, velocityStep}},
    {Qt::Key_Minus, none, {Act::changeVelocity, -velocityStep}},
    {Qt::Key_Delete, none, {Act::removeNote}},
    {Qt::Key_Backspace, none, {Act::removeNote}},
    {Qt::Key_Return, none, {Act::activate}},
    {Qt::Key_Enter, none, {Act::activate}},
    {Qt::Key_Space, none, {Act::activate}},
};

}  // namespace

const PianoRollKey* PianoRollKey::of(const QKeyEvent& event) {
  const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
  const auto* row = std::ranges::find_if(
      rows, [&](const Row& each) { return each.key == event.key() && each.modifiers == modifiers; });
  return row == std::end(rows) ? nullptr : &row->meaning;
}

}  // namespace velmora
