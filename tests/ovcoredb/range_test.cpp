// Every range of every index holds the same objects in the same order as a plain sorted list of them.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "key_writer.hpp"
#include "ovcoredb/database.hpp"

namespace {

using ovcoredb::cell;
using ovcoredb::column_type;

__extension__ using wide = __int128;

// A value of a column, or an end of a range: then also "above everything that begins with text".
struct model_value {
  bool null = true;
  wide number = 0;
  std::u16string text{};  // of texts; of binaries, a unit per byte
  bool above_all = false;
};

int compare(const model_value& stored, const model_value& end) {
  if (stored.null != end.null) return stored.null ? -1 : 1;
  if (stored.number != end.number) return stored.number < end.number ? -1 : 1;
  if (end.above_all && stored.text.starts_with(end.text)) return -1;
  const int order = stored.text.compare(end.text);
  return order == 0 ? 0 : order < 0 ? -1 : 1;
}

constexpr std::uint32_t number_column = 0;
constexpr std::uint32_t set_specifier_column = 1;
constexpr column_type declared[] = {column_type::uint64,   column_type::int64, column_type::decimal,
                                    column_type::boolean,  column_type::text,  column_type::binary,
                                    column_type::reference};

column_type type_of(std::uint32_t column) {
  if (column == number_column) return column_type::uint64;
  return column == set_specifier_column ? column_type::text : declared[column - 2];
}

using model_object = std::vector<model_value>;  // by column number; the first is the object's

std::uint64_t number_of(const model_object& object) { return static_cast<std::uint64_t>(object[0].number); }

class random_ranges {
 public:
  explicit random_ranges(unsigned seed) : random_(seed), context_(database_) {
    base_ = database_.create_table({.set_specifier = u"/A/", .columns = {std::begin(declared), std::end(declared)}});
    derived_ = database_.create_table({.set_specifier = u"/A/B/", .columns = {column_type::text}, .base = base_});
    const std::uint16_t other = database_.create_table({.set_specifier = u"/Other/"});
    const bool index_first = pick(2) == 0;
    if (index_first) create_index();
    const std::size_t count = pick(20) == 0 ? 2000 : 120;
    const std::size_t removals = pick(3);
    for (std::size_t i = 0; i <= removals; ++i) {
      if (i != 0) remove_after(pick(database_.object_count() + 1));
      while (database_.object_count() < count) insert_some(other);
      for (int check = 0; index_first && check < 10; ++check) check_one_range();
    }
    if (!index_first) create_index();
  }

  void check_one_range() {
    const auto first = random_end();
    const auto last = pick(4) == 0 ? first : random_end();
    const std::uint32_t flags = static_cast<std::uint32_t>(pick(4) * 0x10 + pick(2) * 0x40 + pick(2) * 0x80000);
    std::uint32_t status = 1;
    const auto found = walk(context_.handle(), index_, flags, bytes_of(first), bytes_of(last), &status);
    ASSERT_EQ(status, ORV_OK);
    ASSERT_EQ(found, expected(first, last, flags));
    // Getters remember where consecutive objects lie.
    const model_object& object = objects_[pick(objects_.size())];
    std::int64_t number = 0;
    const model_value& held = object[3];
    ASSERT_EQ(orv_context_get_long(context_.handle(), number_of(object), base_, 3, &number),
              held.null ? ORV_NO_VALUE : ORV_OK);
    ASSERT_EQ(number, static_cast<std::int64_t>(held.number));
  }

 private:
  using end_values = std::vector<model_value>;

  std::size_t pick(std::size_t below) { return random_() % below; }

  std::u16string random_text(char16_t low, char16_t high) {
    static constexpr std::size_t lengths[] = {0, 1, 1, 2, 2, 3, 9, 35, 36, 80};
    std::u16string text;
    const std::size_t length = lengths[pick(std::size(lengths))];
    const char16_t run = pick(2) == 0 ? low : high;  // long common beginnings
    for (std::size_t i = 0; i < length; ++i) text.push_back(i + 2 < length ? run : pick(2) == 0 ? low : high);
    return text;
  }

  model_value random_value(std::uint32_t column) {
    static constexpr std::int64_t edges[] = {0, 1, 2, 9999, 10000, 999999, 1000000, 2500000, 4398046511103999999};
    const wide edge = edges[pick(std::size(edges))];
    const bool negative = pick(2) == 0;
    const column_type type = type_of(column);
    if (column == set_specifier_column) return {false, 0, pick(2) == 0 ? u"/A/" : u"/A/B/"};
    if (column == number_column) return {false, static_cast<wide>(pick(130))};
    if (type == column_type::binary) return {false, 0, random_text(0x00, 0xFF)};
    if (type == column_type::text) {
      return {false, 0, random_text(pick(2) == 0 ? u'\u0001' : u'a', pick(2) == 0 ? u'b' : u'\xD800')};
    }
    if (type == column_type::uint64) return {false, negative ? static_cast<wide>(UINT64_MAX) - edge : edge};
    if (type == column_type::int64) return {false, negative ? static_cast<wide>(INT64_MIN) + edge : edge};
    if (type == column_type::decimal) return {false, negative ? -edge : edge};
    return {false, static_cast<wide>(pick(type == column_type::boolean ? 2 : 4))};
  }

  cell cell_of(std::uint32_t column, const model_value& value, std::vector<std::uint8_t>& bytes) {
    const auto number = static_cast<std::uint64_t>(value.number);
    const auto integer = static_cast<std::int64_t>(value.number);
    const column_type type = type_of(column);
    if (value.null) return {};
    if (type == column_type::text) return std::u16string_view(value.text);
    if (type == column_type::binary) {
      bytes.assign(value.text.begin(), value.text.end());
      return std::span<const std::uint8_t>(bytes);
    }
    if (type == column_type::uint64) return number;
    if (type == column_type::int64) return integer;
    if (type == column_type::decimal) return ovcoredb::decimal{integer};
    if (type == column_type::boolean) return number != 0;
    return OV_OBJ_REF{number, pick(3)};  // the second word takes no part
  }

