#include "ovcoredb/storage/object_store.hpp"

#include <cassert>
#include <utility>

#include "ovcoredb/text/text_encoding.hpp"

namespace ovcoredb {

table& object_store::create_table(const table_definition& definition) {
  assert(definition.tag != 0 && find_table(definition.tag) == nullptr);
  auto created = std::make_unique<table>();
  if (const table* const base = find_table(definition.base); base != nullptr) {
    created->segments = base->segments;
    created->indexes = base->indexes;
    for (const column& each : base->columns) created->columns.emplace_back(each.type());
  }
  created->tag = definition.tag;
  created->segments.insert(created->segments.begin(),
                           {definition.tag, static_cast<std::uint32_t>(created->columns.size()),
                            static_cast<std::uint32_t>(definition.columns.size())});
  for (const column_type type : definition.columns) created->columns.emplace_back(type);
  created->set_specifier = definition.set_specifier;
  created->encoded_set_specifier.resize(encoded_size(definition.set_specifier, text_end::text));
  encode_text(definition.set_specifier, text_end::text, created->encoded_set_specifier.data());
  tags_.reserve(tags_.size() + 1);
  if (tables_.size() <= definition.tag) tables_.resize(definition.tag + std::size_t{1});
  tables_[definition.tag] = std::move(created);
  tags_.push_back(definition.tag);
  return *tables_[definition.tag];
}

void object_store::remove_last_table() {
  tables_[tags_.back()].reset();
  tags_.pop_back();
  while (!tables_.empty() && tables_.back() == nullptr) tables_.pop_back();
}

std::uint64_t object_store::append(table& to, std::span<const cell> cells) {
  assert(cells.size() == to.columns.size());
  try {
    for (std::size_t i = 0; i < cells.size(); ++i) to.columns[i].append(cells[i]);
    places_.push_back({to.rows, to.tag});
  } catch (...) {
    to.truncate(to.rows);
    throw;
  }
  ++to.rows;
  return places_.size();
}

void object_store::remove_last() {
  assert(object_count() != 0);
  const packed_place place = places_[places_.size() - 1];
  tables_[place.tag()]->truncate(place.row());
  places_.pop_back();
}

}  // namespace ovcoredb
