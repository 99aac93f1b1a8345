#include "options.hpp"

#include <charconv>
#include <sstream>

namespace bench {

const char* const usage =
    "usage: ov_bench [--rows N[,N...]] [--shapes PATTERN] [--csv FILE] [--svg FILE]\n"
    "                [--duckdb LIBRARY | --memory | --threads | --instructions]\n"
    "  --rows          sizes of the data, 10000,100000,1000000 by default\n"
    "  --shapes        only the shapes whose names match, for example 'group_*' or '@(follow|join)_*'\n"
    "  --csv, --svg    write the medians to FILE as well; the chart needs gnuplot\n"
    "  --duckdb        measure DuckDB as well, out of its shared library\n"
    "  --memory        print by how much memory rises in one run, instead of times\n"
    "  --threads       print how much faster two threads with a context each are than one, instead of times\n"
    "  --instructions  count the instructions per row at the first size too; needs valgrind and patience\n";

namespace {

std::vector<std::size_t> read_sizes(const std::string& list) {
  std::vector<std::size_t> sizes;
  std::istringstream parts(list);
  for (std::string part; std::getline(parts, part, ',');) {
    std::size_t size = 0;
    const auto [end, error] = std::from_chars(part.data(), part.data() + part.size(), size);
    const bool is_number = error == std::errc() && end == part.data() + part.size();
    if (!is_number || size < 1000 || size > 10'000'000) {
      throw usage_error("--rows takes numbers from 1000 to 10000000, not '" + part + "'");
    }
    sizes.push_back(size);
  }
  if (sizes.empty()) throw usage_error("--rows takes at least one number");
  return sizes;
}

}  // namespace

options read_options(const std::vector<std::string>& words) {
  options read;
  for (std::size_t i = 0; i < words.size(); ++i) {
    const std::string& word = words[i];
    const auto argument = [&] {
      if (i + 1 == words.size()) throw usage_error(word + " takes an argument");
      return words[++i];
    };
    if (word == "--rows") {
      read.sizes = read_sizes(argument());
    } else if (word == "--shapes") {
      read.pattern = argument();
    } else if (word == "--csv") {
      read.csv_file = argument();
    } else if (word == "--svg") {
      read.svg_file = argument();
    } else if (word == "--duckdb") {
      read.duckdb_library = argument();
    } else if (word == "--memory") {
      read.memory = true;
    } else if (word == "--threads") {
      read.threads = true;
    } else if (word == "--instructions") {
      read.instructions = true;
    } else if (word == "--run-once") {
      read.counted_engine = argument();
    } else {
      throw usage_error("unknown option '" + word + "'");
    }
  }
  return read;
}

}  // namespace bench
