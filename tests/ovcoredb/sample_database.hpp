// A small database with a column of every type, for the tests of statuses, getters and definitions.
#ifndef OVCOREDB_SAMPLE_DATABASE_HPP_
#define OVCOREDB_SAMPLE_DATABASE_HPP_

#include <cstdint>
#include <vector>

#include "ovcoredb/database.hpp"

struct sample_database {
  // Own column numbers of `place`.
  enum : std::uint32_t { id = 2, level, price, ratio, area, name, image, owner, open, unused };
  // and of `city`, which derives from it.
  enum : std::uint32_t { mayor = 2 };

  ovcoredb::database database;
  std::uint16_t place = database.create_table(
      {.set_specifier = u"/Place/",
       .columns = {ovcoredb::column_type::uint64, ovcoredb::column_type::int64, ovcoredb::column_type::decimal,
                   ovcoredb::column_type::float32, ovcoredb::column_type::float64, ovcoredb::column_type::text,
                   ovcoredb::column_type::binary, ovcoredb::column_type::reference, ovcoredb::column_type::boolean,
                   ovcoredb::column_type::none}});
  std::uint16_t city = database.create_table(
      {.set_specifier = u"/Place/City/", .columns = {ovcoredb::column_type::text}, .base = place});
  std::uint16_t other = database.create_table({.set_specifier = u"/Other/"});
  std::uint64_t by_id = database.create_index({.table = place, .columns = {{id}}, .unique = true});
  std::uint64_t by_name = database.create_index({.table = place, .columns = {{name}, {image, false}}});
  std::vector<std::uint8_t> image_bytes = {1, 0, 255};

  std::vector<ovcoredb::cell> place_cells(std::uint64_t id_value, std::u16string_view name_value) const {
    return {id_value,
            std::int64_t{-5},
            ovcoredb::decimal{1500000},
            1.5f,
            -2.25,
            name_value,
            std::span<const std::uint8_t>(image_bytes),
            OV_OBJ_REF{77, 0x0000123456789ABC},
            true,
            {}};
  }

  OV_OBJ_REF insert_place(std::uint64_t id_value, std::u16string_view name_value) {
    return database.insert(place, place_cells(id_value, name_value));
  }
  OV_OBJ_REF insert_city(std::uint64_t id_value, std::u16string_view name_value, std::u16string_view mayor_value) {
    auto cells = place_cells(id_value, name_value);
    cells.emplace_back(mayor_value);
    return database.insert(city, cells);
  }
  OV_OBJ_REF insert_empty_place() { return database.insert(place, std::vector<ovcoredb::cell>(10)); }
};

#endif  // OVCOREDB_SAMPLE_DATABASE_HPP_
