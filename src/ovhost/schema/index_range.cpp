#include "ovhost/schema/index_range.hpp"

#include "ov_sql_executor/database/obj_ref.hpp"
#include "ovhost/schema/require_ok.hpp"

namespace ovhost {
namespace {

class index_range {
 public:
  index_range(std::uint64_t context, std::uint64_t index, const index_key& key) {
    const std::vector<std::uint8_t> bytes = key.bytes();
    require_ok(orv_context_create_iterator(context, index, inclusive, bytes.data(), bytes.data(), &iterator_),
               "opening a range");
  }
  ~index_range() { orv_iterator_free(iterator_); }
  index_range(const index_range&) = delete;
  index_range& operator=(const index_range&) = delete;

  std::optional<OV_OBJ_REF> next() {
    ORV_REFERENCE_VALUE reference{};
    require_ok(orv_iterator_next(iterator_, &reference), "stepping through a range");
    if (reference.object_number == 0) return std::nullopt;
    return db_util::to_obj_ref(reference);
  }

 private:
  static constexpr std::uint32_t inclusive = ORV_ITERATOR_FIRST_INCLUSIVE | ORV_ITERATOR_LAST_INCLUSIVE;
  std::uint64_t iterator_ = 0;
};

}  // namespace

std::vector<OV_OBJ_REF> objects_with_key(std::uint64_t context, std::uint64_t index, const index_key& key) {
  index_range range(context, index, key);
  std::vector<OV_OBJ_REF> objects;
  while (const auto object = range.next()) objects.push_back(*object);
  return objects;
}

std::optional<OV_OBJ_REF> first_with_key(std::uint64_t context, std::uint64_t index, const index_key& key) {
  return index_range(context, index, key).next();
}

}  // namespace ovhost
