// Filters, projections and generative assignments over nodes and expressions that are not the library's own.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "nodes/given_rows.hpp"
#include "ov_sql_executor/execution/filter.hpp"
#include "ov_sql_executor/execution/generative_assignment.hpp"
#include "ov_sql_executor/execution/projection.hpp"
#include "valueless.hpp"

namespace tests {
namespace {

using operators::operator_base;
using testing::ElementsAre;
using operator_ptr = std::unique_ptr<operator_base>;

// An operator that says when it goes.
class told final : public operator_base {
 public:
  using answer = std::function<value(const execution_context&)>;

  explicit told(answer say, std::shared_ptr<journal> log = nullptr, std::string name = "")
      : say_(std::move(say)), log_(std::move(log)), name_(std::move(name)) {}
  ~told() override {
    if (log_) log_->events.push_back(name_);
  }
  value evaluate(execution_context& context) const override { return say_(context); }

 private:
  answer say_;
  std::shared_ptr<journal> log_;
  std::string name_;
};

operator_ptr tell(told::answer say) { return std::make_unique<told>(std::move(say)); }

value text(const char* bytes) { return db_string::tt_string(bytes, std::string_view(bytes).size()); }

template <class... Operators>
std::vector<operator_ptr> list(Operators... operators) {
  std::vector<operator_ptr> made;
  (made.push_back(std::move(operators)), ...);
  return made;
}

const rows verdicts = {
    {true, i(1)}, {false, i(2)}, {null(), i(3)}, {true, text("a text that owns its bytes")}, {false, i(5)}};

TEST(Filter, passes_rows_whose_predicate_is_true) {
  const char* const passed = "(true 1)(true 'a text that owns its bytes')";
  const filter plain(given(verdicts), column(0));
  EXPECT_EQ(show(run(plain)), passed);
  EXPECT_EQ(show(run(plain)), passed) << "a second run";
  EXPECT_EQ(show(run(filter(given(verdicts), column(2)), {u(8), u(9)})), passed) << "behind enclosing rows";
  const auto foreign = [] { return tell([](const execution_context& context) { return context.row_stack[0]; }); };
  EXPECT_EQ(show(run(filter(given(verdicts), foreign()))), passed);
  const filter twice(std::make_unique<filter>(given(verdicts), foreign()), column(0));
  EXPECT_EQ(show(run(twice)), passed) << "over a filter";
  EXPECT_EQ(show(run(filter(given(rows(4, row{null()})), column(0)))), "");
  EXPECT_EQ(show(run(filter(given(rows{}), column(0)))), "");
}

TEST(Filter, refuses_what_is_no_truth_value) {
  for (const value& verdict : {i(1), value(1.0), text("true"), value(operator_library::Binary{{1}})}) {
    const rows all = {{true}, {verdict}};
    EXPECT_EQ(db_error([&] { run(filter(given(all), column(0))); }), 7020U) << show(verdict);
  }
  value nothing = db_string::tt_string();
  make_valueless<db_string::tt_string>(nothing);
  EXPECT_THROW(run(filter(given(rows{{nothing}}), column(0))), std::bad_variant_access);
}

TEST(Projection, makes_a_row_of_its_expressions) {
  const operator_library::SetSpecifier specifier{u"/Short/"};
  const rows all = {{i(1), text("first"), null()}, {i(2), specifier, true}};
  const auto sum = [](std::size_t position) {
    return tell([position](const execution_context& context) {
      return i(std::get<std::int64_t>(context.row_stack[position]) + std::get<std::int64_t>(context.row_stack[0]));
    });
  };
  EXPECT_EQ(show(run(projection(given(all), columns({2, 0})))), "(NULL 1)(true 2)");
  EXPECT_EQ(show(run(projection(given(all), columns({3, 1, 1, 0})), {i(7)})), "(NULL 1 1 7)(true 2 2 7)");
  EXPECT_EQ(show(run(projection(given(all), {}))), "()()") << "rows of no values";
  EXPECT_EQ(show(run(projection(given(all), list(sum(1), column(1))), {i(10)})), "(11 1)(12 2)");
  // Over a projection, whose rows are made on the row stack.
  const projection outer(std::make_unique<projection>(given(all), list(column(2), sum(1), column(2), column(3))),
                         columns({2, 1, 3, 4, 0}));
  const rows found = run(outer, {i(10)});
  EXPECT_EQ(show({{found[0]}}), "(11 'first' 'first' NULL 10)");
  EXPECT_EQ(show(found[1][0]), "12");
  EXPECT_EQ(std::get<operator_library::SetSpecifier>(found[1][2]).units, specifier.units);
}

TEST(GenerativeAssignment, makes_one_row_even_of_null) {
  EXPECT_EQ(show(run(generative_assignment(column(0)), {i(4)})), "(4)");
  EXPECT_EQ(show(run(generative_assignment(constant(0)), {}, {null()})), "(NULL)");
  const generative_assignment failing(
      tell([](const execution_context&) -> value { throw db_util::db_exception{4711}; }));
  execution_context context;
  const std::unique_ptr<enumerator> source(failing.create_enumerator(context));
  EXPECT_EQ(db_error([&] { source->next(context); }), 4711U);
  EXPECT_FALSE(source->next(context));
}

TEST(Nodes, free_their_enumerators_when_an_expression_fails) {
  const auto log = std::make_shared<journal>();
  for (const std::int64_t fails_at : {1, 3}) {
    const auto fail = [fails_at] {
      return tell([fails_at](const execution_context& context) -> value {
        if (std::get<std::int64_t>(context.row_stack[0]) == fails_at) throw db_util::db_exception{4711};
        return true;
      });
    };
    const rows all = {{i(1)}, {i(2)}, {i(3)}};
    EXPECT_EQ(db_error([&] { run(filter(given(all, log), fail())); }), 4711U);
    EXPECT_EQ(db_error([&] { run(projection(given(all, log), list(column(0), fail()))); }), 4711U);
    EXPECT_EQ(db_error([&] {
                run(projection(std::make_unique<projection>(given(all, log), list(column(0), fail())), columns({0})));
              }),
              4711U);
    EXPECT_EQ(log->alive, 0);
  }
}

// A node below, which says when it goes.
class leaf final : public node {
 public:
  explicit leaf(std::shared_ptr<journal> log) : log_(std::move(log)) {}
  ~leaf() override { log_->events.push_back("child"); }
  enumerator* create_enumerator(execution_context&) const override { return nullptr; }

 private:
  std::shared_ptr<journal> log_;
};

TEST(Nodes, release_their_expressions_before_their_children) {
  const auto log = std::make_shared<journal>();
  const auto note = [&](const char* name) {
    return std::make_unique<told>([](const execution_context&) { return null(); }, log, name);
  };
  filter(std::make_unique<leaf>(log), note("predicate"));
  EXPECT_THAT(log->events, ElementsAre("predicate", "child"));
  log->events.clear();
  projection(std::make_unique<leaf>(log), list(note("a"), note("b")));
  EXPECT_EQ(log->events.back(), "child");
  EXPECT_EQ(log->events.size(), 3U);
}

}  // namespace
}  // namespace tests
