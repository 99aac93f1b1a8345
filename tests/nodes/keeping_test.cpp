// Inner sides that are kept and hashed give what trying every pair gives: rows, order and errors.
#include <random>

#include "keeping_policies.hpp"
#include "nodes/given_rows.hpp"
#include "ov_sql_executor/execution/describe.hpp"
#include "ov_sql_executor/execution/keeping/kept_side.hpp"
#include "ov_sql_executor/execution/keeping/lookup_filter.hpp"
#include "ov_sql_executor/expressions/comparison.hpp"
#include "ov_sql_executor/expressions/logical.hpp"
#include "ov_sql_executor/expressions/null_test.hpp"

namespace tests {
namespace {

// Looks at a value and refuses texts that begin with '!', so that errors have a place among the rows.
class refusing final : public operators::making_operator {
 public:
  explicit refusing(std::int16_t position) : value_(column(position)) {}
  value evaluate(execution_context& context) const override {
    const value seen = value_.evaluate(context);
    if (spell(seen) == "'!'") throw db_util::db_exception{4711};
    return seen;
  }

 private:
  operators::operand value_;
};
operator_ptr look_at(std::int16_t position) { return std::make_unique<refusing>(position); }

using operator_list = std::vector<operator_ptr>;

// outer.0 = inner.0, either way around, and what follows it in an AND. The outer row begins at 0, the inner one at 2.
struct join_condition {
  enum class rest { none, may_raise, cannot_raise };

  bool key_is_left;
  bool has_second_key;  // outer.1 = inner.1
  rest follows;

  operator_ptr first() const {
    return std::make_unique<operators::equal>(look_at(key_is_left ? 2 : 0), look_at(key_is_left ? 0 : 2));
  }
  static operator_ptr second() { return std::make_unique<operators::equal>(column(1), column(3)); }

  operator_list others() const {
    operator_list made;
    if (follows == rest::may_raise) made.push_back(std::make_unique<operators::not_equal>(look_at(1), look_at(3)));
    if (follows == rest::cannot_raise) made.push_back(std::make_unique<operators::is_not_null>(column(1)));
    return made;
  }

  operator_ptr plain() const {
    operator_list all = list_of(first());
    if (has_second_key) all.push_back(second());
    for (operator_ptr& each : others()) all.push_back(std::move(each));
    if (all.size() == 1) return std::move(all[0]);
    return std::make_unique<operators::all_of>(std::move(all));
  }

  keyed_condition hashed() const {
    using side = keyed_equality::key_side;
    const auto equality = [](operator_ptr test, side of) {
      return keyed_equality{std::unique_ptr<operators::equal>(static_cast<operators::equal*>(test.release())), of};
    };
    auto keys = list_of<keyed_equality>(equality(first(), key_is_left ? side::left : side::right));
    if (has_second_key) keys.push_back(equality(second(), side::right));
    return {std::move(keys), others(), follows == rest::may_raise};
  }
};

class Keeping : public testing::Test {
 protected:
  rows some_rows(const std::vector<const char*>& keys, std::size_t most) {
    rows made(random() % (most + 1));
    for (row& each : made) each = {val(keys[random() % keys.size()]), val(keys[random() % keys.size()])};
    return made;
  }
  // The rows up to the end or an error, which is one of the outcomes.
  static std::string run_to_the_end(const node& root) {
    execution_context context{vals("u1 u0"), {}, {}, 0};
    std::string found;
    found += outcome([&] {
      const std::unique_ptr<enumerator> source(root.create_enumerator(context));
      while (const std::optional<row> next = source->next(context)) found += spell(rows{*next});
    });
    return found;
  }
  static std::unique_ptr<node> limited(bool is_limited, std::unique_ptr<node> of) {
    if (!is_limited) return of;
    return std::make_unique<limit_offset>(std::move(of), constant(0), constant(1));
  }

