#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <vector>

namespace tonic {

/// A set of elements whose `intValue()` is 0 to 127, one bit an element in two words; others are never
/// members.
template <class Element>
class BitSetAdapter {
 public:
  BitSetAdapter() = default;
  BitSetAdapter(std::initializer_list<Element> elements) {
    for (Element element : elements) add(element);
  }

  void add(Element element) {
    if (fits(element)) words_[word(element)] |= bit(element);
  }
  void remove(Element element) {
    if (fits(element)) words_[word(element)] &= ~bit(element);
  }
  bool contains(Element element) const {
    return fits(element) && (words_[word(element)] & bit(element)) != 0;
  }
  bool isEmpty() const { return *this == BitSetAdapter(); }

  BitSetAdapter subtracting(const BitSetAdapter& other) const {
    return {words_[0] & ~other.words_[0], words_[1] & ~other.words_[1]};
  }
  BitSetAdapter united(const BitSetAdapter& other) const {
    return {words_[0] | other.words_[0], words_[1] | other.words_[1]};
  }

  /// The members in rising order.
  std::vector<Element> array() const {
    std::vector<Element> members;
    for (std::size_t i = 0; i < words_.size(); ++i) {
      for (std::uint64_t rest = words_[i]; rest != 0; rest &= rest - 1) {
        members.push_back(Element(static_cast<int>(i) * 64 + std::countr_zero(rest)));
      }
    }
    return members;
  }

  bool operator==(const BitSetAdapter&) const = default;

 private:
  BitSetAdapter(std::uint64_t low, std::uint64_t high) : words_{low, high} {}

  static bool fits(Element element) { return element.intValue() >= 0 && element.intValue() < 128; }
  static std::size_t word(Element element) { return static_cast<std::size_t>(element.intValue()) / 64; }
  static std::uint64_t bit(Element element) { return std::uint64_t{1} << (element.intValue() % 64); }

  std::array<std::uint64_t, 2> words_{};
};

}  // namespace tonic
