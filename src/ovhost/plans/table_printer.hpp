#ifndef OVHOST_PLANS_TABLE_PRINTER_HPP_
#define OVHOST_PLANS_TABLE_PRINTER_HPP_

#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

#include "ov_sql_executor/planning/plan.hpp"
#include "ovhost/values/export.hpp"

namespace ovhost {

// Collects result rows and prints them as a table: a heading for each column, numbers right-aligned, everything else
// left-aligned. Keeps the first rows only and counts the others.
class OVHOST_API table_printer {
 public:
  // types: those of the columns, see statement::types. headings: one for each column, in UTF-8; missing ones are empty.
  table_printer(std::vector<std::string> headings, const std::vector<physical_to_exec::column_type>& types,
                std::size_t max_rows);

  // Throws std::out_of_range for a row with fewer values than columns.
  void add(const ov::sql_executor::row& added);

  // Prints the table in UTF-8, then the number of rows and how many of them are not shown.
  void print(std::ostream& out) const;

 private:
  void print_line(std::ostream& out, const std::vector<std::string>& cells) const;

  std::vector<std::string> headings_;
  std::vector<std::string> tables_;  // of reference columns, by column
  std::vector<bool> right_aligned_;  // by column
  std::vector<std::size_t> widths_;  // in characters
  std::vector<std::vector<std::string>> rows_;
  std::size_t max_rows_;
  std::size_t count_ = 0;
};

}  // namespace ovhost

#endif  // OVHOST_PLANS_TABLE_PRINTER_HPP_
