#ifndef OVSQL_PLANNING_ARRANGEMENT_HPP_
#define OVSQL_PLANNING_ARRANGEMENT_HPP_

#include <cstddef>
#include <optional>
#include <unordered_map>
#include <vector>

#include "ovsql/planning/planner.hpp"

namespace ovsql {

// Joins the items of one list: chooses their order and tests each condition as early as what it reads is known.
//
// Nested loops: each item is the inner side of a join with those before it, and the conditions that become known with
// it are tested there. Equalities come first, since the executor hashes them; what reads the item alone is tested below
// that, where it is tested once.
class arrangement {
 public:
  // known: the items that rows have from outside this list.
  arrangement(const planner& by, item_list list, std::uint32_t block, const item_set& known);

  // Puts the items on top of a plan, or makes one of them. Empties order where a scan gives the rows in that order.
  plan make(std::optional<plan> base, std::vector<order_key>& order);

 private:
  struct step {
    double rows;  // how many come out
    double cost;
  };

  std::size_t choose(bool has_base) const;
  std::optional<std::size_t> choose_source(bool has_base) const;
  step estimate(const item& of, double outer_rows, const item_set& known) const;
  double cost_from(std::size_t first) const;
  double item_rows(const item& of) const;

  std::vector<condition*> take_conditions(const item& next);
  void note_readers();
  std::vector<const condition*> known_conditions(const item& next, const item_set& known) const;
  plan add(std::optional<plan> base, item next, std::vector<order_key>& order);
  plan read_table(item next, std::vector<condition*> conditions, std::vector<order_key>& order);
  void hand_down(query& to, std::vector<condition*>& conditions) const;
  std::optional<plan> read_listed(const item& next, std::vector<condition*>& conditions) const;
  void serve_order(const item& next, access_path& path, std::vector<order_key>& order, bool& ascending) const;
  plan read_left_join(item next, std::vector<condition*>& conditions);
  plan test(plan rows, const item_set& own, const std::vector<condition*>& conditions) const;
  bool is_hashed(const condition& of, const item_set& own) const;

  const planner& by_;
  std::uint32_t block_;
  std::vector<item> items_;
  std::vector<bool> is_placed_;
  std::vector<condition> conditions_;
  std::unordered_map<std::size_t, std::vector<std::size_t>> readers_;  // conditions by their item's first number
  item_set known_;
  double rows_ = 1;
};

}  // namespace ovsql

#endif  // OVSQL_PLANNING_ARRANGEMENT_HPP_
