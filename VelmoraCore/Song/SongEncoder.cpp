#include "VelmoraCore/Song/JSONPrinter.h"
#include "VelmoraCore/Song/SongFields.h"
#include "VelmoraCore/Song/SongJSON.h"

namespace velmora {
namespace {

using namespace fields;

template <class T>
void print(JSONPrinter& printer, const T& value);

template <Record T>
void printRecord(JSONPrinter& printer, const T& record) {
  printer.open('{');
  forEach(fieldsOf<T>, [&]<class Field>(const Field& field) {
    const auto& value = record.*field.member;
    if constexpr (isOptional<typename Field::Type>) {
      if (!value) return;
      printer.key(field.key);
      print(printer, *value);
    } else {
      printer.key(field.key);
      print(printer, value);
    }
  });
  printer.close('}');
}

template <Tagged T>
void printTagged(JSONPrinter& printer, const T& value) {
  printer.open('{');
  forEach(casesOf<T>, [&]<class Case>(const Case& one) {
    if (!(value.*one.holds)()) return;
    printer.key(one.key);
    printer.open('{');
    if constexpr (!std::is_void_v<typename Case::Type>) {
      printer.key(payloadKey);
      print(printer, one.payload(value));
    }
    printer.close('}');
  });
  printer.close('}');
}

template <class T>
void print(JSONPrinter& printer, const T& value) {
  if constexpr (Record<T>) {
    printRecord(printer, value);
  } else if constexpr (Tagged<T>) {
    printTagged(printer, value);
  } else if constexpr (isList<T>) {
    printer.open('[');
    for (const auto& item : value) {
      printer.element();
      print(printer, item);
    }
    printer.close(']');
  } else if constexpr (std::is_same_v<T, UUID>) {
    printer.plainValue(value.text());
  } else if constexpr (std::is_enum_v<T>) {
    printer.plainValue(storedValue(value));
  } else {
    printer.value(value);
  }
}

}  // namespace

std::string encodeSong(const Song& song) {
  JSONPrinter printer;
  print(printer, song);
  return printer.take();
}

}  // namespace velmora
