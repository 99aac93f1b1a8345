#ifndef OV_SQL_EXECUTOR_EXPRESSIONS_SCOPE_HPP_
#define OV_SQL_EXECUTOR_EXPRESSIONS_SCOPE_HPP_

#include <cstdint>
#include <optional>
#include <span>
#include <unordered_map>
#include <utility>
#include <vector>

#include "ov_sql_executor/expressions/column_ref.hpp"
#include "ov_sql_executor/expressions/expression.hpp"

namespace ov::sql_executor {

// The columns of the values on the row stack when an expression is evaluated, in order. None is valueless.
using scope = std::vector<physical_queryplan::column_ref>;

// Finds columns in the enclosing rows and, after them, in the input row of a node. Refers to both lists. Searches them
// one by one, until so many columns have been asked for that an index pays.
class visible_columns {
 public:
  visible_columns(const scope& outer) : outer_(outer) {}  // NOLINT: the same thing where there is no input row
  visible_columns(const scope& outer, const scope& input) : outer_(outer), input_(input) {}

  // Returns the row-stack position of the first column that equals this one, and notes it as read. Throws
  // boost::numeric::positive_overflow for a position beyond 32767.
  std::optional<std::int16_t> find_in_scope(const physical_queryplan::column_ref& column) const;

  // The positions that were found since the last call.
  std::vector<std::int16_t> take_reads() const { return std::exchange(reads_, {}); }

 private:
  using column_ref = physical_queryplan::column_ref;
  struct hash {
    std::size_t operator()(const column_ref* column) const;
  };
  struct equal {
    bool operator()(const column_ref* left, const column_ref* right) const { return *left == *right; }
  };

  std::size_t size() const { return outer_.size() + input_.size(); }
  std::size_t find_position(const column_ref& column) const;
  void make_index() const;

  std::span<const column_ref> outer_;
  std::span<const column_ref> input_;
  mutable std::vector<std::int16_t> reads_;
  mutable std::size_t compared_ = 0;
  mutable std::unordered_map<const column_ref*, std::size_t, hash, equal> index_;  // positions; empty until it pays
};

// Returns the columns of outer, then those of inner.
scope join_scopes(const scope& outer, const scope& inner);

// Returns the column that an expression names. Throws OVException 7007 "Internal error: expression is not a variable"
// for an expression that names none and std::bad_variant_access for a valueless one.
physical_queryplan::column_ref to_column_ref(const physical_queryplan::expression& expression);

// Returns the expression that reads a column.
physical_queryplan::expression to_expression(const physical_queryplan::column_ref& column);

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_EXPRESSIONS_SCOPE_HPP_
