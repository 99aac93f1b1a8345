#include "ov_sql_executor/support/destroyed_in_turn.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace ov::sql_executor {
namespace {

struct thing {
  virtual ~thing() = default;
};

struct branch final : destroyed_in_turn<thing> {
  branch(std::string& log, char own_name, std::vector<std::unique_ptr<thing>> list) : gone(log), name(own_name) {
    for (auto& each : list) parts.emplace_back(std::move(each));
  }
  ~branch() override {
    gone += name;
    while (!parts.empty()) parts.erase(parts.begin());
  }
  std::string& gone;
  char name;
  std::vector<owned_part<thing, branch>> parts;
};

template <class... Parts>
std::unique_ptr<thing> make(std::string& gone, char name, Parts... parts) {
  std::vector<std::unique_ptr<thing>> list;
  (list.push_back(std::move(parts)), ...);
  return std::make_unique<branch>(gone, name, std::move(list));
}

struct foreign final : thing {
  explicit foreign(std::string& log) : gone(log) {}
  ~foreign() override { gone += 'x'; }
  std::string& gone;
};

// Each part destroys its own parts, as it seems, after its own members; a part of another class goes at once.
TEST(DestroyedInTurn, parts_go_before_those_that_wait_and_in_order) {
  std::string gone;
  {
    const owned_part<thing, branch> root(make(gone, 'a',
                                              make(gone, 'b', make(gone, 'c', make(gone, 'd')), make(gone, 'e')),
                                              std::make_unique<foreign>(gone), make(gone, 'f', make(gone, 'g'))));
    EXPECT_EQ(root.own(), &*root);
  }
  EXPECT_EQ(gone, "axbcdefg");
}

}  // namespace
}  // namespace ov::sql_executor
