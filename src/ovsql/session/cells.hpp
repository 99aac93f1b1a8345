#ifndef OVSQL_SESSION_CELLS_HPP_
#define OVSQL_SESSION_CELLS_HPP_

#include <cstddef>
#include <string>
#include <vector>

#include "ov_sql_executor/values/value.hpp"
#include "ovcoredb/database.hpp"
#include "ovsql/catalog/catalog.hpp"

namespace ovsql {

// Turns the values of one row into the cells of a table. Numbers convert where nothing is lost; a double takes the
// nearest value. What does not fit throws an error of kind type, value or constraint, which names the column.
class row_of_cells {
 public:
  row_of_cells(const catalog& names, const table& of);

  // Sets one column.
  void set(std::size_t column, const ov::sql_executor::value& of);

  // The cells, with default values for the columns that were not set, in the order of the table's. Valid until the next
  // call of set.
  const std::vector<ovcoredb::cell>& finish();

  // Forgets all columns.
  void clear();

 private:
  [[noreturn]] void refuse(std::size_t column, const std::string& what) const;
  bool is_kind_of(std::uint16_t tag, const table& target) const;
  ovcoredb::cell convert(std::size_t column, const ov::sql_executor::value& of);

  const catalog& names_;
  const table& table_;
  std::vector<column_rule> rules_;
  std::vector<bool> is_set_;
  std::vector<std::u16string> texts_;
  std::vector<ovcoredb::cell> cells_;
};

}  // namespace ovsql

#endif  // OVSQL_SESSION_CELLS_HPP_
