#include "ovhost/schema.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "staff_database.hpp"

namespace ovhost {
namespace {

using testing::HasSubstr;

TEST(Schema, RefusesTablesThatCannotBe) {
  const value_kind text = value_kind::text;
  const struct {
    table_definition table;
    const char* message;
  } cases[] = {
      {{"Staff.Person", {}}, "\"Staff.Person\" is defined already"},
      {{"staff.PERSON", {}}, "names that differ in case only"},
      {{"", {}}, "empty name"},
      {{"a/b", {}}, "slash"},
      {{"a..b", {}}, "empty part"},
      {{".a", {}}, "empty part"},
      {{std::string("a\0b", 3), {}}, "zero character"},
      {{"\xFF", {}}, "not UTF-8"},
      {{"T", {{"", text}}}, "empty name"},
      {{"T", {{"a", text}, {"a", text}}}, "two members called \"a\""},
      {{"T", {{"object_number", text}}}, "two members called \"object_number\""},
      {{"T", {{"name", text}}, "Staff.Employee"}, "two members called \"name\""},
      {{"T", {{"a", refers_to{"Nowhere"}}}}, "member \"a\" of table \"T\" refers to the unknown table \"Nowhere\""},
      {{"T", {{"a", value_kind::set_specifier}}}, "cannot hold a set specifier"},
      {{"T", {{"a", value_kind::reference}}}, "does not say to which table"},
      {{"T", {}, "Nowhere"}, "derives from \"Nowhere\""},
      {{"T", {}, "T"}, "derives from \"T\""},
  };
  staff_database staff;
  const std::uint64_t before = staff.database.object_count();
  for (const auto& each : cases) {
    EXPECT_THAT(message_of<std::runtime_error>([&] { staff.definitions.define_table(each.table); }),
                HasSubstr(each.message));
    EXPECT_EQ(staff.database.object_count(), before) << each.message;
  }
  EXPECT_THAT(message_of<std::runtime_error>([&] {
                staff.definitions.define_tables({{"New", {}}, {"NEW", {}}});
              }),
              HasSubstr("defined already"));
  EXPECT_FALSE(catalog().find_table("New"));
}

TEST(Schema, RefusesIndexesThatCannotBe) {
  const struct {
    index_definition index;
    const char* message;
  } cases[] = {
      {{"Nowhere", "i", {{"name"}}}, "no table \"Nowhere\"; there are: Staff.Employee, Staff.Person"},
      {{"Staff.Person", "i", {{"salary"}}}, "called \"salary\"; there are: name, born"},
      {{"Staff.Person", "i", {}}, "no columns"},
      {{"Staff.Person", "", {{"name"}}}, "empty name"},
      {{"Staff.Person", "everybody", {{"name"}}}, "defined already"},
      {{"Staff.Person", "i", {{"name"}, {"name", false}}}, "names \"name\" twice"},
      {{"Staff.Employee", "i", {{"height"}}}, "cannot be part of a key"},
  };
  staff_database staff;
  const std::uint64_t before = staff.database.object_count();
  for (const auto& each : cases) {
    EXPECT_THAT(message_of<std::runtime_error>([&] { staff.definitions.define_index(each.index); }),
                HasSubstr(each.message));
    EXPECT_EQ(staff.database.object_count(), before) << each.message;
  }
}

// The objects that collide exist before the index does.
TEST(Schema, UniqueIndexOverEqualKeysLeavesNoMetadata) {
  staff_database staff;
  staff.load_people("name\nAda\nAda\n");
  const index_definition by_name{"Staff.Person", "by_name", {{"name"}}, true};
  EXPECT_THROW(staff.definitions.define_index(by_name), ovcoredb::unique_violation);
  const catalog names;
  EXPECT_FALSE(names.find_index(names.table("Staff.Person"), "by_name"));
}

}  // namespace
}  // namespace ovhost
