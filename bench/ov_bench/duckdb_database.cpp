#include "duckdb_database.hpp"

#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "duckdb_library.hpp"

namespace bench {

namespace {

[[noreturn]] void fail(const std::string& message) { throw std::runtime_error("DuckDB: " + message); }

std::string words(const char* message) { return message == nullptr ? "unknown failure" : message; }

class owned_result {
 public:
  explicit owned_result(const duckdb_library& library) : library_(library) {}
  ~owned_result() { library_.destroy_result(&result_); }
  owned_result(const owned_result&) = delete;
  owned_result& operator=(const owned_result&) = delete;

  duckdb_result* get() { return &result_; }

 private:
  const duckdb_library& library_;
  duckdb_result result_{};
};

class statement {
 public:
  statement(const duckdb_library& library, void* connection, const std::string& text) : library_(library) {
    if (library_.prepare(connection, text.c_str(), &handle_) != 0) {
      const std::string message = words(library_.prepare_error(handle_));
      library_.destroy_prepare(&handle_);
      fail(message + " in " + text);
    }
  }
  ~statement() { library_.destroy_prepare(&handle_); }
  statement(const statement&) = delete;
  statement& operator=(const statement&) = delete;

  void bind(std::int64_t value) const {
    if (library_.bind_int64(handle_, 1, value) != 0) fail("a parameter was not taken");
  }

  void read_rows(outcome& so_far) const {
    owned_result result(library_);
    if (library_.execute_prepared(handle_, result.get()) != 0) fail(words(library_.result_error(result.get())));
    const auto destroy = [this](void* chunk) { library_.destroy_data_chunk(&chunk); };
    while (const std::unique_ptr<void, decltype(destroy)> chunk{library_.fetch_chunk(*result.get()), destroy}) {
      const std::uint64_t rows = library_.chunk_size(chunk.get());
      so_far.rows += rows;
      for (std::uint64_t i = 0; i < library_.chunk_columns(chunk.get()); ++i) {
        read_column(library_.column_type(result.get(), i), library_.chunk_vector(chunk.get(), i), rows, so_far);
      }
    }
  }

 private:
  // Looks at every value, of doubles nothing but that they are there.
  void read_column(duckdb_type type, void* vector, std::uint64_t rows, outcome& so_far) const {
    const void* const data = library_.vector_data(vector);
    const std::uint64_t* const valid = library_.vector_validity(vector);
    for (std::uint64_t row = 0; row < rows; ++row) {
      if (valid != nullptr && (valid[row / 64] >> row % 64 & 1) == 0) continue;
      switch (type) {
        case duckdb_type::bigint:
          so_far.sum += static_cast<const std::uint64_t*>(data)[row];
          break;
        case duckdb_type::huge_integer:
          so_far.sum += static_cast<const std::uint64_t*>(data)[2 * row];
          break;
        case duckdb_type::varchar:
          touch(static_cast<const duckdb_text*>(data)[row].bytes());
          break;
        case duckdb_type::float64:
          touch(static_cast<const char*>(data) + sizeof(double) * row);
          break;
        default:
          fail("a column of a type that is not expected");
      }
    }
  }
  static void touch(const char* bytes) { [[maybe_unused]] const volatile char first = *bytes; }

  const duckdb_library& library_;
  void* handle_ = nullptr;
};

std::string exchanged(std::string text, const std::string& from, const std::string& to) {
  for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) {
    text.replace(at, from.size(), to);
  }
  return text;
}

// SQLite's integers and reals have 64 bits by other names.
std::string with_wide_types(const std::string& sql) {
  return exchanged(exchanged(sql, "INTEGER", "BIGINT"), "REAL", "DOUBLE");
}

}  // namespace

duckdb_database::duckdb_database(const std::string& library_file)
    : library_(std::make_unique<duckdb_library>(library_file)) {
  if (library_->open(nullptr, &database_) != 0) fail("the database did not open");
  if (library_->connect(database_, &connection_) != 0) {
    library_->close(&database_);
    fail("the database was not connected");
  }
}

// What was opened is closed by the destructor if it cannot be filled.
duckdb_database::duckdb_database(const std::string& library_file, const sample& data) : duckdb_database(library_file) {
  execute("SET threads = 1");
  execute("SET integer_division = true");
  for (const char* table : {"item", "owner", "pair", "document", "country", "state", "town", "trip"})
    copy_table(table, data);
  execute("CREATE INDEX by_a ON item(a)");
  execute("CREATE INDEX by_k ON trip(k)");
  execute("CREATE INDEX by_town ON trip(town_id)");
  execute("CREATE INDEX by_state ON town(state_id)");
}

duckdb_database::~duckdb_database() {
  library_->disconnect(&connection_);
  library_->close(&database_);
}

void duckdb_database::execute(const std::string& statement) {
  owned_result result(*library_);
  if (library_->query(connection_, statement.c_str(), result.get()) != 0) {
    fail(words(library_->result_error(result.get())) + " in " + statement);
  }
}

void duckdb_database::copy_table(const std::string& name, const sample& data) {
  const sqlite_statement definition(data.sqlite(), "SELECT sql FROM sqlite_master WHERE name = '" + name + "'");
  sqlite3_step(definition.get());
  const std::string sql = reinterpret_cast<const char*>(sqlite3_column_text(definition.get(), 0));
  execute(with_wide_types(sql));

  void* appender = nullptr;
  int failures = library_->appender_create(connection_, nullptr, name.c_str(), &appender);
  const sqlite_statement rows(data.sqlite(), "SELECT * FROM " + name);
  int step = SQLITE_ROW;
  while (failures == 0 && (step = sqlite3_step(rows.get())) == SQLITE_ROW) {
    for (int i = 0; i < sqlite3_column_count(rows.get()); ++i) {
      switch (sqlite3_column_type(rows.get(), i)) {
        case SQLITE_INTEGER:
          failures |= library_->append_int64(appender, sqlite3_column_int64(rows.get(), i));
          break;
        case SQLITE_FLOAT:
          failures |= library_->append_double(appender, sqlite3_column_double(rows.get(), i));
          break;
        case SQLITE_NULL:
          failures |= library_->append_null(appender);
          break;
        default:
          failures |= library_->append_text(appender, reinterpret_cast<const char*>(sqlite3_column_text(rows.get(), i)),
                                            static_cast<std::uint64_t>(sqlite3_column_bytes(rows.get(), i)));
      }
    }
    failures |= library_->end_row(appender);
  }
  failures |= library_->appender_destroy(&appender);  // hands over what is still held back
  if (failures != 0 || step != SQLITE_DONE) fail("table " + name + " was not filled");
}

prepared duckdb_database::prepare(const shape& of, const sample& data) const {
  const std::string sql = with_wide_types(sql_of(of, data));
  const auto make = [this, sql] { return std::make_shared<const statement>(*library_, connection_, sql); };
  return [of, make, ready = make(), parameters = parameters_of(of, data)]() mutable {
    outcome result;
    for (const std::int64_t parameter : parameters) {
      if (of.make_again) ready = make();
      if (of.parameters) ready->bind(parameter);
      ready->read_rows(result);
    }
    return result;
  };
}

}  // namespace bench
