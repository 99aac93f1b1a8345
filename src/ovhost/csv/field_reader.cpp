#include "ovhost/csv/field_reader.hpp"

#include <cstdint>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "ovhost/csv/field_text.hpp"
#include "ovhost/values/decimal_text.hpp"
#include "ovhost/values/number_text.hpp"
#include "ovhost/values/text.hpp"

namespace ovhost {
namespace {

using ovcoredb::cell;

std::string shown(const std::string& field) { return "\"" + field + "\""; }

[[noreturn]] void refuse(const std::string& field, std::string_view kind) {
  throw bad_field(shown(field) + " is not a value of type " + std::string(kind));
}

template <class Number>
class number_reader final : public field_reader {
 public:
  explicit number_reader(value_kind kind) : kind_(kind) {}
  cell read(const std::string& field) override {
    if (const auto number = parse_number<Number>(without_blanks(field))) return *number;
    refuse(field, name_of(kind_));
  }

 private:
  value_kind kind_;
};

class decimal_reader final : public field_reader {
 public:
  cell read(const std::string& field) override {
    if (const auto number = parse_decimal(without_blanks(field))) return ovcoredb::decimal{number->raw};
    refuse(field, "decimal (at most six digits after the point)");
  }
};

class boolean_reader final : public field_reader {
 public:
  cell read(const std::string& field) override {
    const std::string_view word = without_blanks(field);
    const bool truth = is_word(word, "true");
    if (!truth && !is_word(word, "false")) refuse(field, "bool (true or false)");
    return truth;
  }
};

class text_reader final : public field_reader {
 public:
  cell read(const std::string& field) override {
    auto units = utf8_to_utf16(field);
    if (!units) throw bad_field("the text is not UTF-8");
    if (units->find(u'\0') != std::u16string::npos) throw bad_field("the text holds a zero character");
    units_ = *std::move(units);
    return std::u16string_view(units_);
  }

 private:
  std::u16string units_;
};

class binary_reader final : public field_reader {
 public:
  cell read(const std::string& field) override {
    bytes_.clear();
    if (field.size() % 2 != 0) refuse(field, "binary (pairs of hexadecimal digits)");
    for (std::size_t at = 0; at < field.size(); at += 2) {
      bytes_.push_back(static_cast<std::uint8_t>(digit(field, at) << 4 | digit(field, at + 1)));
    }
    return std::span<const std::uint8_t>(bytes_);
  }

 private:
  static unsigned digit(const std::string& field, std::size_t at) {
    constexpr std::string_view hexadecimal = "0123456789abcdef0123456789ABCDEF";
    const std::size_t found = hexadecimal.find(field[at]);
    if (found == std::string_view::npos) refuse(field, "binary (pairs of hexadecimal digits)");
    return static_cast<unsigned>(found % 16);
  }

  std::vector<std::uint8_t> bytes_;
};

}  // namespace

std::unique_ptr<field_reader> make_field_reader(value_kind kind) {
  switch (kind) {
    case value_kind::boolean:
      return std::make_unique<boolean_reader>();
    case value_kind::text:
      return std::make_unique<text_reader>();
    case value_kind::uint64:
      return std::make_unique<number_reader<std::uint64_t>>(kind);
    case value_kind::int64:
      return std::make_unique<number_reader<std::int64_t>>(kind);
    case value_kind::decimal:
      return std::make_unique<decimal_reader>();
    case value_kind::float64:
      return std::make_unique<number_reader<double>>(kind);
    case value_kind::float32:
      return std::make_unique<number_reader<float>>(kind);
    case value_kind::binary:
      return std::make_unique<binary_reader>();
    default:
      throw std::invalid_argument("no field holds a " + std::string(name_of(kind)));
  }
}

}  // namespace ovhost
