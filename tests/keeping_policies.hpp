// Runs the same with every way of keeping inner sides, which no result may depend on.
#ifndef TESTS_KEEPING_POLICIES_HPP_
#define TESTS_KEEPING_POLICIES_HPP_

#include <cstddef>
#include <utility>

#include "ov_sql_executor/execution/keeping/keeping_policy.hpp"

namespace tests {

// Has a policy hold for as long as it lives.
class policy_scope {
 public:
  explicit policy_scope(ov::sql_executor::keeping_policy policy)
      : before_(std::exchange(ov::sql_executor::current_keeping_policy, policy)) {}
  ~policy_scope() { ov::sql_executor::current_keeping_policy = before_; }
  policy_scope(const policy_scope&) = delete;
  policy_scope& operator=(const policy_scope&) = delete;

 private:
  ov::sql_executor::keeping_policy before_;
};

inline constexpr ov::sql_executor::keeping_policy keeps_nothing{ov::sql_executor::keeping_policy::from::never};
inline constexpr ov::sql_executor::keeping_policy keeps_from_the_first_start{
    ov::sql_executor::keeping_policy::from::first_start};

// The others. The last one gives up after a few rows.
inline constexpr ov::sql_executor::keeping_policy keeping_policies[] = {
    {}, keeps_from_the_first_start, {ov::sql_executor::keeping_policy::from::second_start, 60}};

// Plans and runs with nothing kept, and returns what run then does. Calls differs(policy number, result) for each
// other result of running a second plan with each policy.
template <class Plan, class Run, class Differs>
auto compare_policies(Plan plan, Run run, Differs differs) {
  const auto plain = [&] {
    const policy_scope scope(keeps_nothing);
    return run(plan());
  }();
  const auto planned = plan();
  std::size_t number = 0;
  for (const auto& policy : keeping_policies) {
    const policy_scope scope(policy);
    const auto found = run(planned);
    if (found != plain) differs(number, found);
    ++number;
  }
  return plain;
}

}  // namespace tests

#endif  // TESTS_KEEPING_POLICIES_HPP_
