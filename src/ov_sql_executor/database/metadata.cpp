#include "ov_sql_executor/database/metadata.hpp"

#include <algorithm>
#include <limits>
#include <utility>

#include "ov_sql_executor/database/core_block.hpp"
#include "ov_sql_executor/database/core_text.hpp"
#include "ov_sql_executor/database/db_iterator.hpp"
#include "ov_sql_executor/database/status.hpp"
#include "ov_sql_executor/errors/raise.hpp"
#include "ov_sql_executor/errors/subscript.hpp"
#include "ov_sql_executor/values/encoded_text.hpp"
#include "ovcoredb/ovcoredb.h"
#include "ovdbmetalayer/layout.hpp"
#include "ovdbmetalayer/metalayer.hpp"

namespace meta_data {

namespace {

using db_util::check;
using db_util::key_object;
using db_util::upper_limit;
namespace layout = metalayer::layout;

// Column 1 of every object is its set specifier, whatever its type object says.
constexpr std::uint16_t set_specifier_column = 1;

std::uint64_t current_context() { return metalayer::TlsMetalayerContext::Current(); }

std::uint64_t read_ulong(const OV_OBJ_REF& object, std::uint32_t column) {
  std::uint64_t number = 0;
  check(orv_context_get_ulong(current_context(), object.object_number, object.second_word, column, &number));
  return number;
}

std::int64_t read_long(const OV_OBJ_REF& object, std::uint32_t column) {
  std::int64_t number = 0;
  check(orv_context_get_long(current_context(), object.object_number, object.second_word, column, &number));
  return number;
}

bool read_bool(const OV_OBJ_REF& object, std::uint32_t column) {
  std::uint64_t flag = 0;
  check(orv_meta_get_bool(current_context(), object.object_number, object.second_word, column, &flag));
  return flag != 0;
}

OV_OBJ_REF reference_column(const OV_OBJ_REF& object, std::uint32_t column) {
  ORV_REFERENCE_VALUE reference{};
  const std::uint32_t status =
      orv_context_get_reference(current_context(), object.object_number, object.second_word, column, &reference);
  return db_util::check_has_value(status) ? db_util::to_obj_ref(reference) : OV_OBJ_REF{};
}

// The objects of a metadata index whose first key column is the owner and whose second lies between two bounds. Frees
// the core's iterator at its end, so that it stays open while columns of the objects are read.
class owned_objects {
 public:
  owned_objects(const OV_OBJ_REF& owner, std::uint64_t index, const db_util::key_bound& low,
                const db_util::key_bound& high)
      : iterator_(current_context(), index, [&](db_util::key_range& keys) {
          for (const auto& [key, bound] : {std::pair(&keys.first, &low), std::pair(&keys.last, &high)}) {
            key->append(key_object{owner.object_number});
            key->append(*bound);
            key->terminate();
          }
        }) {
    objects_.reserve(16);
    for (; iterator_.current().is_valid(); iterator_.advance()) objects_.push_back(iterator_.current().reference());
  }

  std::size_t size() const { return objects_.size(); }
  auto begin() const { return objects_.begin(); }
  auto end() const { return objects_.end(); }

 private:
  db_util::db_iter_with_keys iterator_;
  std::vector<OV_OBJ_REF> objects_;
};

owned_objects members_of(const OV_OBJ_REF& table) {
  const auto payload = [](const db_string::tt_string& text) {
    return db_util::key_text{ov::sql_executor::bit_count({{text.data(), text.size()}}).payload};
  };
  const db_string::tt_string first = db_util::ucs2_to_turbotext(u"", upper_limit::no);
  const db_string::tt_string last = db_util::ucs2_to_turbotext(u"", upper_limit::yes);
  return {table, metalayer::Member::index_id_MemberPK(), payload(first), payload(last)};
}

// Takes every position, which is the second key column of this index.
owned_objects indexed_columns_of(const OV_OBJ_REF& index) {
  return {index, metalayer::IndexedColumn::index_id_IndexedColumnPK(), db_util::lowest_marker{},
          std::numeric_limits<std::uint64_t>::max()};
}

}  // namespace

table_ref make_table_ref(const OV_OBJ_REF& table) {
  const owned_objects found = members_of(table);
  auto cache = std::make_shared<Table::TableCache>();
  cache->members.resize(found.size());
  for (const OV_OBJ_REF& member : found) {
    // A negative index is beyond every vector, too.
    const auto column = static_cast<std::int16_t>(property_column(member));
    error_handling::element_at(cache->members, static_cast<std::size_t>(column)) = member;
  }
  return {table, std::move(cache)};
}

std::wstring object_name(const OV_OBJ_REF& object) {
  const std::uint8_t* block = nullptr;
  const std::uint32_t status = orv_context_get_string(current_context(), object.object_number, object.second_word,
                                                      layout::table_column::name, &block);
  if (!db_util::check_has_value(status)) return {};
  const std::u16string units = db_util::units_of_block(block);
  return {units.begin(), units.end()};
}

std::uint16_t reference_tag(const table_ref& table) {
  return static_cast<std::uint16_t>(read_ulong(table.table, layout::table_column::reference_tag));
}

std::uint16_t property_column(const OV_OBJ_REF& property) {
  return static_cast<std::uint16_t>(read_long(property, layout::member_column::column));
}

table_ref property_table(const OV_OBJ_REF& property) {
  return make_table_ref(reference_column(property, layout::member_column::table));
}

OV_OBJ_REF property_type_object(const OV_OBJ_REF& property) {
  return reference_column(property, layout::member_column::type);
}

type_code property_type(const OV_OBJ_REF& property) {
  if (property_column(property) == set_specifier_column) return type_code::set_specifier;
  std::uint32_t primitive = 0;
  check(metalayer::PrimTypeByTypeRef(property_type_object(property), primitive));
  switch (primitive) {
    case layout::primitive_type::text:
      return type_code::tt_string;
    case layout::primitive_type::binary:
      return type_code::binary;
    case layout::primitive_type::int64:
      return type_code::int64;
    case layout::primitive_type::uint64:
      return type_code::uint64;
    case layout::primitive_type::decimal:
      return type_code::decimal;
    case layout::primitive_type::float32:
      return type_code::float32;
    case layout::primitive_type::float64:
      return type_code::float64;
    case layout::primitive_type::reference:
      return type_code::obj_ref;
    case layout::primitive_type::boolean:
      return type_code::boolean;
    default:
      error_handling::raise_not_implemented(error_handling::no_detail, L"unexpected type");
  }
}

std::uint64_t index_handle(const OV_OBJ_REF& index) { return read_ulong(index, layout::index_column::handle); }

std::vector<key_column> index_key_columns(const OV_OBJ_REF& index) {
  std::vector<std::pair<std::uint64_t, OV_OBJ_REF>> by_position;
  for (const OV_OBJ_REF& column : indexed_columns_of(index)) {
    by_position.emplace_back(read_ulong(column, layout::indexed_column_column::position), column);
  }
  std::stable_sort(by_position.begin(), by_position.end(),
                   [](const auto& left, const auto& right) { return left.first < right.first; });
  std::vector<key_column> columns;
  columns.reserve(by_position.size());
  for (const auto& [position, column] : by_position) {
    const OV_OBJ_REF member = reference_column(column, layout::indexed_column_column::member);
    const type_code type = property_type(member);
    columns.push_back({type, read_bool(column, layout::indexed_column_column::ascending)});
  }
  return columns;
}

}  // namespace meta_data
