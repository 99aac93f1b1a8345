// The C interface: reading objects.
#include <cstring>
#include <new>

#include "ovcoredb/contexts.hpp"
#include "ovcoredb/database_state.hpp"
#include "ovcoredb/lent_blocks.hpp"
#include "ovcoredb/ovcoredb.h"
#include "ovcoredb/text_code.hpp"

namespace ovcoredb {
namespace {

struct found_column {
  std::uint32_t status = ORV_OK;
  const column* values = nullptr;  // null: a column that every table has
  std::uint64_t row = 0;
};

found_column find_column(const context_state* context, std::uint64_t number, std::uint64_t second_word,
                         std::uint32_t column) {
  if (context == nullptr) return {ORV_BAD_CONTEXT};
  const object_place place = context->database->objects.find_object(number);
  if (place.in == nullptr) return {ORV_BAD_OBJECT};
  const column_segment* const segment = place.in->find_segment(static_cast<std::uint16_t>(second_word));
  if (segment == nullptr) return {ORV_BAD_COLUMN};
  if (column < first_declared_column) return {};
  if (column - first_declared_column >= segment->count) return {ORV_BAD_COLUMN};
  return {ORV_OK, &place.in->columns[segment->first + column - first_declared_column], place.row};
}

std::uint32_t type_status(const found_column& found, column_type type) {
  if (found.status != ORV_OK) return found.status;
  if (found.values == nullptr) return ORV_TYPE_MISMATCH;
  if (found.values->type() == type) return found.values->has_value(found.row) ? ORV_OK : ORV_NO_VALUE;
  return found.values->type() == column_type::none ? ORV_BAD_COLUMN : ORV_TYPE_MISMATCH;
}

template <class T>
std::uint32_t get_fixed(std::uint64_t context, std::uint64_t number, std::uint64_t second_word, std::uint32_t column,
                        column_type type, T* out) {
  if (out == nullptr) return ORV_BAD_ARGUMENT;
  const found_column found = find_column(find_context(context), number, second_word, column);
  const std::uint32_t status = type_status(found, type);
  if (status == ORV_OK) *out = found.values->fixed<T>(found.row);
  return status;
}

// What get_ulong reads beside uint64 columns.
std::uint32_t get_other_ulong(const found_column& found, std::uint64_t number, std::uint32_t column,
                              std::uint64_t* out) {
  if (found.status == ORV_OK && found.values == nullptr && column == number_column) {
    *out = number;
    return ORV_OK;
  }
  const std::uint32_t status = type_status(found, column_type::boolean);
  if (status == ORV_OK) *out = found.values->fixed<std::uint8_t>(found.row);
  return status;
}

}  // namespace
}  // namespace ovcoredb

using namespace ovcoredb;

uint32_t orv_context_get_ulong(uint64_t context, uint64_t object_number, uint64_t second_word, uint32_t column,
                               uint64_t* out) {
  if (out == nullptr) return ORV_BAD_ARGUMENT;
  const found_column found = find_column(find_context(context), object_number, second_word, column);
  if (found.values == nullptr || found.values->type() != column_type::uint64) {
    return get_other_ulong(found, object_number, column, out);
  }
  if (!found.values->has_value(found.row)) return ORV_NO_VALUE;
  *out = found.values->fixed<std::uint64_t>(found.row);
  return ORV_OK;
}

uint32_t orv_context_get_long(uint64_t context, uint64_t object_number, uint64_t second_word, uint32_t column,
                              int64_t* out) {
  return get_fixed(context, object_number, second_word, column, column_type::int64, out);
}

uint32_t orv_context_get_decimal(uint64_t context, uint64_t object_number, uint64_t second_word, uint32_t column,
                                 int64_t* out) {
  return get_fixed(context, object_number, second_word, column, column_type::decimal, out);
}

uint32_t orv_context_get_float(uint64_t context, uint64_t object_number, uint64_t second_word, uint32_t column,
                               float* out) {
  return get_fixed(context, object_number, second_word, column, column_type::float32, out);
}

uint32_t orv_context_get_double(uint64_t context, uint64_t object_number, uint64_t second_word, uint32_t column,
                                double* out) {
  return get_fixed(context, object_number, second_word, column, column_type::float64, out);
}

uint32_t orv_context_get_binary(uint64_t context, uint64_t object_number, uint64_t second_word, uint32_t column,
                                ORV_BYTES* out) {
  if (out == nullptr) return ORV_BAD_ARGUMENT;
  const found_column found = find_column(find_context(context), object_number, second_word, column);
  const bool is_text = found.values != nullptr && found.values->type() == column_type::text;
  const std::uint32_t status = type_status(found, is_text ? column_type::text : column_type::binary);
  if (status != ORV_OK) return status;
  const std::span<const std::uint8_t> bytes = found.values->bytes(found.row);
  *out = {bytes.size(), bytes.data()};
  return ORV_OK;
}

uint32_t orv_context_get_reference(uint64_t context, uint64_t object_number, uint64_t second_word, uint32_t column,
                                   ORV_REFERENCE_VALUE* out) {
  OV_OBJ_REF stored{};
  if (out == nullptr) return ORV_BAD_ARGUMENT;
  const std::uint32_t status = get_fixed(context, object_number, second_word, column, column_type::reference, &stored);
  if (status != ORV_OK) return status;
  *out = {stored.object_number, stored.second_word >> 16, static_cast<std::uint16_t>(stored.second_word)};
  return ORV_OK;
}

uint32_t orv_context_get_string(uint64_t context, uint64_t object_number, uint64_t second_word, uint32_t column,
                                const uint8_t** out) {
  if (out == nullptr) return ORV_BAD_ARGUMENT;
  context_state* const reader = find_context(context);
  const found_column found = find_column(reader, object_number, second_word, column);
  const std::uint32_t status = type_status(found, column_type::text);
  return status == ORV_OK ? lend_decoded(*reader, found.values->bytes(found.row), text_form::plain, out) : status;
}

uint32_t orv_context_get_setspec(uint64_t context, uint64_t object_number, uint64_t second_word, const uint8_t** out) {
  if (out == nullptr) return ORV_BAD_ARGUMENT;
  context_state* const reader = find_context(context);
  const found_column found = find_column(reader, object_number, second_word, set_specifier_column);
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
