#include "VelmoraCore/Song/JSONPrinter.h"

#include <nlohmann/json.hpp>

namespace velmora {

void JSONPrinter::open(char bracket) {
  text_ += bracket;
  ++depth_;
  isFirst_ = true;
}

void JSONPrinter::close(char bracket) {
  --depth_;
  if (!isFirst_) newLine();
  text_ += bracket;
  isFirst_ = false;
}

void JSONPrinter::element() {
  if (!isFirst_) text_ += ',';
  newLine();
  isFirst_ = false;
}

void JSONPrinter::key(std::string_view key) {
  element();
  plainValue(key);
  text_ += ": ";
}

void JSONPrinter::value(std::string_view string) {
  text_ += nlohmann::json(string).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

void JSONPrinter::plainValue(std::string_view string) {
  text_ += '"';
  text_ += string;
  text_ += '"';
}

void JSONPrinter::newLine() {
  text_ += '\n';
  text_.append(2 * depth_, ' ');
}

}  // namespace velmora
