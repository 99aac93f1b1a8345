#include "output/json_text.hpp"
#include "output/writers.hpp"

namespace shell {
namespace {

class json_writer final : public result_writer {
 public:
  explicit json_writer(std::ostream& out) : out_(out) {}

  void add(const ovsql::statement& row) override {
    out_ << (any_ ? ",\n " : "[") << json_object(row);
    any_ = true;
  }

  void end() override { out_ << (any_ ? "]\n" : "[]\n"); }

 private:
  std::ostream& out_;
  bool any_ = false;
};

}  // namespace

std::unique_ptr<result_writer> make_json_writer(const ovsql::statement&, std::ostream& out, const output_settings&) {
  return std::make_unique<json_writer>(out);
}

}  // namespace shell
