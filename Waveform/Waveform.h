#pragma once

#include <QImage>
#include <QWidget>
#include <cstdint>
#include <memory>

#include "Waveform/Renderer.h"

namespace waveform {

/// Shows a run of samples over its whole width, crisp at any scale. Its ground shows through.
class Waveform final : public QWidget {
 public:
  explicit Waveform(QWidget* parent = nullptr);

  /// Shows `length` samples of the buffer, which may be null, from `start` on.
  void set(std::shared_ptr<const SampleBuffer> samples, std::int64_t start, std::int64_t length,
           const Constants& constants);

  const Renderer& renderer() const { return renderer_; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  Renderer renderer_;
  QImage picture_;  // of the pixels of the device
  bool isStale_ = true;
};

}  // namespace waveform
