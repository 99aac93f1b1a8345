// The physical plan that the host builds and hands to physical_to_exec::Plan. The order of the alternatives and the
// layout of their fields are part of the interface. share/doc/ov_sql_executor/operations.md says how values are ordered
// and grouped, and what the aggregates yield.
//
// Names: a column is looked for in the enclosing rows first, outermost first, then in the node's input row, left before
// right. The first that has the name is meant. So where both sides of a join define a column, or have the same
// variable, the outer (left) one is read; where a row defines a column twice, the first.
//
// Errors: rows are made, and errors raised, when the rows are asked for. A Filter looks at rows that are already made,
// so it does not protect an Extension below it from the rows that it drops. Rows that an offset skips or a Filter drops
// are evaluated and may raise.
#ifndef OV_SQL_EXECUTOR_PLANNING_QUERY_PLAN_HPP_
#define OV_SQL_EXECUTOR_PLANNING_QUERY_PLAN_HPP_

#include <array>
#include <concepts>
#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "ov_sql_executor/expressions/column_ref.hpp"
#include "ov_sql_executor/expressions/expression.hpp"
#include "ov_sql_executor/expressions/expression_order.hpp"

namespace physical_queryplan::QueryPlan {

struct PredicateVariant;

// An input of an alternative; never null in a valid plan.
using child_ptr = std::unique_ptr<PredicateVariant>;

// Gives the expression's value the name of the column.
struct assignment {
  physical_queryplan::expression expression;
  column_ref column;
};

struct order_key {
  bool ascending = true;
  physical_queryplan::expression expression;
};

// What the eight kinds of aggregate hold. Only Average reads its result type.
//
//    SumOf                            what adding gives: int64 of uint64 and int64, otherwise the type of the values;
//                                     NULL without values
//    CountOf, CountRows               int64
//    Maximum, Minimum                 the value; NULL without values
//    Average                          Decimal for the first two result types, double for the last two; NULL without
//                                     values
//    CountDistinct, CountDistinctRows uint64
//
// NULL is no value for them; only the distinct counts count it like a value. The input is read and the arguments are
// evaluated when the first row is asked for. Among more than 1,024 groups, up to fifteen later rows may have been read
// when an aggregate raises an error; the error is the first all the same.
struct aggregation {
  std::variant<meta_support::TypeIdentity<std::int64_t>, meta_support::TypeIdentity<Decimal>,
               meta_support::TypeIdentity<double>, meta_support::TypeIdentity<float>>
      result_type;
  std::vector<expression> arguments;
  computed_column column;
};

struct SumOf : aggregation {};              // 0, one argument
struct CountOf : aggregation {};            // 1, one argument: its values that are not NULL
struct CountRows : aggregation {};          // 2, no argument
struct Maximum : aggregation {};            // 3, one argument
struct Minimum : aggregation {};            // 4, one argument
struct Average : aggregation {};            // 5, one argument
struct CountDistinct : aggregation {};      // 6, one argument: its distinct values
struct CountDistinctRows : aggregation {};  // 7, any number: the distinct rows of them

using aggregate = std::variant<SumOf, CountOf, CountRows, Maximum, Minimum, Average, CountDistinct, CountDistinctRows>;

// A bound on a key column. It is evaluated against the enclosing rows when the enumerator is created. With
// rejects_null, objects without a value in the column do not match, and a NULL bound matches nothing. Without it, NULL,
// in the column and as the bound, is a key below all others; but where the bound of a column of numbers is below all
// that the column can hold, objects without a value count as above it. A NULL prefix matches nothing in either case.
struct bound {
  physical_queryplan::expression expression;
  bool rejects_null = true;

