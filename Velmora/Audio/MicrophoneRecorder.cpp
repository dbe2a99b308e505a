#include "Velmora/Audio/MicrophoneRecorder.h"

#include <utility>

#include "Platform/Audio/OutputDevice.h"

namespace velmora {

MicrophoneRecorder::MicrophoneRecorder(std::unique_ptr<platform::InputRecorder> input)
    : input_(std::move(input)) {}

void MicrophoneRecorder::start(const std::filesystem::path& url) {
  if (!input_) throw RecordingError::failed();
  try {
    input_->start(url, longestTakeSeconds);
  } catch (const platform::AccessDenied&) {
    throw RecordingError::permission();
  } catch (const platform::DeviceError&) {
    throw RecordingError::failed();
  }
}

bool MicrophoneRecorder::stop() { return !input_ || input_->stop(); }

double MicrophoneRecorder::currentTime() const { return input_ ? input_->currentTime() : 0; }

void MicrophoneRecorder::setOnFinished(std::function<void(bool)> onFinished) {
  if (input_) input_->setOnFinished(std::move(onFinished));
}

}  // namespace velmora
