#include "Velmora/Studio/Shell/UpcomingView.h"

namespace velmora {

UpcomingView::UpcomingView(const QString& title, QWidget* parent) : Sheet(title, parent) {
  setObjectName("upcoming");
  content().addWidget(makeLabel("This comes with the online services, which this version doesn't have yet.",
                                Theme::Text::body, Theme::secondary));
  TallButton& done =
      addToolbarButton(new TallButton("Done", {}, {.fill = TallButton::Fill::raised}), "upcoming.done");
  connect(&done, &QAbstractButton::clicked, this, &QDialog::accept);
  setFixedWidth(420);
}

}  // namespace velmora