  friend bool operator<(const bound& left, const bound& right) {
    const auto order = structural_order(left.expression, right.expression);
    return order != 0 ? order < 0 : left.rejects_null < right.rejects_null;
  }
};

// The bounds on one leading key column of a scan; all of them hold together. Without any, the column is unrestricted.
// Prefixes are for texts and set specifiers. Scan says what bounds on several columns do; operations.md says what
// bounds a column takes.
//
// A prefix made by PrefixPattern loses rows that LIKE would match, since LIKE ignores case and keys do not. It is the
// empty text for a pattern without a wildcard.
struct scan_range {
  std::set<bound> equal_to;
  std::set<bound> less_than;
  std::set<bound> at_most;
  std::set<bound> greater_than;
  std::set<bound> at_least;
  std::set<bound> starts_with;
};

// 0: joins every left row with every row of the right input, which may refer to the left input's columns.
struct NestedLoopJoin {
  child_ptr left;
  child_ptr right;
};

// 1: joins like NestedLoopJoin, and gives a left row without a partner once, extended with NULLs.
struct LeftJoin {
  child_ptr left;
  child_ptr right;
};

// 2: gives the pairs of rows of two independent inputs for which the condition holds (all, without one), and the rows
// of either side without a partner, extended with NULLs. Opens both inputs at once.
struct FullJoin {
  std::optional<expression> condition;
  child_ptr left;
  child_ptr right;
};

// 3: gives the objects of a key interval of an index, one per row, in key order. index is the index's metadata object;
// element i of ranges restricts its key column i.
//
// The interval has two ends, each one key. So the bounds are exact if every column before the last one with bounds has
// a bound in equal_to. Otherwise the interval takes in other objects, too, and a Filter has to stay above: for (a, b)
// with a > 5 and b = 3 it goes from (5, 3) up, and b is anything. An object that matches is never left out.
//
// Creating the enumerator evaluates the bounds and opens the iterator. It throws std::out_of_range for ranges of more
// columns than the key has.
struct Scan {
  physical_queryplan::variable variable;
  OV_OBJ_REF index{};
  std::vector<scan_range> ranges;
  bool ascending = true;
};

// 4: gives the child's rows for which the predicate is true. False and NULL drop a row; anything else is a db_exception
// type_error.
struct Filter {
  expression predicate;
  child_ptr child;
};

// 5: gives the named columns of the child, in order. Every item is a column reference.
struct Projection {
  std::vector<expression> items;
  child_ptr child;
};

// 6: gives one row of one value, which is evaluated against the enclosing rows when the row is asked for.
struct GenerativeAssignment {
  physical_queryplan::expression expression;
  column_ref column;
};

// 7: gives the child's rows, each with computed columns appended. Its expressions do not see the columns of each other.
struct Extension {
  std::vector<assignment> assignments;
  child_ptr child;
};

// 8: gives one row per group: the aggregates, then the grouping values. Without grouping expressions, gives one row.
struct Aggregation {
  std::vector<aggregate> aggregates;
  std::vector<assignment> group_by;
  child_ptr child;
};

// 9: gives the child's rows, sorted. The first key is the most significant, NULL is below every value, and rows with
// equal keys stay in order.
//
// Creating the enumerator reads the whole input and evaluates the keys of every row, then sorts. Sorting throws
// std::logic_error "incompatible types" where two values of one key are of different types, and db_exception
// out_of_range for a NaN. It does so as far as keys are compared: a later key only among rows whose earlier ones are
// equal, and the key of a single row never. A LimitOffset above changes nothing about errors.
struct OrderBy {
  std::vector<order_key> keys;
  child_ptr child;
};

// 10: gives the child's rows without the first offset ones, at most limit of them.
//
// Each time the enumerator is created, also for every outer row of a join, limit and offset are evaluated against the
// enclosing rows, then both are converted to uint64, then the child is opened and the offset skipped. A limit of 0
// skips the offset, too. Throws db_exception type_error for NULL, out_of_range for a negative number or one that is too
// large, unsupported_conversion for a text, and type_error for anything else that is no number.
struct LimitOffset {
  std::optional<expression> limit;
  std::optional<expression> offset;
  child_ptr child;
};

// 11: gives all rows of the left input, then all of the right. Both have the same columns, and both are opened before
// the first row.
struct Union {
  child_ptr left;
  child_ptr right;
};

using predicate_variant = std::variant<NestedLoopJoin, LeftJoin, FullJoin, Scan, Filter, Projection,
                                       GenerativeAssignment, Extension, Aggregation, OrderBy, LimitOffset, Union>;

// May be nested to any depth: moving and destroying have no limit. plan.hpp says what Plan takes. An alternative's
// inputs are its fields left and right, or child: find_children knows no other names.
struct PredicateVariant : predicate_variant {
  using predicate_variant::predicate_variant;

  PredicateVariant() = default;
  PredicateVariant(PredicateVariant&&) = default;
  PredicateVariant& operator=(PredicateVariant&&) = default;
  inline ~PredicateVariant();
};

// Returns the inputs of a plan, left before right; null pointers where it has none. A valueless plan has none.
template <class Plan>
requires std::same_as<std::remove_const_t<Plan>, PredicateVariant>
auto find_children(Plan& any) {
  constexpr bool is_const = std::is_const_v<Plan>;
  using child = std::conditional_t<is_const, const child_ptr*, child_ptr*>;
  using variant = std::conditional_t<is_const, const predicate_variant&, predicate_variant&>;
  if (any.valueless_by_exception()) return std::array<child, 2>();
  return std::visit(
      [](auto& held) -> std::array<child, 2> {
        if constexpr (requires { held.left; }) {
          return {&held.left, &held.right};
        } else if constexpr (requires { held.child; }) {
          return {&held.child, nullptr};
        } else {
          using leaf = std::remove_cvref_t<decltype(held)>;
          static_assert(std::same_as<leaf, Scan> || std::same_as<leaf, GenerativeAssignment>,
                        "an alternative's inputs are called left and right, or child");
          return {};
        }
      },
      static_cast<variant>(any));
}

// Destroys nested plans one by one, without recursion and without memory of its own. The plans above the one in hand
// wait in the place of the input that was taken out of it.
inline PredicateVariant::~PredicateVariant() {
  const auto input_of = [](PredicateVariant& any) -> child_ptr* {
    for (child_ptr* const child : find_children(any)) {
      if (child != nullptr && *child != nullptr) return child;
    }
    return nullptr;
  };
  while (child_ptr* const own = input_of(*this)) {
    child_ptr in_hand = std::move(*own);
    child_ptr above;
    while (in_hand != nullptr) {
      if (child_ptr* const input = input_of(*in_hand)) {
        child_ptr next = std::exchange(*input, std::move(above));
        above = std::exchange(in_hand, std::move(next));
      } else {
        in_hand = std::move(above);
        child_ptr* const waiting = in_hand != nullptr ? input_of(*in_hand) : nullptr;
        if (waiting != nullptr) above = std::move(*waiting);
      }
    }
  }
}

}  // namespace physical_queryplan::QueryPlan

#endif  // OV_SQL_EXECUTOR_PLANNING_QUERY_PLAN_HPP_
