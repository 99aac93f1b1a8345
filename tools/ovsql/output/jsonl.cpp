#include "output/json_text.hpp"
#include "output/writers.hpp"

namespace shell {
namespace {

class jsonl_writer final : public result_writer {
 public:
  explicit jsonl_writer(std::ostream& out) : out_(out) {}

  void add(const ovsql::statement& row) override { out_ << json_object(row) << '\n'; }
  void end() override {}

 private:
  std::ostream& out_;
};

}  // namespace

std::unique_ptr<result_writer> make_jsonl_writer(const ovsql::statement&, std::ostream& out, const output_settings&) {
  return std::make_unique<jsonl_writer>(out);
}

}  // namespace shell
