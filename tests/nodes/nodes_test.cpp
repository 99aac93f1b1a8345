// The nodes that neither join nor group, over nodes and expressions that are not the library's own.
#include <algorithm>
#include <random>

#include "nodes/given_rows.hpp"
#include "ov_sql_executor/execution/describe.hpp"
#include "ov_sql_executor/expressions/comparison.hpp"
#include "ov_sql_executor/values/sort_order.hpp"
#include "valueless.hpp"

namespace tests {
namespace {

struct told final : operators::operator_base {
  explicit told(std::function<value(const row&)> how) : say(std::move(how)) {}
  value evaluate(execution_context& context) const override { return say(context.row_stack); }
  std::function<value(const row&)> say;
};
operator_ptr tell(std::function<value(const row&)> say) { return std::make_unique<told>(std::move(say)); }

TEST(Filter, passes_rows_whose_predicate_is_true) {
  const char* const verdicts = "(true i1)(false i2)(NULL i3)(true 'a-text-that-owns-its-bytes')(false i5)";
  auto inner = std::make_unique<filter>(given(verdicts), tell([](const row& stack) { return stack[2]; }));
  const filter twice(std::move(inner), column(2));
  for (int time = 0; time < 2; ++time) {
    EXPECT_EQ(run(twice, vals("u8 u9")), "(true i1)(true 'a-text-that-owns-its-bytes')") << "behind enclosing rows";
  }
  for (const value& verdict : vals("i1 d1 'true' x'01'")) {
    EXPECT_EQ(run(filter(given({{true}, {verdict}}), column(0))), "7020") << spell(verdict);
  }
  EXPECT_EQ(run(filter(given({{valueless()}}), column(0))), bad_variant);
}

TEST(Projection, makes_a_row_of_its_expressions) {
  const char* const all = "(i1 'first' NULL)(i2 set'/Short/' true)";
  auto sum =
      tell([](const row& stack) { return i(std::get<std::int64_t>(stack[1]) + std::get<std::int64_t>(stack[0])); });
  EXPECT_EQ(run(projection(given(all), columns({3, 1, 1, 0})), {i(7)}), "(NULL i1 i1 i7)(true i2 i2 i7)");
  EXPECT_EQ(run(projection(given(all), {})), "()()") << "rows of no values";
  // Over a projection, whose rows are made on the row stack.
  auto inner = std::make_unique<projection>(given(all), list_of(column(2), std::move(sum), column(2), column(3)));
  EXPECT_EQ(run(projection(std::move(inner), columns({2, 1, 3, 4, 0})), {i(10)}),
            "(i11 'first' 'first' NULL i10)(i12 set'/Short/' set'/Short/' true i10)");
}

TEST(GenerativeAssignment, makes_one_row_even_of_null) {
  EXPECT_EQ(run(generative_assignment(column(0)), {i(4)}), "(i4)");
  EXPECT_EQ(run(generative_assignment(constant(0)), {}, {null()}), "(NULL)");
  const generative_assignment failing(tell([](const row&) -> value { throw db_util::db_exception{4711}; }));
  execution_context context;
  const std::unique_ptr<enumerator> source(failing.create_enumerator(context));
  EXPECT_EQ(outcome([&] { source->next(context); }), "4711");
  EXPECT_FALSE(source->next(context));
}

// Makes units of which many have up to some hundred in common, and which are each other's beginnings, some of them
// followed by zeros.
template <class Units>
Units long_units(std::uint64_t number, char first) {
  using unit = typename Units::value_type;
  Units units(1, static_cast<unit>(first));
  units.insert(units.end(), number % 5 * 30, unit{'x'});
  for (std::uint64_t rest = number / 5; rest > 3; rest /= 3) units.push_back(static_cast<unit>('0' + rest % 3));
  units.insert(units.end(), number % 4, unit{0});
  return units;
}

// Makes one of so many keys of a kind, or NULL for the first of them.
constexpr unsigned key_kinds = 9;
value key_of(std::uint64_t kind, std::uint64_t number) {
  const auto signed_number = static_cast<std::int64_t>(number);
  if (number == 0) return null();
  if (kind == 0) return signed_number * (number % 2 == 0 ? 1 : -1);
  if (kind == 1) return static_cast<double>(number) / -4;
  if (kind == 2) return static_cast<float>(number) / 4;
  if (kind == 3) return Decimal{signed_number % 7 - 3};
  if (kind == 4) return number % 2 == 0;
  if (kind == 5) return OV_OBJ_REF{number, number};
  if (kind == 6) return SetSpecifier{long_units<std::u16string>(number, 's')};
  const byte_list bytes = long_units<byte_list>(number, kind == 7 ? 'b' : '\x80');
  return kind == 7 ? value(Binary{bytes}) : value(db_string::tt_string(bytes.data(), bytes.size()));
}

// Long inputs are sorted in parts, and for a limit most of their rows are dropped on the way, whatever lies between:
// few values and many, kinds of keys, directions and patterns of the input, computed keys of references and columns.
TEST(OrderBy, sorts_by_keys_with_a_direction_each_and_keeps_equal_rows_as_they_came) {
  const unsigned seed = std::random_device{}();
  SCOPED_TRACE(seed);
  std::mt19937 random(seed);
  const auto one_of = [&random](std::initializer_list<std::uint64_t> list) {
    return list.begin()[random() % list.size()];
  };
  for (std::uint64_t round = 0; round < 150; ++round) {
    const bool is_dropping = round % 5 == 0;  // rows that are equal in their first keys to the last one wanted
    const std::uint64_t count = is_dropping ? 20'000 : one_of({0, 1, 11, 200, 3999, 8191, 8192, 8193, 20'000});
    const std::uint64_t width = is_dropping ? 2 : one_of({0, 1, 1, 2, 3});
    const bool is_rising = !is_dropping && random() % 3 == 0;
    const bool is_of_references = random() % 2 == 0;
    std::vector<bool> ascending;
    rows keys(count);
    for (std::uint64_t key = 0; key < width; ++key) {
      ascending.push_back(is_dropping && key == 0 ? round % 2 == 1 : random() % 2 == 0);
      const std::uint64_t kind = (key == 0 ? round : random()) % key_kinds;  // each of them first, in every run
      const std::uint64_t different = is_dropping ? (key == 0 ? 4 : 1 << 20) : one_of({1, 40, 1 << 20, 1 << 20});
      for (std::uint64_t row = 0; row < count; ++row) {
        keys[row].push_back(key_of(kind, (is_rising ? row : random()) % different));
      }
    }
    rows input;
    std::vector<std::uint64_t> order;
    for (std::uint64_t number = 0; number < count; ++number) {
      input.push_back(is_of_references ? row{OV_OBJ_REF{number, 7}} : keys[number]);
      if (!is_of_references) input.back().push_back(u(number));
      order.push_back(number);
    }
    std::ranges::stable_sort(order, [&](std::uint64_t left, std::uint64_t right) {
      for (std::size_t key = 0; key < width; ++key) {
        const auto sign = sort_order(view_of(keys[left][key]), view_of(keys[right][key]));
        if (sign != 0) return ascending[key] ? sign < 0 : sign > 0;
      }
      return false;
    });
    std::vector<operator_ptr> operands;
    for (std::size_t key = 0; key < width; ++key) {
      const auto told_key = [&keys, key](const row& stack) {
        return keys[std::get<OV_OBJ_REF>(stack[0]).object_number][key];
      };
      operands.push_back(is_of_references ? tell(told_key) : column(static_cast<std::int16_t>(key)));
    }
    const auto last = static_cast<std::int16_t>(is_of_references ? 0 : width);
    auto sorter = std::make_unique<order_by>(given(input), std::move(operands), ascending);
    auto wider = extended(std::move(sorter), columns({last}));
    std::vector<std::int16_t> kept;
    for (std::int16_t position = 0; position < last; ++position) kept.push_back(position);
    kept.push_back(static_cast<std::int16_t>(last + 1));
    auto narrower = std::make_unique<projection>(std::move(wider), columns(kept));
    const std::uint64_t limit = is_dropping ? 700 : one_of({0, 1, 700, 2000, ~std::uint64_t{0}});
    const std::uint64_t offset = random() % 4;
    rows expected;
    for (std::uint64_t at = offset; at < count && at - offset < limit; ++at) expected.push_back(input[order[at]]);
    const limit_offset root(std::move(narrower), constant(0), constant(1));
    ASSERT_EQ(run(root, {}, {limit, offset}), spell(expected)) << "round " << round;
  }
}

