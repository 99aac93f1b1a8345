#include "ovcoredb/database.hpp"

#include <algorithm>
#include <limits>
#include <string>

#include "ovcoredb/database/database_state.hpp"
#include "ovcoredb/database/definition_checks.hpp"

namespace ovcoredb {
namespace {

constexpr std::size_t highest_name = std::numeric_limits<std::uint16_t>::max();  // of tags and index handles
constexpr std::uint64_t most_objects = index_number_mask - 1;

std::size_t next_name(std::size_t table_size, const char* what) {
  const std::size_t next = std::max<std::size_t>(table_size, 1);
  if (next > highest_name) throw std::invalid_argument(std::string("there is no free ") + what);
  return next;
}

std::uint64_t choose_handle(const database_state& state, std::uint64_t wanted) {
  if (wanted == 0) return next_name(state.indexes.size(), "index handle");
  if (wanted > highest_name) throw std::invalid_argument("an index handle is at most 65535");
  if (state.find_index(wanted) != nullptr) {
    throw std::invalid_argument("index " + std::to_string(wanted) + " exists already");
  }
  return wanted;
}

// Enters a new object in its indexes; when one of them refuses it, the object is gone again.
void enter(database_state& state, const table& in, std::uint64_t number) {
  std::size_t entered = 0;
  try {
    for (; entered < in.indexes.size(); ++entered) in.indexes[entered]->insert(number);
  } catch (...) {
    while (entered != 0) in.indexes[--entered]->erase(number);
    state.objects.remove_last();
    throw;
  }
}

void remove_last_object(database_state& state) {
  const std::uint64_t number = state.objects.object_count();
  for (ordered_index* const each : state.objects.find_object(number).in->indexes) each->erase(number);
  state.objects.remove_last();
}

void remove_last_index(database_state& state) {
  auto& removed = state.indexes[state.index_handles.back()];
  for (const auto& each : state.objects.tables()) {
    if (each != nullptr) std::erase(each->indexes, removed.get());
  }
  removed.reset();
  state.index_handles.pop_back();
  while (!state.indexes.empty() && state.indexes.back() == nullptr) state.indexes.pop_back();
}

}  // namespace

unique_violation::unique_violation(std::uint64_t index, std::uint64_t holder)
    : std::runtime_error("object " + std::to_string(holder) + " has the same key in the unique index " +
                         std::to_string(index)),
      index_(index),
      holder_(holder) {}

unique_violation::~unique_violation() = default;

database::database() : state_(std::make_unique<database_state>()) {}
database::~database() = default;

std::uint16_t database::create_table(const table_definition& definition) {
  check_table(state_->objects, definition);
  table_definition named = definition;
  if (named.tag == 0) named.tag = static_cast<std::uint16_t>(next_name(state_->objects.tables().size(), "table tag"));
  state_->before_write();
  return state_->objects.create_table(named).tag;
}

std::uint64_t database::create_index(const index_definition& definition) {
  database_state& state = *state_;
  const table& on = existing_table(state.objects, definition.table);
  const std::uint64_t handle = choose_handle(state, definition.handle);
  auto created =
      std::make_unique<ordered_index>(state.objects, handle, resolve_key(on, definition.columns), definition.unique);
  for (std::uint64_t number = 1; number <= state.objects.object_count(); ++number) {
    if (state.objects.find_object(number).in->find_segment(on.tag) != nullptr) created->insert(number);
  }
  state.before_write();
  for (const auto& each : state.objects.tables()) {
    if (each != nullptr) each->indexes.reserve(each->indexes.size() + 1);
  }
  state.index_handles.reserve(state.index_handles.size() + 1);
  if (state.indexes.size() <= handle) state.indexes.resize(handle + 1);
  for (const auto& each : state.objects.tables()) {
    if (each != nullptr && each->find_segment(on.tag) != nullptr) each->indexes.push_back(created.get());
  }
  state.indexes[handle] = std::move(created);
  state.index_handles.push_back(handle);
  return handle;
}

OV_OBJ_REF database::insert(std::uint16_t table_tag, std::span<const cell> cells) {
  table* const to = state_->objects.find_table(table_tag);
  check_cells(existing_table(state_->objects, table_tag), cells);
  if (state_->objects.object_count() == most_objects) throw std::length_error("the database holds no more objects");
  state_->before_write();
  const std::uint64_t number = state_->objects.append(*to, cells);
  enter(*state_, *to, number);
  return {number, table_tag};
}

std::size_t database::cell_count(std::uint16_t table_tag) const {
  return existing_table(state_->objects, table_tag).columns.size();
}

std::uint64_t database::object_count() const { return state_->objects.object_count(); }

void database::remove_after(std::uint64_t count) {
  if (count > state_->objects.object_count()) throw std::invalid_argument("there are fewer objects than that");
  state_->before_write();
  while (state_->objects.object_count() > count) remove_last_object(*state_);
}

savepoint::savepoint(database& database)
    : state_(database.state_.get()),
      objects_(state_->objects.object_count()),
      indexes_(state_->index_handles.size()),
      tables_(state_->objects.table_count()) {}

savepoint::~savepoint() {
  if (state_ == nullptr) return;
  state_->before_write();
  while (state_->objects.object_count() > objects_) remove_last_object(*state_);
  while (state_->index_handles.size() > indexes_) remove_last_index(*state_);
  while (state_->objects.table_count() > tables_) state_->objects.remove_last_table();
}

void savepoint::keep() { state_ = nullptr; }

}  // namespace ovcoredb
