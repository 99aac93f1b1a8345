#include "ov_sql_executor/expressions/like.hpp"

#include "ov_sql_executor/database/core_text.hpp"
#include "ov_sql_executor/values/like_pattern.hpp"
#include "ov_sql_executor/values/typed_view.hpp"

namespace ov::sql_executor::operators {

namespace {

std::u16string_view units_of(const db_util::unit_buffer& units) { return {units.data(), units.size()}; }

}  // namespace

truth like::test(execution_context& context) const {
  value pattern_room;
  const value_view right = right_.hold(context, pattern_room);
  const auto* pattern = expect_or_null<text_view>(right);
  if (pattern == nullptr) return truth::unknown;
  value room;
  const value_view left = left_.lend(context, room);
  const auto* text = expect_or_null<text_view>(left);
  if (text == nullptr) return truth::unknown;
  // The text first: it may lie where the core puts its next answer.
  db_util::unit_buffer text_units;
  db_util::unit_buffer pattern_units;
  db_util::turbotext_to_base_ucs2(context.context_handle, *text, text_units);
  db_util::turbotext_to_base_ucs2(context.context_handle, *pattern, pattern_units);
  return to_truth(matches_like(units_of(text_units), units_of(pattern_units)));
}

value like_starts_with::evaluate(execution_context& context) const {
  value room;
  const value_view any = operand_.lend(context, room);
  const auto* pattern = expect_or_null<text_view>(any);
  if (pattern == nullptr) return operator_library::NullValue{};
  const std::u16string prefix = like_prefix(db_util::turbotext_to_ucs2(*pattern));
  return db_util::ucs2_to_turbotext(context.context_handle, prefix, db_util::upper_limit::no);
}

}  // namespace ov::sql_executor::operators
