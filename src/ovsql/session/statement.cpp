#include "ovsql/session/statement.hpp"

#include <limits>
#include <utility>

#include "ovhost/values/text.hpp"
#include "ovhost/values/value_words.hpp"
#include "ovsql/session/run_errors.hpp"
#include "ovsql/session/statement_state.hpp"
#include "ovsql/syntax/parser.hpp"

namespace ovsql {
namespace {

// Calls a function with the statement's tree, whose places are those of the script that it was taken from.
template <class Function>
void with_tree(const statement_state& of, const Function& function) {
  syntax::memory memory;
  std::size_t next = 0;
  try {
    function(*syntax::parse(of.sql, next, memory));
  } catch (const error& raised) {
    if (raised.position() == error::nowhere) throw;
    throw error(raised.kind(), raised.what(), raised.position() + of.offset);
  }
}

std::vector<value> bound_parameters(const statement_state& of) {
  std::vector<value> values;
  for (std::size_t at = 0; at < of.parameters.size(); ++at) {
    if (!of.parameters[at]) {
      const auto& all = of.code->names.parameters();
      const std::string name = at < all.size() && !all[at].name.empty() ? ":" + all[at].name : std::to_string(at + 1);
      throw error(error_kind::usage, "parameter " + name + " has no value");
    }
    values.push_back(*of.parameters[at]);
  }
  return values;
}

struct other_statement {
  database_state& db;
  source_text from;

