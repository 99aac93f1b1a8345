#ifndef OVHOST_CSV_REFERENCE_READER_HPP_
#define OVHOST_CSV_REFERENCE_READER_HPP_

#include <memory>
#include <string_view>

#include "ovhost/csv/field_reader.hpp"
#include "ovhost/schema/catalog.hpp"

namespace ovhost {

// Makes a reader for references to the objects of a table. A field names an object by the value of a property. Throws
// std::invalid_argument where the table has no unique index of its own on the property, unknown_name where the property
// does not exist.
std::unique_ptr<field_reader> make_reference_reader(const catalog& names, const table_info& table,
                                                    std::string_view property);

}  // namespace ovhost

#endif  // OVHOST_CSV_REFERENCE_READER_HPP_
