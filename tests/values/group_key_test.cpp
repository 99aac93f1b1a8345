#include "ov_sql_executor/values/group_key.hpp"

#include <gtest/gtest.h>

#include <boost/container_hash/hash.hpp>

#include "outcome.hpp"
#include "valueless.hpp"

namespace tests {
namespace {

constexpr std::uint64_t hash_seed = 0x0123456789ABCDEF;

std::uint64_t hash_of(const value& any) { return key_hash(hash_seed, view_of(any)); }

// What a hash that is known from elsewhere becomes on top of the seed.
std::uint64_t combined(std::size_t hash) {
  std::size_t sum = hash_seed;
  boost::hash_combine(sum, hash);
  return sum;
}

template <class Byte>
std::size_t range_hash(std::initializer_list<Byte> bytes) {
  return boost::hash_range(bytes.begin(), bytes.end());
}

TEST(GroupKey, hashes_are_the_stated_ones) {
  const char* const cases[] = {"false 0", "true 1", "u18446744073709551615 ffffffffffffffff", "i-2 fffffffffffffffe",
                               "d1.5 3ff8000000000000", "d-0 0", "f-1.5 bfc00000", "f-0 0", "bytes'' 0",
                               // FNV-1a over eight bytes, the least significant first.
                               "dec1500000 09239192f9ebde32", "dec-1 8cf51a8bfca3883d", "ref42 ff3add6b3789daef",
                               "set'' cbf29ce484222325"};
  for (const char* each : cases) {
    const std::vector<std::string> words = split(each);
    EXPECT_EQ(hash_of(val(words[0])), combined(std::stoull(words[1], nullptr, 16))) << each;
  }
  // Byte by byte, those of a text with their sign.
  EXPECT_EQ(hash_of(val("bytes'8412fe30'")), combined(range_hash<signed char>({0x12, -2, 0x30})));
  EXPECT_EQ(hash_of(val("x'12fe'")), combined(range_hash<unsigned char>({0x12, 0xFE})));
  EXPECT_EQ(hash_of(SetSpecifier{u"/\u00C4"}), combined(0x6CE9699E8575F30E));
  EXPECT_EQ(hash_of(null()), hash_of(null()));
  EXPECT_THROW(hash_of(valueless()), std::bad_variant_access);
}

TEST(GroupKey, equality_is_that_of_groups) {
  for (const row& each : table("(NULL NULL)(d0 d-0)(f0 f-0)(ref1 ref1)(bytes'' bytes'80')(set'a' set'a')(dec1 dec1)")) {
    EXPECT_TRUE(key_equal(view_of(each[0]), view_of(each[1]))) << spell(each);
    EXPECT_EQ(hash_of(each[0]), hash_of(each[1])) << spell(each);
  }
  for (const row& each :
       table("(dnan dnan)(fnan fnan)(ref1 ref2)(bytes'80fe' bytes'81fe')(x'01' x'0100')(u1 i1)(true u1)")) {
    EXPECT_FALSE(key_equal(view_of(each[0]), view_of(each[1]))) << spell(each);
  }
  const value same = OV_OBJ_REF{1, 2};
  const value other_tag = OV_OBJ_REF{1, 3};
  EXPECT_TRUE(key_equal(view_of(same), view_of(other_tag)));
  EXPECT_EQ(hash_of(same), hash_of(other_tag));
  const value nothing = valueless();
  EXPECT_THROW(key_equal(view_of(nothing), view_of(nothing)), std::bad_variant_access);
}

}  // namespace
}  // namespace tests
