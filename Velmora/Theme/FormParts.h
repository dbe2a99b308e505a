#pragma once

#include <QPointer>
#include <QScrollArea>
#include <QVBoxLayout>
#include <functional>

#include "Velmora/Theme/CommandButton.h"
#include "Velmora/Theme/IconButton.h"
#include "Velmora/Theme/Sheet.h"
#include "Velmora/Theme/TextLabel.h"

namespace velmora {

/// A text that somebody else wrote: plain, wrapped, and broken inside a word that is wider than the label.
class WrappedText : public TextLabel {
 public:
  explicit WrappedText(const QString& text, Theme::Text font = Theme::Text::body,
                       const QColor& color = Theme::text, QWidget* parent = nullptr);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;
  int heightForWidth(int width) const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
};

/// A quiet explanation under a field or a button.
QLabel* makeHint(const QString& text);

/// The field with its name above it, which is its accessible name, too.
QWidget* makeLabeled(const QString& name, QWidget& field);

/// One column of sections, which scrolls where it is higher than its place. What gets the focus comes in
/// sight.
class FormPage : public QScrollArea {
 public:
  static constexpr int widest = 560;

  explicit FormPage(QWidget* parent = nullptr);

  /// Ends in a stretch: `add` puts a section before it.
  void add(QWidget* section) { column_.insertWidget(column_.count() - 1, section); }

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  QWidget page_;
  QVBoxLayout column_;
};

/// A group of a form on a panel of its own, under its heading; an empty heading isn't shown.
class FormSection : public QWidget {
 public:
  explicit FormSection(const QString& heading, QWidget* parent = nullptr);

  void setHeading(const QString& heading);
  QVBoxLayout& column() { return column_; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  WrappedText heading_;
  QVBoxLayout column_;
};

/// A command that leads to a page outside the studio.
class LinkButton : public CommandButton {
 public:
  explicit LinkButton(const QString& text, QWidget* parent = nullptr);
};

/// A setting that is on or off, told by a text that may wrap. `clicked` is the user's choice.
class Switch : public PaintedButton {
 public:
  explicit Switch(const QString& text, QWidget* parent = nullptr);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return {160, sizeHint().height()}; }
  int heightForWidth(int width) const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  int textHeight(int width) const;
};

/// The one line of feedback over a form; hidden while it is empty. Each message is announced, an equal one
/// again. A text of more than `longest` characters is cut.
class MessageLine : public QWidget {
 public:
  static constexpr int longest = 600;

  explicit MessageLine(QWidget* parent = nullptr);

  void setMessage(const QString& message);

  /// From now on there is a button that calls this.
  void setOnDismiss(std::function<void()> onDismiss);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  WrappedText text_;
  IconButton dismiss_;
};

/// A sheet of sections under a line of feedback. It opens no larger than the window it belongs to.
class FormSheet : public Sheet {
 public:
  FormSheet(const QString& title, QSize size, QWidget* parent);

 protected:
  FormPage& page() { return page_; }
  MessageLine& message() { return message_; }

 private:
  MessageLine message_;
  FormPage page_;
};

/// Rests a form for as long as something it asked for runs, without the focus falling to a neighbour, which
/// the next key would press. The focus comes back then, unless it has been put elsewhere.
class FormLock {
 public:
  explicit FormLock(QWidget& form) : form_(form) {}

  void setLocked(bool isLocked);

 private:
  QWidget& form_;
  QPointer<QWidget> focus_;
};

}  // namespace velmora
