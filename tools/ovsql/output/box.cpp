#include <string>

#include "output/text_table.hpp"
#include "output/writers.hpp"

namespace shell {
namespace {

class box_writer final : public result_writer {
 public:
  box_writer(const ovsql::statement& of, std::ostream& out, const output_settings& how)
      : table_(of), out_(out), how_(how) {}

  void add(const ovsql::statement& row) override { table_.add(row); }

  void end() override {
    const std::size_t frame = 3 * table_.columns().size() + 1;
    if (how_.width > frame) table_.fit(how_.width - frame);
    write_rule("┌", "┬", "┐");
    if (how_.headers) {
      write_cells([&](std::size_t at) { return table_.aligned_heading(at); });
      write_rule("├", "┼", "┤");
    }
    for (const auto& row : table_.rows()) {
      write_cells([&](std::size_t at) { return table_.aligned(at, row[at], how_.colours); });
    }
    write_rule("└", "┴", "┘");
  }

 private:
  void write_rule(const char* left, const char* middle, const char* right) {
    std::string line = left;
    for (std::size_t at = 0; at < table_.columns().size(); ++at) {
      if (at > 0) line += middle;
      for (std::size_t width = table_.columns()[at].width + 2; width > 0; --width) line += "─";
    }
    out_ << line << right << '\n';
  }

  template <class Text>
  void write_cells(Text&& text) {
    std::string line;
    for (std::size_t at = 0; at < table_.columns().size(); ++at) line += "│ " + text(at) + " ";
    out_ << line << "│\n";
  }

  text_table table_;
  std::ostream& out_;
  output_settings how_;
};

}  // namespace

std::unique_ptr<result_writer> make_box_writer(const ovsql::statement& of, std::ostream& out,
                                               const output_settings& how) {
  return std::make_unique<box_writer>(of, out, how);
}

}  // namespace shell
