// Several threads, each with a context of its own, read at the same time.
#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "key_writer.hpp"
#include "sample_database.hpp"

namespace {

TEST(threads, read_side_by_side) {
  constexpr std::uint64_t objects = 2000;
  sample_database db;
  for (std::uint64_t i = 1; i <= objects; ++i) db.insert_city(i * 7919 % 10007, u"Straße", u"m");
  std::atomic<std::uint64_t> sum = 0;
  const auto read = [&] {
    for (int round = 0; round < 5; ++round) {
      const ovcoredb::context context(db.database);
      const auto found = walk(context.handle(), db.by_id, inclusive, key_writer().end(), key_writer().end());
      EXPECT_EQ(walk(context.handle(), db.by_name, inclusive, key_writer().end(), key_writer().end()).size(), objects);
      for (const std::uint64_t number : found) {
        std::uint64_t value = 0;
        const std::uint8_t* name = nullptr;
        ORV_BYTES encoded{};
        orv_context_get_ulong(context.handle(), number, db.place, sample_database::id, &value);
        orv_context_get_string(context.handle(), number, db.place, sample_database::name, &name);
        orv_context_get_binary(context.handle(), number, db.place, sample_database::name, &encoded);
        orv_context_convert_turbotext_to_base_ucs2(context.handle(), encoded.bytes,
                                                   static_cast<std::uint32_t>(encoded.length), &name, 0);
        orv_convert_turbotext_to_base_ucs2(encoded.bytes, static_cast<std::uint32_t>(encoded.length), nullptr, 0);
        sum += value;
      }
    }
  };
  std::uint64_t expected = 0;
  for (std::uint64_t i = 1; i <= objects; ++i) expected += i * 7919 % 10007;
  std::vector<std::thread> readers;
  for (int i = 0; i < 4; ++i) readers.emplace_back(read);
  for (std::thread& reader : readers) reader.join();
  EXPECT_EQ(sum, expected * 5 * 4);
}

}  // namespace
