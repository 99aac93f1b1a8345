#include <string>

#include "output/writers.hpp"

namespace shell {
namespace {

// A quoted empty field is the empty text, one without quotes is NULL.
std::string field(const std::string& text) {
  if (!text.empty() && text.find_first_of(",\"\r\n") == std::string::npos) return text;
  std::string quoted = "\"";
  for (const char each : text) quoted += each == '"' ? "\"\"" : std::string(1, each);
  return quoted + "\"";
}

class csv_writer final : public result_writer {
 public:
  csv_writer(const ovsql::statement& of, std::ostream& out, const output_settings& how)
      : columns_(of.column_count()), out_(out) {
    if (how.headers) write([&](std::size_t at) { return field(of.column(at).name); });
  }

  void add(const ovsql::statement& row) override {
    write([&](std::size_t at) { return row.is_null(at) ? std::string() : field(row.text(at)); });
  }

  void end() override {}

 private:
  template <class Text>
  void write(Text&& text) {
    std::string line;
    for (std::size_t at = 0; at < columns_; ++at) line += (at == 0 ? "" : ",") + text(at);
    out_ << line << '\n';
  }

  std::size_t columns_;
  std::ostream& out_;
};

}  // namespace

std::unique_ptr<result_writer> make_csv_writer(const ovsql::statement& of, std::ostream& out,
                                               const output_settings& how) {
  return std::make_unique<csv_writer>(of, out, how);
}

}  // namespace shell
