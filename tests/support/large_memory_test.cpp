#include "ov_sql_executor/support/large_memory.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <new>

namespace ov::sql_executor {
namespace {

constexpr std::size_t large_page = std::size_t{1} << 21;

bool begins_a_large_page(const void* memory) { return reinterpret_cast<std::uintptr_t>(memory) % large_page == 0; }

TEST(LargeMemory, keeps_what_it_holds_while_it_grows_into_large_pages) {
  large_vector<std::uint32_t> numbers;
  constexpr std::uint32_t count = 3 * large_page / sizeof(std::uint32_t) / 2;
  for (std::uint32_t i = 0; i < count; ++i) numbers.push_back(i);
  EXPECT_TRUE(begins_a_large_page(numbers.data()));
  for (std::uint32_t i = 0; i < count; ++i) ASSERT_EQ(numbers[i], i);
  numbers.resize(5);
  numbers.shrink_to_fit();
  EXPECT_EQ(numbers, (large_vector<std::uint32_t>{0, 1, 2, 3, 4}));
}

TEST(LargeMemory, serves_resources_of_any_size_and_alignment) {
  for (const std::size_t size : {std::size_t{1}, large_page - 1, large_page, large_page + 1}) {
    for (const std::size_t alignment : {std::size_t{1}, std::size_t{64}}) {
      auto* const memory = static_cast<unsigned char*>(large_memory()->allocate(size, alignment));
      EXPECT_TRUE(size < large_page || begins_a_large_page(memory));
      EXPECT_EQ(reinterpret_cast<std::uintptr_t>(memory) % alignment, 0U);
      memory[0] = memory[size - 1] = 1;
      large_memory()->deallocate(memory, size, alignment);
    }
  }
  constexpr std::size_t too_many = std::numeric_limits<std::size_t>::max() / 8;
  EXPECT_THROW(static_cast<void>(large_allocator<std::uint64_t>().allocate(too_many)), std::bad_array_new_length);
}

}  // namespace
}  // namespace ov::sql_executor
