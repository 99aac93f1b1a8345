// The statements of the corpus, and what comes of mixing their words.
#include <sstream>
#include <string>

#include "fuzz/checks.hpp"
#include "fuzz/replay.hpp"

namespace fuzz {
namespace {

std::vector<std::string> words_of_corpus() {
  std::vector<std::string> words;
  for (const auto& each : std::filesystem::directory_iterator(std::filesystem::path(OV_FUZZ_CORPUS) / "sql")) {
    std::ifstream file(each.path(), std::ios::binary);
    for (std::string word; file >> word;) words.push_back(word);
    words.emplace_back(";");
  }
  return words;
}

// A piece of the corpus with some words left out, doubled or taken from elsewhere.
std::string mixed(const std::vector<std::string>& words, std::mt19937& random) {
  std::string made;
  std::size_t at = random() % words.size();
  for (std::size_t count = 5 + random() % 40; count > 0; --count) {
    const auto change = random() % 40;
    if (change == 0) at = random() % words.size();
    made += (change == 1 ? words[random() % words.size()] : words[at]) + " ";
    if (change != 2) ++at;
    if (change == 3) ++at;
    at %= words.size();
  }
  return made;
}

TEST(Fuzz, any_statement_has_rows_or_is_an_error) {
  replay("sql", check_sql);
  const std::vector<std::string> words = words_of_corpus();
  const unsigned rounds =
      number_from_environment("OV_FUZZ_ROUNDS", ov::sql_executor::stack_weights::guards_frames ? 500 : 3000);
  const unsigned seed = number_from_environment("OV_FUZZ_SEED", std::random_device{}());
  std::fprintf(stderr, "seed %u\n", seed);
  std::mt19937 random(seed);
  for (unsigned round = 0; round < rounds; ++round) {
    const std::string text = mixed(words, random);
    if (number_from_environment("OV_FUZZ_PRINT", 0) != 0) std::fprintf(stderr, "%s\n", text.c_str());
    check_sql({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
  }
}

}  // namespace
}  // namespace fuzz
