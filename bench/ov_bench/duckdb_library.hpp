// The functions of DuckDB's C interface that are used here, found in its shared library at run time.
#ifndef BENCH_OV_BENCH_DUCKDB_LIBRARY_HPP_
#define BENCH_OV_BENCH_DUCKDB_LIBRARY_HPP_

#include <dlfcn.h>

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>

namespace bench {

// As the interface declares it: five fields that are no longer used, and what the library keeps.
struct duckdb_result {
  std::uint64_t unused_counts[3];
  void* unused_columns;
  char* unused_message;
  void* internal;
};

// A text of up to twelve bytes lies in the value itself.
union duckdb_text {
  struct {
    std::uint32_t length;
    char bytes[12];
  } inlined;
  struct {
    std::uint32_t length;
    char prefix[4];
    const char* bytes;
  } pointed;

  const char* bytes() const { return inlined.length <= sizeof inlined.bytes ? inlined.bytes : pointed.bytes; }
};

enum class duckdb_type : int { bigint = 5, float64 = 11, huge_integer = 16, varchar = 17 };

// All handles are pointers; a state other than 0 is a failure.
class duckdb_library {
  std::unique_ptr<void, int (*)(void*)> library_;

 public:
  explicit duckdb_library(const std::string& file) : library_(dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL), dlclose) {
    if (library_ == nullptr) throw std::runtime_error(std::string("DuckDB: ") + dlerror());
    find(open, "duckdb_open");
    find(close, "duckdb_close");
    find(connect, "duckdb_connect");
    find(disconnect, "duckdb_disconnect");
    find(query, "duckdb_query");
    find(result_error, "duckdb_result_error");
    find(destroy_result, "duckdb_destroy_result");
    find(prepare, "duckdb_prepare");
    find(prepare_error, "duckdb_prepare_error");
    find(destroy_prepare, "duckdb_destroy_prepare");
    find(bind_int64, "duckdb_bind_int64");
    find(execute_prepared, "duckdb_execute_prepared");
    find(column_type, "duckdb_column_type");
    find(fetch_chunk, "duckdb_fetch_chunk");
    find(destroy_data_chunk, "duckdb_destroy_data_chunk");
    find(chunk_size, "duckdb_data_chunk_get_size");
    find(chunk_columns, "duckdb_data_chunk_get_column_count");
    find(chunk_vector, "duckdb_data_chunk_get_vector");
    find(vector_data, "duckdb_vector_get_data");
    find(vector_validity, "duckdb_vector_get_validity");
    find(appender_create, "duckdb_appender_create");
    find(append_null, "duckdb_append_null");
    find(append_int64, "duckdb_append_int64");
    find(append_double, "duckdb_append_double");
    find(append_text, "duckdb_append_varchar_length");
    find(end_row, "duckdb_appender_end_row");
    find(appender_destroy, "duckdb_appender_destroy");
  }

  int (*open)(const char* path, void** database) = nullptr;
  void (*close)(void** database) = nullptr;
  int (*connect)(void* database, void** connection) = nullptr;
  void (*disconnect)(void** connection) = nullptr;
  int (*query)(void* connection, const char* text, duckdb_result* result) = nullptr;
  const char* (*result_error)(duckdb_result* result) = nullptr;
  void (*destroy_result)(duckdb_result* result) = nullptr;
  int (*prepare)(void* connection, const char* text, void** statement) = nullptr;
  const char* (*prepare_error)(void* statement) = nullptr;
  void (*destroy_prepare)(void** statement) = nullptr;
  int (*bind_int64)(void* statement, std::uint64_t position, std::int64_t value) = nullptr;
  int (*execute_prepared)(void* statement, duckdb_result* result) = nullptr;
  duckdb_type (*column_type)(duckdb_result* result, std::uint64_t column) = nullptr;
  void* (*fetch_chunk)(duckdb_result result) = nullptr;
  void (*destroy_data_chunk)(void** chunk) = nullptr;
  std::uint64_t (*chunk_size)(void* chunk) = nullptr;
  std::uint64_t (*chunk_columns)(void* chunk) = nullptr;
  void* (*chunk_vector)(void* chunk, std::uint64_t column) = nullptr;
  void* (*vector_data)(void* vector) = nullptr;
  std::uint64_t* (*vector_validity)(void* vector) = nullptr;  // a bit for each row; null: all have a value
  int (*appender_create)(void* connection, const char* schema, const char* table, void** appender) = nullptr;
  int (*append_null)(void* appender) = nullptr;
  int (*append_int64)(void* appender, std::int64_t value) = nullptr;
  int (*append_double)(void* appender, double value) = nullptr;
  int (*append_text)(void* appender, const char* bytes, std::uint64_t length) = nullptr;
  int (*end_row)(void* appender) = nullptr;
  int (*appender_destroy)(void** appender) = nullptr;

 private:
  template <class Function>
  void find(Function& function, const char* name) {
    function = reinterpret_cast<Function>(dlsym(library_.get(), name));
    if (function == nullptr) throw std::runtime_error(std::string("DuckDB: no function ") + name);
  }
};

}  // namespace bench

#endif  // BENCH_OV_BENCH_DUCKDB_LIBRARY_HPP_
