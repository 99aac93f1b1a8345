// Where the metadata lie: the tags of their tables, their column numbers and the handles of their indexes. Whoever
// writes metadata creates tables and indexes with these numbers; whoever reads them finds them there.
//
// What there has to be:
//
//    table      one object for each table of the application
//    member     one object for each column that a table declares itself, not for those of its base. Every table also
//               declares columns 0 (uint64) and 1 (any type: it reads as the set specifier). So the columns of its
//               members are 0, 1, 2 and so on; Plan throws std::out_of_range where they are not
//    values     a reference_tag, a member's column, an index's handle, a position and ascending; Plan throws
//               db_exception 4272 where one has no value
//    names      of members, which are found by them
//
// The numbers are not checked against the data. What the included core answers to wrong ones:
//
//    the tag in a reference to metadata    4105, thrown by Plan
//    reference_tag, a member's column      4105, thrown where the property is read, or another column's value
//    the type of a member                  4106, thrown where the property is read
//    the index or the handle of a scan     rows of the other table's objects; 4105 where a property of them is read
//
// share/doc/ov_sql_executor/examples/read_table.cpp writes all of it for one table.
#ifndef OVDBMETALAYER_LAYOUT_HPP_
#define OVDBMETALAYER_LAYOUT_HPP_

#include <cstdint>

namespace metalayer::layout {

namespace table_tag {
inline constexpr std::uint16_t table = 1;
inline constexpr std::uint16_t type = 2;
inline constexpr std::uint16_t member = 3;
inline constexpr std::uint16_t index = 4;
inline constexpr std::uint16_t indexed_column = 5;
inline constexpr std::uint16_t set_specifier = 6;
inline constexpr std::uint16_t first_free = 16;  // tags from here on are the application's
}  // namespace table_tag

namespace table_column {
inline constexpr std::uint32_t base = 3;             // reference to a table
inline constexpr std::uint32_t name = 6;             // text
inline constexpr std::uint32_t reference_tag = 9;    // uint64
inline constexpr std::uint32_t primitive_type = 10;  // uint64, always primitive_type::reference
}  // namespace table_column

namespace type_column {
inline constexpr std::uint32_t name = 6;             // text
inline constexpr std::uint32_t primitive_type = 10;  // uint64
}  // namespace type_column

namespace member_column {
inline constexpr std::uint32_t table = 3;   // reference to the declaring table
inline constexpr std::uint32_t type = 5;    // reference to a type, or to the table that the member refers to
inline constexpr std::uint32_t name = 6;    // text
inline constexpr std::uint32_t column = 9;  // int64
}  // namespace member_column

namespace index_column {
inline constexpr std::uint32_t table = 3;   // reference to a table
inline constexpr std::uint32_t handle = 6;  // uint64
inline constexpr std::uint32_t name = 7;    // text
inline constexpr std::uint32_t unique = 8;  // bool
}  // namespace index_column

namespace indexed_column_column {
inline constexpr std::uint32_t index = 3;      // reference to an index
inline constexpr std::uint32_t member = 4;     // reference to a member
inline constexpr std::uint32_t position = 5;   // uint64, from 0
inline constexpr std::uint32_t ascending = 6;  // bool
}  // namespace indexed_column_column

namespace set_specifier_column {
inline constexpr std::uint32_t text = 3;       // text: the set specifier
inline constexpr std::uint32_t name_word = 4;  // uint64: first word of the raw view of its name, case folded
}  // namespace set_specifier_column

// The keys of the indexes, all columns ascending.
namespace index_handle {
inline constexpr std::uint64_t table_name = 1;          // table: name
inline constexpr std::uint64_t member_pk = 2;           // member: table, name
inline constexpr std::uint64_t index_pk = 3;            // index: table, name
inline constexpr std::uint64_t indexed_column_pk = 4;   // indexed column: index, position
inline constexpr std::uint64_t set_specifier_type = 5;  // set specifier: name_word
inline constexpr std::uint64_t first_free = 16;         // handles from here on are the application's
}  // namespace index_handle

namespace primitive_type {
inline constexpr std::uint64_t text = 1;
inline constexpr std::uint64_t binary = 2;
inline constexpr std::uint64_t int64 = 3;
inline constexpr std::uint64_t uint64 = 4;
inline constexpr std::uint64_t decimal = 5;
inline constexpr std::uint64_t float32 = 6;
inline constexpr std::uint64_t float64 = 7;
inline constexpr std::uint64_t reference = 8;
inline constexpr std::uint64_t boolean = 10;
}  // namespace primitive_type

}  // namespace metalayer::layout

#endif  // OVDBMETALAYER_LAYOUT_HPP_
