#include "fuzz/checks.hpp"
#include "fuzz/replay.hpp"

namespace fuzz {
namespace {

TEST(Fuzz, any_text_is_parsed_or_is_an_error) {
  replay("parse", check_parse);
  try_random_inputs(check_parse);
}

}  // namespace
}  // namespace fuzz
