#pragma once

#include <cstdint>
#include <random>
#include <utility>
#include <vector>

#include "VelmoraCore/Instruments/Instrument.h"

namespace velmora::testing {

/// A random performance: notes on few pitches (so that they repeat, overlap and are stolen) in blocks of any
/// size.
struct Performance {
  struct Event {
    int frame;
    std::uint8_t pitch;
    std::uint8_t velocity;
  };
  struct Block {
    int frameCount;
    std::vector<Event> events;
    bool cutsAllNotes;
  };
  std::vector<Block> blocks;

  explicit Performance(unsigned seed, int frames = 12000) {
    std::mt19937 random(seed);
    const auto upTo = [&](int most) { return static_cast<int>(random() % static_cast<unsigned>(most + 1)); };
    const int density = 1 + upTo(11);
    for (int done = 0; done < frames;) {
      Block block{1 + upTo(upTo(3) == 0 ? 1500 : 90), {}, upTo(60) == 0};
      for (int count = upTo(density); count > 0; --count) {
        block.events.push_back({upTo(block.frameCount + 5), static_cast<std::uint8_t>(20 + 7 * upTo(13)),
                                static_cast<std::uint8_t>(upTo(2) == 0 ? 0 : upTo(140))});
      }
      done += block.frameCount;
      blocks.push_back(std::move(block));
    }
  }

  std::vector<float> playedBy(Instrument& instrument) const {
    std::vector<float> result;
    for (const Block& block : blocks) {
      if (block.cutsAllNotes) instrument.allNotesOff();
      for (const Event& e : block.events) instrument.noteOn(e.pitch, e.velocity, e.frame);
      const std::size_t start = result.size();
      result.resize(start + static_cast<std::size_t>(block.frameCount));
      instrument.render(result.data() + start, block.frameCount);
    }
    return result;
  }
};

}  // namespace velmora::testing
