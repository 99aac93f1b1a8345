#include "ovhost/schema/schema.hpp"

#include "ovhost/schema/metadata_writer.hpp"
#include "ovhost/schema/primitive_types.hpp"
#include "ovhost/schema/schema_checks.hpp"
#include "ovhost/schema/system_member.hpp"
#include "ovhost/values/text.hpp"

namespace ovhost {
namespace {

// Returns "/Place/City/": a derived type's specifier begins with its base's. Each part ends with a slash, which no name
// holds, so that this beginning means "is a kind of".
std::u16string set_specifier_of(const catalog& existing, const std::string& name, OV_OBJ_REF base) {
  std::u16string beginning = u"/";
  if (base.object_number != 0) {
    const table_info table = existing.table(base);
    beginning = set_specifier_of(existing, table.name, table.base);
  }
  return beginning + utf16(name) + u"/";
}

ovcoredb::column_type column_type_of(const member_definition& member) {
  const value_kind* const kind = std::get_if<value_kind>(&member.type);
  return column_type_of(kind != nullptr ? *kind : value_kind::reference);
}

void write_members(metadata_writer& writer, const catalog& existing, const table_definition& definition) {
  const OV_OBJ_REF table = existing.table(definition.name).object;
  for (const system_member& each : system_members) {
    const value_kind stored = each.kind == value_kind::set_specifier ? value_kind::text : each.kind;
    writer.add_member(table, utf16(each.name), writer.type_of(stored), each.column);
  }
  auto column = static_cast<std::uint32_t>(system_members.size());
  for (const member_definition& each : definition.members) {
    const refers_to* const reference = std::get_if<refers_to>(&each.type);
    const OV_OBJ_REF type = reference != nullptr ? existing.table(reference->table).object
                                                 : writer.type_of(std::get<value_kind>(each.type));
    writer.add_member(table, utf16(each.name), type, column++);
  }
}

}  // namespace

schema::schema(ovcoredb::database& database)
    : database_(database),
      context_(database),
      catalog_(context_.handle()),
      writer_(std::make_unique<metadata_writer>(database)) {}

schema::~schema() = default;

void schema::define_tables(const std::vector<table_definition>& definitions) {
  check_tables(catalog_, definitions);
  ovcoredb::savepoint before(database_);
  std::uint16_t tag = next_tag_;
  for (const table_definition& each : definitions) create_table(each, tag++);
  for (const table_definition& each : definitions) write_members(*writer_, catalog_, each);
  before.keep();
  next_tag_ = tag;
}

void schema::create_table(const table_definition& definition, std::uint16_t tag) {
  const table_info base = definition.base.empty() ? table_info() : catalog_.table(definition.base);
  ovcoredb::table_definition stored;
  stored.set_specifier = set_specifier_of(catalog_, definition.name, base.object);
  for (const member_definition& each : definition.members) stored.columns.push_back(column_type_of(each));
  stored.base = base.tag;
  stored.tag = tag;
  writer_->add_table(utf16(definition.name), base.object, database_.create_table(stored));
  writer_->add_set_specifier(stored.set_specifier, utf16(definition.name));
}

void schema::define_index(const index_definition& definition) {
  check_index(catalog_, definition);
  const table_info table = catalog_.table(definition.table);
  ovcoredb::index_definition stored;
  stored.table = table.tag;
  stored.unique = definition.unique;
  stored.handle = next_handle_;
  std::vector<OV_OBJ_REF> members;
  for (const index_column& each : definition.columns) {
    const property_info property = catalog_.property(table, each.property);
    stored.columns.push_back({property.column, each.ascending, catalog_.table(property.declared_in).tag});
    members.push_back(property.object);
  }
  ovcoredb::savepoint before(database_);
  const OV_OBJ_REF index =
      writer_->add_index(table.object, utf16(definition.name), database_.create_index(stored), definition.unique);
  for (std::size_t position = 0; position < members.size(); ++position) {
    writer_->add_indexed_column(index, members[position], position, definition.columns[position].ascending);
  }
  before.keep();
  ++next_handle_;
}

}  // namespace ovhost
