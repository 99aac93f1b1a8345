#include "ov_sql_executor/expressions/like.hpp"

#include <boost/container/small_vector.hpp>

#include "ov_sql_executor/database/core_text.hpp"
#include "ov_sql_executor/values/like_pattern.hpp"
#include "ov_sql_executor/values/typed_view.hpp"

namespace ov::sql_executor::operators {

truth like::test(execution_context& context) const {
  scratch_space pattern_scratch;
  const value_view right = right_.pin(context, pattern_scratch);
  const auto* pattern = expect_or_null<text_view>(right);
  if (pattern == nullptr) return truth::unknown;
  value scratch;
  const value_view left = left_.lend(context, scratch);
  const auto* text = expect_or_null<text_view>(left);
  if (text == nullptr) return truth::unknown;
  // Copies the text before the pattern is converted, and the converted pattern before the text is: the core's next
  // answer may overwrite its last one.
  const boost::container::small_vector<std::uint8_t, 256> text_bytes(text->bytes.data(),
                                                                     text->bytes.data() + text->bytes.size());
  const std::u16string_view lent = db_util::lend_base_ucs2(context.context_handle, *pattern);
  const boost::container::small_vector<char16_t, 64> pattern_units(lent.data(), lent.data() + lent.size());
  const std::u16string_view text_units =
      db_util::lend_base_ucs2(context.context_handle, text_view{{text_bytes.data(), text_bytes.size()}});
  return to_truth(matches_like(text_units, {pattern_units.data(), pattern_units.size()}));
}

value like_starts_with::evaluate(execution_context& context) const {
  value scratch;
  const value_view any = operand_.lend(context, scratch);
  const auto* pattern = expect_or_null<text_view>(any);
  if (pattern == nullptr) return operator_library::NullValue{};
  const std::u16string prefix = like_prefix(db_util::turbotext_to_ucs2(*pattern));
  return db_util::ucs2_to_turbotext(context.context_handle, prefix, db_util::upper_limit::no);
}

}  // namespace ov::sql_executor::operators
