#include "ovcoredb/storage/column.hpp"

#include <algorithm>
#include <cassert>
#include <variant>

#include "ovcoredb/text/text_encoding.hpp"

namespace ovcoredb {
namespace {

// The sign becomes the lowest bit, so that small numbers of either sign take few bytes.
std::uint64_t zigzag(std::int64_t value) {
  return static_cast<std::uint64_t>(value) << 1 ^ static_cast<std::uint64_t>(value >> 63);
}

}  // namespace

struct column::appender {
  column& to;  // of the value's type

  void operator()(std::uint64_t value) const { to.values_.push_back(value); }
  void operator()(std::int64_t value) const { to.values_.push_back(zigzag(value)); }
  void operator()(bool value) const { to.values_.push_back(value ? 1 : 0); }
  void operator()(decimal value) const { (*this)(value.millionths); }
  void operator()(float value) const { to.values_.push_back(std::bit_cast<std::uint32_t>(value)); }
  void operator()(double value) const { to.values_.push_back(std::bit_cast<std::uint64_t>(value)); }
  void operator()(const OV_OBJ_REF& value) const {
    to.values_.push_back(value.object_number);
    to.second_words_.push_back(value.second_word);
  }
  void operator()(std::u16string_view value) const {
    encode_text(value, text_end::text, to.bytes_.extend(encoded_size(value, text_end::text)));
    to.push_end_of_bytes();
  }
  void operator()(std::span<const std::uint8_t> value) const {
    std::copy(value.begin(), value.end(), to.bytes_.extend(value.size()));
    to.push_end_of_bytes();
  }
  void operator()(std::monostate) const {
    to.mark_absent(to.values_.size());
    if (to.type_ == column_type::reference) return (*this)(OV_OBJ_REF{0, 0});
    if (to.holds_bytes()) return to.push_end_of_bytes();
    to.values_.push_back(0);
  }
};

void column::begin_group() {
  const std::uint64_t usual_size = groups_.empty() ? 0 : bytes_.size() - groups_[groups_.size() - 1].start;
  groups_.push_back({bytes_.size(), usual_size});
}

void column::push_end_of_bytes() { values_.push_back(bytes_.size() - groups_[values_.size() / rows_per_group].start); }

void column::append(const cell& value) {
  assert(value.index() == 0 || value.index() == static_cast<std::size_t>(type_));
  if (type_ == column_type::none) return;
  if (!absent_.empty() && values_.size() >> 6 == absent_.size()) absent_.push_back(0);
  if (holds_bytes() && values_.size() % rows_per_group == 0) begin_group();
  std::visit(appender{*this}, value);
}

void column::truncate(std::uint64_t rows) {
  if (type_ == column_type::none) return;
  values_.truncate(rows);
  if (type_ == column_type::reference) second_words_.truncate(rows);
  if (holds_bytes()) {
    const std::uint64_t groups = (rows + rows_per_group - 1) / rows_per_group;
    bytes_.truncate(groups == 0 ? 0 : groups_[groups - 1].start + values_[rows - 1]);
    groups_.truncate(groups);
  }
  if (absent_.empty()) return;
  absent_.truncate((rows + 63) >> 6);
  if ((rows & 63) != 0) absent_[rows >> 6] &= (std::uint64_t{1} << (rows & 63)) - 1;
}

void column::mark_absent(std::uint64_t row) {
  const std::uint64_t words = (row >> 6) + 1;
  if (absent_.size() < words) {
    const std::uint64_t added = words - absent_.size();
    std::fill_n(absent_.extend(added), added, 0);  // in one step, which memory allows or not
  }
  absent_[row >> 6] |= std::uint64_t{1} << (row & 63);
}

}  // namespace ovcoredb
