#include "ovhost/schema/schema_checks.hpp"

#include <algorithm>
#include <cstdint>
#include <set>
#include <span>
#include <string>

#include "ovhost/schema/system_member.hpp"
#include "ovhost/schema/type_name.hpp"
#include "ovhost/values/text.hpp"

namespace ovhost {
namespace {

constexpr std::size_t max_members = 32'000;  // column numbers have 16 bits with a sign

std::string quoted(const std::string& name) { return "\"" + name + "\""; }

[[noreturn]] void refuse(const std::string& reason) { throw schema_error(reason); }

void check_name(const std::string& what, const std::string& name) {
  const auto units = utf8_to_utf16(name);
  if (!units) refuse("the name of " + what + " is not UTF-8");
  if (units->empty()) refuse(what + " has an empty name");
  if (units->find(u'\0') != std::u16string::npos) refuse("the name of " + what + " holds a zero character");
}

void check_table_name(const std::string& name) {
  check_name("a table", name);
  if (name.find('/') != std::string::npos) refuse("the table name " + quoted(name) + " holds a slash");
  if (name.front() == '.' || name.back() == '.' || name.find("..") != std::string::npos) {
    refuse("the table name " + quoted(name) + " has an empty part");
  }
}

// Checks the definitions of one call together with what exists.
class table_checks {
 public:
  table_checks(const catalog& existing, std::span<const table_definition> definitions)
      : existing_(existing), definitions_(definitions) {}

  void check() const {
    for (std::size_t at = 0; at < definitions_.size(); ++at) {
      const table_definition& each = definitions_[at];
      check_table_name(each.name);
      check_not_defined(each, definitions_.first(at));
      if (!each.base.empty()) check_base(each, definitions_.first(at));
      check_members(each);
    }
  }

 private:
  const table_definition* find(std::span<const table_definition> among, const std::string& name) const {
    const auto found = std::find_if(among.begin(), among.end(), [&](const auto& each) { return each.name == name; });
    return found == among.end() ? nullptr : &*found;
  }

  // Looks type names up with case folded.
  void check_not_defined(const table_definition& table, std::span<const table_definition> earlier) const {
    const std::uint64_t word = type_name_word(utf16(table.name));
    const bool repeated = std::any_of(earlier.begin(), earlier.end(),
                                      [&](const auto& each) { return type_name_word(utf16(each.name)) == word; });
    if (repeated || existing_.is_type_name(table.name)) {
      refuse("table " + quoted(table.name) + " is defined already (names that differ in case only are the same)");
    }
  }

  void check_base(const table_definition& table, std::span<const table_definition> earlier) const {
    if (find(earlier, table.base) == nullptr && !existing_.find_table(table.base)) {
      throw unknown_name("table " + quoted(table.name) + " derives from " + quoted(table.base) +
                         ", which is not defined before it");
    }
  }

  void check_members(const table_definition& table) const {
    if (table.members.size() > max_members) refuse("table " + quoted(table.name) + " has too many members");
    std::set<std::string> taken = names_of_all_members(table.base);
    for (const system_member& each : system_members) taken.emplace(each.name);
    for (const member_definition& each : table.members) {
      check_name("a member of table " + quoted(table.name), each.name);
      if (!taken.insert(each.name).second) {
        refuse("table " + quoted(table.name) + " has two members called " + quoted(each.name));
      }
      check_type(table, each);
    }
  }

  // Returns the names of the members of a table and of its bases; none for the empty name.
  std::set<std::string> names_of_all_members(const std::string& table) const {
    std::set<std::string> names;
    if (const table_definition* const defined = find(definitions_, table)) {
      names = names_of_all_members(defined->base);
      for (const member_definition& each : defined->members) names.insert(each.name);
    } else if (!table.empty()) {
      for (const property_info& each : existing_.properties(existing_.table(table))) names.insert(each.name);
    }
    return names;
  }

  void check_type(const table_definition& table, const member_definition& member) const {
    const std::string where = "member " + quoted(member.name) + " of table " + quoted(table.name);
    if (const refers_to* const reference = std::get_if<refers_to>(&member.type)) {
      if (find(definitions_, reference->table) == nullptr && !existing_.find_table(reference->table)) {
        throw unknown_name(where + " refers to the unknown table " + quoted(reference->table));
      }
      return;
    }
    const value_kind kind = std::get<value_kind>(member.type);
    if (kind == value_kind::reference) refuse(where + " is a reference and does not say to which table");
    if (kind > value_kind::reference) refuse(where + " cannot hold a " + std::string(name_of(kind)));
  }

  const catalog& existing_;
  std::span<const table_definition> definitions_;
};

}  // namespace

void check_tables(const catalog& existing, const std::vector<table_definition>& definitions) {
  table_checks(existing, definitions).check();
}

void check_index(const catalog& existing, const index_definition& definition) {
  const std::string where = "index " + quoted(definition.name) + " of table " + quoted(definition.table);
  check_name("an index of table " + quoted(definition.table), definition.name);
  const table_info table = existing.table(definition.table);
  if (existing.find_index(table, definition.name)) refuse(where + " is defined already");
  if (definition.columns.empty()) refuse(where + " has no columns");
  std::set<std::string> taken;
  for (const index_column& each : definition.columns) {
    const value_kind kind = existing.property(table, each.property).kind;
    if (!taken.insert(each.property).second) refuse(where + " names " + quoted(each.property) + " twice");
    if (kind == value_kind::float64 || kind == value_kind::float32) {
      refuse(where + ": " + quoted(each.property) + " is a " + std::string(name_of(kind)) +
             ", which cannot be part of a key");
    }
  }
}

}  // namespace ovhost