  std::uint64_t operator()(const syntax::create_table& tree) const {
    if (tree.as != nullptr) return define_as(db, tree, from);
    define(db, tree);
    return 0;
  }
  std::uint64_t operator()(const syntax::create_index& tree) const {
    define(db, tree);
    return 0;
  }
  std::uint64_t operator()(const syntax::create_view& tree) const {
    define(db, tree, from);
    return 0;
  }
  std::uint64_t operator()(const syntax::drop& tree) const {
    drop(db, tree);
    return 0;
  }
  std::uint64_t operator()(const syntax::copy_from& tree) const { return copy(db, tree); }
  template <class Other>
  std::uint64_t operator()(const Other&) const {
    return 0;
  }
};

// The types of the parameters' values.
std::vector<value_kind> kinds_of(const statement_state& of) {
  std::vector<value_kind> kinds;
  for (const std::optional<value>& each : of.parameters) {
    kinds.push_back(each ? static_cast<value_kind>(each->index()) : value_kind::null);
  }
  return kinds;
}

void compile_again(statement_state& of, std::vector<value_kind> kinds) {
  with_tree(of, [&](const syntax::statement& tree) { of.code = compile(*of.db, tree, of.sql, kinds); });
  const auto offset = static_cast<std::uint32_t>(of.offset);
  for (syntax::place& each : of.code->names.divisions) each = {each.begin + offset, each.end + offset};
  of.version = of.db->version;
  of.kinds = std::move(kinds);
}

void start(statement_state& of) {
  database_state& db = *of.db;
  std::vector<value_kind> kinds = kinds_of(of);
  if (of.version != db.version || of.kinds != kinds) compile_again(of, std::move(kinds));
  of.changes = 0;
  of.is_open = true;
  if (of.code->is_explanation) {
    of.explained = 0;
  } else if (!of.code->table.empty()) {
    of.changes = insert(db, *of.code, bound_parameters(of));
  } else if (of.code->plan) {
    of.running = std::make_unique<run>(*of.code->plan, bound_parameters(of), db.context->handle());
  } else {
    with_tree(of, [&](const syntax::statement& tree) {
      of.changes = std::visit(other_statement{db, {of.sql, tree.question_marks}}, tree.is);
    });
  }
}

bool next_row(statement_state& of) {
  if (of.code->is_explanation) {
    if (of.explained == of.code->words.size()) return false;
    of.line.assign(1, ovhost::encode(ovhost::utf16(of.code->words[of.explained++])));
    return true;
  }
  return of.running != nullptr && of.running->rows.next();
}

void end(statement_state& of) {
  of.running.reset();
  of.is_open = false;
  of.has_row = false;
}

[[noreturn]] void refuse_conversion(const value& of, std::string_view to) {
  throw error(error_kind::type, ovhost::cell_words(of, "") + " is no " + std::string(to));
}

}  // namespace

statement::statement(std::unique_ptr<statement_state> state) : state_(std::move(state)) {}
statement::~statement() = default;
statement::statement(statement&&) noexcept = default;
statement& statement::operator=(statement&&) noexcept = default;

std::string_view statement::sql() const { return state_->sql; }
std::size_t statement::column_count() const { return state_->code->columns.size(); }
std::size_t statement::parameter_count() const { return state_->parameters.size(); }

const result_column& statement::column(std::size_t at) const {
  if (at >= column_count()) throw error(error_kind::usage, "there is no column " + std::to_string(at));
  return state_->code->columns[at];
}

std::size_t statement::parameter(std::string_view name) const {
  const auto& all = state_->code->names.parameters();
  for (std::size_t at = 0; at < all.size(); ++at) {
    if (!name.empty() && all[at].name == name) return at + 1;
  }
  throw error(error_kind::name, "there is no parameter :" + std::string(name));
}

void statement::bind(std::size_t number, value of) {
  if (state_->is_open) throw error(error_kind::usage, "the statement is running: reset it before binding");
  if (number == 0 || number > parameter_count()) {
    throw error(error_kind::usage, "there is no parameter " + std::to_string(number));
  }
  state_->parameters[number - 1] = std::move(of);
}

void statement::bind_text(std::size_t number, std::string_view utf8) {
  const auto units = ovhost::utf8_to_utf16(utf8);
  if (!units || units->find(u'\0') != std::u16string::npos) {
    throw error(error_kind::value, "a text is UTF-8 without zero characters");
  }
  bind(number, ovhost::encode(*units));
}

void statement::bind_null(std::size_t number) { bind(number, operator_library::NullValue()); }

bool statement::step() {
  statement_state& of = *state_;
  try {
    const metadata_scope metadata(*of.db);
    if (!of.is_open) start(of);
    of.has_row = next_row(of);
    if (!of.has_row) end(of);
    return of.has_row;
  } catch (...) {
    end(of);
    raise_as_error(std::current_exception(), of.code->names.divisions);
  }
}

void statement::reset() { end(*state_); }
std::uint64_t statement::changes() const { return state_->changes; }

const value& statement::operator[](std::size_t at) const {
  if (!state_->has_row) throw error(error_kind::usage, "there is no row: step() has not gone to one");
  if (at >= column_count()) throw error(error_kind::usage, "there is no column " + std::to_string(at));
  return state_->code->is_explanation ? state_->line[at] : state_->running->rows.row()[at];
}

bool statement::is_null(std::size_t at) const {
  return std::holds_alternative<operator_library::NullValue>((*this)[at]);
}

double statement::real(std::size_t at) const {
  const value& of = (*this)[at];
  switch (static_cast<value_kind>(of.index())) {
    case value_kind::null:
      return 0;
    case value_kind::boolean:
      return std::get<bool>(of) ? 1 : 0;
    case value_kind::int64:
      return static_cast<double>(std::get<std::int64_t>(of));
    case value_kind::uint64:
      return static_cast<double>(std::get<std::uint64_t>(of));
    case value_kind::decimal: {
      const auto decimal = std::get<operator_library::Decimal>(of);
      return static_cast<double>(decimal.raw) / static_cast<double>(operator_library::Decimal::scale);
    }
    case value_kind::float64:
      return std::get<double>(of);
    case value_kind::float32:
      return std::get<float>(of);
    default:
      refuse_conversion(of, "number");
  }
}

std::int64_t statement::integer(std::size_t at) const {
  const value& of = (*this)[at];
  switch (static_cast<value_kind>(of.index())) {
    case value_kind::int64:
      return std::get<std::int64_t>(of);
    case value_kind::uint64: {
      const std::uint64_t number = std::get<std::uint64_t>(of);
      if (number > std::numeric_limits<std::int64_t>::max()) break;
      return static_cast<std::int64_t>(number);
    }
    case value_kind::decimal:
      return std::get<operator_library::Decimal>(of).raw / operator_library::Decimal::scale;
    default: {
      const double number = real(at);
      if (!(number >= -0x1p63 && number < 0x1p63)) break;
      return static_cast<std::int64_t>(number);
    }
  }
  throw error(error_kind::value, ovhost::cell_words(of, "") + " is out of the range of integers");
}

bool statement::boolean(std::size_t at) const { return real(at) != 0; }

std::string statement::text(std::size_t at) const {
  const value& of = (*this)[at];
  if (const auto* const text = std::get_if<db_string::tt_string>(&of)) return ovhost::utf8(ovhost::decode(*text));
  return is_null(at) ? std::string() : words(at);
}

std::string statement::words(std::size_t at) const {
  const value& of = (*this)[at];
  if (const auto* const text = std::get_if<db_string::tt_string>(&of)) return ovhost::utf8(ovhost::decode(*text));
  return ovhost::cell_words(of, state_->code->columns[at].table);
}

}  // namespace ovsql
