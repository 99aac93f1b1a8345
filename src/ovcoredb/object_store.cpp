#include "ovcoredb/object_store.hpp"

#include <algorithm>

#include "ovcoredb/text_code.hpp"

namespace ovcoredb {
namespace {

void truncate_rows(table& of, std::uint64_t rows) {
  for (column& each : of.columns) each.truncate(rows);
  of.rows = rows;
}

}  // namespace

const column_segment* table::find_base_segment(std::uint16_t segment_tag) const {
  const auto found =
      std::find_if(segments.begin() + 1, segments.end(), [&](const auto& each) { return each.tag == segment_tag; });
  return found == segments.end() ? nullptr : &*found;
}

table& object_store::create_table(const table_definition& definition) {
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
  try {
    for (std::size_t i = 0; i < cells.size(); ++i) to.columns[i].append(cells[i]);
    places_.push_back({to.rows, to.tag});
  } catch (...) {
    truncate_rows(to, to.rows);
    throw;
  }
  ++to.rows;
  return places_.size();
}

void object_store::remove_last() {
  const packed_place place = places_[places_.size() - 1];
  truncate_rows(*tables_[place.tag()], place.row());
  places_.pop_back();
}

}  // namespace ovcoredb
