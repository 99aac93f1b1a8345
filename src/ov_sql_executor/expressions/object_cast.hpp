#ifndef OV_SQL_EXECUTOR_EXPRESSIONS_OBJECT_CAST_HPP_
#define OV_SQL_EXECUTOR_EXPRESSIONS_OBJECT_CAST_HPP_

#include "ov_sql_executor/expressions/lending_operator.hpp"

namespace ov::sql_executor::operators {

// A literal object reference. Asks the core at every evaluation for its second word. Throws db_exception with the
// core's status where there is no such object.
class object_cast final : public lending_operator {
 public:
  explicit object_cast(OV_OBJ_REF reference) : reference_(reference) {}

  value_view lend(execution_context& context, value& scratch) const override;

 private:
  OV_OBJ_REF reference_;
};

}  // namespace ov::sql_executor::operators

#endif  // OV_SQL_EXECUTOR_EXPRESSIONS_OBJECT_CAST_HPP_
