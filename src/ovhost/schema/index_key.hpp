#ifndef OVHOST_SCHEMA_INDEX_KEY_HPP_
#define OVHOST_SCHEMA_INDEX_KEY_HPP_

#include <cstdint>
#include <string_view>
#include <vector>

namespace ovhost {

// A key for orv_context_create_iterator, in the byte format that ovcoredb.h draws. Components are added in key order. A
// key with fewer components than the index has columns stands for all keys that begin with them.
class index_key {
 public:
  index_key& add_number(std::uint64_t number);  // also object numbers
  index_key& add_number(std::int64_t number);
  index_key& add_text(std::u16string_view text);

  // Returns the whole key, with its end mark.
  std::vector<std::uint8_t> bytes() const;

 private:
  std::vector<std::uint8_t> components_;
};

}  // namespace ovhost

#endif  // OVHOST_SCHEMA_INDEX_KEY_HPP_
