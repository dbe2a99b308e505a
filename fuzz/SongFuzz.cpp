#include <cstddef>
#include <cstdint>

#include "fuzz/SongFuzzCase.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  velmora::songFuzzCase({reinterpret_cast<const char*>(data), size});
  return 0;
}
