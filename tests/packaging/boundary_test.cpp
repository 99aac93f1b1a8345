// What the library throws is caught by a program that shares nothing but headers with it, although the library keeps
// its copies of the standard library's and Boost's type information to itself.
#include <gtest/gtest.h>

#include <boost/numeric/conversion/converter_policies.hpp>
#include <cstdint>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>
#include <variant>

#include "ov_sql_executor/database/context_handle.hpp"
#include "ov_sql_executor/database/obj_ref.hpp"
#include "ov_sql_executor/errors/db_exception.hpp"
#include "ov_sql_executor/errors/describe.hpp"
#include "ov_sql_executor/errors/ov_exception.hpp"
#include "ov_sql_executor/execution/cursor.hpp"
#include "ov_sql_executor/planning/plan.hpp"
#include "valueless.hpp"

namespace {

using namespace physical_queryplan;             // NOLINT: plans are made of them
using namespace physical_queryplan::QueryPlan;  // NOLINT

const computed<bool> answer{{1, 0, 0, 0}};

std::unique_ptr<PredicateVariant> one_row(expression any) {
  return std::make_unique<PredicateVariant>(GenerativeAssignment{std::move(any), answer});
}

Projection select(expression any) { return {{answer}, one_row(std::move(any))}; }

TEST(LibraryBoundary, PlanningErrorsAreCaughtByTheirTypes) {
  using physical_to_exec::Plan;
  EXPECT_THROW(Plan(Filter{literal(true), one_row(literal(true))}), error_handling::OVException);
  EXPECT_THROW(Plan(select(Less{})), std::out_of_range);
  EXPECT_THROW(Plan(select(literal(parameter<bool>{32768}))), boost::numeric::positive_overflow);
  PredicateVariant nothing = select(literal(true));
  tests::make_valueless<GenerativeAssignment>(nothing);
  EXPECT_THROW(Plan(std::move(nothing)), std::bad_variant_access);
}

TEST(LibraryBoundary, ExecutionErrorsAreCaughtByTheirTypes) {
  auto filter = std::make_unique<PredicateVariant>(Filter{literal(std::int64_t{1}), one_row(literal(true))});
  const auto [statement, columns] = physical_to_exec::Plan(Projection{{answer}, std::move(filter)});
  ov::sql_executor::execution_context context{statement.constants, {}, {}, 0};
  const std::unique_ptr<ov::sql_executor::enumerator> rows(statement.root->create_enumerator(context));
  EXPECT_THROW(rows->next(context), db_util::db_exception);
  ov::sql_executor::execution_context other{statement.constants, {}, {}, 0};
  ov::sql_executor::cursor shown(statement, other);
  EXPECT_THROW(shown.next(), db_util::db_exception);
}

TEST(LibraryBoundary, RowsAreLookedAtInTheContext) {
  const auto [statement, columns] = physical_to_exec::Plan(select(literal(true)));
  ov::sql_executor::execution_context context{statement.constants, {}, {}, 0};
  ov::sql_executor::cursor rows(statement, context);
  ASSERT_TRUE(rows.next());
  EXPECT_EQ(rows.row().data(), context.row_stack.data());
  EXPECT_TRUE(std::get<bool>(rows.row().front()));
  EXPECT_FALSE(rows.next());
}

TEST(LibraryBoundary, AVariableMovedFromIsStillOne) {
  variable city;
  city.parent = std::make_unique<variable_origin>();
  const variable moved = std::move(city);
  EXPECT_FALSE(moved == city);   // NOLINT(bugprone-use-after-move): that it may be used
  const variable copied = city;  // NOLINT(bugprone-use-after-move): is the point
  EXPECT_FALSE(copied.parent.has_value());
}

TEST(LibraryBoundary, HelpersLinkFromOutside) {
  const db_util::OvObjRef from_core(ORV_REFERENCE_VALUE{9, 0xFFFF'0000'0000'0001, 2});
  EXPECT_EQ(from_core.reference().second_word, 0x10002U) << "the top 16 bits are lost";
  db_util::OvObjRef other(OV_OBJ_REF{9, 5});
  EXPECT_TRUE(from_core.equals(other)) << "references are identified by number";
  EXPECT_FALSE(from_core.equals(OV_OBJ_REF{6, 0x10002}));
  other = db_util::OvObjRef();
  EXPECT_FALSE(other.is_valid());

  db_util::ContextHandle handle;
  EXPECT_EQ(handle.context_handle(), 0U);
  handle = db_util::ContextHandle(4);
  EXPECT_EQ(handle.context_handle(), 4U);
  EXPECT_EQ(metalayer::TlsContextHandle::context_handle(), 0U);
}

TEST(LibraryBoundary, EveryCodeHasWordsOfItsOwn) {
  using error_handling::describe;
  const std::string unknown = describe(5555);
  EXPECT_EQ(unknown, "a status of the core");
  std::set<std::string> words = {unknown};
  const std::uint32_t codes[] = {0,    1027, 4197, 7020, 7041, 7007, 7022, 7042, 4272, 4101,
                                 4102, 4103, 4104, 4105, 4106, 4107, 4108, 4109, 4110, 4111};
  for (const std::uint32_t code : codes) EXPECT_TRUE(words.insert(describe(code)).second) << code;
}

}  // namespace