TEST(OrderBy, finds_its_keys_behind_enclosing_rows_in_rows_of_any_length) {
  EXPECT_EQ(run(order_by(given("(i3)(NULL i5)(i2)"), columns({2}), {false}), vals("i9 i9")), "(i3)(i2)(NULL i5)");
}

// Rows of references are kept in less memory while all are of one table and have small numbers.
TEST(OrderBy, gives_references_back_whole) {
  constexpr std::uint64_t large = std::uint64_t{1} << 40;
  const rows lists[] = {{{OV_OBJ_REF{3, 7}}, {OV_OBJ_REF{2, 7}}, {OV_OBJ_REF{1, 7}}},
                        {{OV_OBJ_REF{large, 7}}, {OV_OBJ_REF{3, 7}}, {OV_OBJ_REF{2, large}}},
                        {{OV_OBJ_REF{3, 7}}, {OV_OBJ_REF{2, 8}}, {OV_OBJ_REF{1, 7}}},
                        {{OV_OBJ_REF{3, 7}, OV_OBJ_REF{1, 8}}, {OV_OBJ_REF{2, 7}, i(1)}, {OV_OBJ_REF{1, 7}, null()}}};
  const auto second_words = [](row each) {
    for (value& held : each) held = std::get_if<OV_OBJ_REF>(&held) ? u(std::get<OV_OBJ_REF>(held).second_word) : null();
    return spell(each);
  };
  for (const rows& list : lists) {
    const rows found = rows_of(order_by(given(list), columns({0}), {true}));
    const rows turned(list.rbegin(), list.rend());
    EXPECT_EQ(spell(found), spell(turned));
    EXPECT_TRUE(std::ranges::equal(found, turned, {}, second_words, second_words));
  }
}

