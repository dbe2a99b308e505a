#pragma once

#include <QPlainTextEdit>
#include <QString>

namespace velmora {

/// A text of the application's resources, to read and to scroll.
class BundledTextView : public QPlainTextEdit {
 public:
  /// `resource` is the file's name without its extension.
  BundledTextView(const QString& title, const QString& resource, QWidget* parent = nullptr);

  /// The text of ":/texts/<resource>.txt", or the sentence that it could not be opened.
  static QString load(const QString& resource);
};

}  // namespace velmora
