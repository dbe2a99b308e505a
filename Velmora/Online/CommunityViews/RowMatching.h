#pragma once

#include <algorithm>
#include <memory>
#include <unordered_map>
#include <utility>
#include <vector>

#include "VelmoraCore/Song/UUID.h"

namespace velmora {

/// Puts the rows in the order of the values: each value keeps the row that shows its `id` already, with its
/// focus and its place on the screen. Other rows are used again or, left over, deleted. `make` makes one
/// more; all are told what to show.
template <class Row, class Value, class Make>
void matchRows(std::vector<std::unique_ptr<Row>>& rows, const std::vector<Value>& values, const Make& make) {
  std::unordered_map<UUID, std::unique_ptr<Row>> known;
  std::vector<std::unique_ptr<Row>> spare;
  for (auto& row : std::exchange(rows, {})) {
    if (const UUID id = row->id(); known.contains(id)) {
      spare.push_back(std::move(row));
    } else {
      known.emplace(id, std::move(row));
    }
  }
  for (const Value& value : values) {
    auto node = known.extract(value.id);
    rows.push_back(node ? std::move(node.mapped()) : nullptr);
  }
  for (auto& [id, row] : known) spare.push_back(std::move(row));
  for (std::size_t n = 0; n < values.size(); ++n) {
    if (!rows[n] && !spare.empty()) {
      rows[n] = std::move(spare.back());
      spare.pop_back();
    }
    if (!rows[n]) rows[n] = make();
    rows[n]->show(values[n]);
  }
}

}  // namespace velmora
