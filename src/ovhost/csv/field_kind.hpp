#ifndef OVHOST_CSV_FIELD_KIND_HPP_
#define OVHOST_CSV_FIELD_KIND_HPP_

#include <string_view>

#include "ovhost/values/value_kind.hpp"

namespace ovhost {

// Follows the fields of one column and knows the narrowest kind that holds them all.
class field_kinds {
 public:
  void add(std::string_view field);

  // Returns text where no field was added.
  value_kind kind() const;

 private:
  bool any_ = false;
  bool may_be_truth_ = true;
  bool may_be_int_ = true;
  bool may_be_decimal_ = true;
  bool may_be_real_ = true;
};

}  // namespace ovhost

#endif  // OVHOST_CSV_FIELD_KIND_HPP_
