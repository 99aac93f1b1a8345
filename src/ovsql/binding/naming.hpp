#ifndef OVSQL_BINDING_NAMING_HPP_
#define OVSQL_BINDING_NAMING_HPP_

#include <cstddef>
#include <cstdint>
#include <list>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "ov_sql_executor/expressions/expression.hpp"
#include "ov_sql_executor/expressions/expression_order.hpp"
#include "ovhost/plans/column_names.hpp"
#include "ovhost/values/value_kind.hpp"
#include "ovsql/binding/item_set.hpp"
#include "ovsql/syntax/tree.hpp"

namespace ovsql {

using physical_queryplan::expression;
using physical_queryplan::identifier;

// A SELECT that has a column, and the item that it has it from. Blocks are numbered from 1; 0 is none.
struct column_owner {
  std::uint32_t block = 0;
  std::uint32_t item = 0;
};

// A parameter of a statement.
struct parameter_info {
  std::string name = {};  // without its colon; empty for a numbered one
};

// The names, numbers and parameters of one statement. Columns are numbered from 1 in the order of their making.
class naming {
 public:
  naming() {
    constexpr std::size_t usual = 16;
    owners_.reserve(usual);
    names_.reserve(usual);
  }

  // name: lives until the statement is planned.
  identifier make(std::string_view name, column_owner owner);

  // Says that a column of a subquery is one of an item of the SELECT around it, too.
  void give_to(std::uint32_t number, column_owner owner);

  // The item that a SELECT has a column from; nothing for a column of other SELECTs and for one that no item makes.
  std::optional<std::uint32_t> item_of(std::uint32_t number, std::uint32_t block) const;

  // Whether no item of any SELECT makes the column: it is a result of grouping, say.
  bool is_free(std::uint32_t number) const { return owners_[number].owner.block == 0; }
  std::uint32_t new_block() { return ++blocks_; }

  // The number, from 0, of a parameter as written. Named ones are numbered behind the others.
  std::size_t parameter(const syntax::parameter& written, std::uint32_t numbered);
  const std::vector<parameter_info>& parameters() const { return parameters_; }

  // The types of the parameters' values, by number; what has none is of no known type.
  void set_parameter_kinds(std::vector<ovhost::value_kind> kinds) { parameter_kinds_ = std::move(kinds); }
  ovhost::value_kind kind_of_parameter(std::size_t number) const {
    return number < parameter_kinds_.size() ? parameter_kinds_[number] : ovhost::value_kind::null;
  }

  bool is_null_parameter(std::size_t number) const {
    return number < parameter_kinds_.size() && parameter_kinds_[number] == ovhost::value_kind::null;
  }

  // Keeps a text as long as this lives.
  std::string_view keep(std::string text) { return kept_.emplace_back(std::move(text)); }

  // What plans in words call the columns.
  ovhost::column_names column_names() const;

  std::vector<syntax::place> divisions = {};  // where the statement divides

 private:
  // The owners of a column, the innermost SELECT first: one in place, the others in a list.
  struct owner_list {
    column_owner owner{};
    std::uint32_t next = 0;  // in more_; 0 is the end
  };
  std::vector<owner_list> owners_ = {{}};
  std::vector<owner_list> more_ = {{}};
  std::vector<std::string_view> names_ = {{}};
  std::uint32_t blocks_ = 0;
  std::vector<parameter_info> parameters_;
  std::vector<ovhost::value_kind> parameter_kinds_;
  std::list<std::string> kept_;
};

// Returns the number of the column that an expression is; 0 for any other expression.
std::uint32_t column_number(const expression& of);

// Calls function(number) for every column that an expression reads: its number among those of the statement.
template <class Function>
void for_each_column(const expression& of, const Function& function) {
  std::vector<const expression*> pending = {&of};
  while (!pending.empty()) {
    const expression& next = *pending.back();
    pending.pop_back();
    if (const physical_queryplan::operation* const inner = physical_queryplan::find_operation(next)) {
      for (const expression& each : inner->operands) pending.push_back(&each);
    } else if (const std::uint32_t number = column_number(next); number != 0) {
      function(number);
    }
  }
}

inline bool same_expression(const expression& left, const expression& right) {
  return physical_queryplan::structural_order(left, right) == 0;
}

// The items of a block that an expression reads.
item_set items_of(const expression& of, std::uint32_t block, const naming& names);

}  // namespace ovsql

#endif  // OVSQL_BINDING_NAMING_HPP_
