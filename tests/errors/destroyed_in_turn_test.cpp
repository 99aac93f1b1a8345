#include "ov_sql_executor/errors/destroyed_in_turn.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace error_handling {
namespace {

struct thing {
  virtual ~thing() = default;
};

class branch : public destroyed_in_turn<thing> {
 public:
  branch(std::string& gone, char name, std::vector<std::unique_ptr<thing>> parts = {}) : gone_(gone), name_(name) {
    for (auto& each : parts) parts_.emplace_back(std::move(each));
  }
  ~branch() override {
    gone_ += name_;
    while (!parts_.empty()) parts_.erase(parts_.begin());
  }

 private:
  std::string& gone_;
  char name_;
  std::vector<owned_part<thing, branch>> parts_;
};

template <class... Parts>
std::unique_ptr<thing> make(std::string& gone, char name, Parts... parts) {
  std::vector<std::unique_ptr<thing>> list;
  (list.push_back(std::move(parts)), ...);
  return std::make_unique<branch>(gone, name, std::move(list));
}

class foreign final : public thing {
 public:
  explicit foreign(std::string& gone) : gone_(gone) {}
  ~foreign() override { gone_ += 'x'; }

 private:
  std::string& gone_;
};

// As if each destroyed its own parts, but after its own members; what is not of the family goes at once.
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
}  // namespace error_handling
