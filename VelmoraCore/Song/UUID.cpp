#include "VelmoraCore/Song/UUID.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <random>

namespace velmora {
namespace {

constexpr std::size_t textLength = 36;
constexpr std::string_view upperDigits = "0123456789ABCDEF";

constexpr bool hyphenBefore(std::size_t byte) { return byte == 4 || byte == 6 || byte == 8 || byte == 10; }

int digitValue(char digit) {
  if (digit >= '0' && digit <= '9') return digit - '0';
  if (digit >= 'A' && digit <= 'F') return digit - 'A' + 10;
  if (digit >= 'a' && digit <= 'f') return digit - 'a' + 10;
  return -1;
}

std::mt19937_64 seededGenerator() {
  std::random_device device;
  std::array<std::random_device::result_type, 16> entropy;
  std::generate(entropy.begin(), entropy.end(), std::ref(device));
  std::seed_seq seed(entropy.begin(), entropy.end());
  return std::mt19937_64(seed);
}

}  // namespace

UUID UUID::random() {
  thread_local std::mt19937_64 generator = seededGenerator();
  const std::array<std::uint64_t, 2> words{generator(), generator()};
  UUID id;
  std::memcpy(id.bytes.data(), words.data(), sizeof words);
  id.bytes[6] = static_cast<std::uint8_t>((id.bytes[6] & 0x0F) | 0x40);  // version 4
  id.bytes[8] = static_cast<std::uint8_t>((id.bytes[8] & 0x3F) | 0x80);  // the RFC 4122 variant
  return id;
}

std::optional<UUID> UUID::parse(std::string_view text) {
  if (text.size() != textLength) return {};
  UUID id;
  std::size_t at = 0;
  for (std::size_t byte = 0; byte < id.bytes.size(); ++byte) {
    if (hyphenBefore(byte) && text[at++] != '-') return {};
    const int high = digitValue(text[at++]);
    const int low = digitValue(text[at++]);
    if (high < 0 || low < 0) return {};
    id.bytes[byte] = static_cast<std::uint8_t>(high * 16 + low);
  }
  return id;
}

std::string UUID::text() const {
  std::string text;
  text.reserve(textLength);
  for (std::size_t byte = 0; byte < bytes.size(); ++byte) {
    if (hyphenBefore(byte)) text += '-';
    text += upperDigits[bytes[byte] >> 4];
    text += upperDigits[bytes[byte] & 0x0F];
  }
  return text;
}

}  // namespace velmora

std::size_t std::hash<velmora::UUID>::operator()(const velmora::UUID& id) const noexcept {
  std::array<std::uint64_t, 2> words;
  std::memcpy(words.data(), id.bytes.data(), sizeof words);
  // Ids of other writers needn't be random, so both halves are mixed (the multiplier of splitmix64).
  std::uint64_t mixed = (words[0] ^ (words[0] >> 30)) * 0xBF58476D1CE4E5B9U + words[1];
  mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EBU;
  return static_cast<std::size_t>(mixed ^ (mixed >> 31));
}
