#include "fuzz/world.hpp"

#include <cmath>
#include <limits>

#include "ovhost/values/text.hpp"

namespace fuzz {

namespace {

using namespace operator_library;  // NOLINT: the alternatives of value
using ovhost::value_kind;

// Encoded texts keep their units for the core's cells, which take a view.
ovcoredb::cell cell_of(const ov::sql_executor::value& from, std::u16string& units) {
  return std::visit(
      [&]<class T>(const T& held) -> ovcoredb::cell {
        if constexpr (std::same_as<T, db_string::tt_string>) return std::u16string_view(units = ovhost::decode(held));
        if constexpr (std::same_as<T, Binary>) return std::span(held.bytes);
        if constexpr (std::same_as<T, Decimal>) return ovcoredb::decimal{held.raw};
        if constexpr (std::constructible_from<ovcoredb::cell, T>) return held;
        return {};
      },
      from);
}

template <class Number>
Number extreme(choices& from) {
  constexpr auto bits = static_cast<int>(sizeof(Number) * 8 - 11);
  const Number numbers[] = {std::numeric_limits<Number>::max(), std::numeric_limits<Number>::lowest(),
                            static_cast<Number>(std::uint64_t{1} << bits), static_cast<Number>(-0.0)};
  return from.of(numbers);
}

template <class Number>
Number floating(choices& from) {
  using limits = std::numeric_limits<Number>;
  const Number numbers[] = {Number{0.5},        Number{-1.25},        limits::quiet_NaN(),
                            limits::infinity(), limits::denorm_min(), extreme<Number>(from)};
  return from.of(numbers);
}

}  // namespace

ov::sql_executor::value any_value(value_kind kind, choices& from) {
  static const std::u16string_view texts[] = {
      u"", u"x", u"xy", u"y%", u"_", u"\\", u"Xé\xD83D\xDE00", u"p", u"xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx"};
  const auto small = static_cast<std::int64_t>(from.below(7)) - 2;
  const bool is_extreme = from.one_in(12);
  constexpr std::int64_t largest = 4'398'046'511'103'999'999;
  if (kind == value_kind::boolean) return small > 0;
  if (kind == value_kind::text) return ovhost::encode(from.of(texts));
  if (kind == value_kind::uint64) {
    return is_extreme ? extreme<std::uint64_t>(from) : static_cast<std::uint64_t>(small + 2);
  }
  if (kind == value_kind::int64) return is_extreme ? extreme<std::int64_t>(from) : small;
  if (kind == value_kind::decimal) return Decimal{is_extreme ? largest * (small < 0 ? -1 : 1) : small * 500'000};
  if (kind == value_kind::float64) return is_extreme ? floating<double>(from) : static_cast<double>(small);
  if (kind == value_kind::float32) return is_extreme ? floating<float>(from) : static_cast<float>(small);
  if (kind == value_kind::binary) {
    return Binary{std::vector<std::uint8_t>(from.below(35), static_cast<std::uint8_t>(small))};
  }
  if (kind == value_kind::reference) return OV_OBJ_REF{from.below(300), 0};
  if (kind == value_kind::set_specifier) return SetSpecifier{std::u16string(from.of(texts))};
  return NullValue{};
}

const std::vector<index>& indexes() {
  using enum value_kind;
  static const std::vector<index> all = {
      {"by_id", {{"id", false}}, {int64}},
      {"by_n", {{"n"}}, {int64}},
      {"by_u_d", {{"u", false}, {"d"}}, {uint64, decimal}},
      {"by_t", {{"t"}, {"n", false}}, {value_kind::text, int64}},
      {"by_b_x", {{"b"}, {"x"}, {"r"}}, {boolean, binary, reference}},
      {"by_kind", {{"object_type"}, {"t", false}}, {set_specifier, value_kind::text}}};
  return all;
}

world& world::only() {
  static world one;
  return one;
}

world::world() {
  std::vector<ovhost::member_definition> members;
  for (const property& each : properties) {
    members.push_back({each.name, each.kind});
    if (each.kind == value_kind::reference) members.back().type = ovhost::refers_to{"p"};
  }
  definitions_.define_tables({{"p", members}, {"q", {{"more", value_kind::int64}}, "p"}});
  for (const char* table : {"p", "q"}) {
    for (const index& each : indexes()) definitions_.define_index({table, each.name, each.columns});
  }
  defined_ = database_.object_count();
}

void world::refill(choices& from) {
  database_.remove_after(defined_);
  last_ = {};
  const std::size_t rows = from.below(7);
  for (std::size_t id = 0; id < rows; ++id) {
    insert(from.below(3) == 0 ? "q" : "p", static_cast<std::int64_t>(id), from);
  }
}

void world::insert(const char* table, std::int64_t id, choices& from) {
  std::u16string units;
  std::vector<ov::sql_executor::value> values;  // which the cells refer to
  std::vector<ovcoredb::cell> cells;
  values.reserve(std::size(properties));
  for (const property& each : properties) {
    if (each.kind == value_kind::reference) {
      cells.push_back(last_.object_number == 0 || from.below(3) == 0 ? ovcoredb::cell() : ovcoredb::cell(last_));
    } else {
      values.push_back(from.below(4) == 0 ? ov::sql_executor::value(NullValue{}) : any_value(each.kind, from));
      cells.push_back(cell_of(values.back(), units));
    }
  }
  cells[0] = id;
  if (table[0] == 'q') cells.push_back(id);
  const OV_OBJ_REF added = database_.insert(ovhost::catalog(context()).table(table).tag, cells);
  if (from.below(2) == 0) last_ = added;
}

}  // namespace fuzz
