#include "ovhost/plans/expression_words.hpp"
#include "ovhost/plans/plan_drawing.hpp"
#include "ovhost/plans/table_printer.hpp"
#include "ovhost/staff.hpp"
#include "ovhost/values/decimal_text.hpp"
#include "ovhost/values/text.hpp"
#include "ovhost/values/value_words.hpp"

namespace ovhost {
namespace {

using testing::ElementsAre, testing::HasSubstr;

// Every operation, with the type of its result.
TEST_F(Staff, SaysEveryOperation) {
  using kind = value_kind;
  const expression name = e["name"];
  const expression born = e["born"];
  const expression active = e["active"];
  const std::tuple<expression, value_kind, const char*> cases[] = {
      {eq(name, text(u"Ada")), kind::boolean, "e.name = 'Ada'"},
      {negated(both(ne(born, lit(1)), is_null(e["boss"]))), kind::boolean, "not ((e.born <> 1) and (e.boss is null))"},
      {either(is_not_null(e["boss"]), le(born, lit(-1))), kind::boolean, "(e.boss is not null) or (e.born <= -1)"},
      {exclusive(lt(born, lit(1)), active), kind::boolean, "(e.born < 1) xor e.active"},
      {div(add(born, neg(lit(2.5F))), lit(1.5)), kind::float64, "(e.born + (-2.5)) / 1.5"},
      {sub(mul(born, lit(2)), decimal("1.5")), kind::decimal, "(e.born * 2) - 1.5"},
      {neg(lit(1U)), kind::int64, "-1"},
      {mul(lit(1U), lit(1U)), kind::int64, "1 * 1"},
      {both(gt(born, lit(1)), ge(born, null())), kind::boolean, "(e.born > 1) and (e.born >= NULL)"},
      {like(name, text(u"A%")), kind::boolean, "e.name like 'A%'"},
      {starts_with(name, like_prefix(text(u"A%"))), kind::boolean, "e.name begins with prefix of pattern('A%')"},
      {like_prefix(name), kind::text, "prefix of pattern(e.name)"},
      {concat({name, text(u"!")}), kind::text, "concat(e.name, '!')"},
      {when(active, null(), born), kind::int64, "case when e.active then NULL else e.born end"},
      {is_a(e, "Staff.Person"), kind::boolean, "e is a type('Staff.Person')"},
      {oid(e.follow("boss")), kind::uint64, "object number(e.boss)"},
      {to(kind::float64, parameter(2, kind::text)), kind::float64, "double(parameter 2)"},
      {parameter(3, kind::binary), kind::binary, "parameter 3"},
      {e.follow("boss").follow("boss")["salary"], kind::decimal, "e.boss.boss.salary"},
  };
  const expression_words words(q.names(), q.columns());
  for (const auto& [said, type, expected] : cases) {
    EXPECT_EQ(words(said), expected);
    EXPECT_EQ(kind_of(said), type) << expected;
  }
  EXPECT_THROW(to(kind::reference, name), std::invalid_argument);
  EXPECT_THROW(decimal("1.0000001"), std::invalid_argument);
}

// Every alternative of a plan, in a tree that need not make sense.
TEST_F(Staff, DescribesEveryStep) {
  const table_variable boss = e.follow("boss");
  const computation twice = q.define("twice", mul(e["born"], lit(2)));
  const computation name = q.define("name", e["name"]);
  const aggregation_column people = q.count_rows("people");
  const aggregation_column mean = q.average("mean", e["salary"]);
  plan scanned = scan(e, "by_salary", {key::both(key::at_least(decimal("1")), key::below(decimal("9"))), key::null()},
                      walk::descending);
  plan joined = left_join(join(filter(e["active"], extend({twice}, std::move(scanned))), bind(boss)), bind(boss));
  plan grouped = group({people, mean}, {name}, full_join(eq(twice, lit(4)), std::move(joined), bind(boss)));
  plan ordered = order({ascending(name), descending(mean)}, unite(std::move(grouped), bind(boss)));
  const plan all = project({name, people, mean}, limit(lit(3U), lit(1U), std::move(ordered)));
  const plan_step steps = describe(all, q.names(), q.columns());
  EXPECT_THAT(steps.columns, ElementsAre("name", "people", "mean"));
  EXPECT_EQ(as_tree(steps),
            "project: name, people, mean\n"
            "  limit: skip 1; at most 3\n"
            "    order: by name; by mean descending\n"
            "      union\n"
            "        group: people := count of rows; mean := average(e.salary); by name := e.name\n"
            "          full join: on twice = 4\n"
            "            left join: for each left row the right rows, or one of NULLs\n"
            "              join: for each left row the right rows\n"
            "                filter: e.active\n"
            "                  extend: twice := e.born * 2\n"
            "                    scan Staff.Employee as e: by index by_salary (salary descending, name); backwards; "
            "where salary < 9; where salary >= 1; where name = NULL (NULL is the lowest)\n"
            "                one row: Staff.Employee e.boss := e.boss\n"
            "              one row: Staff.Employee e.boss := e.boss\n"
            "            one row: Staff.Employee e.boss := e.boss\n"
            "        one row: Staff.Employee e.boss := e.boss\n");
}

TEST_F(Staff, DrawsAGraphWithQuotedLabels) {
  const plan drawn = project({e["name"]}, filter(eq(e["name"], text(u"\"\\")), scan(e, "by_name")));
  const std::string dot = as_dot(describe(drawn, q.names(), q.columns()));
  EXPECT_THAT(dot, HasSubstr(R"(step1 [label="filter\le.name = '\"\\'\l"];)"));
  EXPECT_THAT(dot, HasSubstr(R"(step2 -> step1 [label="e"];)"));
  EXPECT_THAT(dot, HasSubstr(R"(step1 -> step0 [label="e"];)"));
}

TEST_F(Staff, RefusesNamesAndKeysThatDoNotExist) {
  EXPECT_THROW(q.over("Staff.Nobody", "n"), unknown_name);
  EXPECT_THROW(e["shoe"], unknown_name);
  EXPECT_THROW(e.follow("shoe"), unknown_name);
  EXPECT_THROW(e.follow("name"), std::invalid_argument);
  EXPECT_THROW(scan(e, "everybody"), unknown_name) << "an index of the base holds other objects too";
  expect_refused<unknown_name>("no index of table \"Staff.Employee\" called \"by_shoe\"; there are: by_name",
                               [&] { scan(e, "by_shoe"); });
  EXPECT_THROW(scan(e, "by_name", {key::any(), key::any()}), std::invalid_argument);
  EXPECT_THROW(bind(e), std::logic_error);
}

TEST(ValueWords, ShowEveryKindOfValue) {
  // Most kinds look alike as cell and as literal.
  for (const char* each :
       {"true=true", "u18446744073709551615=18446744073709551615", "i-9223372036854775808=-9223372036854775808",
        "dec-1500000=-1.5", "dec1=0.000001", "dec4398046511103999999=4398046511103.999999",
        "dec-9223372036854775808=-9223372036854.775808", "d0.1=0.1", "d1e300=1e+300", "f0.1=0.1", "x'00ab'=0x00ab",
        "ref7=city #7", "set'/a/'=/a/", "NULL=NULL"}) {
    const std::vector<std::string> words = tests::split(each, '=');
    EXPECT_EQ(cell_words(tests::val(words[0]), "city"), words[1]);
    EXPECT_EQ(literal_words(tests::val(words[0]), "city"), words[1]);
  }
  const std::tuple<const char16_t*, const char*, const char*> texts[] = {
      {u"Zürich", "Zürich", "'Zürich'"}, {u"it's", "it's", "'it''s'"}, {u"", "''", "''"},
      {u"NULL", "'NULL'", "'NULL'"},     {u" x", "' x'", "' x'"},      {u"a\nb\x01", "a\\nb\\x01", "'a\\nb\\x01'"}};
  for (const auto& [units, cell, literal] : texts) {
    EXPECT_EQ(cell_words(encode(units), "city"), cell);
    EXPECT_EQ(literal_words(encode(units), "city"), literal);
  }
}

TEST(DecimalText, IsReadInOneFormOnly) {
  for (const char* each : {"", "-", ".5", "5.", "1e3", "+1", " 1", "1.2.3", "1.0000000", "4398046511104", "--1"}) {
    EXPECT_FALSE(parse_decimal(each)) << each;
  }
  EXPECT_EQ(parse_decimal("-0012.5")->raw, -12'500'000);
}

TEST(TablePrinter, AlignsByCharactersAndCountsWhatItDoesNotShow) {
  using meta_support::TypeIdentity;
  table_printer table(
      {"city", "count", "at"},
      {TypeIdentity<db_string::tt_string>(), TypeIdentity<std::int64_t>(), physical_to_exec::RefInfo{L"place"}}, 2);
  for (const std::int64_t number : {5, 1234, 6}) {
    table.add({encode(number == 5 ? u"Zürich" : u""), number, OV_OBJ_REF{9, 0}});
  }
  std::ostringstream out;
  table.print(out);
  EXPECT_EQ(out.str(),
            "city    count  at\n"
            "------  -----  --------\n"
            "Zürich      5  place #9\n"
            "''       1234  place #9\n"
            "3 rows, 1 of them not shown\n");
}

TEST(Text, IsConvertedWhole) {
  EXPECT_EQ(utf8(u"a\xD800z"), "a\uFFFDz");
  EXPECT_EQ(decode(encode(u"a\xD800z")), u"a\xD800z");
  EXPECT_THROW(encode(std::u16string_view(u"a\0b", 3)), std::invalid_argument);
  EXPECT_THROW(utf16("\xC3"), std::invalid_argument);
}

}  // namespace
}  // namespace ovhost
