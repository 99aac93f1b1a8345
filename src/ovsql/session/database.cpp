#include "ovsql/session/database.hpp"

#include <utility>

#include "ovsql/session/run_errors.hpp"
#include "ovsql/session/statement_state.hpp"
#include "ovsql/syntax/parser.hpp"

namespace ovsql {
namespace {

void open(database_state& db) {
  with_errors({}, [&db] {
    db.context = std::make_unique<ovcoredb::context>(*db.core);
    const metadata_scope metadata(db);
    db.read_catalog();
  });
}

statement make_statement(database_state& db, const syntax::statement& tree, std::string_view script) {
  auto made = std::make_unique<statement_state>();
  made->db = &db;
  made->sql = script.substr(tree.at.begin, tree.at.end - tree.at.begin);
  made->offset = tree.at.begin;
  const metadata_scope metadata(db);
  made->version = db.version;
  made->code = compile(db, tree, script, {});
  made->parameters.resize(std::max<std::size_t>(made->code->names.parameters().size(), tree.question_marks));
  return statement(std::move(made));
}

}  // namespace

database::database(const options& how) : state_(std::make_unique<database_state>()) {
  state_->how = how;
  state_->own_core = std::make_unique<ovcoredb::database>();
  state_->core = state_->own_core.get();
  state_->own_schema = std::make_unique<ovhost::schema>(*state_->core);
  state_->schema = state_->own_schema.get();
  open(*state_);
}

database::database(ovcoredb::database& core, ovhost::schema& schema, const options& how)
    : state_(std::make_unique<database_state>()) {
  state_->how = how;
  state_->core = &core;
  state_->schema = &schema;
  open(*state_);
}

database::~database() = default;
database::database(database&&) noexcept = default;
database& database::operator=(database&&) noexcept = default;

std::optional<statement> database::prepare_next(std::string_view script, std::size_t& next) {
  syntax::memory memory;
  const syntax::statement* const tree = syntax::parse(script, next, memory);
  if (tree == nullptr) return std::nullopt;
  return make_statement(*state_, *tree, script);
}

statement database::prepare(std::string_view sql) {
  syntax::memory memory;
  std::size_t next = 0;
  const syntax::statement* const tree = syntax::parse(sql, next, memory);
  if (tree == nullptr) throw error(error_kind::usage, "the text holds no statement", 0);
  syntax::memory unused;
  const std::size_t end = next;
  if (syntax::parse(sql, next, unused) != nullptr) {
    throw error(error_kind::usage, "the text holds more than one statement", end);
  }
  return make_statement(*state_, *tree, sql);
}

std::uint64_t database::execute(std::string_view script) {
  std::size_t next = 0;
  std::uint64_t changes = 0;
  while (std::optional<statement> each = prepare_next(script, next)) {
    while (each->step()) {
    }
    changes = each->changes();
  }
  return changes;
}

void database::refresh() {
  with_errors({}, [this] {
    const metadata_scope metadata(*state_);
    state_->catalog.forget_row_counts();
    state_->read_catalog();
  });
}

std::vector<std::string> database::tables() const {
  std::vector<std::string> names;
  for (const auto& [name, each] : state_->catalog.tables()) names.push_back(name);
  return names;
}

std::vector<std::string> database::views() const {
  std::vector<std::string> names;
  for (const auto& [name, each] : state_->catalog.views()) names.push_back(name);
  return names;
}

}  // namespace ovsql
