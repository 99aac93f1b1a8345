// Every kind of bad input gets its status, leaves the out parameter alone and harms nothing.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "key_writer.hpp"
#include "sample_database.hpp"

namespace {

using sample = sample_database;

template <class Out>
using getter = std::uint32_t (*)(std::uint64_t, std::uint64_t, std::uint64_t, std::uint32_t, Out*);

struct status_test : testing::Test {
  sample db;
  ovcoredb::context context{db.database};
  std::uint64_t handle = context.handle();
  OV_OBJ_REF object = db.insert_place(1, u"a");
  OV_OBJ_REF empty = db.insert_empty_place();
  OV_OBJ_REF city = db.insert_city(2, u"b", u"m");

  std::uint32_t create(std::uint64_t index, const std::vector<std::uint8_t>& key) {
    std::uint32_t status = 0;
    walk(handle, index, inclusive, key, key, &status);
    return status;
  }
  std::uint64_t open(std::uint64_t on) {
    const auto key = key_writer().end();
    std::uint64_t iterator = 0;
    EXPECT_EQ(orv_context_create_iterator(on, db.by_id, inclusive, key.data(), key.data(), &iterator), ORV_OK);
    return iterator;
  }

  // Calls it and expects that nothing is written when it is refused.
  template <class Out>
  std::uint32_t call(getter<Out> get, std::uint64_t on, OV_OBJ_REF of, std::uint32_t column) {
    Out out;
    std::memset(&out, 'x', sizeof out);
    const std::uint32_t status = get(on, of.object_number, of.second_word, column, &out);
    const std::string bytes(reinterpret_cast<const char*>(&out), sizeof out);
    EXPECT_TRUE(status == ORV_OK || bytes == std::string(sizeof out, 'x')) << "written despite status " << status;
    return status;
  }

