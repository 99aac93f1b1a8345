#include "ov_sql_executor/expressions/cast.hpp"

#include "ov_sql_executor/expressions/conversion.hpp"

namespace ov::sql_executor::operators {

namespace {

// clang-format off
template <std::int32_t TypeCode> struct target;
template <> struct target<0> { using type = std::uint64_t; };
template <> struct target<1> { using type = std::int64_t; };
template <> struct target<2> { using type = operator_library::Decimal; };
template <> struct target<3> { using type = float; };
template <> struct target<4> { using type = double; };
template <> struct target<5> { using type = db_string::tt_string; };
template <> struct target<8> { using type = operator_library::SetSpecifier; };
template <> struct target<9> { using type = bool; };
// clang-format on

}  // namespace

template <std::int32_t TypeCode>
value_view cast<TypeCode>::lend(execution_context& context, value& scratch) const {
  return convert_in<typename target<TypeCode>::type>(operand_.lend(context, scratch), scratch);
}

template class cast<0>;
template class cast<1>;
template class cast<2>;
template class cast<3>;
template class cast<4>;
template class cast<5>;
template class cast<8>;
template class cast<9>;

}  // namespace ov::sql_executor::operators
