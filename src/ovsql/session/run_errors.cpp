#include "ovsql/session/run_errors.hpp"

#include <new>
#include <string>
#include <typeinfo>

#include "ov_sql_executor/errors/db_exception.hpp"
#include "ov_sql_executor/errors/describe.hpp"
#include "ov_sql_executor/errors/ov_exception.hpp"
#include "ovcoredb/database.hpp"
#include "ovcoredb/ovcoredb.h"
#include "ovhost/csv/csv_loader.hpp"
#include "ovhost/schema/catalog.hpp"
#include "ovhost/schema/schema.hpp"

namespace ovsql {
namespace {

constexpr std::uint32_t out_of_range = 7041;
constexpr std::uint32_t wrong_type = 7020;
constexpr std::uint32_t no_conversion = 1027;
constexpr std::uint32_t bad_pattern = 7042;
constexpr std::uint32_t not_possible = 7022;

[[noreturn]] void raise_code(std::uint32_t code, const std::vector<syntax::place>& divisions) {
  switch (code) {
    case out_of_range: {
      const bool divides = !divisions.empty();
      throw error(error_kind::value,
                  divides ? "division by zero, or a number is out of range" : "a number is out of range",
                  divisions.size() == 1 ? divisions.front().begin : error::nowhere);
    }
    case wrong_type:
    case no_conversion:
      throw error(error_kind::type, "a value is of a type that does not fit its use");
    case ORV_BAD_ITERATOR:
      throw error(error_kind::usage, "the database was written to while the statement ran");
    default:
      throw error(error_kind::engine, error_handling::describe(code));
  }
}

}  // namespace

void raise_as_error(const std::exception_ptr& thrown, const std::vector<syntax::place>& divisions) {
  try {
    std::rethrow_exception(thrown);
  } catch (const error&) {
    throw;
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const db_util::db_exception& raised) {
    raise_code(raised.code, divisions);
  } catch (const error_handling::OVException& raised) {
    if (raised.code == bad_pattern) {
      throw error(error_kind::value, "a LIKE pattern has a backslash before a character that needs none");
    }
    if (raised.code == not_possible) throw error(error_kind::limit, "the statement is nested too deeply");
    throw error(error_kind::engine, error_handling::describe(raised.code));
  } catch (const ovcoredb::unique_violation& raised) {
    throw error(error_kind::constraint, raised.what());
  } catch (const ovhost::csv_error& raised) {
    throw error(error_kind::input, raised.what());
  } catch (const ovhost::schema_error& raised) {
    throw error(error_kind::name, raised.what());
  } catch (const ovhost::unknown_name& raised) {
    throw error(error_kind::name, raised.what());
  } catch (const std::bad_cast&) {
    throw error(error_kind::limit, "the statement has more than 32,768 literals, parameters or columns");
  } catch (const std::exception& raised) {
    throw error(error_kind::engine, raised.what());
  }
}

}  // namespace ovsql
