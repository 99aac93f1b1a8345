#include "ovcoredb/index/index_key.hpp"

#include <algorithm>

namespace ovcoredb {
namespace {

enum : std::uint8_t { lowest_mark = 0x60, bytes_mark = 0x20, bytes_end_mark = 0x80, longest_chunk = 31 };

class key_reader {
 public:
  key_reader(const std::uint8_t* key, range_end& end) : next_(key), end_(end) {}

  bool at_end() const { return *next_ == key_end_mark; }

  bool read(const key_part& part) {
    if (*next_ == lowest_mark) {
      ++next_;
      end_.components.push_back({});
      return true;
    }
    if (part.type == column_type::binary) return read_binary();
    return part.type == column_type::text ? read_text() : read_number(part.type);
  }

 private:
  bool read_number(column_type type) {
    if (*next_++ != number_mark) return false;
    const std::uint64_t word = read_word(next_);
    next_ += sizeof word;
    end_.components.push_back(number_component(word));
    return type != column_type::boolean || word <= 1;
  }

  bool read_text() {
    if (*next_ < bytes_mark || *next_ > (bytes_mark | longest_chunk)) return false;
    const unsigned first = *next_++ & longest_chunk;
    return read_chunks(first, first);
  }

  // The first chunk begins with a byte that tells the highest binary (1) from a value (0).
  bool read_binary() {
    if (*next_ <= bytes_mark || *next_ > (bytes_mark | longest_chunk)) return false;
    const unsigned first = *next_++ & longest_chunk;
    const std::uint8_t highest = *next_++;
    if (highest == 0) return read_chunks(first, first - 1);
    if (highest != 1 || first != 1 || *next_++ != bytes_end_mark) return false;
    end_.components.push_back(highest_component());
    return true;
  }

  // `declared` is what the first chunk's length byte said, `length` what is left of that chunk. Only a full chunk is
  // followed by another. The component's word holds its length until place_bytes.
  bool read_chunks(unsigned declared, unsigned length) {
    const std::size_t before = end_.bytes.size();
    end_.bytes.insert(end_.bytes.end(), next_, next_ + length);
    next_ += length;
    while (declared == longest_chunk && *next_ != bytes_end_mark) {
      declared = *next_++;
      if (declared == 0 || declared > longest_chunk) return false;
      end_.bytes.insert(end_.bytes.end(), next_, next_ + declared);
      next_ += declared;
    }
    end_.components.push_back(number_component(end_.bytes.size() - before));
    return *next_++ == bytes_end_mark;
  }

  const std::uint8_t* next_;
  range_end& end_;
};

// Lets the components refer to the bytes, which no longer move.
void place_bytes(std::span<const key_part> parts, range_end& end) {
  std::size_t offset = 0;
  for (std::size_t i = 0; i < end.components.size(); ++i) {
    key_component& component = end.components[i];
    if (!parts[i].holds_bytes() || component.kind != component_kind::value) continue;
    component = bytes_component({end.bytes.data() + offset, component.word});
    offset += component.bytes.size();
  }
}

void place_end(std::span<const key_part> parts, bool behind_equal, range_end& end) {
  if (!end.components.empty()) return end.place(end.components.front(), parts.front().ascending, behind_equal);
  end.behind_equal = behind_equal;
  end.word = behind_equal ? ~std::uint64_t{0} : 0;
  end.tagged = static_cast<std::uint32_t>(end.word);
}

key_component read_column(const column& from, std::uint64_t row) {
  if (!from.has_value(row)) return {};
  switch (from.type()) {
    case column_type::text:
      return bytes_component(from.bytes(row).subspan(1));  // without the header
    case column_type::binary:
      return bytes_component(from.bytes(row));
    case column_type::int64:
      return number_component(ordered_word(from.signed_value(row)));
    case column_type::decimal:
      return number_component(ordered_decimal_word(from.signed_value(row)));
    case column_type::reference:
      return number_component(from.reference(row).object_number);
    default:
      return number_component(from.unsigned_value(row));
  }
}

}  // namespace

key_component read_component(const key_part& part, std::uint64_t number, const object_place& place) {
  if (part.source == part_source::column) return read_column(place.in->columns[part.place], place.row);
  if (part.source == part_source::number) return number_component(number);
  return bytes_component(std::span(place.in->encoded_set_specifier).subspan(1));
}

bool read_key(const std::uint8_t* key, std::span<const key_part> parts, bool behind_equal, range_end& end) {
  end.components.clear();
  end.bytes.clear();
  key_reader reader(key, end);
  for (const key_part& part : parts) {
    if (reader.at_end()) break;
    if (!reader.read(part)) return false;
  }
  if (!reader.at_end()) return false;
  place_bytes(parts, end);
  place_end(parts, behind_equal, end);
  return true;
}

}  // namespace ovcoredb
