#include "Platform/Files/RandomName.h"

#include <random>
#include <string_view>

namespace platform {

std::string randomName() {
  constexpr std::string_view form = "xxxxxxxx-xxxx-4xxx-yxxx-xxxxxxxxxxxx";
  constexpr std::string_view digits = "0123456789ABCDEF";
  static_assert(form.size() == randomNameLength);
  std::random_device random;
  std::string name(form);
  for (char& place : name) {
    if (place == 'x') place = digits[random() % 16];
    if (place == 'y') place = digits[8 + random() % 4];
  }
  return name;
}

}  // namespace platform
