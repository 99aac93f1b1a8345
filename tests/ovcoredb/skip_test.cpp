// Skips, among steps, pass over what steps would have found.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "key_writer.hpp"
#include "ovcoredb/database.hpp"

namespace {

// An open range, and the numbers that are left of it.
class walker {
 public:
  walker(std::uint64_t context, std::uint64_t index, std::uint32_t flags, const std::vector<std::uint8_t>& first,
         const std::vector<std::uint8_t>& last)
      : left_(walk(context, index, flags, first, last)) {
    EXPECT_EQ(orv_context_create_iterator(context, index, flags, first.data(), last.data(), &iterator_), ORV_OK);
  }
  ~walker() { orv_iterator_free(iterator_); }
  walker(const walker&) = delete;
  walker& operator=(const walker&) = delete;

  void check_next() {
    ORV_REFERENCE_VALUE reference{};
    ASSERT_EQ(orv_iterator_next(iterator_, &reference), ORV_OK);
    ASSERT_EQ(reference.object_number, left_.empty() ? 0 : left_.front());
    drop(1);
  }
  void check_skip(std::uint64_t count) {
    std::uint64_t skipped = ~count;
    ASSERT_EQ(orv_iterator_skip(iterator_, count, &skipped), ORV_OK);
    ASSERT_EQ(skipped, std::min<std::uint64_t>(count, left_.size())) << "of " << count;
    drop(skipped);
  }

 private:
  void drop(std::uint64_t count) {
    left_.erase(left_.begin(),
                left_.begin() + static_cast<std::ptrdiff_t>(std::min<std::uint64_t>(count, left_.size())));
  }

  std::vector<std::uint64_t> left_;
  std::uint64_t iterator_ = 0;
};

class skip_test : public testing::Test {
 protected:
  std::size_t below(std::size_t bound) { return random() % bound; }

  // An object for each row, in any order or in that of the keys, some of which are alike, or all.
  std::uint64_t fill(std::size_t rows) {
    const std::uint16_t table = database.create_table(
        {.set_specifier = u"/T/" + std::u16string(++tables, u'x'), .columns = {ovcoredb::column_type::uint64}});
    const std::uint64_t index = database.create_index({.table = table, .columns = {{2, below(2) == 0}}});
    keys = below(3) == 0 ? 1 + below(3) : 1 + below(2 * rows + 1);
    const bool in_order = below(3) == 0;
    for (std::size_t row = 0; row < rows; ++row) {
      database.insert(table, std::vector<ovcoredb::cell>{std::uint64_t{in_order ? row * keys / rows : below(keys)}});
    }
    return index;
  }

  std::vector<std::uint8_t> any_key() {
    return below(3) == 0 ? key_writer().end() : key_writer().number(below(keys + 1)).end();
  }

  // Around the numbers of entries that blocks hold, and those that are looked at one by one.
  std::uint64_t any_count() {
    const std::uint64_t counts[] = {below(6),        below(6),    120 + below(20),
                                    250 + below(10), below(1500), ~std::uint64_t{0}};
    return counts[below(std::size(counts))];
  }

  std::uint64_t seed = std::random_device{}();
  testing::ScopedTrace trace{__FILE__, __LINE__, "seed " + std::to_string(seed)};
  std::mt19937_64 random{seed};
  ovcoredb::database database;
  std::size_t tables = 0;
  std::size_t keys = 0;  // of the index filled last: those below
};

// Two ranges in two contexts at a time.
TEST_F(skip_test, passes_over_what_next_would_find) {
  const ovcoredb::context one(database);
  const ovcoredb::context other(database);
  for (const std::size_t rows : {0, 1, 5, 200, 255, 256, 700, 2000, 3000}) {
    const std::uint64_t index = fill(rows);
    for (int round = 0; round < 60; ++round) {
      const auto any_flags = [&] {
        return static_cast<std::uint32_t>(below(4) * ORV_ITERATOR_FIRST_INCLUSIVE + below(2) * ORV_ITERATOR_DESCENDING);
      };
      walker of_one(one.handle(), index, any_flags(), any_key(), any_key());
      walker of_other(other.handle(), index, any_flags(), any_key(), any_key());
      for (int move = 0; move < 20; ++move) {
        walker& moved = below(2) == 0 ? of_one : of_other;
        ASSERT_NO_FATAL_FAILURE(below(3) == 0 ? moved.check_next() : moved.check_skip(any_count())) << rows << " rows";
      }
    }
  }
}

}  // namespace
