// SELECT name, population FROM city WHERE population >= ? AND name LIKE 'l%', in the order of an index over population.
// This program puts the table and its metadata into the included core itself.
//
//   c++ -std=c++20 read_table.cpp -o read_table $(pkg-config --cflags --libs ov_sql_executor)
#include <cstdint>
#include <exception>
#include <initializer_list>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "ov_sql_executor/errors/db_exception.hpp"
#include "ov_sql_executor/errors/describe.hpp"
#include "ov_sql_executor/planning/plan.hpp"
#include "ovcoredb/database.hpp"
#include "ovdbmetalayer/layout.hpp"
#include "ovdbmetalayer/metalayer.hpp"

namespace layout = metalayer::layout;
namespace qp = physical_queryplan;
using ovcoredb::cell;
using ovcoredb::column_type;

// ---- Data and metadata ----------------------------------------------------------------------------------------------

// The first column that takes a cell; 0 is the object's number, 1 its set specifier.
constexpr std::uint32_t first_column = 2;

template <class T>
using numbered = std::initializer_list<std::pair<std::uint32_t, T>>;

// What is named by column number as a list from the first column on.
template <class T>
std::vector<T> by_column(std::size_t count, numbered<T> columns) {
  std::vector<T> list(count);
  for (const auto& [column, each] : columns) list[column - first_column] = each;
  return list;
}

void create(ovcoredb::database& database, std::uint16_t tag, std::u16string name, numbered<column_type> columns) {
  database.create_table({u"//" + name + u"/", by_column<column_type>(9, columns), 0, tag});
}

OV_OBJ_REF insert(ovcoredb::database& database, std::uint16_t tag, numbered<cell> columns) {
  return database.insert(tag, by_column<cell>(database.cell_count(tag), columns));
}

// The metadata tables and indexes, as far as Plan reads them.
void create_metadata(ovcoredb::database& database) {
  using enum column_type;
  create(database, layout::table_tag::table, u"table", {{6, text}, {9, uint64}, {10, uint64}});
  create(database, layout::table_tag::type, u"type", {{6, text}, {10, uint64}});
  create(database, layout::table_tag::member, u"member", {{3, reference}, {5, reference}, {6, text}, {9, int64}});
  create(database, layout::table_tag::index, u"index", {{3, reference}, {6, uint64}, {7, text}, {8, boolean}});
  create(database, layout::table_tag::indexed_column, u"indexed column",
         {{3, reference}, {4, reference}, {5, uint64}, {6, boolean}});
  database.create_index({layout::table_tag::member, {{3}, {6}}, true, layout::index_handle::member_pk});
  database.create_index({layout::table_tag::indexed_column, {{3}, {5}}, true, layout::index_handle::indexed_column_pk});
}

// What a plan has to know of the table: its metadata objects.
struct city_table {
  OV_OBJ_REF object, name, population, by_population;
};

