#pragma once

#include <QPlainTextEdit>

namespace velmora {

/// A field of several lines, as high as its text within the given bounds. Tab leaves it.
class TextArea final : public QPlainTextEdit {
 public:
  TextArea(int leastLines, int mostLines, QWidget* parent = nullptr);

 protected:
  bool event(QEvent* event) override;
  void changeEvent(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void fit();

  const int leastLines_;
  const int mostLines_;
};

}  // namespace velmora
