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
};

TEST_F(TypeName, becomes_the_specifier_of_its_type) {
  add({u"shop", u"order"}, u"ab");
  add({u"a", u"", u"b"}, u"c");
  add({u""}, u"d");
  add({u"cut"}, u"e\0f"sv);
  add({u"empty"}, std::monostate());
  check<operators::cast<8>>({"'Shop.ORDER' = set'ab' [0]", "'shop.order.' = set'ab' [0]", "'a..b' = set'c' [0]",
                             "'.' = set'd' [0]", "'cut' = set'e' [0]",  // up to the first zero unit
                             "'empty' = NULL [0]", "'shop' = NULL [0]", "'' = NULL [0]"});
  metalayer::TlsMetalayerContext::Current() = 0;
  check<operators::cast<8>>({"'shop' = 4101 [0]"});  // the core's own status
}

}  // namespace
}  // namespace tests
