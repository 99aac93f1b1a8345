// A small database with a column of every type, for the tests of statuses, getters and definitions.
#ifndef OVCOREDB_SAMPLE_DATABASE_HPP_
#define OVCOREDB_SAMPLE_DATABASE_HPP_

#include <cstdint>
#include <vector>

#include "ovcoredb/database.hpp"

struct sample_database {
  using type = ovcoredb::column_type;
  // Own column numbers of `place`.
  enum : std::uint32_t { id = 2, level, price, ratio, area, name, image, owner, open, unused };
  // and of `city`, which derives from it.
  enum : std::uint32_t { mayor = 2 };

  ovcoredb::database database;
  std::uint16_t place = database.create_table({u"/Place/",
                                               {type::uint64, type::int64, type::decimal, type::float32, type::float64,
                                                type::text, type::binary, type::reference, type::boolean, type::none}});
  std::uint16_t city = database.create_table({u"/Place/City/", {type::text}, place});
  std::uint16_t other = database.create_table({.set_specifier = u"/Other/"});
  std::uint64_t by_id = database.create_index({.table = place, .columns = {{id}}, .unique = true});
  std::uint64_t by_name = database.create_index({.table = place, .columns = {{name}, {image, false}}});
  std::vector<std::uint8_t> image_bytes = {1, 0, 255};

  std::vector<ovcoredb::cell> place_cells(std::uint64_t id_value, std::u16string_view name_value) const {
    const std::int64_t level_value = -5;
    const ovcoredb::decimal price_value{1500000};
    const std::span<const std::uint8_t> image_value(image_bytes);
    const OV_OBJ_REF owner_value{77, 0x0000123456789ABC};
    const ovcoredb::cell none;
    return {id_value, level_value, price_value, 1.5F, -2.25, name_value, image_value, owner_value, true, none};
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
