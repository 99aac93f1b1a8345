#include "ov_sql_executor/values/keyed_hash.hpp"

#include <algorithm>
#include <bit>
#include <cstring>
#include <random>

#include "ov_sql_executor/values/encoded_text.hpp"

namespace ov::sql_executor {

namespace {

__extension__ using uint128 = unsigned __int128;

class mixture {
 public:
  mixture(std::uint64_t hash, std::uint64_t factor) : hash_(hash), factor_(factor) {}

  std::uint64_t hash() const { return hash_; }

  void add(std::uint64_t word) {
    const uint128 product = uint128{hash_ ^ word} * factor_;
    hash_ = static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
  }

  void add_bytes(const void* bytes, std::size_t count) {
    add(count);
    const auto* next = static_cast<const std::uint8_t*>(bytes);
    for (; count >= sizeof(std::uint64_t); count -= sizeof(std::uint64_t), next += sizeof(std::uint64_t)) {
      add(load<std::uint64_t>(next));
    }
    if (count != 0) add(load_few(next, count));
  }

 private:
  template <class Word>
  static std::uint64_t load(const std::uint8_t* bytes) {
    Word word = 0;
    std::memcpy(&word, bytes, sizeof(word));
    return word;
  }

  // One to seven bytes, which the loads may overlap in: different ones give different words.
  static std::uint64_t load_few(const std::uint8_t* bytes, std::size_t count) {
    using half = std::uint32_t;
    if (count >= sizeof(half)) return load<half>(bytes) << 32 | load<half>(bytes + count - sizeof(half));
    return std::uint64_t{bytes[0]} << 16 | std::uint64_t{bytes[count / 2]} << 8 | bytes[count - 1];
  }

  std::uint64_t hash_;
  std::uint64_t factor_;
};

void add_key(mixture& sum, bool key) { sum.add(key ? 1 : 0); }
void add_key(mixture& sum, std::uint64_t key) { sum.add(key); }
void add_key(mixture& sum, std::int64_t key) { sum.add(static_cast<std::uint64_t>(key)); }
void add_key(mixture& sum, operator_library::Decimal key) { add_key(sum, key.raw); }
void add_key(mixture& sum, double key) { sum.add(key == 0 ? 0 : std::bit_cast<std::uint64_t>(key)); }
void add_key(mixture& sum, float key) { add_key(sum, static_cast<double>(key)); }
void add_key(mixture& sum, const OV_OBJ_REF& key) { sum.add(key.object_number); }
void add_key(mixture& sum, const operator_library::NullValue& /*key*/) { sum.add(0); }
void add_key(mixture& sum, const binary_view& key) { sum.add_bytes(key.bytes.data(), key.bytes.size()); }
void add_key(mixture& sum, std::u16string_view key) { sum.add_bytes(key.data(), key.size() * sizeof(char16_t)); }
void add_key(mixture& sum, const text_view& key) {
  const std::span<const std::uint8_t> payload = bit_count(key).payload;
  sum.add_bytes(payload.data(), payload.size());
}
[[noreturn]] void add_key(mixture& /*sum*/, std::monostate /*key*/) { throw std::bad_variant_access(); }

}  // namespace

const keyed_hash& keyed_hash::of_process() {
  static const keyed_hash hash;
  return hash;
}

keyed_hash::keyed_hash() {
  std::random_device random;
  const auto word = [&random] { return std::uint64_t{random()} << 32 | random(); };
  start_ = word();
  // Factors have many bits and are odd: a small one would not bring the bits of a word to the top.
  std::generate(factors_.begin(), factors_.end(), [&] { return word() | 1 | std::uint64_t{1} << 63; });
}

std::uint64_t keyed_hash::operator()(std::span<const value_view> key) const {
  std::uint64_t hash = start_;
  for (const value_view& each : key) {
    mixture sum(hash, factors_[each.index()]);
    visit_view([&sum](const auto& held) { add_key(sum, held); }, each);
    hash = sum.hash();
  }
  return hash;
}

}  // namespace ov::sql_executor
