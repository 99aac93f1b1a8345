// The planner's names for the values of a row. The host makes them, the library only reads them.
#ifndef OV_SQL_EXECUTOR_EXPRESSIONS_COLUMN_REF_HPP_
#define OV_SQL_EXECUTOR_EXPRESSIONS_COLUMN_REF_HPP_

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <utility>
#include <variant>
#include <vector>

#include "ov_sql_executor/database/table_cache.hpp"
#include "ov_sql_executor/values/value.hpp"
#include "ov_sql_executor/values/variants.hpp"

namespace physical_queryplan {

using operator_library::Binary;
using operator_library::Decimal;
using operator_library::NullValue;
using operator_library::SetSpecifier;

// Four 32-bit words that name a variable or a computed column.
using identifier = std::array<std::uint32_t, 4>;

// A property, by its metadata object.
struct property_ref {
  OV_OBJ_REF object;

  friend bool operator==(const property_ref& left, const property_ref& right) {
    return left.object.object_number == right.object.object_number;
  }
};

struct variable_origin;

// A variable over the objects of a table. Two are equal when their tables (by object number), ids and origins are; the
// cache does not count. The chain of origins may be of any length.
struct variable {
  OV_OBJ_REF table{};
  std::shared_ptr<meta_data::Table::TableCache> cache;
  identifier id{};
  std::optional<std::unique_ptr<variable_origin>> parent;  // a null pointer means none

  inline variable();
  inline variable(OV_OBJ_REF table_object, std::shared_ptr<meta_data::Table::TableCache> table_cache, identifier name,
                  std::optional<std::unique_ptr<variable_origin>> origin = std::nullopt);
  inline variable(const variable& other);  // copies the origin, shares the cache
  inline variable(variable&& other) noexcept;
  inline variable& operator=(variable other) noexcept;
  inline ~variable();

  // Null for a variable without a parent.
  const variable_origin* origin() const { return parent ? parent->get() : nullptr; }

  friend inline bool operator==(const variable& left, const variable& right);
};

// Where a variable comes from: another variable and the properties that lead from it.
struct variable_origin {
  physical_queryplan::variable variable;
  std::vector<property_ref> path;

  friend inline bool operator==(const variable_origin& left, const variable_origin& right);
};

// A property of a variable, with values of alternative T.
template <class T>
struct property_column {
  property_ref property;
  physical_queryplan::variable variable;

  friend bool operator==(const property_column& left, const property_column& right) = default;
};

// A value that the plan computes, of alternative T.
template <class T>
struct computed {
  identifier id{};

  friend bool operator==(const computed& left, const computed& right) = default;
};

using computed_column = ov::sql_executor::one_of_each_type<computed>;

// Names one value of a row: a property (0 to 9; there are none of NullValue), a computed column (10 to 20) or an object
// (21). Two are equal when their alternatives and their payloads are.
using column_ref = ov::sql_executor::joined_variant<
    std::variant<property_column<bool>, property_column<db_string::tt_string>, property_column<std::uint64_t>,
                 property_column<std::int64_t>, property_column<Decimal>, property_column<double>,
                 property_column<float>, property_column<Binary>, property_column<OV_OBJ_REF>,
                 property_column<SetSpecifier>>,
    computed_column, std::variant<variable>>;
static_assert(std::variant_size_v<column_ref> == 22);

inline variable::variable() = default;
inline variable::variable(OV_OBJ_REF table_object, std::shared_ptr<meta_data::Table::TableCache> table_cache,
                          identifier name, std::optional<std::unique_ptr<variable_origin>> origin)
    : table(table_object), cache(std::move(table_cache)), id(name), parent(std::move(origin)) {}
inline variable::variable(const variable& other) : table(other.table), cache(other.cache), id(other.id) {
  variable* to = this;
  for (const variable_origin* from = other.origin(); from != nullptr; from = from->variable.origin()) {
    to->parent = std::make_unique<variable_origin>(
        variable_origin{variable(from->variable.table, from->variable.cache, from->variable.id), from->path});
    to = &(*to->parent)->variable;
  }
}
inline variable::variable(variable&& other) noexcept
    : table(other.table), cache(std::move(other.cache)), id(other.id), parent(std::exchange(other.parent, {})) {}
inline variable& variable::operator=(variable other) noexcept {
  std::swap(table, other.table);
  std::swap(cache, other.cache);
  std::swap(id, other.id);
  std::swap(parent, other.parent);
  return *this;
}
inline variable::~variable() {
  for (auto origin = std::exchange(parent, {}); origin;) {
    auto next = *origin ? std::exchange((*origin)->variable.parent, {}) : std::nullopt;
    origin = std::move(next);
  }
}

inline bool operator==(const variable& left, const variable& right) {
  const variable* a = &left;
  const variable* b = &right;
  while (a->table.object_number == b->table.object_number && a->id == b->id) {
    const variable_origin* const a_origin = a->origin();
    const variable_origin* const b_origin = b->origin();
    if (a_origin == nullptr || b_origin == nullptr) return a_origin == b_origin;
    if (a_origin->path != b_origin->path) return false;
    a = &a_origin->variable;
    b = &b_origin->variable;
  }
  return false;
}

inline bool operator==(const variable_origin& left, const variable_origin& right) {
  return left.path == right.path && left.variable == right.variable;
}

}  // namespace physical_queryplan

#endif  // OV_SQL_EXECUTOR_EXPRESSIONS_COLUMN_REF_HPP_
