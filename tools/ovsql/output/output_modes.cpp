#include <algorithm>

#include "output/result_writer.hpp"
#include "output/writers.hpp"

namespace shell {
namespace {

constexpr output_mode modes[] = {
    {"box", "a table with lines around its cells", make_box_writer},
    {"table", "columns between blanks", make_table_writer},
    {"csv", "comma-separated values; NULL is an empty field, the empty text \"\"", make_csv_writer},
    {"json", "an array of objects", make_json_writer},
    {"jsonl", "an object a line", make_jsonl_writer},
    {"markdown", "a table in Markdown", make_markdown_writer},
    {"line", "a value a line", make_line_writer},
};

}  // namespace

std::span<const output_mode> output_modes() { return modes; }

const output_mode* find_output_mode(std::string_view name) {
  const auto* const found =
      std::find_if(std::begin(modes), std::end(modes), [&](const output_mode& each) { return each.name == name; });
  return found == std::end(modes) ? nullptr : found;
}

}  // namespace shell
