#pragma once

#include <QString>
#include <QWidget>
#include <functional>

namespace velmora {

/// What stands in an editor's place while there is nothing to edit: a few words in the middle, and a way on.
class EditorPlaceholder final : public QWidget {
 public:
  struct Words {
    QString symbol{};
    QString title{};
    QString text{};
    QString button{};  ///< empty for none
  };

  EditorPlaceholder(const Words& words, std::function<void()> onPress, QWidget* parent);
};

}  // namespace velmora
