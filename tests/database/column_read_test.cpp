#include "ov_sql_executor/database/column_read.hpp"

#include <gtest/gtest.h>

#include "core_shim/core_shim.hpp"
#include "outcome.hpp"
#include "ovcoredb/database.hpp"

namespace tests {
namespace {

using ovcoredb::cell;

// A table of every type with one object that has values, one of extremes and one without any.
class ColumnRead : public testing::Test {
 protected:
  ColumnRead() {
    using enum ovcoredb::column_type;
    const std::uint16_t table = database.create_table(
        {u"/T/", {uint64, int64, decimal, float32, float64, text, binary, reference, boolean}, 0, 16});
    const std::uint8_t bytes[] = {1, 0xFF};
    const std::vector<cell> rows_of_cells[] = {
        {std::uint64_t{2}, std::int64_t{-3}, ovcoredb::decimal{1'500'000}, 2.5F, 4.5, std::u16string_view(u"ab"),
         std::span(bytes), OV_OBJ_REF{9, 0x10010}, true},
        {~std::uint64_t{0}, std::int64_t{0}, ovcoredb::decimal{-1}, 0.0F, 0.0, std::u16string_view(),
         std::span<const std::uint8_t>(), OV_OBJ_REF{0, 16}, false},
        std::vector<cell>(9)};
    for (std::size_t n = 0; n < 3; ++n) objects[n] = database.insert(table, rows_of_cells[n]);
    core_shim::reset();
  }

  std::string read(type_code type, std::uint32_t column, std::size_t object) {
    return outcome([&] {
      value room;
      return to_value(db_util::read_column(type, context.handle(), objects[object], column, room));
    });
  }

  ovcoredb::database database;
  ovcoredb::context context{database};
  OV_OBJ_REF objects[3];
};

TEST_F(ColumnRead, every_type) {
  using enum type_code;
  const struct {
    type_code type;
    std::uint32_t column;
    const char* full;
    const char* edges;
    const char* call;
  } cases[] = {
      {uint64, 2, "u2", "u18446744073709551615", "orv_context_get_ulong"},
      {int64, 3, "i-3", "i0", "orv_context_get_long"},
      {decimal, 4, "dec1500000", "dec-1", "orv_context_get_decimal"},
      {float32, 5, "f2.5", "f0", "orv_context_get_float"},
      {float64, 6, "d4.5", "d0", "orv_context_get_double"},
      {tt_string, 7, "'ab'", "''", "orv_context_get_binary"},
      {binary, 8, "x'01ff'", "x''", "orv_context_get_binary"},
      {obj_ref, 9, "ref9", "ref0", "orv_context_get_reference"},
      {boolean, 10, "true", "false", "orv_meta_get_bool"},
      {boolean, 2, "true", "true", "orv_meta_get_bool"},  // anything but zero
  };
  for (const auto& each : cases) {
    core_shim::reset();
    EXPECT_EQ(read(each.type, each.column, 0), each.full);
    EXPECT_EQ(core_shim::calls(each.call), 1U) << each.call;
    EXPECT_EQ(read(each.type, each.column, 1), each.edges);
    EXPECT_EQ(read(each.type, each.column, 2), "NULL") << each.call;
    core_shim::fail_call(each.call, 1, 4711);
    EXPECT_EQ(read(each.type, each.column, 0), "4711") << each.call;
  }
}

TEST_F(ColumnRead, set_specifier_is_the_object_s_whatever_the_column) {
  EXPECT_EQ(read(type_code::set_specifier, 77, 2), "set'/T/'");
  core_shim::fail_call("orv_context_get_setspec", 1, ORV_NO_VALUE);
  EXPECT_EQ(read(type_code::set_specifier, 1, 0), "NULL");
  core_shim::fail_call("orv_context_get_setspec", 1, 12);
  EXPECT_EQ(read(type_code::set_specifier, 1, 0), "12");
}

}  // namespace
}  // namespace tests
