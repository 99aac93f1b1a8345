#include "ovcoredb/index/index_key.hpp"

#include <cstddef>

namespace ovcoredb {
namespace {

enum : std::uint8_t { lowest_mark = 0x60, bytes_mark = 0x20, bytes_end_mark = 0x80, longest_chunk = 31 };

// Appends components and their bytes to an end. Each function is false at the first byte that cannot be right.
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

  // The first chunk begins with a byte: 0 for a value, 1 for the highest binary.
  bool read_binary() {
    if (*next_ <= bytes_mark || *next_ > (bytes_mark | longest_chunk)) return false;
    const unsigned first = *next_++ & longest_chunk;
    const std::uint8_t highest = *next_++;
    if (highest == 0) return read_chunks(first, first - 1);
    if (highest != 1 || first != 1 || *next_++ != bytes_end_mark) return false;
    end_.components.push_back(highest_component());
    return true;
  }

  // `declared` is the length byte of the first chunk, `length` what is left of that chunk. Another chunk follows only a
  // full one. The component's word holds its length until place_bytes.
  bool read_chunks(unsigned declared, unsigned length) {
    const std::size_t before = end_.bytes.size();
    take_bytes(length);
    while (declared == longest_chunk && *next_ != bytes_end_mark) {
      declared = *next_++;
      if (declared == 0 || declared > longest_chunk) return false;
      take_bytes(declared);
    }
    end_.components.push_back(number_component(end_.bytes.size() - before));
    return *next_++ == bytes_end_mark;
  }

  void take_bytes(unsigned count) {
    end_.bytes.insert(end_.bytes.end(), next_, next_ + count);
    next_ += count;
  }

  const std::uint8_t* next_;
  range_end& end_;
};

// Lets the components refer to their bytes, once these no longer move.
void place_bytes(std::span<const key_part> parts, range_end& end) {
  std::size_t offset = 0;
  for (std::size_t i = 0; i < end.components.size(); ++i) {
    key_component& component = end.components[i];
    if (!parts[i].holds_bytes() || component.kind != component_kind::value) continue;
    component = bytes_component({end.bytes.data() + offset, component.word});
    offset += component.bytes.size();
  }
}

void set_order(std::span<const key_part> parts, bool after_equal, range_end& end) {
  if (end.components.empty()) return end.set_without_components(after_equal);
  end.set_first(end.components.front(), parts.front().ascending, after_equal);
}

}  // namespace

bool read_key(const std::uint8_t* key, std::span<const key_part> parts, bool after_equal, range_end& end) {
  end.components.clear();
  end.bytes.clear();
  key_reader reader(key, end);
  for (const key_part& part : parts) {
    if (reader.at_end()) break;
    if (!reader.read(part)) return false;
  }
  if (!reader.at_end()) return false;
  place_bytes(parts, end);
  set_order(parts, after_equal, end);
  return true;
}

}  // namespace ovcoredb
