// The C interface: reading objects.
#include "ovcoredb/interface/column_lookup.hpp"
#include "ovcoredb/interface/context_state.hpp"
#include "ovcoredb/interface/lent_blocks.hpp"
#include "ovcoredb/ovcoredb.h"

namespace ovcoredb {
namespace {

bool has_value(const cached_column& cached, std::uint64_t number) {
  return cached.values->has_value(cached.row_of(number));
}

template <column_type type, auto value, class T>
[[gnu::noinline]] std::uint32_t get_uncached(std::uint64_t context, std::uint64_t number, std::uint64_t second_word,
                                             std::uint32_t column, T* out) {
  const found_column found = find_column(find_context(context), {number, second_word, column}, type);
  const std::uint32_t status = type_status(found, type);
  if (status == ORV_OK) *out = (found.values->*value)(found.row);
  return status;
}

// The common read, a cached column that holds a value, in as few steps as possible. Everything else is out of line.
template <column_type type, auto value, class T>
std::uint32_t get(std::uint64_t context, std::uint64_t number, std::uint64_t second_word, std::uint32_t column,
                  T* out) {
  if (out == nullptr) return ORV_BAD_ARGUMENT;
  const cached_column* const cached = find_cached(find_context(context), {number, second_word, column}, type);
  if (cached == nullptr || !has_value(*cached, number)) {
    return get_uncached<type, value>(context, number, second_word, column, out);
  }
  *out = (cached->values->*value)(cached->row_of(number));
  return ORV_OK;
}

// What get_ulong reads besides uint64 columns: the object's number and bool columns.
[[gnu::noinline]] std::uint32_t get_other_ulong(std::uint64_t context, std::uint64_t number, std::uint64_t second_word,
                                                std::uint32_t column, std::uint64_t* out) {
  const found_column found = find_column(find_context(context), {number, second_word, column}, column_type::boolean);
  if (found.status == ORV_OK && found.values == nullptr && column == number_column) {
    *out = number;
    return ORV_OK;
  }
  const bool is_bool = found.values != nullptr && found.values->type() == column_type::boolean;
  const std::uint32_t status = type_status(found, is_bool ? column_type::boolean : column_type::uint64);
  if (status == ORV_OK) *out = found.values->unsigned_value(found.row);
  return status;
}

ORV_BYTES lent(std::span<const std::uint8_t> bytes) { return {bytes.size(), bytes.data()}; }

// What get_binary reads besides text columns.
[[gnu::noinline]] std::uint32_t get_other_bytes(std::uint64_t context, std::uint64_t number, std::uint64_t second_word,
                                                std::uint32_t column, ORV_BYTES* out) {
  const found_column found = find_column(find_context(context), {number, second_word, column}, column_type::binary);
  const bool is_text = found.values != nullptr && found.values->type() == column_type::text;
  const std::uint32_t status = type_status(found, is_text ? column_type::text : column_type::binary);
  if (status == ORV_OK) *out = lent(found.values->bytes(found.row));
  return status;
}

}  // namespace
}  // namespace ovcoredb

using namespace ovcoredb;

uint32_t orv_context_get_ulong(uint64_t context, uint64_t object_number, uint64_t second_word, uint32_t column,
                               uint64_t* out) {
  if (out == nullptr) return ORV_BAD_ARGUMENT;
  const cached_column* const cached =
      find_cached(find_context(context), {object_number, second_word, column}, column_type::uint64);
  if (cached == nullptr || !has_value(*cached, object_number)) {
    return get_other_ulong(context, object_number, second_word, column, out);
  }
  *out = cached->values->unsigned_value(cached->row_of(object_number));
  return ORV_OK;
}

uint32_t orv_context_get_long(uint64_t context, uint64_t object_number, uint64_t second_word, uint32_t column,
                              int64_t* out) {
  return get<column_type::int64, &ovcoredb::column::signed_value>(context, object_number, second_word, column, out);
}

uint32_t orv_context_get_decimal(uint64_t context, uint64_t object_number, uint64_t second_word, uint32_t column,
                                 int64_t* out) {
  return get<column_type::decimal, &ovcoredb::column::signed_value>(context, object_number, second_word, column, out);
}

uint32_t orv_context_get_float(uint64_t context, uint64_t object_number, uint64_t second_word, uint32_t column,
                               float* out) {
  return get<column_type::float32, &ovcoredb::column::float32_value>(context, object_number, second_word, column, out);
}

uint32_t orv_context_get_double(uint64_t context, uint64_t object_number, uint64_t second_word, uint32_t column,
                                double* out) {
  return get<column_type::float64, &ovcoredb::column::float64_value>(context, object_number, second_word, column, out);
}

uint32_t orv_context_get_binary(uint64_t context, uint64_t object_number, uint64_t second_word, uint32_t column,
                                ORV_BYTES* out) {
  if (out == nullptr) return ORV_BAD_ARGUMENT;
  const cached_column* const cached =
      find_cached(find_context(context), {object_number, second_word, column}, column_type::text);
  if (cached == nullptr || !has_value(*cached, object_number)) {
    return get_other_bytes(context, object_number, second_word, column, out);
  }
  *out = lent(cached->values->bytes(cached->row_of(object_number)));
  return ORV_OK;
}

uint32_t orv_context_get_reference(uint64_t context, uint64_t object_number, uint64_t second_word, uint32_t column,
                                   ORV_REFERENCE_VALUE* out) {
  OV_OBJ_REF stored{};
  if (out == nullptr) return ORV_BAD_ARGUMENT;
  const std::uint32_t status =
      get<column_type::reference, &ovcoredb::column::reference>(context, object_number, second_word, column, &stored);
  if (status != ORV_OK) return status;
  *out = {stored.object_number, stored.second_word >> 16, static_cast<std::uint16_t>(stored.second_word)};
  return ORV_OK;
}

uint32_t orv_context_get_string(uint64_t context, uint64_t object_number, uint64_t second_word, uint32_t column,
                                const uint8_t** out) {
  if (out == nullptr) return ORV_BAD_ARGUMENT;
  context_state* const reader = find_context(context);
  const found_column found = find_column(reader, {object_number, second_word, column}, column_type::text);
  const std::uint32_t status = type_status(found, column_type::text);
  return status == ORV_OK ? lend_decoded(*reader, found.values->bytes(found.row), text_form::plain, out) : status;
}

uint32_t orv_context_get_setspec(uint64_t context, uint64_t object_number, uint64_t second_word, const uint8_t** out) {
  if (out == nullptr) return ORV_BAD_ARGUMENT;
  context_state* const reader = find_context(context);
  const found_column found = find_column(reader, {object_number, second_word, set_specifier_column}, column_type::text);
  if (found.status != ORV_OK) return found.status;
  return lend_units(*reader, reader->database->objects.find_object(object_number).in->set_specifier, out);
}

uint32_t orv_context_lookup(uint64_t context, uint64_t object_number, uint64_t* second_word) {
  if (second_word == nullptr) return ORV_BAD_ARGUMENT;
  const context_state* const reader = find_context(context);
  if (reader == nullptr) return ORV_BAD_CONTEXT;
  const object_place place = reader->database->objects.find_object(object_number);
  if (place.in == nullptr) return ORV_BAD_OBJECT;
  *second_word = place.in->tag;
  return ORV_OK;
}
