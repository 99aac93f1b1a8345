// The database that random plans run over: table "p" with a column of every kind, "q", which derives from it, and rows
// from the input's bytes.
#ifndef FUZZ_WORLD_HPP_
#define FUZZ_WORLD_HPP_

#include <vector>

#include "fuzz/choices.hpp"
#include "ovhost/plans/query.hpp"
#include "ovhost/schema/schema.hpp"
#include "ovhost/schema/session.hpp"

namespace fuzz {

struct property {
  const char* name;
  ovhost::value_kind kind;
};
inline constexpr property properties[] = {{"id", ovhost::value_kind::int64},    {"n", ovhost::value_kind::int64},
                                          {"u", ovhost::value_kind::uint64},    {"d", ovhost::value_kind::decimal},
                                          {"t", ovhost::value_kind::text},      {"b", ovhost::value_kind::boolean},
                                          {"r", ovhost::value_kind::reference}, {"x", ovhost::value_kind::binary},
                                          {"g", ovhost::value_kind::float64},   {"f", ovhost::value_kind::float32}};

struct index {
  const char* name;
  std::vector<ovhost::index_column> columns;
  std::vector<ovhost::value_kind> kinds;  // of the columns
};
const std::vector<index>& indexes();

class world {
 public:
  static world& only();

  // Replaces the rows of both tables.
  void refill(choices& from);

  std::uint64_t context() const { return reading_.context(); }

 private:
  world();
  void insert(const char* table, std::int64_t id, choices& from);

  ovcoredb::database database_;
  ovhost::schema definitions_{database_};
  ovhost::session reading_{database_};
  std::uint64_t defined_ = 0;  // objects of the metadata
  OV_OBJ_REF last_{};
};

// A value of this kind from a small list with the extremes in it, so that many are alike.
ov::sql_executor::value any_value(ovhost::value_kind kind, choices& from);

}  // namespace fuzz

#endif  // FUZZ_WORLD_HPP_
