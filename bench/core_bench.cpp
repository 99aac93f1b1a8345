// The embedded core beside the plain things it stands in for: a loop over a vector, a B-tree map, SQLite in memory.
// Each pair is measured in turns within one run; the medians and their ratio are printed.
#include <absl/container/btree_map.h>
#include <sqlite3.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <functional>
#include <memory>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "ovcoredb/database.hpp"

namespace {

constexpr std::size_t object_count = 1'000'000;
constexpr int repetitions = 11;

void require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "core_bench: %s failed\n", what);
  std::exit(1);
}

// ---- The rows: id (unique, in random order), name, quantity, price, ratio, owner ------------------------------------

struct source_row {
  std::uint64_t id;
  std::string name;
  std::u16string wide_name;
  std::int64_t quantity;
  std::int64_t price;
  double ratio;
  std::uint64_t owner;
};

std::vector<source_row> make_rows() {
  std::mt19937_64 random(20240607);
  std::vector<std::uint64_t> ids(object_count);
  std::iota(ids.begin(), ids.end(), 1);
  std::shuffle(ids.begin(), ids.end(), random);
  std::vector<source_row> rows;
  for (const std::uint64_t id : ids) {
    std::string name(6 + random() % 13, ' ');
    for (char& c : name) c = static_cast<char>('a' + random() % 26);
    const auto quantity = static_cast<std::int64_t>(random() % 10'000);
    const auto price = static_cast<std::int64_t>(random() % 1'000'000'000);
    rows.push_back(
        {id, name, {name.begin(), name.end()}, quantity, price, 1.0 / static_cast<double>(id), 1 + random() % 50'000});
  }
  return rows;
}

struct core_database {
  enum : std::uint32_t { id = 2, name, quantity, price, ratio, owner };

  ovcoredb::database database;
  std::uint16_t table = database.create_table(
      {.set_specifier = u"/Item/",
       .columns = {ovcoredb::column_type::uint64, ovcoredb::column_type::text, ovcoredb::column_type::int64,
                   ovcoredb::column_type::decimal, ovcoredb::column_type::float64, ovcoredb::column_type::reference}});
  std::uint64_t by_id = database.create_index({.table = table, .columns = {{id}}, .unique = true});
  std::uint64_t by_name = database.create_index({.table = table, .columns = {{name}}});

  void load(const std::vector<source_row>& rows) {
    for (const source_row& row : rows) {
      const std::array<ovcoredb::cell, 6> cells = {row.id,       std::u16string_view(row.wide_name),
                                                   row.quantity, ovcoredb::decimal{row.price},
                                                   row.ratio,    OV_OBJ_REF{row.owner, table}};
      database.insert(table, cells);
    }
  }
};

class sqlite_database {
 public:
  sqlite_database() {
    require(sqlite3_open(":memory:", &database_) == SQLITE_OK, "opening SQLite");
    run("CREATE TABLE item(id INTEGER, name TEXT, quantity INTEGER, price INTEGER, ratio REAL, owner INTEGER)");
    run("CREATE UNIQUE INDEX by_id ON item(id)");
    run("CREATE INDEX by_name ON item(name)");
  }
  ~sqlite_database() { sqlite3_close(database_); }
  sqlite_database(const sqlite_database&) = delete;
  sqlite_database& operator=(const sqlite_database&) = delete;

  void load(const std::vector<source_row>& rows) {
    run("BEGIN");
    sqlite3_stmt* insert = nullptr;
    sqlite3_prepare_v2(database_, "INSERT INTO item VALUES(?,?,?,?,?,?)", -1, &insert, nullptr);
    for (const source_row& row : rows) {
      sqlite3_bind_int64(insert, 1, static_cast<std::int64_t>(row.id));
      sqlite3_bind_text(insert, 2, row.name.data(), static_cast<int>(row.name.size()), SQLITE_STATIC);
      sqlite3_bind_int64(insert, 3, row.quantity);
      sqlite3_bind_int64(insert, 4, row.price);
      sqlite3_bind_double(insert, 5, row.ratio);
      sqlite3_bind_int64(insert, 6, static_cast<std::int64_t>(row.owner));
      require(sqlite3_step(insert) == SQLITE_DONE, "inserting into SQLite");
      sqlite3_reset(insert);
    }
    sqlite3_finalize(insert);
    run("COMMIT");
  }

 private:
  void run(const char* statement) {
    require(sqlite3_exec(database_, statement, nullptr, nullptr, nullptr) == SQLITE_OK, statement);
  }

  sqlite3* database_ = nullptr;
};

// ---- Measuring ------------------------------------------------------------------------------------------------------

// Of processor time: what other programs take from the machine does not count.
double seconds_of(const std::function<void()>& work) {
  const auto now = [] {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
  };
  const double start = now();
  work();
  return now() - start;
}

double median(std::vector<double> values) {
  std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2), values.end());
  return values[values.size() / 2];
}

// `wanted` is the ratio that the core is built to stay below.
void print(const char* what, const char* unit, double ours, double theirs, double wanted) {
  std::printf("%-58s %8.2f %8.2f %-6s ratio %5.2f (goal: below %.0f)\n", what, ours, theirs, unit, ours / theirs,
              wanted);
}

// Both pieces of work do `count` steps, in turns.
void compare(const char* what, std::size_t count, double wanted, const std::function<void()>& ours,
             const std::function<void()>& theirs) {
  std::vector<double> our_times;
  std::vector<double> their_times;
  for (int i = 0; i < repetitions; ++i) {
    our_times.push_back(seconds_of(ours));
    their_times.push_back(seconds_of(theirs));
  }
  const double scale = 1e9 / static_cast<double>(count);
  print(what, "ns", median(our_times) * scale, median(their_times) * scale, wanted);
}

std::uint64_t status_field(const std::string& name) {
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;) {
    std::uint64_t kilobytes = 0;
    if (word == name && status >> kilobytes) return kilobytes;
  }
  return 0;
}

struct load_cost {
  double seconds;
  double megabytes;  // how much the peak of the resident memory lies above what was there before
};

// In a process of its own, so that neither load inherits the other's memory.
load_cost cost_of(const std::function<void()>& load) {
  int ends[2];
  require(pipe(ends) == 0, "pipe");
  const pid_t child = fork();
  require(child >= 0, "fork");
  if (child == 0) {
    const std::uint64_t before = status_field("VmRSS:");
    load_cost cost{seconds_of(load), 0};
    cost.megabytes = static_cast<double>(status_field("VmHWM:") - before) / 1024;
    require(write(ends[1], &cost, sizeof cost) == sizeof cost, "write");
    _exit(0);
  }
  load_cost cost{};
  close(ends[1]);  // so that a child that dies is seen to
  require(read(ends[0], &cost, sizeof cost) == sizeof cost, "the load");
  waitpid(child, nullptr, 0);
  close(ends[0]);
  return cost;
}

void compare_loads(const std::vector<source_row>& rows) {
  std::vector<double> our_times, their_times, our_memory, their_memory;
  for (int i = 0; i < 5; ++i) {
    // Neither is torn down: the child ends with it.
    const load_cost ours = cost_of([&] { (new core_database)->load(rows); });
    const load_cost theirs = cost_of([&] { (new sqlite_database)->load(rows); });
    our_times.push_back(ours.seconds * 1000);
    our_memory.push_back(ours.megabytes);
    their_times.push_back(theirs.seconds * 1000);
    their_memory.push_back(theirs.megabytes);
  }
  print("load 6 columns, 2 indexes: core, SQLite", "ms", median(our_times), median(their_times), 3);
  print("  peak resident memory of it", "MB", median(our_memory), median(their_memory), 1);
}

// ---- Walks and lookups ----------------------------------------------------------------------------------------------

// The least that a call through a pointer can do, and the same in the shape of a getter.
using reader = std::uint64_t (*)(const std::vector<std::uint64_t>&, std::size_t);
std::uint64_t read_element(const std::vector<std::uint64_t>& values, std::size_t position) { return values[position]; }
using getter = std::uint32_t (*)(const std::vector<std::uint64_t>&, std::size_t, std::uint64_t*);
std::uint32_t get_element(const std::vector<std::uint64_t>& values, std::size_t position, std::uint64_t* out) {
  if (position >= values.size()) return ORV_BAD_OBJECT;
  *out = values[position];
  return ORV_OK;
}
// Volatile, so that the calls remain calls.
volatile reader chosen_reader = read_element;
volatile getter chosen_getter = get_element;

volatile std::uint64_t sink;

std::uint64_t walk_and_read(std::uint64_t context, std::uint64_t index, std::uint32_t column) {
  const std::uint8_t everything[] = {0xC0, 0, 0, 0, 0, 0, 0, 0};
  std::uint64_t iterator = 0;
  std::uint64_t sum = 0;
  require(orv_context_create_iterator(context, index, 0x30, everything, everything, &iterator) == 0, "a walk");
  for (ORV_REFERENCE_VALUE reference; orv_iterator_next(iterator, &reference) == 0 && reference.object_number != 0;) {
    std::uint64_t value = 0;
    orv_context_get_ulong(context, reference.object_number, reference.high_part << 16 | reference.low_part, column,
                          &value);
    sum += value;
  }
  orv_iterator_free(iterator);
  return sum;
}

void compare_walks(core_database& core, const std::vector<source_row>& rows) {
  const std::uint64_t in_load_order = core.database.create_index({.table = core.table, .columns = {{0}}});
  const ovcoredb::context context(core.database);
  std::vector<std::uint64_t> values;
  for (const source_row& row : rows) values.push_back(row.id);
  std::vector<std::size_t> by_id(object_count);
  for (std::size_t i = 0; i < object_count; ++i) by_id[rows[i].id - 1] = i;
  const std::uint64_t total = std::accumulate(values.begin(), values.end(), std::uint64_t{0});
  const auto walk = [&](std::uint64_t index) {
    require(walk_and_read(context.handle(), index, core_database::id) == total, "a walk's sum");
  };
  const auto walk_in_load_order = [&] { walk(in_load_order); };
  compare("walk in load order + number: core, vector by pointer", object_count, 3, walk_in_load_order, [&] {
    const reader read = chosen_reader;
    std::uint64_t sum = 0;
    for (std::size_t i = 0; i < object_count; ++i) sum += read(values, i);
    sink = sum;
  });
  compare("  the same, vector by pointer with status and out", object_count, 3, walk_in_load_order, [&] {
    const getter get = chosen_getter;
    std::uint64_t sum = 0;
    for (std::size_t i = 0; i < object_count; ++i) {
      std::uint64_t value = 0;
      if (get(values, i, &value) == ORV_OK) sum += value;
    }
    sink = sum;
  });
  compare(
      "walk in random order + number: core, vector so permuted", object_count, 3, [&] { walk(core.by_id); },
      [&] {
        const reader read = chosen_reader;
        std::uint64_t sum = 0;
        for (const std::size_t i : by_id) sum += read(values, i);
        sink = sum;
      });
}

std::array<std::uint8_t, 16> key_of(std::uint64_t value) {
  std::array<std::uint8_t, 16> key = {0x28};
  for (std::size_t i = 0; i < 8; ++i) key[8 - i] = static_cast<std::uint8_t>(value >> (8 * i));
  key[9] = 0xC0;
  return key;
}

void compare_lookups(const core_database& core, const std::vector<source_row>& rows) {
  const ovcoredb::context context(core.database);
  absl::btree_map<std::uint64_t, std::uint64_t> map;
  for (std::size_t i = 0; i < rows.size(); ++i) map.emplace(rows[i].id, i + 1);
  std::mt19937_64 random(7);
  std::vector<std::uint64_t> wanted(object_count);
  for (std::uint64_t& id : wanted) id = 1 + random() % object_count;
  compare(
      "lookup of a random unique key: core, btree_map", wanted.size(), 2,
      [&] {
        std::uint64_t sum = 0;
        for (const std::uint64_t id : wanted) {
          const auto key = key_of(id);
          std::uint64_t iterator = 0;
          ORV_REFERENCE_VALUE reference{};
          orv_context_create_iterator(context.handle(), core.by_id, 0x70, key.data(), key.data(), &iterator);
          orv_iterator_next(iterator, &reference);
          orv_iterator_free(iterator);
          sum += reference.object_number;
        }
        sink = sum;
      },
      [&] {
        std::uint64_t sum = 0;
        for (const std::uint64_t id : wanted) {
          auto found = map.find(id);
          sum += found->second;
          if (++found == map.end()) sum += 1;
        }
        sink = sum;
      });
}

}  // namespace

int main() {
  const std::vector<source_row> rows = make_rows();
  std::printf("%zu objects; medians\n", object_count);
  compare_loads(rows);
  core_database core;
  core.load(rows);
  compare_walks(core, rows);
  compare_lookups(core, rows);
}