city_table create_cities(ovcoredb::database& database) {
  using namespace layout;
  constexpr std::uint32_t name = 2, population = 3;
  const std::uint16_t tag = database.create_table({u"/City/", {column_type::text, column_type::int64}});
  const std::uint64_t handle = database.create_index({tag, {{population}}});
  const std::pair<std::u16string_view, std::int64_t> cities[] = {
      {u"Lagos", 15'388'000}, {u"Lisbon", 545'923}, {u"Lima", 9'674'755}, {u"Porto", 231'962}, {u"Luz", 3'500}};
  for (const auto& [city, people] : cities) insert(database, tag, {{name, city}, {population, people}});

  const OV_OBJ_REF text = insert(database, table_tag::type, {{type_column::primitive_type, primitive_type::text}});
  const OV_OBJ_REF uint64 = insert(database, table_tag::type, {{type_column::primitive_type, primitive_type::uint64}});
  const OV_OBJ_REF int64 = insert(database, table_tag::type, {{type_column::primitive_type, primitive_type::int64}});

  const OV_OBJ_REF table = insert(database, table_tag::table,
                                  {{table_column::name, u"city"},
                                   {table_column::reference_tag, std::uint64_t{tag}},
                                   {table_column::primitive_type, primitive_type::reference}});
  const auto add_member = [&](std::u16string_view member, OV_OBJ_REF type, std::int64_t column) {
    return insert(database, table_tag::member,
                  {{member_column::table, table},
                   {member_column::type, type},
                   {member_column::name, member},
                   {member_column::column, column}});
  };
  add_member(u"object_number", uint64, 0);  // every table declares these two
  add_member(u"object_type", text, 1);
  city_table city{table, add_member(u"name", text, name), add_member(u"population", int64, population), {}};
  city.by_population =
      insert(database, table_tag::index,
             {{index_column::table, table}, {index_column::handle, handle}, {index_column::name, u"by_population"}});
  insert(database, table_tag::indexed_column,
         {{indexed_column_column::index, city.by_population},
          {indexed_column_column::member, city.population},
          {indexed_column_column::position, std::uint64_t{0}},
          {indexed_column_column::ascending, true}});
  return city;
}

// ---- The statement --------------------------------------------------------------------------------------------------

db_string::tt_string encode(const std::u16string& text) {
  std::vector<std::uint8_t> bytes(orv_convert_ucs2_to_turbotext(text.c_str(), 0, nullptr, 0));
  orv_convert_ucs2_to_turbotext(text.c_str(), 0, bytes.data(), static_cast<std::uint32_t>(bytes.size()));
  return {bytes.data(), bytes.size()};
}

std::u16string decode(const db_string::tt_string& text) {
  const auto length = static_cast<std::uint32_t>(text.size());
  const std::int32_t count = -orv_convert_turbotext_to_ucs2(text.data(), length, nullptr, 0);
  std::u16string units(static_cast<std::size_t>(count) + 1, u'\0');
  orv_convert_turbotext_to_ucs2(text.data(), length, units.data(), static_cast<std::uint32_t>(units.size()));
  units.pop_back();
  return units;
}

qp::QueryPlan::PredicateVariant build_plan(const city_table& table) {
  using namespace qp::QueryPlan;
  const qp::variable city(table.object, nullptr, {1, 0, 0, 0});  // four words of the host's choice
  const qp::property_column<db_string::tt_string> name{{table.name}, city};
  const qp::property_column<std::int64_t> population{{table.population}, city};

  // The objects of the index from the parameter on: the condition on the population is a bound, not a filter.
  scan_range from_parameter;
  from_parameter.at_least.insert({qp::literal(qp::parameter<std::int64_t>{0})});
  auto scan = std::make_unique<PredicateVariant>(Scan{city, table.by_population, {from_parameter}, true});

  // LIKE ignores case, so that a prefix of the name would not do as a bound.
  qp::PatternMatch is_like;
  is_like.operands = {name, qp::literal(encode(u"l%"))};
  auto filter = std::make_unique<PredicateVariant>(Filter{is_like, std::move(scan)});
  return Projection{{name, population}, std::move(filter)};
}

void print_rows(const ov::sql_executor::runnable& statement, std::int64_t least, std::uint64_t core_context) {
  ov::sql_executor::execution_context context{statement.constants, {least}, {}, core_context};
  const std::unique_ptr<ov::sql_executor::enumerator> rows(statement.root->create_enumerator(context));
  while (const std::optional<ov::sql_executor::row> row = rows->next(context)) {
    const std::u16string name = decode(std::get<db_string::tt_string>(row->at(0)));
    std::cout << std::string(name.begin(), name.end()) << ' ' << std::get<std::int64_t>(row->at(1)) << '\n';
  }
}

int main() try {
  ovcoredb::database database;
  create_metadata(database);
  const city_table table = create_cities(database);

  // One context for the rows and for the metadata; the metadata's is set on each thread that plans.
  const ovcoredb::context context(database);
  metalayer::TlsMetalayerContext::Current() = context.handle();
  const auto [statement, columns] = physical_to_exec::Plan(build_plan(table));
  print_rows(statement, 500'000, context.handle());
  return 0;
} catch (const db_util::db_exception& error) {
  std::cerr << "error " << error.code << ": " << error_handling::describe(error.code) << '\n';
  return 1;
} catch (const std::exception& error) {
  std::cerr << error.what() << '\n';
  return 1;
}
