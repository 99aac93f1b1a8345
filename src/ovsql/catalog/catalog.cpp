#include "ovsql/catalog/catalog.hpp"

#include <algorithm>
#include <utility>

namespace ovsql {
namespace {

constexpr double assumed_row_count = 1000;

index read_index(const ovhost::index_info& from, const table& of) {
  index made{from.name, from.object, from.unique, {}};
  for (const ovhost::key_column_info& each : from.columns) {
    const auto found = std::find_if(of.columns.begin(), of.columns.end(), [&](const table_column& column) {
      return column.property.object.object_number == each.property.object.object_number;
    });
    const bool is_number = found == of.columns.end();
    made.key.push_back(
        {is_number ? index_key_column::object_number : static_cast<std::size_t>(found - of.columns.begin()),
         each.ascending});
  }
  return made;
}

table read_table(const ovhost::catalog& metadata, ovhost::table_info info) {
  table made;
  made.info = std::move(info);
  for (ovhost::property_info& each : metadata.properties(made.info)) made.columns.push_back({std::move(each), nullptr});
  for (const ovhost::index_info& each : metadata.indexes(made.info)) made.indexes.push_back(read_index(each, made));
  made.members = metadata.members(made.info);
  return made;
}

}  // namespace

std::optional<std::size_t> table::find_column(std::string_view name) const {
  for (std::size_t at = 0; at < columns.size(); ++at) {
    if (same_name(columns[at].property.name, name)) return at;
  }
  return std::nullopt;
}

std::vector<std::string_view> table::column_names() const {
  std::vector<std::string_view> names;
  names.reserve(columns.size());
  for (const table_column& each : columns) names.push_back(each.property.name);
  return names;
}

const index* table::whole() const {
  const index* best = nullptr;
  for (const index& each : indexes) {
    const bool by_number = each.key.size() == 1 && each.key.front().column == index_key_column::object_number;
    if (by_number) return &each;
    if (best == nullptr || each.key.size() < best->key.size()) best = &each;
  }
  return best;
}

void catalog::read(std::uint64_t context) {
  const ovhost::catalog metadata(context);
  std::map<std::string, table, name_order> tables;
  std::map<std::uint64_t, const table*> by_object;
  for (ovhost::table_info& each : metadata.tables()) {
    const std::string name = each.name;
    const table& added = tables.emplace(name, read_table(metadata, std::move(each))).first->second;
    by_object.emplace(added.info.object.object_number, &added);
  }
  for (auto& [name, each] : tables) {
    for (table_column& column : each.columns) {
      const auto target = by_object.find(column.property.target.object_number);
      if (target != by_object.end()) column.target = target->second;
    }
  }
  tables_ = std::move(tables);
  by_object_ = std::move(by_object);
}

const table* catalog::find_table(std::string_view name) const {
  const auto found = tables_.find(name);
  return found == tables_.end() ? nullptr : &found->second;
}

const view* catalog::find_view(std::string_view name) const {
  const auto found = views_.find(name);
  return found == views_.end() ? nullptr : found->second.get();
}

const table* catalog::table_of(OV_OBJ_REF object) const {
  const auto found = by_object_.find(object.object_number);
  return found == by_object_.end() ? nullptr : found->second;
}

column_rule catalog::rule(const table& of, std::size_t column) const {
  const auto found = rules_.find(of.columns[column].property.object.object_number);
  return found == rules_.end() ? column_rule() : found->second;
}

void catalog::set_rule(const table& of, std::size_t column, column_rule rule) {
  rules_[of.columns[column].property.object.object_number] = std::move(rule);
}

double catalog::row_count(const table& of) const {
  const auto found = row_counts_.find(of.info.object.object_number);
  return found == row_counts_.end() ? assumed_row_count : found->second;
}

}  // namespace ovsql
