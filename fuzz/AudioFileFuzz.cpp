#include <cstddef>
#include <cstdint>

#include "fuzz/AudioFileFuzzCase.h"

// libvorbis' header state leaks when libsndfile gives up on a damaged Ogg file: about 6 kB a file, which is
// theirs.
extern "C" const char* __lsan_default_suppressions() { return "leak:vorbis_info_init\n"; }

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  velmora::audioFileFuzzCase({reinterpret_cast<const char*>(data), size});
  return 0;
}