  template <class Out>
  void check(getter<Out> get, const std::set<std::uint32_t>& readable) {
    for (std::uint32_t column = 0; column <= sample::open; ++column) {
      const bool fits = readable.contains(column);
      EXPECT_EQ(call(get, handle, object, column), fits ? ORV_OK : ORV_TYPE_MISMATCH) << column;
      if (column < sample::id) continue;
      EXPECT_EQ(call(get, handle, empty, column), fits ? ORV_NO_VALUE : ORV_TYPE_MISMATCH) << column;
      EXPECT_EQ(call(get, handle, {1, 0}, column), ORV_BAD_COLUMN) << column;
      EXPECT_EQ(call(get, handle, {1, db.city}, column), ORV_BAD_COLUMN) << column;
    }
    for (const std::uint32_t column : {std::uint32_t{sample::unused}, sample::unused + 1u, ~0u}) {
      EXPECT_EQ(call(get, handle, object, column), ORV_BAD_COLUMN);
    }
    for (const std::uint64_t bad : {0UL, 4UL, ~0UL}) EXPECT_EQ(call(get, handle, {bad, db.place}, 2), ORV_BAD_OBJECT);
    for (const std::uint64_t bad : {0UL, handle + 1, handle + 4096, ~0UL}) {
      EXPECT_EQ(call(get, bad, object, 2), ORV_BAD_CONTEXT);
    }
    EXPECT_EQ(get(handle, 1, db.place, *readable.rbegin(), nullptr), ORV_BAD_ARGUMENT);
  }
};

TEST_F(status_test, getters_refuse_what_is_not_of_their_type_or_not_there) {
  check(orv_context_get_ulong, {0, sample::id, sample::open});
  check(orv_meta_get_bool, {0, sample::id, sample::open});
  check(orv_context_get_long, {sample::level});
  check(orv_context_get_decimal, {sample::price});
  check(orv_context_get_float, {sample::ratio});
  check(orv_context_get_double, {sample::area});
  check(orv_context_get_string, {sample::name});
  check(orv_context_get_binary, {sample::name, sample::image});
  check(orv_context_get_reference, {sample::owner});
}

TEST_F(status_test, arguments_of_the_other_calls) {
  const auto key = key_writer().end();
  std::uint64_t iterator = 0;
  std::uint64_t word = 0;
  const std::uint8_t* block = nullptr;
  const std::uint8_t* const k = key.data();
  const std::uint32_t bad_arguments[] = {orv_context_create_iterator(handle, db.by_id, 0, nullptr, k, &iterator),
                                         orv_context_create_iterator(handle, db.by_id, 0, k, nullptr, &iterator),
                                         orv_context_create_iterator(handle, db.by_id, 0, k, k, nullptr),
                                         orv_context_create_iterator(handle, db.by_id, 0x1, k, k, &iterator),
                                         orv_iterator_next(iterator, nullptr),
                                         orv_iterator_skip(iterator, 1, nullptr),
                                         orv_context_get_setspec(handle, 1, db.place, nullptr),
                                         orv_context_lookup(handle, 1, nullptr),
                                         orv_context_convert_ucs2_to_turbotext(handle, nullptr, 0, &block),
                                         orv_context_convert_ucs2_to_turbotext(handle, u"", 0, nullptr),
                                         orv_context_convert_ucs2_to_setspectt(handle, u"", 2, &block),
                                         orv_context_convert_turbotext_to_ucs2(handle, nullptr, 1, &block, 0),
                                         orv_context_convert_turbotext_to_ucs2(handle, nullptr, 0, nullptr, 0),
                                         orv_context_convert_turbotext_to_ucs2(handle, nullptr, 0, &block, 1)};
  EXPECT_THAT(bad_arguments, testing::Each(ORV_BAD_ARGUMENT));
  const std::uint32_t bad_contexts[] = {
      orv_context_create_iterator(0, db.by_id, 0, k, k, &iterator), orv_context_get_setspec(0, 1, db.place, &block),
      orv_context_lookup(0, 1, &word), orv_context_convert_turbotext_to_base_ucs2(0, nullptr, 0, &block, 0)};
  EXPECT_THAT(bad_contexts, testing::Each(ORV_BAD_CONTEXT));
  for (const std::uint64_t index : {0UL, db.by_name + 1, ~0UL}) EXPECT_EQ(create(index, key), ORV_BAD_INDEX);
  EXPECT_EQ(orv_context_get_setspec(handle, 0, db.place, &block), ORV_BAD_OBJECT);
  EXPECT_EQ(orv_context_get_setspec(handle, 1, db.other, &block), ORV_BAD_COLUMN);
  EXPECT_EQ(orv_context_lookup(handle, 4, &word), ORV_BAD_OBJECT);
  EXPECT_EQ(orv_context_convert_turbotext_to_ucs2(handle, nullptr, 0, &block, 0), ORV_OK);
  EXPECT_EQ(orv_convert_turbotext_to_ucs2(nullptr, 5, nullptr, 0), 0);
  EXPECT_EQ(orv_convert_turbotext_to_base_ucs2(nullptr, 5, nullptr, 9), 0);
  EXPECT_EQ(orv_convert_ucs2_to_turbotext(nullptr, 0, nullptr, 0), 0u);
}

TEST_F(status_test, keys_that_are_not_well_formed) {
  using bytes = std::vector<std::uint8_t>;
  const auto by_open = db.database.create_index({.table = db.place, .columns = {{sample::open}}});
  EXPECT_EQ(create(by_open, key_writer().number(1).end()), ORV_OK);
  std::vector<std::pair<std::uint64_t, bytes>> keys = {
      {db.by_id, {0x80, 0, 0, 0, 0, 0, 0, 0, 0, 0}},         // no component begins so
      {db.by_id, {0x60, 0x60, 0xC0}},                        // more components than columns
      {db.by_id, {0x29, 0, 0, 0, 0, 0, 0, 0, 0, 0xC0}},      // another length
      {db.by_id, {0x28, 0, 0, 0, 0, 0, 0, 0, 0, 0x28}},      // no terminator
      {db.by_id, key_writer().text(u"twelve units").end()},  // another type
      {by_open, key_writer().number(2).end()},               // no bool
      {db.by_name, {0x40}},                                  // not a text
      {db.by_name, {0x21, 'a', 0xC0}},                       // text without its end
      {db.by_name, {0x21, 'a', 0x01, 'b', 0x80, 0xC0}}};     // another chunk after one that is not full
  for (const bytes& behind_text :
       {bytes{0x20},        // a binary has at least its first byte
        bytes{0x21, 0x02},  // neither value nor highest
        bytes{0x22, 0x01, 0x00, 0x80}, bytes{0x21, 0x01, 0xC0}, bytes{0x28, 0, 0, 0, 0, 0, 0, 0, 1},  // a number
        bytes{0x60, 0x60}}) {
    keys.emplace_back(db.by_name, key_writer().text(u"a").raw(behind_text).end());
  }
  for (const std::uint8_t length : bytes{0x00, 0x20, 0xC0}) {
    bytes& endless_chunk = keys.emplace_back(db.by_name, bytes(33)).second;
    endless_chunk.front() = 0x3F;
    endless_chunk.back() = length;
  }
  for (const auto& [index, key] : keys) EXPECT_EQ(create(index, key), ORV_BAD_KEY) << testing::PrintToString(key);
}

TEST_F(status_test, stale_iterators_and_contexts) {
  ORV_REFERENCE_VALUE reference{};
  std::uint64_t skipped = 0;
  const auto expect_gone = [&](std::uint64_t iterator) {
    EXPECT_EQ(orv_iterator_next(iterator, &reference), ORV_BAD_ITERATOR);
    EXPECT_EQ(orv_iterator_skip(iterator, 1, &skipped), ORV_BAD_ITERATOR);
    EXPECT_EQ(orv_iterator_free(iterator), ORV_BAD_ITERATOR);
  };
  const std::uint64_t freed = open(handle);
  EXPECT_EQ(orv_iterator_free(freed), ORV_OK);
  const std::uint64_t reused = open(handle);
  for (const std::uint64_t invented : {freed, 0UL, handle, reused + 1, reused + 4096, ~0UL}) expect_gone(invented);
  EXPECT_EQ(orv_iterator_next(reused, &reference), ORV_OK);
  db.insert_place(9, u"written while it is open");
  expect_gone(reused);
  auto short_lived = std::make_unique<ovcoredb::context>(db.database);
  const std::uint64_t closed = short_lived->handle();
  const std::uint64_t of_closed_context = open(closed);
  short_lived.reset();
  expect_gone(of_closed_context);
  const ovcoredb::context next(db.database);  // takes the same slot
  std::uint64_t word = 0;
  EXPECT_EQ(orv_context_lookup(closed, 1, &word), ORV_BAD_CONTEXT);
  EXPECT_EQ(orv_context_lookup(next.handle(), 1, &word), ORV_OK);
  expect_gone(of_closed_context);
}

TEST_F(status_test, there_are_only_so_many_iterators_and_contexts) {
  std::vector<std::uint64_t> opened(65536);
  for (std::uint64_t& each : opened) each = open(handle);
  EXPECT_EQ(create(db.by_id, key_writer().end()), ORV_TOO_MANY_ITERATORS);
  EXPECT_EQ(orv_iterator_free(opened[7]), ORV_OK);
  EXPECT_EQ(create(db.by_id, key_writer().end()), ORV_OK);
  std::vector<std::unique_ptr<ovcoredb::context>> contexts(4094);  // and the test's own
  for (auto& each : contexts) each = std::make_unique<ovcoredb::context>(db.database);
  EXPECT_THROW(ovcoredb::context(db.database), std::runtime_error);
}

}  // namespace
