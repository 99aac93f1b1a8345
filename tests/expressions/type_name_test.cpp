#include "expressions/operator_test.hpp"
#include "ov_sql_executor/expressions/cast.hpp"
#include "ovdbmetalayer/layout.hpp"
#include "ovdbmetalayer/metalayer.hpp"

namespace tests {
namespace {

namespace layout = metalayer::layout;
using namespace std::string_view_literals;

class TypeName : public OperatorTest {
 protected:
  TypeName() {
    using enum ovcoredb::column_type;
    core.create_table({u"/meta/", {none, ovcoredb::column_type::text, uint64}, 0, layout::table_tag::set_specifier});
    core.create_index({layout::table_tag::set_specifier, {{4}}, false, layout::index_handle::set_specifier_type});
    metalayer::TlsMetalayerContext::Current() = core_context.handle();
  }
  ~TypeName() override { metalayer::TlsMetalayerContext::Current() = 0; }

  void add(const metalayer::DottedName& name, ovcoredb::cell specifier) {
    const ovcoredb::cell cells[] = {std::monostate(), specifier, metalayer::DottedName2RawView(name).words[0]};
    core.insert(layout::table_tag::set_specifier, cells);
  }

  std::string specifier_of(const std::u16string& name) { return run<operators::cast<8>>(text(name)); }
};

TEST_F(TypeName, becomes_the_specifier_of_its_type) {
  add({u"shop", u"order"}, u"ab");
  add({u"a", u"", u"b"}, u"c");
  add({u""}, u"d");
  add({u"cut"}, u"e\0f"sv);
  add({u"empty"}, std::monostate());
  EXPECT_EQ(specifier_of(u"Shop.ORDER"), "set 61 62 [0]");
  EXPECT_EQ(specifier_of(u"shop.order."), "set 61 62 [0]");
  EXPECT_EQ(specifier_of(u"a..b"), "set 63 [0]");
  EXPECT_EQ(specifier_of(u"."), "set 64 [0]");
  EXPECT_EQ(specifier_of(u"cut"), "set 65 [0]") << "up to the first zero unit";
  EXPECT_EQ(specifier_of(u"empty"), "NULL [0]");
  EXPECT_EQ(specifier_of(u"shop"), "NULL [0]");
  EXPECT_EQ(specifier_of(u""), "NULL [0]");
  metalayer::TlsMetalayerContext::Current() = 0;
  EXPECT_EQ(specifier_of(u"shop"), "4101 [0]") << "the core's own status";
}

}  // namespace
}  // namespace tests
