// The same generated rows in the embedded core and in SQLite.
#ifndef BENCH_OV_BENCH_SAMPLE_HPP_
#define BENCH_OV_BENCH_SAMPLE_HPP_

#include <cstdint>
#include <memory>
#include <string>

#include "ovcoredb/database.hpp"
#include "ovhost/schema/session.hpp"
#include "sqlite_database.hpp"

namespace bench {

// Table item, with `rows` objects, in the order of their ids:
//   id     0, 1, 2, ...; unique index by_id (in SQLite the primary key)
//   a      random below rows; index by_a
//   v      random below 1,000,000
//   b, c   random below 1,000
//   price, tax  decimals with two places
//   name   12 random letters; note: words, 30 to 40 letters; word: one of 1,000 of 8 letters
//   tens, thousands, many  keys of 10, 10,000 and rows / 2 groups
//   owner  the id of an owner
//   half   the id where that is odd, otherwise NULL
// Table owner: id (unique index by_id), name; one for ten items.
// Table pair: id (unique index by_id) and k below 1,000; 1,000 objects.
// Table document: id (unique index by_id) and body, 200 letters; one for a hundred items.
// Table trip, with `rows` objects: id (unique index by_id); town, a reference (index by_town), and town_id, its id; k
// random below rows / 4 (index by_k); half and tenth, random below 1,000,000, NULL but in one of two and one of ten; c
// below 1,000.
// Tables town, state, country: a tenth of the one before; id (unique index by_id) and name; towns (index by_state) and
// states also a reference to one of the next table, and its id.
// SQLite has no references: its indexes are those of the ids.
class sample {
 public:
  explicit sample(std::size_t rows);

  std::size_t rows() const { return rows_; }
  std::uint64_t context() const { return session_->context(); }
  const ovcoredb::database& core() const { return core_; }
  sqlite3* sqlite() const { return sqlite_.get(); }

 private:
  std::size_t rows_;
  ovcoredb::database core_;
  sqlite_database sqlite_;
  std::unique_ptr<ovhost::session> session_;
};

inline constexpr std::size_t pair_rows = 1'000;

}  // namespace bench

#endif  // BENCH_OV_BENCH_SAMPLE_HPP_