  void insert(bool derived) {
    const std::uint64_t number = database_.object_count() + 1;
    model_object object = {{false, static_cast<wide>(number)}};
    std::vector<std::uint8_t> bytes;
    object.push_back({false, 0, derived ? u"/A/B/" : u"/A/"});
    for (std::uint32_t column = 2; column < 2 + std::size(declared); ++column) {
      object.push_back(pick(6) == 0 ? model_value{} : random_value(column));
    }
    std::vector<cell> cells;
    for (std::uint32_t i = 2; i < object.size(); ++i) cells.push_back(cell_of(i, object[i], bytes));
    if (derived) cells.emplace_back();
    EXPECT_EQ(database_.insert(derived ? derived_ : base_, cells).object_number, number);
    objects_.push_back(std::move(object));
  }

  // Of one table, the base, the derived or the other one.
  void insert_some(std::uint16_t other) {
    const std::size_t table = pick(3);
    for (std::size_t left = 1 + pick(table != 2 && pick(4) == 0 ? 300 : 3); left != 0; --left) {
      table == 2 ? static_cast<void>(database_.insert(other, {})) : insert(table == 1);
    }
  }

  void remove_after(std::uint64_t count) {
    database_.remove_after(count);
    std::erase_if(objects_, [&](const model_object& object) { return number_of(object) > count; });
  }

  void create_index() {
    std::vector<ovcoredb::key_column> columns;
    const std::size_t count = 1 + pick(3);
    for (std::size_t i = 0; i < count; ++i) {
      columns.push_back({static_cast<std::uint32_t>(pick(2 + std::size(declared))), pick(2) == 0});
    }
    key_ = columns;
    index_ = database_.create_index({.table = base_, .columns = columns});
  }

  // Values that objects hold, values that none holds, and the markers beyond all values.
  end_values random_end() {
    end_values end;
    const std::size_t count = pick(key_.size() + 1);
    for (std::size_t i = 0; i < count; ++i) {
      const std::uint32_t column = key_[i].column;
      const column_type type = type_of(column);
      const std::size_t kind = pick(8);
      if (kind == 0) {
        end.emplace_back();
      } else if (kind == 1 && type == column_type::binary) {
        end.push_back({false, 0, u"", true});
      } else if (kind <= 2 && type == column_type::text) {
        end.push_back({false, 0, random_value(column).text, true});
      } else {
        end.push_back(kind < 5 ? random_value(column) : objects_[pick(objects_.size())][column]);
      }
    }
    return end;
  }

  std::vector<std::uint8_t> bytes_of(const end_values& end) const {
    key_writer key;
    for (std::size_t i = 0; i < end.size(); ++i) {
      const model_value& value = end[i];
      const column_type type = type_of(key_[i].column);
      if (value.null) {
        key.lowest();
      } else if (type == column_type::text) {
        key.text(value.text, value.above_all);
      } else if (type == column_type::binary) {
        value.above_all ? key.highest_binary() : key.binary({value.text.begin(), value.text.end()});
      } else if (type == column_type::int64) {
        key.int64(static_cast<std::int64_t>(value.number));
      } else if (type == column_type::decimal) {
        key.decimal(static_cast<std::int64_t>(value.number));
      } else {
        key.number(static_cast<std::uint64_t>(value.number));
      }
    }
    return key.end();
  }

  // In index order, by the components that the end has.
  int order(const model_object& object, const end_values& end) const {
    for (std::size_t i = 0; i < end.size(); ++i) {
      const int order = compare(object[key_[i].column], end[i]);
      if (order != 0) return key_[i].ascending ? order : -order;
    }
    return 0;
  }

  std::vector<std::uint64_t> expected(const end_values& first, const end_values& last, std::uint32_t flags) const {
    const bool descending = (flags & ORV_ITERATOR_DESCENDING) != 0;
    std::vector<const model_object*> in_range;
    for (const model_object& object : objects_) {
      const int from = descending ? -order(object, first) : order(object, first);
      const int to = descending ? -order(object, last) : order(object, last);
      if (from < 0 || (from == 0 && (flags & ORV_ITERATOR_FIRST_INCLUSIVE) == 0)) continue;
      if (to > 0 || (to == 0 && (flags & ORV_ITERATOR_LAST_INCLUSIVE) == 0)) continue;
      in_range.push_back(&object);
    }
    std::stable_sort(in_range.begin(), in_range.end(), [&](const model_object* a, const model_object* b) {
      end_values key;
      for (const auto& column : key_) key.push_back((*b)[column.column]);
      return order(*a, key) < 0;
    });
    if (descending) std::reverse(in_range.begin(), in_range.end());
    std::vector<std::uint64_t> numbers;
    for (const model_object* const object : in_range) numbers.push_back(number_of(*object));
    return numbers;
  }

  std::mt19937 random_;
  ovcoredb::database database_;
  ovcoredb::context context_;
  std::uint16_t base_ = 0;
  std::uint16_t derived_ = 0;
  std::uint64_t index_ = 0;
  std::vector<ovcoredb::key_column> key_;
  std::vector<model_object> objects_;
};

TEST(range, agrees_with_a_sorted_list) {
  const unsigned start = std::random_device()();
  for (unsigned seed = start; seed != start + 150; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    random_ranges ranges(seed);
    for (int i = 0; i < 40; ++i) ranges.check_one_range();
    if (testing::Test::HasFailure()) return;
  }
}

}  // namespace
