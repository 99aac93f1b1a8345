// Every kind of bad input gets its status, leaves the out parameter alone and harms nothing.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "key_writer.hpp"
#include "ovdbmetalayer/metalayer.hpp"
#include "sample_database.hpp"

namespace {

using sample = sample_database;

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
};

// Which getter reads which column; the one named here is the only one that may.
enum getter {
  get_ulong,
  get_long,
  get_decimal,
  get_float,
  get_double,
  get_binary,
  get_reference,
  get_string,
  get_bool
};

std::uint32_t call(getter which, std::uint64_t context, OV_OBJ_REF object, std::uint32_t column) {
  union {
    std::uint64_t u;
    std::int64_t i;
    float f;
    double d;
    ORV_BYTES b;
    ORV_REFERENCE_VALUE r;
    const std::uint8_t* s;
    unsigned char raw[24];
  } out;
  std::fill(std::begin(out.raw), std::end(out.raw), static_cast<unsigned char>(0xA5));
  const std::uint64_t number = object.object_number;
  const std::uint64_t word = object.second_word;
  const auto read = [&] {
    switch (which) {
      case get_ulong:
        return orv_context_get_ulong(context, number, word, column, &out.u);
      case get_long:
        return orv_context_get_long(context, number, word, column, &out.i);
      case get_decimal:
        return orv_context_get_decimal(context, number, word, column, &out.i);
      case get_float:
        return orv_context_get_float(context, number, word, column, &out.f);
      case get_double:
        return orv_context_get_double(context, number, word, column, &out.d);
      case get_binary:
        return orv_context_get_binary(context, number, word, column, &out.b);
      case get_reference:
        return orv_context_get_reference(context, number, word, column, &out.r);
      case get_string:
        return orv_context_get_string(context, number, word, column, &out.s);
      default:
        return orv_meta_get_bool(context, number, word, column, &out.u);
    }
  };
  const std::uint32_t status = read();
  if (status != ORV_OK) {
    for (const unsigned char byte : out.raw) EXPECT_EQ(byte, 0xA5) << "written despite status " << status;
  }
  return status;
}

TEST_F(status_test, getters) {
  const std::vector<std::vector<getter>> readers = {{get_ulong, get_bool},  // column 2
                                                    {get_long},
                                                    {get_decimal},
                                                    {get_float},
                                                    {get_double},
                                                    {get_binary, get_string},
                                                    {get_binary},
                                                    {get_reference},
                                                    {get_ulong, get_bool}};
  for (int i = get_ulong; i <= get_bool; ++i) {
    const auto which = static_cast<getter>(i);
    for (std::uint32_t column = 2; column < 2 + readers.size(); ++column) {
      SCOPED_TRACE("getter " + std::to_string(i) + " column " + std::to_string(column));
      const bool fits = std::count(readers[column - 2].begin(), readers[column - 2].end(), which) != 0;
      EXPECT_EQ(call(which, handle, object, column), fits ? ORV_OK : ORV_TYPE_MISMATCH);
      EXPECT_EQ(call(which, handle, empty, column), fits ? ORV_NO_VALUE : ORV_TYPE_MISMATCH);
      EXPECT_EQ(call(which, handle, {object.object_number, 0}, column), ORV_BAD_COLUMN);
      EXPECT_EQ(call(which, handle, {object.object_number, db.city}, column), ORV_BAD_COLUMN);
    }
    for (const std::uint32_t column : {std::uint32_t{sample::unused}, sample::unused + 1u, ~0u}) {
      EXPECT_EQ(call(which, handle, object, column), ORV_BAD_COLUMN);
    }
    for (const std::uint64_t number : {std::uint64_t{0}, std::uint64_t{4}, ~std::uint64_t{0}}) {
      EXPECT_EQ(call(which, handle, {number, db.place}, 2), ORV_BAD_OBJECT);
    }
    for (const std::uint64_t bad : {std::uint64_t{0}, handle + 1, handle + 4096, ~std::uint64_t{0}}) {
      EXPECT_EQ(call(which, bad, object, 2), ORV_BAD_CONTEXT);
    }
    EXPECT_EQ(call(which, handle, object, 1), ORV_TYPE_MISMATCH);
    EXPECT_EQ(call(which, handle, object, 0), which == get_ulong || which == get_bool ? ORV_OK : ORV_TYPE_MISMATCH);
  }
}

TEST_F(status_test, set_specifier_and_lookup) {
  const std::uint8_t* block = nullptr;
  std::uint64_t word = 0;
  EXPECT_EQ(orv_context_get_setspec(0, 1, db.place, &block), ORV_BAD_CONTEXT);
  EXPECT_EQ(orv_context_get_setspec(handle, 0, db.place, &block), ORV_BAD_OBJECT);
  EXPECT_EQ(orv_context_get_setspec(handle, 1, db.other, &block), ORV_BAD_COLUMN);
  EXPECT_EQ(orv_context_lookup(0, 1, &word), ORV_BAD_CONTEXT);
  EXPECT_EQ(orv_context_lookup(handle, 4, &word), ORV_BAD_OBJECT);
}

