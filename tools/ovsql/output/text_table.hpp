#ifndef OVSQL_OUTPUT_TEXT_TABLE_HPP_
#define OVSQL_OUTPUT_TEXT_TABLE_HPP_

#include <cstddef>
#include <string>
#include <vector>

#include "output/result_writer.hpp"

namespace shell {

struct text_cell {
  std::string text;
  bool is_null = false;
};

struct text_column {
  std::string heading;
  bool right_aligned;
  std::size_t width;
};

// Keeps the rows of a statement as texts, with what is needed to print them below each other.
class text_table {
 public:
  explicit text_table(const ovsql::statement& of);

  void add(const ovsql::statement& row);

  // Makes the widest columns narrower until all columns together take no more than some width, if they can.
  void fit(std::size_t width);

  const std::vector<text_column>& columns() const { return columns_; }
  const std::vector<std::vector<text_cell>>& rows() const { return rows_; }

  // A text as wide as its column, cut or filled with blanks. In colours, NULL is dim.
  std::string aligned(std::size_t column, const text_cell& cell, bool colours = false) const;
  std::string aligned_heading(std::size_t column) const { return aligned(column, {columns_[column].heading}); }

 private:
  std::vector<text_column> columns_;
  std::vector<std::vector<text_cell>> rows_;
};

}  // namespace shell

#endif  // OVSQL_OUTPUT_TEXT_TABLE_HPP_
