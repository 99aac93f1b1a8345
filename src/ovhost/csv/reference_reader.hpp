#ifndef OVHOST_CSV_REFERENCE_READER_HPP_
#define OVHOST_CSV_REFERENCE_READER_HPP_

#include <memory>
#include <string_view>

#include "ovhost/csv/field_reader.hpp"
#include "ovhost/schema/catalog.hpp"

namespace ovhost {

// A reader for references to the objects of a table by the value of a property on which the table has a unique index of
// its own. Throws std::invalid_argument if there is none, unknown_name if the property does not exist.
std::unique_ptr<field_reader> make_reference_reader(const catalog& names, const table_info& table,
                                                    std::string_view property);

}  // namespace ovhost

#endif  // OVHOST_CSV_REFERENCE_READER_HPP_
