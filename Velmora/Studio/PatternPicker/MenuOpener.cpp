#include "Velmora/Studio/PatternPicker/MenuOpener.h"

#include <utility>

#include "Velmora/Theme/Spoken.h"

namespace velmora {

namespace {

constexpr int gap = 2;

}  // namespace

MenuOpener::MenuOpener(QAbstractButton& button, Fill fill, std::function<QString()> value)
    : button_(button), fill_(std::move(fill)) {
  Spoken::attach(button, {.role = QAccessible::ButtonMenu, .value = std::move(value), .press = [&button] {
                            button.click();
                          }});
  QObject::connect(&button, &QAbstractButton::clicked, &menu_, [this] { open(); });
}

void MenuOpener::open() {
  menu_.clear();
  fill_(menu_);
  menu_.popup(button_.mapToGlobal(QPoint(0, button_.height() + gap)));
}

}  // namespace velmora
