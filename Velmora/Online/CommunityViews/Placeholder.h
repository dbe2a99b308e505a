#pragma once

#include <QWidget>

namespace velmora {

/// What stands where there is nothing to show: a symbol, a heading and a text in the middle.
QWidget* makePlaceholder(const QString& symbol, const QString& heading, const QString& text);

}  // namespace velmora
