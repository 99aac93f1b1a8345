// Tables and the objects in them. An object has one row, in its own table, which holds the columns of the table's bases
// too, the outermost base's first: a column has the same place in every table that derives from the one declaring it.
#ifndef OVCOREDB_OBJECT_STORE_HPP_
#define OVCOREDB_OBJECT_STORE_HPP_

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "ovcoredb/column.hpp"
#include "ovcoredb/database.hpp"
#include "ovcoredb/place_directory.hpp"

namespace ovcoredb {

class ordered_index;

// Column numbers that every table has; the declared ones follow.
inline constexpr std::uint32_t number_column = 0;
inline constexpr std::uint32_t set_specifier_column = 1;
inline constexpr std::uint32_t first_declared_column = 2;

// The columns that one table of a derivation chain declares, as places in table::columns.
struct column_segment {
  std::uint16_t tag;
  std::uint32_t first;
  std::uint32_t count;
};

struct table {
  std::uint16_t tag = 0;
  std::uint64_t rows = 0;
  std::vector<column_segment> segments;  // its own, then its base's, and so on
  std::vector<column> columns;
  std::u16string set_specifier;
  std::vector<std::uint8_t> encoded_set_specifier;
  std::vector<ordered_index*> indexes;  // its own and those of its bases

  // Null when `segment_tag` is neither this table nor one that it derives from.
  const column_segment* find_segment(std::uint16_t segment_tag) const {
    if (segments.front().tag == segment_tag) return &segments.front();
    return find_base_segment(segment_tag);
  }

 private:
  const column_segment* find_base_segment(std::uint16_t segment_tag) const;
};

// An object's place. Null table: no such object.
struct object_place {
  const table* in = nullptr;
  std::uint64_t row = 0;
};

class object_store {
 public:
  // The definition must be sound: see database::create_table.
  table& create_table(const table_definition& definition);
  table* find_table(std::uint16_t tag) { return tag < tables_.size() ? tables_[tag].get() : nullptr; }
  const table* find_table(std::uint16_t tag) const { return tag < tables_.size() ? tables_[tag].get() : nullptr; }
  std::span<const std::unique_ptr<table>> tables() const { return tables_; }  // by tag, with gaps

  std::size_t table_count() const { return tags_.size(); }
  void remove_last_table();  // the one created last; it has no objects

  std::uint64_t object_count() const { return places_.size(); }

  object_place find_object(std::uint64_t number) const {
    if (number - 1 >= places_.size()) return {};
    const packed_place place = places_[number - 1];
    return {tables_[place.tag()].get(), place.row()};
  }

  // The object's run in the directory, counted in object numbers. The object exists.
  place_directory::run run_of(std::uint64_t number) const {
    place_directory::run run = places_.run_of(number - 1);
    ++run.first;
    return run;
  }

  // Gives the next number to a new object; each cell fits its column. An append that threw has no effect.
  std::uint64_t append(table& to, std::span<const cell> cells);
  void remove_last();

 private:
  std::vector<std::unique_ptr<table>> tables_;
  std::vector<std::uint16_t> tags_;  // of the tables, in the order of creation
  place_directory places_;           // by object number - 1
};

}  // namespace ovcoredb

#endif  // OVCOREDB_OBJECT_STORE_HPP_
