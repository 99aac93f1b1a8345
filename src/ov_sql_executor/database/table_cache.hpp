#ifndef OV_SQL_EXECUTOR_DATABASE_TABLE_CACHE_HPP_
#define OV_SQL_EXECUTOR_DATABASE_TABLE_CACHE_HPP_

#include <vector>

#include "ovcoredb/ovcoredb.h"

namespace meta_data {

struct Table {
  // The member (property) objects of a table: element i is the member whose column index is i. Never changes once made.
  struct TableCache {
    std::vector<OV_OBJ_REF> members;
  };
};

}  // namespace meta_data

#endif  // OV_SQL_EXECUTOR_DATABASE_TABLE_CACHE_HPP_
