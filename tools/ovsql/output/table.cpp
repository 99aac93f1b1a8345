#include <string>

#include "output/text_table.hpp"
#include "output/writers.hpp"

namespace shell {
namespace {

class table_writer final : public result_writer {
 public:
  table_writer(const ovsql::statement& of, std::ostream& out, const output_settings& how)
      : table_(of), out_(out), how_(how) {}

  void add(const ovsql::statement& row) override { table_.add(row); }

  void end() override {
    const std::size_t gaps = 2 * (table_.columns().size() - 1);
    if (how_.width > gaps) table_.fit(how_.width - gaps);
    if (how_.headers) {
      write_cells([&](std::size_t at) { return table_.aligned_heading(at); });
      write_cells([&](std::size_t at) { return std::string(table_.columns()[at].width, '-'); });
    }
    for (const auto& row : table_.rows()) {
      write_cells([&](std::size_t at) { return table_.aligned(at, row[at], how_.colours); });
    }
  }

 private:
  template <class Text>
  void write_cells(Text&& text) {
    std::string line;
    for (std::size_t at = 0; at < table_.columns().size(); ++at) line += (at == 0 ? "" : "  ") + text(at);
    line.erase(line.find_last_not_of(' ') + 1);
    out_ << line << '\n';
  }

  text_table table_;
  std::ostream& out_;
  output_settings how_;
};

}  // namespace

std::unique_ptr<result_writer> make_table_writer(const ovsql::statement& of, std::ostream& out,
                                                 const output_settings& how) {
  return std::make_unique<table_writer>(of, out, how);
}

}  // namespace shell
