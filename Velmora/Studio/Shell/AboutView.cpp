#include "Velmora/Studio/Shell/AboutView.h"

#include <QCoreApplication>

#include "Velmora/Studio/Shell/BundledTextView.h"

namespace velmora {

namespace {

struct Link {
  const char* title;
  const char* resource;
};
constexpr Link links[] = {{"Privacy Policy", "Privacy"}, {"Open-source Licenses", "ThirdPartyNotices"}};

}  // namespace

AboutView::AboutView(QWidget* parent)
    : Sheet("About", parent), back_(addLeadingButton(new TallButton("Back", "chevron.left"), "about.back")) {
  setObjectName("about");
  resize(480, 420);
  content().setContentsMargins(0, 0, 0, 0);
  content().addWidget(&pages_);
  pages_.addWidget(makeAboutPage());
  TallButton& done =
      addToolbarButton(new TallButton("Done", {}, {.fill = TallButton::Fill::raised}), "about.done");
  connect(&done, &QAbstractButton::clicked, this, &QDialog::accept);
  connect(&back_, &QAbstractButton::clicked, this, [this] { goBack(); });
  goBack();
}

QString AboutView::versionLine() {
  const QString version = QCoreApplication::applicationVersion();
  return "Version " + (version.isEmpty() ? "1.0.0" : version);
}

QWidget* AboutView::makeAboutPage() {
  auto* page = new QWidget;
  auto* column = new QVBoxLayout(page);
  column->setContentsMargins(20, 20, 20, 20);
  column->setSpacing(8);
  column->addStretch(1);
  column->addWidget(new SymbolLabel("waveform", Theme::accent, 48));
  for (QLabel* label : {makeLabel("Velmora by Orrin", Theme::Text::title),
                        makeLabel(versionLine(), Theme::Text::caption, Theme::secondary),
                        makeLabel("Build beats, write melodies and record audio.", Theme::Text::body)}) {
    label->setAlignment(Qt::AlignHCenter);
    column->addWidget(label);
  }
  column->addStretch(1);
  for (const Link& link : links) {
    auto* button = new TallButton(link.title, {}, {.fill = TallButton::Fill::raised});
    button->setObjectName(QString("about.") + link.resource);
    connect(button, &QAbstractButton::clicked, this, [this, &link] { openText(link.title, link.resource); });
    column->addWidget(button);
  }
  return page;
}

void AboutView::openText(const QString& title, const QString& resource) {
  auto* text = new BundledTextView(title, resource);
  pages_.setCurrentIndex(pages_.addWidget(text));
  setHeading(title);
  back_.show();
  text->setFocus();
}

void AboutView::goBack() {
  if (pages_.count() > 1) delete pages_.currentWidget();
  setHeading("About");
  back_.hide();
}

}  // namespace velmora
