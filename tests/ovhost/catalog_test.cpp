#include "ovhost/catalog.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ovdbmetalayer/layout.hpp"
#include "ovhost/index_range.hpp"
#include "ovhost/metadata_object.hpp"
#include "staff_database.hpp"

namespace ovhost {
namespace {

using testing::HasSubstr;

template <class Named>
std::string names_in(const std::vector<Named>& all) {
  std::string names;
  for (const Named& each : all) names += (names.empty() ? "" : " ") + each.name;
  return names;
}

TEST(Catalog, FindsWhatTheSchemaDefined) {
  const staff_database staff;
  const catalog names;
  EXPECT_EQ(names_in(names.tables()), "Staff.Employee Staff.Person");
  const table_info person = names.table("Staff.Person");
  const table_info employee = names.table("Staff.Employee");
  EXPECT_EQ(employee.base.object_number, person.object.object_number);
  EXPECT_NE(employee.tag, person.tag);
  EXPECT_EQ(names_in(names.properties(employee)), "name born salary boss active badge height");
  EXPECT_EQ(names.property(employee, "salary").kind, value_kind::decimal);
  EXPECT_EQ(names.property(employee, "boss").kind, value_kind::reference);
  EXPECT_EQ(names.property(employee, "boss").target.object_number, employee.object.object_number);
  EXPECT_EQ(names.property(employee, "name").declared_in.object_number, person.object.object_number);
  EXPECT_EQ(names.property(employee, "object_type").kind, value_kind::set_specifier);
  std::string columns;
  for (const auto& column : names.index(employee, "by_salary").columns) {
    columns += column.property.name + (column.ascending ? " up " : " down ");
  }
  EXPECT_EQ(columns, "salary down name up ");
  EXPECT_FALSE(names.index(employee, "by_salary").unique);
  EXPECT_TRUE(names.index(employee, "by_name").unique);
  EXPECT_FALSE(names.find_index(employee, "everybody")) << "an index of the base holds other objects too";
  // Every table has its system members in the first columns.
  std::string members;
  const auto cached = names.members(employee);
  for (const OV_OBJ_REF& each : cached->members) members += names.property(each).name + " ";
  EXPECT_EQ(members, "object_number object_type salary boss active badge height ");
}

TEST(Catalog, SetSpecifiersAreFoundByNameInAnyCaseAndExtendTheirBase) {
  const staff_database staff;
  const catalog names;
  const auto specifier_of = [&names](std::u16string_view type) {
    const auto object = first_with_key(names.context(), metalayer::SetSpecifier::index_id_Type(),
                                       index_key().add_number(type_name_word(type)));
    return object ? metadata_object(names.context(), *object).text(metalayer::layout::set_specifier_column::text) : u"";
  };
  EXPECT_EQ(specifier_of(u"staff.person"), u"/Staff.Person/");
  EXPECT_EQ(specifier_of(u"Staff.EMPLOYEE"), u"/Staff.Person/Staff.Employee/");
  EXPECT_EQ(specifier_of(u"Staff.Emp"), u"");
}

TEST(Catalog, NamesWhatIsThereWhenSomethingIsNot) {
  const staff_database staff;
  const catalog names;
  const table_info person = names.table("Staff.Person");
  EXPECT_THAT(message_of<unknown_name>([&] { names.table("Staff"); }),
              HasSubstr("no table \"Staff\"; there are: Staff.Employee, Staff.Person"));
  EXPECT_THAT(message_of<unknown_name>([&] { names.property(person, "nam"); }),
              HasSubstr("no property of table \"Staff.Person\" called \"nam\"; there are: name, born"));
  EXPECT_THAT(message_of<unknown_name>([&] { names.index(person, "by_name"); }),
              HasSubstr("no index of table \"Staff.Person\" called \"by_name\"; there are: everybody"));
}

}  // namespace
}  // namespace ovhost
