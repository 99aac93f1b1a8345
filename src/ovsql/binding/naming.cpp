#include "ovsql/binding/naming.hpp"

#include <algorithm>

#include "ovsql/catalog/names.hpp"

namespace ovsql {
namespace {

using namespace physical_queryplan;

struct number_reader {
  template <class T>
  std::uint32_t operator()(const property_column<T>& column) const {
    return column.variable.id[3];
  }
  template <class T>
  std::uint32_t operator()(const computed<T>& column) const {
    return column.id[3];
  }
  std::uint32_t operator()(const variable& column) const { return column.id[3]; }
  std::uint32_t operator()(const operation&) const { return 0; }
  std::uint32_t operator()(const literal&) const { return 0; }
};

}  // namespace

std::uint32_t column_number(const expression& of) {
  return std::visit(number_reader(), static_cast<const expression_variant&>(of));
}

identifier naming::make(std::string_view name, column_owner owner) {
  owners_.push_back({owner});
  names_.push_back(name);
  return {0, 0, 0, static_cast<std::uint32_t>(owners_.size() - 1)};
}

void naming::give_to(std::uint32_t number, column_owner owner) {
  owner_list* last = &owners_[number];
  if (last->owner.block == 0) {
    last->owner = owner;
    return;
  }
  more_.push_back({owner, last->next});
  last->next = static_cast<std::uint32_t>(more_.size() - 1);
}

std::optional<std::uint32_t> naming::item_of(std::uint32_t number, std::uint32_t block) const {
  for (const owner_list* each = &owners_[number];; each = &more_[each->next]) {
    if (each->owner.block == block) return each->owner.item;
    if (each->next == 0) return std::nullopt;
  }
}

std::size_t naming::parameter(const syntax::parameter& written, std::uint32_t numbered) {
  if (parameters_.size() < numbered) parameters_.resize(numbered);
  if (written.number != 0) return written.number - 1;
  const auto found = std::find_if(parameters_.begin(), parameters_.end(),
                                  [&](const parameter_info& each) { return each.name == written.name; });
  if (found == parameters_.end()) {
    parameters_.push_back({std::string(written.name)});
    return parameters_.size() - 1;
  }
  return static_cast<std::size_t>(found - parameters_.begin());
}

ovhost::column_names naming::column_names() const {
  ovhost::column_names names;
  for (std::uint32_t number = 1; number < names_.size(); ++number) names[{0, 0, 0, number}] = std::string(names_[number]);
  return names;
}

item_set items_of(const expression& of, std::uint32_t block, const naming& names) {
  item_set items;
  for_each_column(of, [&](std::uint32_t number) {
    if (const auto item = names.item_of(number, block)) items.set(*item);
  });
  return items;
}

}  // namespace ovsql
