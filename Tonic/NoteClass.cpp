#include "Tonic/NoteClass.h"

#include <cstddef>

namespace tonic {

std::string NoteClass::text() const {
  static constexpr const char* letters[] = {"C", "D", "E", "F", "G", "A", "B"};
  static constexpr const char* signs[] = {"𝄫", "♭", "", "♯", "𝄪"};
  return std::string(letters[static_cast<std::size_t>(letter)]) + signs[static_cast<std::size_t>(accidental)];
}

}  // namespace tonic
