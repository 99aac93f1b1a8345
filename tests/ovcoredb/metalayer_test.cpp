// The metadata layer's own reads: primitive types and name digests.
#include "ovdbmetalayer/metalayer.hpp"

#include <gtest/gtest.h>

#include <set>
#include <thread>
#include <vector>

#include "ovcoredb/database.hpp"
#include "ovdbmetalayer/layout.hpp"

namespace {

using ovcoredb::column_type;

TEST(metalayer, primitive_type_is_read_on_the_threads_context) {
  ovcoredb::database database;
  std::vector<column_type> columns(metalayer::layout::type_column::primitive_type - 1, column_type::none);
  columns.back() = column_type::uint64;
  const std::uint16_t types = database.create_table({.set_specifier = u"/Type/", .columns = columns});
  const std::uint16_t other = database.create_table({.set_specifier = u"/Other/"});
  std::vector<ovcoredb::cell> cells(columns.size());
  const OV_OBJ_REF unstated = database.insert(types, cells);
  cells.back() = metalayer::layout::primitive_type::decimal;
  const OV_OBJ_REF decimal = database.insert(types, cells);
  const OV_OBJ_REF no_type = database.insert(other, {});
  const ovcoredb::context context(database);

  std::uint32_t type = 99;
  EXPECT_EQ(metalayer::PrimTypeByTypeRef(decimal, type), ORV_BAD_CONTEXT);
  metalayer::TlsMetalayerContext::Current() = context.handle();
  EXPECT_EQ(metalayer::PrimTypeByTypeRef(no_type, type), ORV_BAD_COLUMN);
  EXPECT_EQ(type, 99u);
  EXPECT_EQ(metalayer::PrimTypeByTypeRef(decimal, type), ORV_OK);
  EXPECT_EQ(type, 5u);
  EXPECT_EQ(metalayer::PrimTypeByTypeRef(unstated, type), ORV_OK);
  EXPECT_EQ(type, 0u);
  type = 99;
  EXPECT_EQ(metalayer::PrimTypeByTypeRef({0, 0}, type), ORV_OK);
  EXPECT_EQ(type, 0u);
  std::thread([] { EXPECT_EQ(metalayer::TlsMetalayerContext::Current(), 0u); }).join();
  metalayer::TlsMetalayerContext::Current() = 0;
}

TEST(metalayer, digest_tells_names_apart) {
  const metalayer::DottedName names[] = {{}, {u""}, {u"a"}, {u"a", u"b"}, {u"ab"}, {u"a", u"", u"b"}, {u"b", u"a"}};
  std::set<std::pair<std::uint64_t, std::uint64_t>> digests;
  for (const auto& name : names) {
    const metalayer::RawView view = metalayer::DottedName2RawView(name);
    digests.emplace(view.words[0], view.words[1]);
  }
  EXPECT_EQ(digests.size(), std::size(names));
  // Computed from the definition elsewhere.
  const metalayer::RawView a = metalayer::DottedName2RawView({u"a"});
  EXPECT_EQ(a.words[0], 0x697128E1AE757277u);
  EXPECT_EQ(a.words[1], 0xB806E976F4C4D852u);
}

}  // namespace
