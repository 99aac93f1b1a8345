#include "ov_sql_executor/database/type_name.hpp"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>

#include "ov_sql_executor/database/core_block.hpp"
#include "ov_sql_executor/database/core_text.hpp"
#include "ov_sql_executor/database/db_iterator.hpp"
#include "ov_sql_executor/database/status.hpp"
#include "ov_sql_executor/values/typed_view.hpp"
#include "ovcoredb/ovcoredb.h"
#include "ovdbmetalayer/layout.hpp"
#include "ovdbmetalayer/metalayer.hpp"

namespace meta_data {

namespace {

using operator_library::NullValue;
using operator_library::SetSpecifier;

// Ends a part at every full stop, even an empty one. What follows the last stop is a part if it is not empty.
metalayer::DottedName split_name(std::u16string_view name) {
  metalayer::DottedName parts;
  for (std::size_t stop = name.find(u'.'); stop != std::u16string_view::npos; stop = name.find(u'.')) {
    parts.emplace_back(name.substr(0, stop));
    name.remove_prefix(stop + 1);
  }
  if (!name.empty()) parts.emplace_back(name);
  return parts;
}

OV_OBJ_REF find_type(std::uint64_t context, const metalayer::DottedName& name) {
  db_util::fixed_key key;
  key.append(std::uint64_t{metalayer::DottedName2RawView(name).words[0]});
  key.terminate();
  return db_util::find_object(context, metalayer::SetSpecifier::index_id_Type(), key);
}

}  // namespace

std::optional<SetSpecifier> find_set_specifier(text_view type_name) {
  const std::uint64_t context = metalayer::TlsMetalayerContext::Current();
  const OV_OBJ_REF type = find_type(context, split_name(db_util::turbotext_to_base_ucs2(type_name)));
  if (type.object_number == 0) return std::nullopt;
  const std::uint8_t* block = nullptr;
  const std::uint32_t status = orv_context_get_string(context, type.object_number, type.second_word,
                                                      metalayer::layout::set_specifier_column::text, &block);
  if (!db_util::check_has_value(status)) return std::nullopt;
  std::u16string units = db_util::units_of_block(block);
  units.resize(std::min(units.find(u'\0'), units.size()));
  return SetSpecifier{std::move(units)};
}

value to_set_specifier(const value_view& source) {
  const auto* name = ov::sql_executor::expect_or_null<text_view>(source);
  if (name == nullptr) return NullValue{};
  auto found = find_set_specifier(*name);
  if (!found) return NullValue{};
  return *std::move(found);
}

}  // namespace meta_data
