#include "shape.hpp"

namespace bench {

floor_loop reads_of(const std::string& table, std::vector<std::string> numbers, std::vector<std::string> texts,
                    std::size_t passes) {
  return [table, numbers, texts, passes](core_loop& core, std::int64_t) {
    std::vector<std::uint32_t> number_columns;
    std::vector<std::uint32_t> text_columns;
    for (const auto& name : numbers) number_columns.push_back(core.column(table + "." + name));
    for (const auto& name : texts) text_columns.push_back(core.column(table + "." + name));
    std::uint64_t sum = 0;
    for (std::size_t pass = 0; pass < passes; ++pass) {
      core.walk(core.index(table + ".by_id"), [&](core_loop::object at) {
        for (const std::uint32_t column : number_columns) sum += static_cast<std::uint64_t>(core.number(at, column));
        for (const std::uint32_t column : text_columns) sum += core.text(at, column).size();
        return true;
      });
    }
    return sum;
  };
}

floor_loop reads(std::vector<std::string> numbers, std::vector<std::string> texts, std::size_t passes) {
  return reads_of("item", std::move(numbers), std::move(texts), passes);
}

}  // namespace bench
