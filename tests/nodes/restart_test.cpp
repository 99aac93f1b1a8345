// An inner side is restarted for every outer row; one of the host's own is opened anew. Both give the same rows. So do
// steps among skips.
#include <random>

#include "nodes/given_rows.hpp"
#include "ov_sql_executor/expressions/comparison.hpp"

namespace tests {
namespace {

namespace kinds = ov::sql_executor::aggregates;

// A node that hides from its parent that what is in it is the library's.
class foreign final : public node {
 public:
  explicit foreign(std::unique_ptr<node> hidden) : hidden_(std::move(hidden)) {}
  enumerator* create_enumerator(execution_context& context) const override {
    return hidden_->create_enumerator(context);
  }

 private:
  std::unique_ptr<node> hidden_;
};

// Gives one value per row, by the outer row's at position 0: two rows of 20 and 21 for (i2), none for (i0).
std::unique_ptr<node> by_outer_row() {
  return given([](const execution_context& context) {
    rows all;
    const auto* count = std::get_if<std::int64_t>(&context.row_stack.at(0));
    for (std::int64_t n = 0; count != nullptr && n < *count; ++n) all.push_back({i(*count * 10 + n)});
    return all;
  });
}

operator_ptr differs(std::int16_t left, std::int16_t right) {
  return std::make_unique<operators::not_equal>(column(left), column(right));
}

std::vector<aggregate_entry> every_aggregate() {
  return list_of<aggregate_entry>(kinds::sum{operators::operand(column(1))},
                                  kinds::count_distinct_values{operators::operand(column(1))}, kinds::count_rows{});
}

// Where a width is told, or must be that of others.
std::unique_ptr<node> one_value_of(std::unique_ptr<node> of) {
  return std::make_unique<projection>(std::move(of), columns({1}));
}

// Inner sides whose rows have one value or more. Those of the outer row and of the node itself lie before position 1.
using maker = std::function<std::unique_ptr<node>(std::unique_ptr<node>)>;
const std::pair<const char*, maker> nodes[] = {
    {"filter", [](auto of) { return std::make_unique<filter>(std::move(of), differs(1, 0)); }},
    {"projection", one_value_of},
    {"extension",
     [](auto of) {
       return extended(std::move(of), columns({0, 1}));
     }},
    {"order", [](auto of) { return std::make_unique<order_by>(std::move(of), columns({1}), std::vector{false}); }},
    {"limit", [](auto of) { return std::make_unique<limit_offset>(std::move(of), column(0), constant(0)); }},
    {"union", [](auto of) { return std::make_unique<uniond>(one_value_of(std::move(of)), by_outer_row()); }},
    {"join", [](auto of) { return std::make_unique<nested_loop_inner_join>(std::move(of), by_outer_row()); }},
    {"join in", [](auto of) { return std::make_unique<nested_loop_inner_join>(by_outer_row(), std::move(of)); }},
    {"left join", [](auto of) { return std::make_unique<left_join>(by_outer_row(), one_value_of(std::move(of)), 1); }},
    {"pairs",
     [](auto of) {
       return std::make_unique<full_join>(by_outer_row(), one_value_of(std::move(of)), 1, 1, std::nullopt);
     }},
    {"full join",
     [](auto of) {
       return std::make_unique<full_join>(one_value_of(std::move(of)), by_outer_row(), 1, 1, differs(1, 2));
     }},
    {"groups",
     [](auto of) {
       return std::make_unique<aggregator>(std::move(of), columns({1, 0}), every_aggregate());
     }},
    {"aggregates", [](auto of) {
       return std::make_unique<aggregator>(std::move(of), std::vector<operator_ptr>(), every_aggregate());
     }}};

TEST(Restart, gives_the_rows_of_a_new_enumerator) {
  const unsigned seed = std::random_device{}();
  SCOPED_TRACE(seed);
  std::mt19937 random(seed);
  for (int round = 0; round < 300; ++round) {
    std::string said;
    const auto make = [&](std::mt19937 choice) {
      said.clear();
      std::unique_ptr<node> inner = by_outer_row();
      for (std::uint32_t depth = choice() % 4; depth > 0; --depth) {
        const auto& [name, outer] = nodes[choice() % std::size(nodes)];
        inner = outer(std::move(inner));
        said = name + (" of " + said);
      }
      return inner;
    };
    const std::mt19937 choice(random());
    const auto joined = [](std::unique_ptr<node> inner) {
      return run(nested_loop_inner_join(given("(i2)(i0)(i3)(i1)(i0)(i3)"), std::move(inner)), {}, vals("u1"));
    };
    const std::string expected = joined(std::make_unique<foreign>(make(choice)));
    ASSERT_EQ(joined(make(choice)), expected) << said;
  }
}

TEST(Skip, passes_over_what_steps_would_yield) {
  const unsigned seed = std::random_device{}();
  SCOPED_TRACE(seed);
  std::mt19937 random(seed);
  for (int round = 0; round < 500; ++round) {
    std::unique_ptr<node> source = by_outer_row();
    std::string said;
    for (std::uint32_t depth = random() % 4; depth > 0; --depth) {
      const auto& [name, outer] = nodes[random() % std::size(nodes)];
      source = outer(std::move(source));
      said = name + (" of " + said);
    }
    if (dynamic_cast<const source_node*>(source.get()) == nullptr) continue;
    execution_context context{vals("u1"), {}, vals("i3"), 0};
    const auto open = [&] { return dynamic_cast<const source_node&>(*source).open(context, all_rows); };
    const std::unique_ptr<row_source> stepped = open();
    const std::unique_ptr<row_source> tested = open();
    for (int move = 0; move < 8; ++move) {
      const std::uint64_t count = random() % 5 == 0 ? all_rows : random() % 4;
      std::uint64_t expected = 0;
      while (expected < count && stepped->next(context)) ++expected;
      ASSERT_EQ(tested->skip(context, count), expected) << said;
      ASSERT_EQ(context.row_stack.size(), 1U) << said;
      const auto next_of = [&context](row_source& of) {
        const std::optional<row> next = of.next(context);
        return next ? spell(*next) : "the end";
      };
      ASSERT_EQ(next_of(*tested), next_of(*stepped)) << said;
    }
  }
}

// Some rows of an inner side are left when it is restarted.
TEST(Restart, may_come_before_the_end) {
  for (const auto& [name, outer] : nodes) {
    const auto source = outer(by_outer_row());
    const auto& own = dynamic_cast<const source_node&>(*source);
    execution_context context{vals("u1"), {}, vals("i3"), 0};
    const auto rows_of = [&context](row_source& opened, std::size_t most) {
      rows all;
      while (all.size() < most) {
        std::optional<row> next = opened.next(context);
        if (!next) break;
        all.push_back(std::move(*next));
      }
      return spell(all);
    };
    const std::string expected = rows_of(*own.open(context, all_rows), 100);
    for (const std::size_t taken : {0, 1, 2}) {
      const std::unique_ptr<row_source> opened = own.open(context, all_rows);
      rows_of(*opened, taken);
      opened->restart(context, {});
      EXPECT_EQ(rows_of(*opened, 100), expected) << name;
    }
  }
}

}  // namespace
}  // namespace tests
