// The tables, and the objects in them by number. An object has one row, in its own table.
#ifndef OVCOREDB_STORAGE_OBJECT_STORE_HPP_
#define OVCOREDB_STORAGE_OBJECT_STORE_HPP_

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "ovcoredb/database.hpp"
#include "ovcoredb/storage/place_directory.hpp"
#include "ovcoredb/storage/table.hpp"

namespace ovcoredb {

// Where an object lies. Null table: no such object.
struct object_place {
  const table* in = nullptr;
  std::uint64_t row = 0;
};

class object_store {
 public:
  // Requires: check_table accepts the definition, and its tag is not 0.
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

  // The longest run that holds the object, in object numbers. Requires: the object exists.
  place_run run_of(std::uint64_t number) const {
    place_run run = places_.run_of(number - 1);
    ++run.first;
    return run;
  }

  // Adds an object and returns its number, the next one. When it throws, nothing has changed. Requires: check_cells
  // accepts the cells.
  std::uint64_t append(table& to, std::span<const cell> cells);

  // Requires: there is an object.
  void remove_last();

 private:
  std::vector<std::unique_ptr<table>> tables_;
  std::vector<std::uint16_t> tags_;  // of the tables, in the order of creation
  place_directory places_;           // by object number - 1
};

}  // namespace ovcoredb

#endif  // OVCOREDB_STORAGE_OBJECT_STORE_HPP_
