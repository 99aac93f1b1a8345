// What each fuzzing target does with its input. A broken promise ends the process with a message.
#ifndef FUZZ_CHECKS_HPP_
#define FUZZ_CHECKS_HPP_

#include <cstdint>
#include <span>

namespace fuzz {

// Any plan over any rows and a core that may fail: it is refused or runs, again too; rows have the width and the types
// that planning told; the row stack is left as it was found; every iterator is freed, once.
void check_any_plan(std::span<const std::uint8_t> input);

// Two plans that mean the same have the same rows.
void check_equal_plans(std::span<const std::uint8_t> input);

// Any bytes as a script of SQL: every statement is understood or is an error with a place, and the next one is found.
void check_parse(std::span<const std::uint8_t> input);

// Any bytes as a script of SQL over a few tables: every statement has rows, the same ones again, or an error that is
// the statement's and not the engine's.
void check_sql(std::span<const std::uint8_t> input);

}  // namespace fuzz

#endif  // FUZZ_CHECKS_HPP_
