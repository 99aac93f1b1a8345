#include "ov_sql_executor/planning/result_columns.hpp"

#include "core_shim/core_shim.hpp"
#include "host_test.hpp"
#include "valueless.hpp"

namespace tests {
namespace {

using namespace physical_queryplan;  // NOLINT: the alternatives are what is tested
using ovhost::extend;
using ovhost::group;
using ovhost::lit;
using ovhost::plan;
using ovhost::project;
using ovhost::value_kind;

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
  static std::string types(const std::vector<expression>& items, plan child) {
    return outcome([&] {
      std::string words;
      const QueryPlan::Projection root{items, std::make_unique<plan>(std::move(child))};
      for (const auto& type : physical_to_exec::result_columns(root)) {
        words += (words.empty() ? "" : " ") + std::to_string(type.index());
        const auto* reference = std::get_if<physical_to_exec::RefInfo>(&type);
        if (reference != nullptr) words += ":" + std::string(reference->name.begin(), reference->name.end());
      }
      return words;
    });
  }

  ovhost::query names;
  ovhost::table_variable city = names.over("City", "city");
};

const char* const refused = "7022 Unsupported return type";

TEST_F(ResultColumns, name_the_type_of_each_item) {
  std::vector<expression> items = {city["country"], city};
  for (const char* property : {"p0", "p1", "p2", "p3", "p4", "p5", "p6", "p7"}) items.push_back(city[property]);
  EXPECT_EQ(types(items, all()), "9:Country 9:City 0 1 2 3 4 5 6 7");
  const auto computed_as = [this](auto... of) {
    return types({expression(computed<decltype(of)>{{1, 2, 3, 4}})...}, all());
  };
  EXPECT_EQ(computed_as(true, db_string::tt_string(), std::uint64_t{}, std::int64_t{}, Decimal{}, 0.0, 0.0F, Binary{}),
            "0 1 2 3 4 5 6 7");
  EXPECT_EQ(computed_as(SetSpecifier{}), refused);
  EXPECT_EQ(computed_as(NullValue{}), refused);
  EXPECT_EQ(types({city, city["object_type"], city}, all()), refused);
  make_valueless<variable>(items[1]);
  EXPECT_EQ(types(items, all()), bad_variant);
}

TEST_F(ResultColumns, trace_a_computed_reference_to_its_definition) {
  const auto country = names.define("r", city["country"]);
  const auto whole = names.define("w", city);
  const auto other = names.define("o", expression(country));
  const auto operation = names.define("x", ovhost::when_as(value_kind::reference, lit(true), country, country));
  const auto largest = names.maximum("m", expression(country));
  EXPECT_EQ(types({country, whole}, ovhost::filter(lit(true), extend({country, whole}, all()))), "9:Country 9:City");
  EXPECT_EQ(types({other}, extend({other}, extend({whole, country}, all()))), "9:Country");
  EXPECT_EQ(types({country}, group({}, {country}, all())), "9:Country");
  EXPECT_EQ(types({largest}, group({largest}, {}, extend({country}, all()))), "9:Country");
  EXPECT_EQ(types({whole}, ovhost::join(extend({whole.with(city["country"])}, all()), ovhost::generate(whole))),
            "9:Country")
      << "left before right";
  EXPECT_EQ(types({operation}, extend({country, operation}, all())), "9:") << "an operation's reference has no name";
  EXPECT_EQ(types({country}, extend({country.with(ovhost::eq(lit(1), lit(1)))}, all())), "0") << "a bool after all";
  EXPECT_EQ(types({other}, extend({other.with(other)}, all())), refused) << "defined by itself";
  EXPECT_EQ(types({other}, extend({other, country.with(other)}, all())), refused) << "in a circle";
  EXPECT_EQ(types({other}, extend({whole}, all())), refused);
}

TEST_F(ResultColumns, report_what_the_metadata_cannot_tell) {
  const std::vector<expression> two = {city, city["country"]};
  plan below = all();
  core_shim::fail_call("orv_context_get_string", 1, ORV_NO_VALUE);
  EXPECT_EQ(types(two, std::move(below)), "9: 9:Country") << "a table without a name";
}

}  // namespace
}  // namespace tests
