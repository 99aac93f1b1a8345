// One maker for each form of output; each has a source of its own.
#ifndef OVSQL_OUTPUT_WRITERS_HPP_
#define OVSQL_OUTPUT_WRITERS_HPP_

#include <memory>
#include <ostream>

#include "output/result_writer.hpp"

namespace shell {

using writer_maker = std::unique_ptr<result_writer>(const ovsql::statement& of, std::ostream& out,
                                                    const output_settings& how);

writer_maker make_box_writer, make_table_writer, make_markdown_writer;
writer_maker make_csv_writer, make_json_writer, make_jsonl_writer, make_line_writer;

}  // namespace shell

#endif  // OVSQL_OUTPUT_WRITERS_HPP_
