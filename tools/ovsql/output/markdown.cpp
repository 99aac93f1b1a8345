#include <string>

#include "output/text_table.hpp"
#include "output/writers.hpp"

namespace shell {
namespace {

// A bar would end its cell.
std::string escaped(const std::string& text) {
  std::string result;
  for (const char each : text) result += each == '|' ? "\\|" : std::string(1, each);
  return result;
}

class markdown_writer final : public result_writer {
 public:
  markdown_writer(const ovsql::statement& of, std::ostream& out) : table_(of), out_(out) {}

  void add(const ovsql::statement& row) override { table_.add(row); }

  // A table without a heading is none in Markdown.
  void end() override {
    write_cells([&](std::size_t at) { return " " + escaped(table_.aligned_heading(at)) + " "; });
    write_cells([&](std::size_t at) {
      const text_column& column = table_.columns()[at];
      return std::string(column.width + 1, '-') + (column.right_aligned ? ":" : "-");
    });
    for (const auto& row : table_.rows()) {
      write_cells([&](std::size_t at) { return " " + escaped(table_.aligned(at, row[at])) + " "; });
    }
  }

 private:
  template <class Text>
  void write_cells(Text&& text) {
    std::string line;
    for (std::size_t at = 0; at < table_.columns().size(); ++at) line += "|" + text(at);
    out_ << line << "|\n";
  }

  text_table table_;
  std::ostream& out_;
};

}  // namespace

std::unique_ptr<result_writer> make_markdown_writer(const ovsql::statement& of, std::ostream& out,
                                                    const output_settings&) {
  return std::make_unique<markdown_writer>(of, out);
}

}  // namespace shell
