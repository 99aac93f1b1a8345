#ifndef OVHOST_PLANS_EXPRESSION_WORDS_HPP_
#define OVHOST_PLANS_EXPRESSION_WORDS_HPP_

#include <string>

#include "ov_sql_executor/expressions/expression.hpp"
#include "ovhost/plans/column_names.hpp"
#include "ovhost/schema/catalog.hpp"

namespace ovhost {

// Says plan expressions in words: f.count > 1000 and a.state = 'TX'. The metadata name properties and tables, the query
// names variables and computed columns. Those without a name are numbered.
class expression_words {
 public:
  explicit expression_words(const catalog& metadata, column_names columns = {});

  std::string operator()(const physical_queryplan::expression& of) const;
  std::string operator()(const physical_queryplan::column_ref& of) const;
  std::string operator()(const physical_queryplan::computed_column& of) const;
  std::string operator()(const physical_queryplan::variable& of) const;

  const catalog& metadata() const { return metadata_; }

 private:
  friend struct word_chooser;
  std::string name_of(const physical_queryplan::identifier& id, const std::string& unnamed) const;

  catalog metadata_;
  column_names columns_;
};

}  // namespace ovhost

#endif  // OVHOST_PLANS_EXPRESSION_WORDS_HPP_
