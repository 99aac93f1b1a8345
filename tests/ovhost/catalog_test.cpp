#include "ovhost/catalog.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <iterator>

#include "ovdbmetalayer/layout.hpp"
#include "ovhost/index_range.hpp"
#include "ovhost/metadata_object.hpp"
#include "staff_database.hpp"

namespace ovhost {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

template <class Named>
std::vector<std::string> names_in(const std::vector<Named>& all) {
  std::vector<std::string> names;
  std::transform(all.begin(), all.end(), std::back_inserter(names), [](const Named& each) { return each.name; });
  return names;
}

TEST(Catalog, FindsWhatTheSchemaDefined) {
  const staff_database staff;
  const catalog names;
  EXPECT_THAT(names_in(names.tables()), ElementsAre("Staff.Employee", "Staff.Person"));
  const table_info person = names.table("Staff.Person");
  const table_info employee = names.table("Staff.Employee");
  EXPECT_EQ(employee.base.object_number, person.object.object_number);
  EXPECT_NE(employee.tag, person.tag);
  EXPECT_THAT(names_in(names.properties(employee)),
              ElementsAre("name", "born", "salary", "boss", "active", "badge", "height"));
  EXPECT_EQ(names.property(employee, "salary").kind, value_kind::decimal);
  EXPECT_EQ(names.property(employee, "boss").kind, value_kind::reference);
  EXPECT_EQ(names.property(employee, "boss").target.object_number, employee.object.object_number);
  EXPECT_EQ(names.property(employee, "name").declared_in.object_number, person.object.object_number);
  EXPECT_EQ(names.property(employee, "object_type").kind, value_kind::set_specifier);

  const index_info by_salary = names.index(employee, "by_salary");
  EXPECT_FALSE(by_salary.unique);
  ASSERT_EQ(by_salary.columns.size(), 2U);
  EXPECT_EQ(by_salary.columns[0].property.name, "salary");
  EXPECT_FALSE(by_salary.columns[0].ascending);
  EXPECT_EQ(by_salary.columns[1].property.name, "name");
  EXPECT_TRUE(by_salary.columns[1].ascending);
  EXPECT_TRUE(names.index(employee, "by_name").unique);
  EXPECT_FALSE(names.find_index(employee, "everybody")) << "an index of the base holds other objects too";
}

TEST(Catalog, EveryTableHasItsSystemMembersInTheFirstColumns) {
  const staff_database staff;
  const catalog names;
  const auto members = names.members(names.table("Staff.Employee"))->members;
  ASSERT_EQ(members.size(), 7U);
  EXPECT_EQ(names.property(members[0]).name, "object_number");
  EXPECT_EQ(names.property(members[1]).name, "object_type");
  EXPECT_EQ(names.property(members[2]).name, "salary");
  EXPECT_EQ(names.property(members[6]).name, "height");
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
  const struct {
    std::function<void()> look_up;
    const char* message;
  } cases[] = {
      {[&] { names.table("Staff"); }, "no table \"Staff\"; there are: Staff.Employee, Staff.Person"},
      {[&] { names.property(person, "nam"); },
       "no property of table \"Staff.Person\" called \"nam\"; there are: name, born"},
      {[&] { names.index(person, "by_name"); },
       "no index of table \"Staff.Person\" called \"by_name\"; there are: everybody"},
  };
  for (const auto& each : cases) {
    try {
      each.look_up();
      ADD_FAILURE() << each.message;
    } catch (const unknown_name& error) {
      EXPECT_THAT(error.what(), HasSubstr(each.message));
    }
  }
}

}  // namespace
}  // namespace ovhost
