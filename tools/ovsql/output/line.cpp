#include <algorithm>
#include <string>
#include <vector>

#include "output/writers.hpp"
#include "text/display_width.hpp"
#include "text/shown_text.hpp"

namespace shell {
namespace {

// "  name = Ely", and an empty line between rows.
class line_writer final : public result_writer {
 public:
  line_writer(const ovsql::statement& of, std::ostream& out) : out_(out) {
    std::size_t width = 0;
    for (std::size_t at = 0; at < of.column_count(); ++at) width = std::max(width, display_width(of.column(at).name));
    for (std::size_t at = 0; at < of.column_count(); ++at) {
      const std::string& name = of.column(at).name;
      names_.push_back(std::string(width - display_width(name), ' ') + name);
    }
  }

  void add(const ovsql::statement& row) override {
    if (any_) out_ << '\n';
    any_ = true;
    for (std::size_t at = 0; at < names_.size(); ++at) out_ << names_[at] << " = " << shown_value(row, at) << '\n';
  }

  void end() override {}

 private:
  std::ostream& out_;
  std::vector<std::string> names_;
  bool any_ = false;
};

}  // namespace

std::unique_ptr<result_writer> make_line_writer(const ovsql::statement& of, std::ostream& out, const output_settings&) {
  return std::make_unique<line_writer>(of, out);
}

}  // namespace shell
