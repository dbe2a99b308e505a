#pragma once

#include <charconv>
#include <cmath>
#include <concepts>
#include <cstddef>
#include <string>
#include <string_view>

namespace velmora {

/// Writes JSON text piece by piece: two blanks an indent, one key or element a line, `[]` and `{}` when
/// empty.
class JSONPrinter {
 public:
  void open(char bracket);
  void close(char bracket);

  /// Starts the next element of an array, or the next member of an object with its key, which needs no
  /// escapes.
  void element();
  void key(std::string_view key);

  void value(bool truth) { text_ += truth ? "true" : "false"; }

  /// A string whose ill-formed UTF-8 is replaced by U+FFFD.
  void value(std::string_view string);

  /// A string that needs no escapes.
  void plainValue(std::string_view string);

  void value(std::integral auto number) { append(number); }

  /// The shortest form that reads back to the same value in the number's own width. JSON has no form for
  /// numbers that aren't finite, which no valid document holds: they become null.
  void value(std::floating_point auto number) {
    if (!std::isfinite(number)) {
      text_ += "null";
    } else {
      append(number);
      if (number == 0 && std::signbit(number))
        text_ += ".0";  // "-0" would read back as an integer without a sign
    }
  }

  std::string take() { return std::move(text_); }

 private:
  void append(auto number) {
    char digits[32];
    const auto written = std::to_chars(digits, digits + sizeof digits, number);
    text_.append(digits, written.ptr);
  }
  void newLine();

  std::string text_;
  std::size_t depth_ = 0;
  bool isFirst_ = true;
};

}  // namespace velmora
