// Filters, projections and generative assignments over nodes and expressions that are not the library's own.
#include <gmock/gmock.h>

#include "nodes/given_rows.hpp"
#include "ov_sql_executor/execution/filter.hpp"
#include "ov_sql_executor/execution/generative_assignment.hpp"
#include "ov_sql_executor/execution/projection.hpp"
#include "valueless.hpp"

namespace tests {
namespace {

// An operator that says when it goes.
class told final : public operators::operator_base {
 public:
  using answer = std::function<value(const row&)>;

  explicit told(answer say, std::shared_ptr<journal> log = std::make_shared<journal>(), std::string name = "")
      : say_(std::move(say)), log_(std::move(log)), name_(std::move(name)) {}
  ~told() override { log_->events.push_back(name_); }
  value evaluate(execution_context& context) const override { return say_(context.row_stack); }

 private:
  answer say_;
  std::shared_ptr<journal> log_;
  std::string name_;
};

operator_ptr tell(told::answer say) { return std::make_unique<told>(std::move(say)); }

template <class... Operators>
std::vector<operator_ptr> list_of(Operators... operators) {
  std::vector<operator_ptr> made;
  (made.push_back(std::move(operators)), ...);
  return made;
}

TEST(Filter, passes_rows_whose_predicate_is_true) {
  const char* const verdicts = "(true i1)(false i2)(NULL i3)(true 'a-text-that-owns-its-bytes')(false i5)";
  const char* const passed = "(true i1)(true 'a-text-that-owns-its-bytes')";
  const filter plain(given(verdicts), column(0));
  EXPECT_EQ(run(plain), passed);
  EXPECT_EQ(run(plain), passed) << "a second run";
  EXPECT_EQ(run(filter(given(verdicts), column(2)), vals("u8 u9")), passed) << "behind enclosing rows";
  const auto foreign = [] { return tell([](const row& stack) { return stack[0]; }); };
  EXPECT_EQ(run(filter(given(verdicts), foreign())), passed);
  EXPECT_EQ(run(filter(std::make_unique<filter>(given(verdicts), foreign()), column(0))), passed) << "over a filter";
  EXPECT_EQ(run(filter(given("(NULL)(NULL)"), column(0))), "");
  EXPECT_EQ(run(filter(given(""), column(0))), "");
}

TEST(Filter, refuses_what_is_no_truth_value) {
  for (const char* verdict : {"i1", "d1", "'true'", "x'01'"}) {
    EXPECT_EQ(run(filter(given({{true}, {val(verdict)}}), column(0))), "7020") << verdict;
  }
  EXPECT_EQ(run(filter(given({{valueless()}}), column(0))), bad_variant);
}

TEST(Projection, makes_a_row_of_its_expressions) {
  const char* const all = "(i1 'first' NULL)(i2 set'/Short/' true)";
  const auto sum = [](std::size_t position) {
    return tell([position](const row& stack) {
      return i(std::get<std::int64_t>(stack[position]) + std::get<std::int64_t>(stack[0]));
    });
  };
  EXPECT_EQ(run(projection(given(all), columns({2, 0}))), "(NULL i1)(true i2)");
  EXPECT_EQ(run(projection(given(all), columns({3, 1, 1, 0})), {i(7)}), "(NULL i1 i1 i7)(true i2 i2 i7)");
  EXPECT_EQ(run(projection(given(all), {})), "()()") << "rows of no values";
  EXPECT_EQ(run(projection(given(all), list_of(sum(1), column(1))), {i(10)}), "(i11 i1)(i12 i2)");
  // Over a projection, whose rows are made on the row stack.
  auto inner = std::make_unique<projection>(given(all), list_of(column(2), sum(1), column(2), column(3)));
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

// A node below, which says when it goes.
class leaf final : public node {
 public:
  explicit leaf(std::shared_ptr<journal> log) : log_(std::move(log)) {}
  ~leaf() override { log_->events.emplace_back("child"); }
  enumerator* create_enumerator(execution_context&) const override { return nullptr; }

 private:
  std::shared_ptr<journal> log_;
};

TEST(Nodes, release_their_expressions_before_their_children) {
  const auto log = std::make_shared<journal>();
  const auto note = [&] { return std::make_unique<told>([](const row&) { return null(); }, log, "expression"); };
  filter(std::make_unique<leaf>(log), note());
  projection(std::make_unique<leaf>(log), list_of(note(), note()));
  EXPECT_THAT(log->events, testing::ElementsAre("expression", "child", "expression", "expression", "child"));
}

}  // namespace
}  // namespace tests
