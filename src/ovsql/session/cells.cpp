#include "ovsql/session/cells.hpp"

#include <cmath>
#include <limits>
#include <optional>

#include "ov_sql_executor/values/int128.hpp"
#include "ovhost/values/text.hpp"
#include "ovhost/values/value_words.hpp"
#include "ovsql/binding/types.hpp"
#include "ovsql/errors/error.hpp"

namespace ovsql {
namespace {

using operator_library::Binary;
using operator_library::Decimal;
using operator_library::NullValue;
using ov::sql_executor::int128;
using ov::sql_executor::value;

constexpr std::int64_t million = 1'000'000;
constexpr std::int64_t most_millionths = 4'398'046'511'103'999'999;

// A number as a whole one, if it is whole; -2^63 to 2^64 - 1.
struct whole_reader {
  std::optional<int128> operator()(bool of) const { return of ? 1 : 0; }
  std::optional<int128> operator()(std::int64_t of) const { return of; }
  std::optional<int128> operator()(std::uint64_t of) const { return of; }
  std::optional<int128> operator()(Decimal of) const {
    if (of.raw % million != 0) return std::nullopt;
    return of.raw / million;
  }
  std::optional<int128> operator()(double of) const {
    if (!(of >= -0x1p63 && of < 0x1p64) || of != std::trunc(of)) return std::nullopt;
    return static_cast<int128>(of);
  }
  std::optional<int128> operator()(float of) const { return (*this)(static_cast<double>(of)); }
  template <class Other>
  std::optional<int128> operator()(const Other&) const {
    return std::nullopt;
  }
};

struct double_reader {
  double operator()(bool of) const { return of ? 1 : 0; }
  double operator()(std::int64_t of) const { return static_cast<double>(of); }
  double operator()(std::uint64_t of) const { return static_cast<double>(of); }
  double operator()(Decimal of) const { return static_cast<double>(of.raw) / million; }
  double operator()(double of) const { return of; }
  double operator()(float of) const { return of; }
  template <class Other>
  double operator()(const Other&) const {
    return 0;
  }
};

// A number in millionths, if it has no more than six digits behind the point.
std::optional<std::int64_t> millionths_of(const value& of) {
  if (const auto* const decimal = std::get_if<Decimal>(&of)) return decimal->raw;
  if (std::holds_alternative<double>(of) || std::holds_alternative<float>(of)) {
    const double scaled = std::round(std::visit(double_reader(), of) * million);
    if (!(std::abs(scaled) <= 4.3e18)) return std::nullopt;
    return static_cast<std::int64_t>(scaled);
  }
  const auto whole = std::visit(whole_reader(), of);
  if (!whole || *whole > most_millionths / million || *whole < -(most_millionths / million)) return std::nullopt;
  return static_cast<std::int64_t>(*whole) * million;
}

}  // namespace

row_of_cells::row_of_cells(const catalog& names, const table& of)
    : names_(names), table_(of), is_set_(of.columns.size()), texts_(of.columns.size()), cells_(of.columns.size()) {
  for (std::size_t at = 0; at < of.columns.size(); ++at) rules_.push_back(names.rule(of, at));
}

void row_of_cells::refuse(std::size_t column, const std::string& what) const {
  throw error(error_kind::value,
              "column \"" + table_.columns[column].property.name + "\" of table \"" + table_.name() + "\" " + what);
}

bool row_of_cells::is_kind_of(std::uint16_t tag, const table& target) const {
  for (const auto& [name, each] : names_.tables()) {
    if (each.info.tag != tag) continue;
    for (const table* next = &each; next != nullptr; next = names_.table_of(next->info.base)) {
      if (next == &target) return true;
    }
  }
  return false;
}

void row_of_cells::set(std::size_t column, const value& of) {
  is_set_[column] = true;
  cells_[column] = std::holds_alternative<NullValue>(of) ? ovcoredb::cell() : convert(column, of);
}

ovcoredb::cell row_of_cells::convert(std::size_t column, const value& of) {
  const value_kind kind = table_.columns[column].property.kind;
  const value_kind given = static_cast<value_kind>(of.index());
  if (family_of(kind) != family_of(given)) {
    throw error(error_kind::type, "column \"" + table_.columns[column].property.name + "\" of table \"" +
                                      table_.name() + "\" is " + std::string(sql_name(kind)) + ", and the value " +
                                      ovhost::cell_words(of, "") + " is " + std::string(sql_name(given)));
  }
  const auto does_not_fit = [&] {
    refuse(column, "is " + std::string(sql_name(kind)) + " and cannot hold " + ovhost::cell_words(of, ""));
  };
  switch (kind) {
    case value_kind::boolean: {
      const auto whole = std::visit(whole_reader(), of);
      if (!whole || *whole < 0 || *whole > 1) does_not_fit();
      return *whole == 1;
    }
    case value_kind::int64: {
      const auto whole = std::visit(whole_reader(), of);
      if (!whole || *whole > std::numeric_limits<std::int64_t>::max()) does_not_fit();
      return static_cast<std::int64_t>(*whole);
    }
    case value_kind::uint64: {
      const auto whole = std::visit(whole_reader(), of);
      if (!whole || *whole < 0) does_not_fit();
      return static_cast<std::uint64_t>(*whole);
    }
    case value_kind::decimal: {
      const auto millionths = millionths_of(of);
      if (!millionths || *millionths > most_millionths || *millionths < -most_millionths) does_not_fit();
      return ovcoredb::decimal{*millionths};
    }
    case value_kind::float64:
      return std::visit(double_reader(), of);
    case value_kind::float32:
      return static_cast<float>(std::visit(double_reader(), of));
    case value_kind::text:
      texts_[column] = ovhost::decode(std::get<db_string::tt_string>(of));
      return std::u16string_view(texts_[column]);
    case value_kind::binary:
      return std::span<const std::uint8_t>(std::get<Binary>(of).bytes);
    case value_kind::reference: {
      const OV_OBJ_REF object = std::get<OV_OBJ_REF>(of);
      const table* const target = table_.columns[column].target;
      if (target != nullptr && !is_kind_of(static_cast<std::uint16_t>(object.second_word), *target)) {
        refuse(column, "refers to objects of table \"" + target->name() + "\", not to " + ovhost::cell_words(of, ""));
      }
      return object;
    }
    default:
      does_not_fit();
  }
  return {};
}

const std::vector<ovcoredb::cell>& row_of_cells::finish() {
  for (std::size_t at = 0; at < cells_.size(); ++at) {
    if (!is_set_[at] && rules_[at].default_value) set(at, *rules_[at].default_value);
    if (!rules_[at].not_null || !std::holds_alternative<std::monostate>(cells_[at])) continue;
    throw error(error_kind::constraint,
                "column \"" + table_.columns[at].property.name + "\" of table \"" + table_.name() + "\" is NOT NULL");
  }
  return cells_;
}

void row_of_cells::clear() {
  is_set_.assign(is_set_.size(), false);
  cells_.assign(cells_.size(), {});
}

}  // namespace ovsql
