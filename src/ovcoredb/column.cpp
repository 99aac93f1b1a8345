#include "ovcoredb/column.hpp"

#include <algorithm>
#include <variant>

#include "ovcoredb/text_code.hpp"

namespace ovcoredb {
namespace {

std::uint8_t width_of(column_type type) {
  switch (type) {
    case column_type::none:
      return 0;
    case column_type::boolean:
      return 1;
    case column_type::float32:
      return 4;
    case column_type::reference:
      return sizeof(OV_OBJ_REF);
    default:
      return 8;
  }
}

}  // namespace

struct column::appender {
  column& to;

  template <class T>
  void operator()(const T& value) const {
    std::memcpy(to.values_.extend(sizeof value), &value, sizeof value);
  }
  void operator()(bool value) const { (*this)(static_cast<std::uint8_t>(value)); }
  void operator()(decimal value) const { (*this)(value.millionths); }
  void operator()(std::u16string_view value) const {
    encode_text(value, text_end::text, to.bytes_.extend(encoded_size(value, text_end::text)));
    (*this)(std::uint64_t{to.bytes_.size()});
  }
  void operator()(std::span<const std::uint8_t> value) const {
    std::copy(value.begin(), value.end(), to.bytes_.extend(value.size()));
    (*this)(std::uint64_t{to.bytes_.size()});
  }
  void operator()(std::monostate) const {
    to.mark_absent(to.rows());
    if (to.type_ == column_type::text || to.type_ == column_type::binary)
      return (*this)(std::uint64_t{to.bytes_.size()});
    std::fill_n(to.values_.extend(to.width_), to.width_, std::uint8_t{0});
  }
};

column::column(column_type type) : type_(type), width_(width_of(type)) {}

void column::append(const cell& value) {
  if (type_ == column_type::none) return;
  const std::uint64_t row = rows();
  if (!absent_.empty() && row >> 6 == absent_.size()) absent_.push_back(0);
  std::visit(appender{*this}, value);
}

void column::truncate(std::uint64_t rows_left) {
  if (type_ == column_type::none) return;
  values_.truncate(rows_left * width_);
  if (type_ == column_type::text || type_ == column_type::binary) {
    bytes_.truncate(rows_left == 0 ? 0 : fixed<std::uint64_t>(rows_left - 1));
  }
  if (absent_.empty()) return;
  absent_.truncate((rows_left + 63) >> 6);
  if ((rows_left & 63) != 0) absent_[rows_left >> 6] &= (std::uint64_t{1} << (rows_left & 63)) - 1;
}

void column::mark_absent(std::uint64_t row) {
  while (absent_.size() <= row >> 6) absent_.push_back(0);
  absent_[row >> 6] |= std::uint64_t{1} << (row & 63);
}

}  // namespace ovcoredb
