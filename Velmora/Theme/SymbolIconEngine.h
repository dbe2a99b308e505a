#pragma once

#include <QColor>
#include <QIconEngine>
#include <QString>

namespace velmora {

/// A symbol as an icon, drawn at the size that is asked for; dimmed where the control is disabled.
class SymbolIconEngine final : public QIconEngine {
 public:
  SymbolIconEngine(QString name, const QColor& color, double size)
      : name_(std::move(name)), color_(color), size_(qRound(size)) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override;
  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override;
  QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override { return {{size_, size_}}; }
  QIconEngine* clone() const override { return new SymbolIconEngine(*this); }

 private:
  QString name_;
  QColor color_;
  int size_;
};

}  // namespace velmora