TEST_F(status_test, null_pointers) {
  const auto key = key_writer().end();
  std::uint64_t iterator = 0;
  const std::uint8_t* block = nullptr;
  EXPECT_EQ(orv_context_create_iterator(handle, db.by_id, 0, nullptr, key.data(), &iterator), ORV_BAD_ARGUMENT);
  EXPECT_EQ(orv_context_create_iterator(handle, db.by_id, 0, key.data(), nullptr, &iterator), ORV_BAD_ARGUMENT);
  EXPECT_EQ(orv_context_create_iterator(handle, db.by_id, 0, key.data(), key.data(), nullptr), ORV_BAD_ARGUMENT);
  EXPECT_EQ(orv_iterator_next(iterator, nullptr), ORV_BAD_ARGUMENT);
  EXPECT_EQ(orv_context_get_ulong(handle, 1, db.place, 2, nullptr), ORV_BAD_ARGUMENT);
  EXPECT_EQ(orv_meta_get_bool(handle, 1, db.place, 2, nullptr), ORV_BAD_ARGUMENT);
  EXPECT_EQ(orv_context_get_long(handle, 1, db.place, 3, nullptr), ORV_BAD_ARGUMENT);
  EXPECT_EQ(orv_context_get_decimal(handle, 1, db.place, 4, nullptr), ORV_BAD_ARGUMENT);
  EXPECT_EQ(orv_context_get_float(handle, 1, db.place, 5, nullptr), ORV_BAD_ARGUMENT);
  EXPECT_EQ(orv_context_get_double(handle, 1, db.place, 6, nullptr), ORV_BAD_ARGUMENT);
  EXPECT_EQ(orv_context_get_binary(handle, 1, db.place, 7, nullptr), ORV_BAD_ARGUMENT);
  EXPECT_EQ(orv_context_get_reference(handle, 1, db.place, 9, nullptr), ORV_BAD_ARGUMENT);
  EXPECT_EQ(orv_context_get_string(handle, 1, db.place, 7, nullptr), ORV_BAD_ARGUMENT);
  EXPECT_EQ(orv_context_get_setspec(handle, 1, db.place, nullptr), ORV_BAD_ARGUMENT);
  EXPECT_EQ(orv_context_lookup(handle, 1, nullptr), ORV_BAD_ARGUMENT);
  EXPECT_EQ(orv_context_convert_ucs2_to_turbotext(handle, nullptr, 0, &block), ORV_BAD_ARGUMENT);
  EXPECT_EQ(orv_context_convert_ucs2_to_turbotext(handle, u"", 0, nullptr), ORV_BAD_ARGUMENT);
  EXPECT_EQ(orv_context_convert_ucs2_to_setspectt(handle, u"", 2, &block), ORV_BAD_ARGUMENT);
  EXPECT_EQ(orv_context_convert_turbotext_to_ucs2(handle, nullptr, 1, &block, 0), ORV_BAD_ARGUMENT);
  EXPECT_EQ(orv_context_convert_turbotext_to_ucs2(handle, nullptr, 0, nullptr, 0), ORV_BAD_ARGUMENT);
  EXPECT_EQ(orv_context_convert_turbotext_to_ucs2(handle, nullptr, 0, &block, 1), ORV_BAD_ARGUMENT);
  EXPECT_EQ(orv_context_convert_turbotext_to_base_ucs2(0, nullptr, 0, &block, 0), ORV_BAD_CONTEXT);
  EXPECT_EQ(orv_context_convert_turbotext_to_ucs2(handle, nullptr, 0, &block, 0), ORV_OK);
  EXPECT_EQ(orv_convert_turbotext_to_ucs2(nullptr, 5, nullptr, 0), 0);
  EXPECT_EQ(orv_convert_turbotext_to_base_ucs2(nullptr, 5, nullptr, 9), 0);
  EXPECT_EQ(orv_convert_ucs2_to_turbotext(nullptr, 0, nullptr, 0), 0u);
}

TEST_F(status_test, iterators_of_what_is_not_there) {
  const auto key = key_writer().end();
  std::uint64_t iterator = 0;
  EXPECT_EQ(create(0, key), ORV_BAD_INDEX);
  EXPECT_EQ(create(db.by_name + 1, key), ORV_BAD_INDEX);
  EXPECT_EQ(create(~std::uint64_t{0}, key), ORV_BAD_INDEX);
  EXPECT_EQ(orv_context_create_iterator(0, db.by_id, 0, key.data(), key.data(), &iterator), ORV_BAD_CONTEXT);
  EXPECT_EQ(orv_context_create_iterator(handle, db.by_id, 0x1, key.data(), key.data(), &iterator), ORV_BAD_ARGUMENT);
}

