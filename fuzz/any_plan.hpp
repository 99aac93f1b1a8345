// Plans from decisions: mostly sound ones, and here and there an operand of any other type.
#ifndef FUZZ_ANY_PLAN_HPP_
#define FUZZ_ANY_PLAN_HPP_

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "fuzz/world.hpp"
#include "ovhost/plans/plans.hpp"

namespace fuzz {

using expressions = std::vector<ovhost::expression>;

expressions joined(expressions first, const expressions& second);

// Those of the kinds that a result may have.
expressions shown(const expressions& columns);

// A plan and the columns of its rows.
struct relation {
  ovhost::plan made;
  expressions columns;
};

class plan_maker {
 public:
  explicit plan_maker(choices& from, bool mixes_types = true) : from_(from), mixes_types_(mixes_types) {}

  // Of about that many nodes; the inner sides of its joins see the columns of the outer ones. `outer`: more of them.
  relation any_relation(std::size_t steps, const expressions& outer = {});

  // Of this kind, as far as it states, over these columns.
  ovhost::expression any_expression(ovhost::value_kind kind, const expressions& scope, std::size_t depth = 3);

  ovhost::query& names() { return names_; }

  // Says what the plan does if the environment asks for it with OV_FUZZ_PRINT: to look at an input that broke
  // something.
  void print(const ovhost::plan& made) const;

  // For the parameters that the plan reads.
  const std::vector<ov::sql_executor::value>& parameters() const { return parameters_; }

 private:
  relation scanned(const expressions& outer);
  relation grouped(relation of);
  relation join_of(std::size_t steps, const expressions& outer);
  ovhost::expression join_condition(const expressions& left, const expressions& right, const expressions& outer);
  relation united(relation left, const expressions& outer);
  relation extended(relation of, const expressions& outer);
  ovhost::plan generated(const expressions& scope, expressions& columns);
  ovhost::scan_range any_range(ovhost::value_kind kind, const expressions& outer);
  ovhost::expression condition(const expressions& scope, std::size_t depth);
  ovhost::expression listed(const expressions& scope, std::size_t depth);
  ovhost::expression calculation(ovhost::value_kind kind, const expressions& scope, std::size_t depth);
  ovhost::expression text(const expressions& scope, std::size_t depth);
  ovhost::expression leaf(ovhost::value_kind kind, const expressions& scope);
  ovhost::value_kind any_kind() { return ovhost::value_kind{from_.below(ovhost::value_kind_count)}; }
  ovhost::value_kind numeric_kind();
  std::string fresh() { return "c" + std::to_string(++columns_); }

  choices& from_;
  bool mixes_types_;
  ovhost::query names_;
  std::vector<ov::sql_executor::value> parameters_;
  std::size_t columns_ = 0;
  std::size_t scans_ = 0;
};

}  // namespace fuzz

#endif  // FUZZ_ANY_PLAN_HPP_
