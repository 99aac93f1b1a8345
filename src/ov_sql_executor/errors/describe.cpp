#include "ov_sql_executor/errors/describe.hpp"

#include "ov_sql_executor/errors/db_exception.hpp"
#include "ov_sql_executor/errors/ov_exception.hpp"
#include "ovcoredb/ovcoredb.h"

namespace error_handling {

namespace {

struct description {
  std::uint32_t code;
  const char* words;
};

constexpr description descriptions[] = {
    {ORV_OK, "success"},
    {db_util::unsupported_conversion, "no conversion between these types"},
    {db_util::key_too_long, "an index key that is too long"},
    {db_util::type_error, "an operand of a type that the operation does not accept"},
    {db_util::out_of_range, "a number out of range, a division by zero, or a NaN where an order is asked for"},
    {internal_error, "a column that is not in scope, or a projection item that is no column"},
    {not_implemented, "not supported, or nested too deeply"},
    {bad_escape, "an escape character that no special character follows"},
    {ORV_NO_VALUE, "a column that holds no value"},
    {ORV_BAD_CONTEXT, "no such context"},
    {ORV_BAD_INDEX, "no such index"},
    {ORV_BAD_ITERATOR, "no such iterator"},
    {ORV_BAD_OBJECT, "no such object"},
    {ORV_BAD_COLUMN, "no such column, or a reference with the tag of another table"},
    {ORV_TYPE_MISMATCH, "a column of another type"},
    {ORV_BAD_KEY, "an index key that does not fit the index"},
    {ORV_BAD_ARGUMENT, "an argument that the core does not accept"},
    {ORV_TOO_MANY_ITERATORS, "too many open iterators"},
    {ORV_BAD_TEXT, "bytes that are not an encoded text"},
    {ORV_OUT_OF_MEMORY, "the core is out of memory"},
};

}  // namespace

const char* describe(std::uint32_t code) noexcept {
  for (const description& each : descriptions) {
    if (each.code == code) return each.words;
  }
  return "a status of the core";
}

}  // namespace error_handling
