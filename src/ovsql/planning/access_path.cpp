#include "ovsql/planning/access_path.hpp"

#include <algorithm>

#include "ovsql/errors/error.hpp"

namespace ovsql {
namespace {

using enum column_bound::kind;
using namespace physical_queryplan;

// The comparison as seen from the other side.
column_bound::kind turned(column_bound::kind of) {
  switch (of) {
    case less:
      return greater;
    case at_most:
      return at_least;
    case greater:
      return less;
    case at_least:
      return at_most;
    default:
      return of;
  }
}

struct comparison_reader {
  std::optional<column_bound::kind> operator()(const Equality&) const { return equal; }
  std::optional<column_bound::kind> operator()(const Less&) const { return less; }
  std::optional<column_bound::kind> operator()(const AtMost&) const { return at_most; }
  std::optional<column_bound::kind> operator()(const Greater&) const { return greater; }
  std::optional<column_bound::kind> operator()(const AtLeast&) const { return at_least; }
  std::optional<column_bound::kind> operator()(const PrefixTest&) const { return prefix; }
  std::optional<column_bound::kind> operator()(const NullTest&) const { return null; }
  template <class Other>
  std::optional<column_bound::kind> operator()(const Other&) const {
    return std::nullopt;
  }
};

// The object of a property column, and its variable's number.
struct property_reader {
  template <class T>
  std::pair<std::uint64_t, std::uint32_t> operator()(const property_column<T>& of) const {
    return {of.property.object.object_number, of.variable.id[3]};
  }
  template <class Other>
  std::pair<std::uint64_t, std::uint32_t> operator()(const Other&) const {
    return {0, 0};
  }
};

bool reads_column(const expression& of, std::uint32_t variable) {
  bool found = false;
  for_each_column(of, [&](std::uint32_t number) { found = found || number == variable; });
  return found;
}

constexpr double rows_of_key = 10;  // of an index that is not unique, while nothing else is known

// What one more bounded column leaves of some rows.
double rows_within(const std::vector<column_bound>& bounds, double rows) {
  if (bounds.front().comparison == equal || bounds.front().comparison == null) return std::min(rows / 10, rows_of_key);
  if (bounds.front().comparison == prefix) return rows / 10;
  return bounds.size() > 1 ? rows / 10 : rows / 3;
}

access_path path_through(const index& through, const std::vector<column_bound>& bounds, double row_count) {
  access_path made{&through, {}, row_count};
  std::size_t equalities = 0;
  for (const index_key_column& column : through.key) {
    std::vector<column_bound> here;
    for (const column_bound& each : bounds) {
      if (each.column != column.column) continue;
      const bool pins = each.comparison == equal || each.comparison == null;
      if (pins) {
        here.assign(1, each);
        break;
      }
      here.push_back(each);
    }
    if (here.empty()) break;
    const bool pins = here.front().comparison == equal || here.front().comparison == null;
    const bool is_prefix =
        std::any_of(here.begin(), here.end(), [](const column_bound& each) { return each.comparison == prefix; });
    // A range of texts and a prefix are not mixed.
    if (is_prefix) std::erase_if(here, [](const column_bound& each) { return each.comparison != prefix; });
    made.rows = rows_within(here, made.rows);
    equalities += here.front().comparison == equal ? 1 : 0;
    made.bounds.push_back(std::move(here));
    if (!pins) break;
  }
  made.is_unique = through.unique && equalities == through.key.size();
  if (made.is_unique || made.rows < 1) made.rows = 1;
  return made;
}

}  // namespace

std::optional<std::size_t> column_of(const expression& of, const item& table) {
  if (table.kind != item_kind::table) return std::nullopt;
  const auto [object, variable] = std::visit(property_reader(), static_cast<const expression_variant&>(of));
  if (variable == 0 || variable != table.variable.id[3]) return std::nullopt;
  for (std::size_t at = 0; at < table.table->columns.size(); ++at) {
    if (table.table->columns[at].property.object.object_number == object) return at;
  }
  return std::nullopt;
}

std::vector<column_bound> find_bounds(const item& of, const std::vector<const condition*>& conditions,
                                      const item_set& known) {
  std::vector<column_bound> bounds;
  for (std::size_t at = 0; at < conditions.size(); ++at) {
    const condition& each = *conditions[at];
    if (!contains(known | of.covers, each.reads)) continue;
    const auto comparison = std::visit(comparison_reader(), static_cast<const expression_variant&>(each.test));
    if (!comparison) continue;
    const std::vector<expression>& operands = find_operation(each.test)->operands;
    const std::uint32_t variable = of.variable.id[3];
    const auto left = column_of(operands[0], of);
    if (*comparison == null) {
      if (left) bounds.push_back({*left, null, nullptr, at});
      continue;
    }
    const auto right = column_of(operands[1], of);
    if (left && !reads_column(operands[1], variable)) {
      bounds.push_back({*left, *comparison, &operands[1], at});
    } else if (right && *comparison != prefix && !reads_column(operands[0], variable)) {
      bounds.push_back({*right, turned(*comparison), &operands[0], at});
    }
  }
  return bounds;
}

access_path choose_path(const table& of, const std::vector<column_bound>& bounds, double row_count) {
  const index* const whole = of.whole();
  if (whole == nullptr) throw error(error_kind::engine, "table \"" + of.name() + "\" has no index to read it through");
  access_path best{whole, {}, row_count};
  if (bounds.empty()) return best;
  for (const index& each : of.indexes) {
    access_path path = path_through(each, bounds, row_count);
    if (path.bounds.empty()) continue;
    const bool fewer = path.rows < best.rows || (path.rows == best.rows && each.key.size() < best.through->key.size());
    const bool better =
        best.bounds.empty() || (path.is_unique && !best.is_unique) || (path.is_unique == best.is_unique && fewer);
    if (better) best = std::move(path);
  }
  return best;
}

std::vector<ovhost::scan_range> ranges_of(const access_path& path) {
  namespace key = ovhost::key;
  std::vector<ovhost::scan_range> ranges;
  for (const std::vector<column_bound>& column : path.bounds) {
    ovhost::scan_range range;
    for (const column_bound& each : column) {
      switch (each.comparison) {
        case equal:
          range = key::both(std::move(range), key::equal(*each.value));
          break;
        case less:
          range = key::both(std::move(range), key::below(*each.value));
          break;
        case at_most:
          range = key::both(std::move(range), key::at_most(*each.value));
          break;
        case greater:
          range = key::both(std::move(range), key::above(*each.value));
          break;
        case at_least:
          range = key::both(std::move(range), key::at_least(*each.value));
          break;
        case prefix:
          range = key::both(std::move(range), key::begins_with(*each.value));
          break;
        case null:
          range = key::both(std::move(range), key::null());
          break;
      }
    }
    ranges.push_back(std::move(range));
  }
  return ranges;
}

}  // namespace ovsql
