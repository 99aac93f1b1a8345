// The host's side of the embedded core: define tables and indexes, load objects, open contexts. What is loaded is read
// through the C interface (ovcoredb.h) with the handle of a context.
//
// Conventions
//  1. Misuse (an unknown table, a cell of another type than its column, ...) throws std::invalid_argument that names
//     the table and the column. Every call that throws leaves the database as it was.
//  2. Nothing is written while another thread reads. A write closes the iterators that are open on the database: they
//     answer ORV_BAD_ITERATOR from then on. Reading and writing may alternate freely on one thread.
//  3. Cells lend their bytes for the duration of the call; the database keeps its own copy.
#ifndef OVCOREDB_DATABASE_HPP_
#define OVCOREDB_DATABASE_HPP_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "ovcoredb/ovcoredb.h"

#if defined(__GNUC__)
#define OVCOREDB_API __attribute__((visibility("default")))
#else
#define OVCOREDB_API
#endif

namespace ovcoredb {

// none: a column number that is not used; its cells are empty and reading it is ORV_BAD_COLUMN.
enum class column_type : std::uint8_t {
  none,
  uint64,
  int64,
  decimal,
  float32,
  float64,
  text,
  binary,
  reference,
  boolean
};

// A fixed-point number in millionths, at most 4,398,046,511,103,999,999 of them in magnitude.
struct decimal {
  std::int64_t millionths = 0;
};

// The value of one column of one object; std::monostate is NULL. The alternatives stand in the order of column_type,
// and a cell holds exactly its column's type: there are no conversions. A reference is stored as given, both words,
// whether or not the object exists already (see database::object_count for references to objects that come later).
using cell = std::variant<std::monostate, std::uint64_t, std::int64_t, decimal, float, double, std::u16string_view,
                          std::span<const std::uint8_t>, OV_OBJ_REF, bool>;

struct table_definition {
  // Names the type of the table's objects; no other table has the same. That of a derived table begins with its base's.
  // Since "is a kind of" is decided by the beginning, end each name with a character that no name holds: u"/Place/",
  // u"/Place/City/".
  std::u16string set_specifier{};
  // The types of the table's own columns, from number 2 on. Columns 0 (the object's number, uint64) and 1 (its set
  // specifier) are there in every table and take no cell.
  std::vector<column_type> columns{};
  std::uint16_t base = 0;  // tag of the table that this one derives from, 0 for none
  std::uint16_t tag = 0;   // 0: one above the highest in use
};

struct key_column {
  std::uint32_t column = 0;
  bool ascending = true;
  std::uint16_t table = 0;  // the table that declares the column: 0 for the index's table, else one it derives from
};

struct index_definition {
  std::uint16_t table = 0;            // the index holds the objects of this table and of those derived from it
  std::vector<key_column> columns{};  // in key order; float32 and float64 columns cannot be keys
  bool unique = false;                // no two objects with equal keys; a key that holds a NULL equals none
  std::uint64_t handle = 0;           // 1 to 65535; 0: one above the highest in use
};

// An object that was to be inserted has the key of another one in a unique index.
class OVCOREDB_API unique_violation : public std::runtime_error {
 public:
  unique_violation(std::uint64_t index, std::uint64_t holder);
  unique_violation(const unique_violation&) = default;
  unique_violation& operator=(const unique_violation&) = default;
  ~unique_violation() override;

  std::uint64_t index() const { return index_; }    // handle of the index
  std::uint64_t holder() const { return holder_; }  // number of the object that holds the key

 private:
  std::uint64_t index_;
  std::uint64_t holder_;
};

class context;
struct database_state;

class OVCOREDB_API database {
 public:
  database();
  ~database();  // contexts are gone before their database
  database(const database&) = delete;
  database& operator=(const database&) = delete;

  // Returns the tag of the new table.
  std::uint16_t create_table(const table_definition& definition);

  // Returns the handle of the new index. Objects that exist already are entered; throws unique_violation when two of
  // them share a key of a unique index.
  std::uint64_t create_index(const index_definition& definition);

  // Adds one object. cells: one for each own column of the table's outermost base, in column order, then those of the
  // next derived table, and so on down to the table itself; unused columns count. Objects are numbered from 1 in the
  // order of insertion. The second word of the result is the table's tag. Throws unique_violation, and
  // std::length_error beyond 2,147,483,646 objects.
  OV_OBJ_REF insert(std::uint16_t table, std::span<const cell> cells);

  // How many cells insert takes for the table.
  std::size_t cell_count(std::uint16_t table) const;

  // The number of objects, which is the number of the last one: the next has object_count() + 1.
  std::uint64_t object_count() const;

  // Removes the objects with numbers above `count`; std::invalid_argument when there are fewer. Numbers are used again.
  void remove_after(std::uint64_t count);

 private:
  friend class context;
  friend class savepoint;
  std::unique_ptr<database_state> state_;
};

// Takes back, when it goes, the objects, indexes and tables that were put into a database since it was made, unless it
// was told to keep them. Who defines or loads several things makes one, so that nothing is left half done. Taking back
// asks for no memory. Savepoints of a database go in the reverse order of their making.
class OVCOREDB_API savepoint {
 public:
  explicit savepoint(database& database);  // which outlives it
  ~savepoint();
  savepoint(const savepoint&) = delete;
  savepoint& operator=(const savepoint&) = delete;

  void keep();

 private:
  database_state* state_;  // null: nothing is taken back
  std::uint64_t objects_;
  std::size_t indexes_;
  std::size_t tables_;
};

// A context to read a database with, for one thread at a time. At most 4095 exist at once in the process.
class OVCOREDB_API context {
 public:
  explicit context(const database& database);  // std::runtime_error when there are too many
  ~context();                                  // its iterators are gone with it; the handle is refused from then on
  context(const context&) = delete;
  context& operator=(const context&) = delete;

  std::uint64_t handle() const { return handle_; }

 private:
  std::uint64_t handle_;
};

}  // namespace ovcoredb

#endif  // OVCOREDB_DATABASE_HPP_