TEST_F(status_test, keys_that_are_not_well_formed) {
  const std::vector<std::uint8_t> number_keys[] = {
      {0x28},                                // ends where the number should be
      {0x80},                                // no component begins so
      {0x60, 0x60, 0xC0},                    // more components than columns
      {0x29, 0, 0, 0, 0, 0, 0, 0, 0, 0xC0},  // another length
      {0x28, 0, 0, 0, 0, 0, 0, 0, 0, 0x28},  // no terminator
      key_writer().text(u"a").end(),
      key_writer().highest_binary().end(),
  };
  for (std::vector<std::uint8_t> key : number_keys) {
    key.resize(std::max<std::size_t>(key.size(), 10));  // a number and what follows it are read
    EXPECT_EQ(create(db.by_id, key), ORV_BAD_KEY) << testing::PrintToString(key);
  }
  const std::vector<std::uint8_t> text_and_binary_keys[] = {
      {0x40},                                           // not a text
      {0x21, 'a', 0xC0},                                // text without its end
      {0x21, 'a', 0x01, 'b', 0x80, 0xC0},               // another chunk behind one that is not full
      key_writer().text(u"a").raw({0x20}).end(),        // a binary has at least its first byte
      key_writer().text(u"a").raw({0x21, 0x02}).end(),  // neither value nor highest
      key_writer().text(u"a").raw({0x22, 0x01, 0x00, 0x80}).end(),
      key_writer().text(u"a").raw({0x21, 0x01, 0xC0}).end(),
      key_writer().text(u"a").number(1).end(),
      key_writer().text(u"a").lowest().lowest().end(),
  };
  for (const std::vector<std::uint8_t>& key : text_and_binary_keys) {
    EXPECT_EQ(create(db.by_name, key), ORV_BAD_KEY) << testing::PrintToString(key);
  }
  std::vector<std::uint8_t> endless_chunk = {0x3F};
  endless_chunk.resize(32);
  for (const std::uint8_t length : std::initializer_list<std::uint8_t>{0x00, 0x20, 0xC0}) {
    endless_chunk.resize(32);
    endless_chunk.push_back(length);
    EXPECT_EQ(create(db.by_name, endless_chunk), ORV_BAD_KEY);
  }
  const auto by_open = db.database.create_index({.table = db.place, .columns = {{sample::open}}});
  EXPECT_EQ(create(by_open, key_writer().number(1).end()), ORV_OK);
  EXPECT_EQ(create(by_open, key_writer().number(2).end()), ORV_BAD_KEY);
}

TEST_F(status_test, stale_iterators) {
  const auto key = key_writer().end();
  ORV_REFERENCE_VALUE reference{};
  const auto open = [&] {
    std::uint64_t iterator = 0;
    EXPECT_EQ(orv_context_create_iterator(handle, db.by_id, inclusive, key.data(), key.data(), &iterator), ORV_OK);
    return iterator;
  };
  const auto expect_gone = [&](std::uint64_t iterator) {
    EXPECT_EQ(orv_iterator_next(iterator, &reference), ORV_BAD_ITERATOR);
    EXPECT_EQ(orv_iterator_free(iterator), ORV_BAD_ITERATOR);
  };
  const std::uint64_t freed = open();
  EXPECT_EQ(orv_iterator_free(freed), ORV_OK);
  expect_gone(freed);
  const std::uint64_t reused = open();
  expect_gone(freed);
  for (const std::uint64_t invented : {std::uint64_t{0}, handle, reused + 1, reused + 4096, ~std::uint64_t{0}}) {
    expect_gone(invented);
  }
  EXPECT_EQ(orv_iterator_next(reused, &reference), ORV_OK);
  db.insert_place(9, u"written while it is open");
  expect_gone(reused);
  std::uint64_t of_closed_context = 0;
  std::uint64_t closed = 0;
  {
    const ovcoredb::context short_lived(db.database);
    closed = short_lived.handle();
    orv_context_create_iterator(closed, db.by_id, inclusive, key.data(), key.data(), &of_closed_context);
    EXPECT_EQ(orv_iterator_next(of_closed_context, &reference), ORV_OK);
  }
  expect_gone(of_closed_context);
  const ovcoredb::context next(db.database);  // takes the same slot
  EXPECT_EQ(call(get_ulong, closed, object, sample::id), ORV_BAD_CONTEXT);
  EXPECT_EQ(call(get_ulong, next.handle(), object, sample::id), ORV_OK);
  expect_gone(of_closed_context);
}

TEST_F(status_test, a_context_opens_only_so_many_iterators) {
  const auto key = key_writer().end();
  std::vector<std::uint64_t> open;
  std::uint64_t iterator = 0;
  std::uint32_t status = ORV_OK;
  while ((status = orv_context_create_iterator(handle, db.by_id, inclusive, key.data(), key.data(), &iterator)) == 0) {
    open.push_back(iterator);
  }
  EXPECT_EQ(status, ORV_TOO_MANY_ITERATORS);
  EXPECT_EQ(open.size(), 65536u);
  EXPECT_EQ(orv_iterator_free(open[7]), ORV_OK);
  EXPECT_EQ(create(db.by_id, key), ORV_OK);
}

TEST(contexts, there_are_only_so_many) {
  const ovcoredb::database database;
  std::vector<std::unique_ptr<ovcoredb::context>> open;
  EXPECT_THROW(
      {
        for (;;) open.push_back(std::make_unique<ovcoredb::context>(database));
      },
      std::runtime_error);
  EXPECT_EQ(open.size(), 4095u);
}

}  // namespace