// The second key decides between rows whose first keys are equal, and only there may it not be comparable.
TEST(OrderBy, refuses_what_cannot_be_ordered_when_it_is_opened) {
  const auto log = std::make_shared<journal>();
  const auto opened = [&](const rows& input, const std::vector<std::int16_t>& keys, std::vector<bool> ascending) {
    const order_by sorter(given(input, log), columns(keys), std::move(ascending));
    execution_context context;
    return outcome([&] { delete sorter.create_enumerator(context); });
  };
  check({"(i2)(NULL)(u1) = incompatible types", "(d1)(dnan) = 7041", "(f1)(fnan) = 7041", "(dnan) = ok"},
        [&](const std::string& input) { return opened(table(input), {0}, {true}); });
  for (const std::int64_t count : {3, 6000}) {
    for (const auto& [other, error] : {std::pair("dnan", "7041"), std::pair("true", "incompatible types")}) {
      for (const std::int64_t equal : {1, 2}) {
        rows input;
        for (std::int64_t n = 0; n < count; ++n) input.push_back({i(n / equal), val(n == 1 ? other : "d1.5")});
        EXPECT_EQ(opened(input, {0, 1}, {true, false}), equal == 1 ? "ok" : error) << count;
      }
    }
  }
  for (const auto& [kept, dropped, last, error] :
       {std::tuple("d1", "d1", "dnan", "7041"), std::tuple("NULL", "i1", "u1", "incompatible types")}) {
    rows many(20'000, vals(dropped));
    many.front() = vals(kept);
    many.push_back(vals(last));
    const limit_offset first(std::make_unique<order_by>(given(many, log), columns({0}), std::vector<bool>{true}),
                             constant(0), constant(1));
    EXPECT_EQ(run(first, {}, vals("u1 u0")), error) << "behind rows that were dropped";
  }
  // Fails at the second key of a row that is not wanted any more.
  for (const auto& [last, error] : {std::pair(val("'x'"), "4711"), std::pair(valueless(), bad_variant)}) {
    rows many(20'000, vals("i1 i1"));
    many.push_back({i(2), last});
    auto keys = list_of(
        column(0), tell([](const row& stack) {
          return std::holds_alternative<db_string::tt_string>(stack[1]) ? throw db_util::db_exception{4711} : stack[1];
        }));
    const limit_offset first(std::make_unique<order_by>(given(many, log), std::move(keys), std::vector{true, true}),
                             constant(0), constant(1));
    EXPECT_EQ(run(first, {}, vals("u1 u0")), error);
  }
  EXPECT_EQ(log->alive, 0);
}

// Most rows are dropped on the way then, before a key turns up that cannot be sorted.
TEST(OrderBy, raises_with_a_limit_what_it_raises_without) {
  constexpr std::int64_t count = 20'000;
  const auto input = [](auto keys_of) {
    rows made;
    for (std::int64_t n = 0; n < count; ++n) made.push_back(keys_of(n));
    return made;
  };
  const auto at = [](std::int64_t n, std::int64_t place, const value& there, value elsewhere) {
    return n == place ? there : std::move(elsewhere);
  };
  const std::pair<rows, const char*> cases[] = {
      {input([&](auto n) {
         return row{i(n / 2), at(n, count - 1, val("true"), i(n))};
       }),
       "incompatible types"},
      {input([&](auto n) {
         return row{i(n / 2), at(n, 10'000, val("dnan"), val("d1"))};
       }),
       "7041"},
      {input([&](auto n) {
         return row{i(n), at(n, count - 1, val("true"), i(n))};
       }),
       "(i0 i0)"},
      {input([&](auto n) {
         return row{i(-n), at(n, 0, val("true"), i(n))};
       }),
       "(i-19999 i19999)"},
      {input([&](auto n) {
         return row{at(n, 15'000, val("dnan"), n < 15'000 ? null() : val("d1")), i(1)};
       }),
       "7041"},
      {input([&](auto n) {
         return row{at(n, 0, val("u1"), n < 15'000 ? null() : i(n)), i(1)};
       }),
       "incompatible types"},
      // What reading meets comes before what sorting meets.
      {input([&](auto n) {
         return row{at(n, 5, val("dnan"), val("d1")), at(n, count - 1, val("'x'"), i(1))};
       }),
       "4711"},
      {input([&](auto n) {
         return row{at(n, 9'000, val("u1"), i(n)), at(n, count - 1, valueless(), i(1))};
       }),
       bad_variant},
  };
  for (const auto& [all, expected] : cases) {
    const auto first_of = [&all = all](std::uint64_t limit) {
      auto keys = list_of(column(0), tell([](const row& stack) {
                            const bool fails = std::holds_alternative<db_string::tt_string>(stack[1]);
                            return fails ? throw db_util::db_exception{4711} : stack[1];
                          }));
      auto sorter = std::make_unique<order_by>(given(all), std::move(keys), std::vector{true, true});
      const limit_offset first(std::move(sorter), constant(0), constant(1));
      const std::string found = run(first, {}, {limit, u(0)});
      return found.substr(0, found.find(')') + 1 != 0 ? found.find(')') + 1 : found.size());
    };
    EXPECT_EQ(first_of(~std::uint64_t{0}), expected);
    EXPECT_EQ(first_of(1), expected);
    EXPECT_EQ(first_of(5), expected);
  }
}

// Keys that were kept as numbers are whole again when one comes that cannot be compared with them, if it need not be.
TEST(OrderBy, sorts_keys_of_any_kind_beside_one_of_another) {
  for (const row& low_and_high :
       table("(false true)(u3 u18446744073709551615)(i-3 i5)(dec-3 dec5)(d-3.5 d1)(d-5 d-3.5)(d3.5 d5)"
             "(f-3.5 f5)(ref3 ref5)(NULL i-5)")) {
    rows input;
    for (std::size_t n = 0; n < 100; ++n) input.push_back({u(n / 2), low_and_high[n % 2]});
    input.push_back(vals("u50 'another'"));
    rows sorted = input;
    for (std::size_t n = 0; n < 100; n += 2) std::swap(sorted[n], sorted[n + 1]);
    EXPECT_EQ(run(order_by(given(input), columns({0, 1}), {true, false})), spell(sorted));
  }
}

TEST(LimitOffset, cuts_the_rows) {
  const limit_offset node(given("(i1)(i2)(i3)(i4)(i5)"), constant(0), constant(1));
  check({"u2 u3 = (i4)(i5)", "u2 u0 = (i1)(i2)", "u0 u1 = ", "u18446744073709551615 u4 = (i5)",
         "u18446744073709551615 u18446744073709551615 = ", "i1 dec2700000 = (i3)", "d2.9 true = (i2)(i3)"},
        [&](const std::string& limit_and_offset) { return run(node, {}, vals(limit_and_offset)); });
}

TEST(LimitOffset, looks_at_its_counts_and_skips_when_it_is_opened) {
  const auto log = std::make_shared<journal>();
  const limit_offset node(given("(i1)(i2)(i3)", log), constant(0), constant(1));
  check({"NULL u1 = 7020", "u1 NULL = 7020", "i-1 NULL = 7041", "'' u1 = 1027", "ref0 u1 = 7020"},
        [&](const std::string& limit_and_offset) { return run(node, {}, vals(limit_and_offset)); });
  EXPECT_EQ(log->events, "") << "refused before the child is opened";
  execution_context context{vals("u1 u1"), {}, {}, 0};
  std::unique_ptr<enumerator> rows_left(node.create_enumerator(context));
  EXPECT_EQ(log->alive, 1);
  EXPECT_EQ(spell(*rows_left->next(context)), "i2");
  EXPECT_FALSE(rows_left->next(context));
  EXPECT_EQ(log->alive, 1) << "the child goes with the enumerator";
  rows_left.reset();
  EXPECT_EQ(log->alive, 0);
}

TEST(Union, yields_all_rows_of_the_left_then_of_the_right) {
  const auto log = std::make_shared<journal>();
  EXPECT_EQ(run(uniond(given("(i1)(i2)", log, "l"), given("(i1)", log, "r"))), "(i1)(i2)(i1)");
  EXPECT_EQ(log->events, "+l+r-l-r");
}

// Holds wherever a node stands.
TEST(Describe, says_what_each_node_is) {
  auto grouped = std::make_unique<aggregator>(given("(i1)"), columns({0}), std::vector<aggregate_entry>());
  auto sorted = std::make_unique<order_by>(std::move(grouped), columns({0, 0}), std::vector{true, false});
  auto extending = extended(std::make_unique<filter>(std::move(sorted), column(0)), columns({0, 0}));
  auto one = std::make_unique<generative_assignment>(column(0));
  auto pairs = std::make_unique<full_join>(std::move(extending), std::move(one), 3, 1, std::nullopt);
  const projection root(std::move(pairs), columns({0}));
  EXPECT_EQ(describe(root),
            "projection, 1 values\n"
            "  full_join, every pair\n"
            "    projection, 2 values after the row\n"
            "      filter\n"
            "        order_by, ascending, descending\n"
            "          aggregator, 0 aggregates, 1 group keys\n"
            "            a node of the host's own\n"
            "    generative_assignment\n");
}

TEST(PartsOfTheHost, find_nothing_but_the_rows_in_scope_on_the_row_stack) {
  const auto made = [] {
    const auto depth = [](const row& stack) { return u(stack.size()); };
    return list_of(tell(depth), column(0), tell(depth));
  };
  EXPECT_EQ(run(projection(given("(i5)"), made())), "(u1 i5 u1)");
  EXPECT_EQ(run(uniond(std::make_unique<projection>(given("(i5)"), made()), given(rows()))), "(u1 i5 u1)");
  EXPECT_EQ(run(*extended(given("(i5)"), made())), "(i5 u1 i5 u1)");
}

// Uses the row stack as whoever evaluates a subquery does.
struct busy final : operators::operator_base {
  value evaluate(execution_context& context) const override {
    const std::size_t size = context.row_stack.size();
    context.row_stack.resize(size + 1000);
    context.row_stack.resize(size);
    return val("set'/a/'");
  }
};

TEST(PartsOfTheHost, may_put_rows_on_the_row_stack_while_they_work) {
  const auto given_one = [] { return given("(set'/a/')"); };
  EXPECT_EQ(run(filter(given_one(), std::make_unique<operators::equal>(std::make_unique<busy>(), column(0)))),
            "(set'/a/')");
  std::vector<operator_ptr> keys = list_of(column(0), operator_ptr(std::make_unique<busy>()));
  EXPECT_EQ(run(aggregator(given_one(), std::move(keys), {})), "(set'/a/' set'/a/')");
}

struct last_node final : node {
  explicit last_node(std::string& events) : log(events) {}
  ~last_node() override { log += "last "; }
  enumerator* create_enumerator(execution_context&) const override { return nullptr; }
  std::string& log;
};
template <class Base>
struct owner : Base {
  owner(std::string& events, std::unique_ptr<node> any) : log(events), part(std::move(any)) {}
  ~owner() override {
    part.reset();
    log += "owner ";
  }
  std::string& log;
  std::unique_ptr<node> part;
};
struct owning_node final : owner<node> {
  using owner::owner;
  enumerator* create_enumerator(execution_context&) const override { return nullptr; }
};
struct owning_operator final : owner<operators::operator_base> {
  using owner::owner;
  value evaluate(execution_context&) const override { return true; }
};

TEST(PartsOfTheHost, outlive_what_they_own) {
  std::string log;
  const auto filtered = [](std::unique_ptr<node> child) {
    for (int n = 0; n < 2; ++n) child = std::make_unique<filter>(std::move(child), column(0));
    return child;
  };
  const auto last = [&] { return filtered(std::make_unique<last_node>(log)); };
  filtered(std::make_unique<owning_node>(log, last())).reset();
  filtered(std::make_unique<filter>(given(rows()), std::make_unique<owning_operator>(log, last()))).reset();
  EXPECT_EQ(log, "last owner last owner ");
}

}  // namespace
}  // namespace tests
