#pragma once

#include <cstdint>

#include "Velmora/Theme/PaintedButton.h"

namespace velmora {

/// The number of a post's upvotes, lit if one of them is the user's. A press asks for the other state, which
/// shows once the service has agreed.
class VoteButton final : public PaintedButton {
 public:
  static constexpr int width = 76;

  explicit VoteButton(QWidget* parent = nullptr);

  void setVotes(std::int64_t votes, bool isVoted);

  QSize sizeHint() const override { return {width, 44}; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  bool isVoted_ = false;
};

}  // namespace velmora
