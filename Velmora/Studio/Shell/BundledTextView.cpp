#include "Velmora/Studio/Shell/BundledTextView.h"

#include <QFile>
#include <QStringDecoder>

#include "Velmora/Theme/Theme.h"

/// A static library's resources have to be asked for, from outside any namespace.
static void registerTexts() { Q_INIT_RESOURCE(VelmoraShellTexts); }

namespace velmora {

namespace {
const QString failure = "This document could not be opened.";
}

BundledTextView::BundledTextView(const QString& title, const QString& resource, QWidget* parent)
    : QPlainTextEdit(load(resource), parent) {
  setObjectName("text." + resource);
  setAccessibleName(title);
  setReadOnly(true);
  setFont(Theme::font(Theme::Text::body));
  setFrameShape(QFrame::NoFrame);
  setTabChangesFocus(true);
  document()->setDocumentMargin(16);
  viewport()->setAutoFillBackground(false);
  setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
}

QString BundledTextView::load(const QString& resource) {
  registerTexts();
  QFile file(":/texts/" + resource + ".txt");
  if (!file.open(QIODevice::ReadOnly)) return failure;
  QStringDecoder decode(QStringDecoder::Utf8);
  const QString text = decode(file.readAll());
  return decode.hasError() ? failure : text;
}

}  // namespace velmora
