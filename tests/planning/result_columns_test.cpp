#include "ov_sql_executor/planning/result_columns.hpp"

#include "core_shim/core_shim.hpp"
#include "host_test.hpp"
#include "valueless.hpp"

namespace tests {
namespace {

using namespace physical_queryplan;  // NOLINT: the alternatives are what is tested
using ovhost::lit;
using ovhost::plan;
using ovhost::project;
using ovhost::table_variable;
using ovhost::value_kind;
using QueryPlan::Projection;

// A city has a property "p" and its number of every type but set specifiers, and of its own a country.
ovhost::table_definition city_table() {
  ovhost::table_definition table{"City", {{"country", ovhost::refers_to{"Country"}}}};
  for (std::size_t kind = 0; kind <= 7; ++kind) table.members.push_back({"p" + std::to_string(kind), value_kind{kind}});
  return table;
}

class ResultColumns : public HostTest {
 protected:
  ResultColumns()
      : HostTest({{"Country", {{"name", value_kind::text}}}, city_table()}, {{"City", "by_country", {{"country"}}}}) {}

  plan all() { return ovhost::scan(city, "by_country"); }

  // The types of a root projection's columns by index, a reference with the name that it has.
  static std::string types(const plan& root) {
    return outcome([&] {
      std::string words;
      for (const auto& type : physical_to_exec::result_columns(std::get<Projection>(root))) {
        words += (words.empty() ? "" : " ") + std::to_string(type.index());
        if (const auto* reference = std::get_if<physical_to_exec::RefInfo>(&type)) {
          words += ":" + std::string(reference->name.begin(), reference->name.end());
        }
      }
      return words;
    });
  }

  std::string type_over(expression item, plan child) { return types(project({std::move(item)}, std::move(child))); }

  ovhost::query names;
  table_variable city = names.over("City", "city");
  table_variable country = names.over("Country", "country");
};

const char* const refused = "7022 Unsupported return type";

TEST_F(ResultColumns, name_the_type_of_each_item) {
  std::vector<expression> items = {city["country"], city};
  for (const char* property : {"p0", "p1", "p2", "p3", "p4", "p5", "p6", "p7"}) items.push_back(city[property]);
  EXPECT_EQ(types(project(std::move(items), all())), "9:Country 9:City 0 1 2 3 4 5 6 7");
  const auto computed_as = [this](auto... of) {
    return types(project({expression(computed<decltype(of)>{{1, 2, 3, 4}})...}, all()));
  };
  EXPECT_EQ(computed_as(true, db_string::tt_string(), std::uint64_t{}, std::int64_t{}, Decimal{}, 0.0, 0.0F, Binary{}),
            "0 1 2 3 4 5 6 7");
  EXPECT_EQ(computed_as(SetSpecifier{}), refused);
  EXPECT_EQ(computed_as(NullValue{}), refused);
  EXPECT_EQ(type_over(city["object_type"], all()), refused);
  EXPECT_EQ(types(project({}, all())), "");
  EXPECT_EQ(types(project({city, city["object_type"], city}, all())), refused);
}

TEST_F(ResultColumns, trace_a_computed_reference_to_its_definition) {
  const auto reference = names.define("r", city["country"]);
  const auto whole = names.define("w", city);
  const auto other = names.define("o", expression(reference));
  const auto by_operation =
      names.define("x", ovhost::when_as(value_kind::reference, lit(true), city["country"], city["country"]));
  const auto by_literal = names.define("l", lit(OV_OBJ_REF{1, 1}));
  const auto largest = names.maximum("m", expression(reference));
  const auto loop = names.define("y", expression(reference));
  const auto undefined = names.define("u", city);
  const auto extended = [this](std::vector<QueryPlan::assignment> list) {
    return ovhost::extend(std::move(list), all());
  };
  EXPECT_EQ(type_over(reference, extended({reference})), "9:Country");
  EXPECT_EQ(type_over(whole, extended({reference, whole})), "9:City");
  EXPECT_EQ(type_over(whole, ovhost::filter(lit(true), extended({whole}))), "9:City") << "anywhere below";
  EXPECT_EQ(type_over(other, ovhost::extend({other}, extended({reference}))), "9:Country") << "from one to the next";
  EXPECT_EQ(type_over(reference, ovhost::extend({whole}, extended({reference}))), "9:Country");
  EXPECT_EQ(type_over(whole, ovhost::join(all(), ovhost::generate(whole))), "9:City");
  EXPECT_EQ(type_over(reference, ovhost::group({}, {reference}, all())), "9:Country");
  EXPECT_EQ(type_over(largest, ovhost::group({largest}, {}, extended({reference}))), "9:Country");
  EXPECT_EQ(type_over(whole, ovhost::join(extended({whole.with(country)}), extended({whole}))), "9:Country")
      << "left before right";
  EXPECT_EQ(type_over(by_operation, extended({by_operation})), "9:") << "an operation's reference has no name";
  EXPECT_EQ(type_over(by_literal, extended({by_literal})), "9:");
  EXPECT_EQ(type_over(loop, extended({loop.with(loop)})), refused) << "defined by itself";
  EXPECT_EQ(type_over(loop, extended({loop, reference.with(loop)})), refused) << "in a circle";
  EXPECT_EQ(type_over(undefined, extended({whole})), refused);
}

TEST_F(ResultColumns, report_what_the_metadata_cannot_tell) {
  expression nothing = city;
  make_valueless<variable>(nothing);
  EXPECT_THROW(physical_to_exec::result_columns(std::get<Projection>(project({city, nothing}, all()))),
               std::bad_variant_access);
  plan two = project({city, city["country"]}, all());
  core_shim::fail_call("orv_context_get_string", 1, ORV_NO_VALUE);
  EXPECT_EQ(types(two), "9: 9:Country") << "a table without a name";
  core_shim::fail_call("orv_context_get_string", 2, 4711);
  EXPECT_EQ(types(two), "4711");
  core_shim::fail_call("orv_context_create_iterator", 1, 4712);
  EXPECT_EQ(types(two), "4712") << "the target's members are read";
  EXPECT_EQ(core_shim::open_iterators(), 0U);
}

}  // namespace
}  // namespace tests
