#include "ov_sql_executor/expressions/object_cast.hpp"

#include "ov_sql_executor/database/status.hpp"
#include "ovcoredb/ovcoredb.h"

namespace ov::sql_executor::operators {

value_view object_cast::lend(execution_context& context, value& /*scratch*/) const {
  OV_OBJ_REF found = reference_;
  db_util::check(orv_context_lookup(context.context_handle, found.object_number, &found.second_word));
  return found;
}

}  // namespace ov::sql_executor::operators
