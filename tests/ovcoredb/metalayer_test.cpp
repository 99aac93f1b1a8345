#include "ovdbmetalayer/metalayer.hpp"

#include <gtest/gtest.h>

#include <set>
#include <utility>

namespace {

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