  const unsigned seed = std::random_device{}();
  std::mt19937 random{seed};
  // Numbers of all types that meet, texts beside them, and what raises.
  const std::vector<std::vector<const char*>> key_sets = {
      {"i1", "i2", "u1", "dec1000000", "d1", "true", "d1.5", "dec1500000", "i3"},
      {"i1", "u1", "d2", "NULL"},
      {"'a'", "'b'", "NULL"},
      {"i1", "i2", "NULL", "'a'"},
      {"'a'", "'!'", "'b'"},
      {"d1", "dnan", "f1"},
      {"ref1", "ref2", "NULL"}};
};

TEST_F(Keeping, joins_as_if_every_pair_were_tried) {
  SCOPED_TRACE(seed);
  for (int round = 0; round < 2000; ++round) {
    const auto& keys = key_sets[random() % key_sets.size()];
    const rows outer = some_rows(keys, 8);
    const rows inner = some_rows(keys, 8);
    const join_condition condition{random() % 2 == 0, random() % 2 == 0,
                                   static_cast<join_condition::rest>(random() % 3)};
    const bool is_limited = random() % 3 == 0;
    const bool is_left_join = random() % 2 == 0;
    const auto joined = [&](std::unique_ptr<node> side) -> std::string {
      side = limited(is_limited, std::move(side));
      if (is_left_join) return run_to_the_end(left_join(given(outer), std::move(side), 2));
      return run_to_the_end(nested_loop_inner_join(given(outer), std::move(side)));
    };
    const auto full = [&](auto on) {
      return run_to_the_end(full_join(given(outer), given(inner), 2, 2, std::move(on)));
    };
    const std::string expected = joined(std::make_unique<filter>(given(inner), condition.plain()));
    const std::string expected_in_full = full(std::optional(condition.plain()));
    for (const keeping_policy& policy : keeping_policies) {
      SCOPED_TRACE(spell(outer) + " | " + spell(inner) + (condition.key_is_left ? " left" : " right"));
      const policy_scope scope(policy);
      ASSERT_EQ(joined(std::make_unique<lookup_filter>(given(inner), condition.hashed(), std::nullopt)), expected);
      auto kept = std::make_unique<kept_side>(given(inner), std::nullopt);
      ASSERT_EQ(joined(std::make_unique<filter>(std::move(kept), condition.plain())), expected);
      ASSERT_EQ(full(condition.hashed()), expected_in_full);
    }
  }
}

// Keys that equal nothing are not entered: all would have the same hash. Rows of one key are a list.
TEST(EqualityIndex, takes_little_for_keys_that_equal_nothing_or_one_another) {
  for (const char* const key : {"dnan", "fnan", "NULL", "d-0"}) {
    equality_index index;
    const value held = val(key);
    constexpr std::size_t count = 10'000;
    for (std::size_t i = 0; i < count; ++i) {
      value_view views[] = {view_of(held)};
      index.add(views);
    }
    EXPECT_EQ(index.size(), count);
    EXPECT_LT(index.byte_count(), 16 * count) << key;
    value_view zero[] = {std::int64_t{0}};
    EXPECT_EQ(index.find_first(zero), key == std::string("d-0") ? 0 : equality_index::none);
    EXPECT_EQ(index.nulls().size(), key == std::string("NULL") ? count : 0);
  }
}

// One row for every opening of the child; what it depends on is at position 0 of the row stack.
TEST_F(Keeping, reads_again_what_depends_on_a_row_that_changed) {
  const auto log = std::make_shared<journal>();
  const auto by_first = [](const execution_context& context) { return rows{{context.row_stack.at(0)}, {i(9)}}; };
  auto kept = std::make_unique<kept_side>(given(by_first, log, "k"), 0);
  auto inner = std::make_unique<nested_loop_inner_join>(given("(i7)(i8)(i9)"), std::move(kept));
  const std::string found = run_to_the_end(nested_loop_inner_join(given("(i1)(i2)"), std::move(inner)));
  EXPECT_EQ(found,
            "(i1 i7 i1)(i1 i7 i9)(i1 i8 i1)(i1 i8 i9)(i1 i9 i1)(i1 i9 i9)"
            "(i2 i7 i2)(i2 i7 i9)(i2 i8 i2)(i2 i8 i9)(i2 i9 i2)(i2 i9 i9)ok");
  EXPECT_EQ(log->events, "+k-k+k-k+k-k+k-k") << "twice for each outer row: once as it comes, once to be kept";
  EXPECT_EQ(log->alive, 0);
}

}  // namespace
}  // namespace tests
