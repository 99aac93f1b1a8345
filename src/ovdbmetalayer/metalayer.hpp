// The metadata layer: the indexes that hold the metadata, the calling thread's context for reading it, and the two
// lookups that need to know how types are stored. It reads everything through the C interface of the core.
//
// The metadata are ordinary objects of the database; layout.hpp has the numbers of their tables, columns and indexes.
// Columns 0 and 1 of every table are the object's number (uint64) and its set specifier. Numbers not listed are unused.
#ifndef OVDBMETALAYER_METALAYER_HPP_
#define OVDBMETALAYER_METALAYER_HPP_

#include <cstdint>
#include <string>
#include <vector>

#include "ovcoredb/ovcoredb.h"

#if defined(__GNUC__)
#define OVDBMETALAYER_API __attribute__((visibility("default")))
#else
#define OVDBMETALAYER_API
#endif

namespace metalayer {

// The calling thread's context for metadata reads. A host sets it on each thread that plans or converts type names. It
// is 0 until then, and a read fails with db_exception 4101 from the included core.
struct OVDBMETALAYER_API TlsMetalayerContext {
  static std::uint64_t& Current();
};

// Handles of the indexes over the metadata.
struct OVDBMETALAYER_API Table {
  static std::uint64_t index_id_TableName();  // tables by name
};
struct OVDBMETALAYER_API Member {
  static std::uint64_t index_id_MemberPK();  // members by the object number of their table, then by name
};
struct OVDBMETALAYER_API Index {
  static std::uint64_t index_id_IndexPK();  // indexes by the object number of their table, then by name
};
struct OVDBMETALAYER_API IndexedColumn {
  static std::uint64_t index_id_IndexedColumnPK();  // by the object number of their index, then by position in the key
};
struct OVDBMETALAYER_API SetSpecifier {
  static std::uint64_t index_id_Type();  // by the first word of the raw view of the type's name
};

// Reads the primitive type number of a type object on the current context: 1 text, 2 binary, 3 int64, 4 uint64, 5
// decimal, 6 float, 7 double, 8 reference (a table is such a type), 10 bool. Gives 0 for the null reference and for a
// type that states none. Returns a status of the core; writes prim_type only when that is 0.
OVDBMETALAYER_API std::uint32_t PrimTypeByTypeRef(const OV_OBJ_REF& type, std::uint32_t& prim_type);

// A type name such as "Shop.Order", split at its full stops.
using DottedName = std::vector<std::u16string>;

// A 128-bit digest by which a name is looked up (FNV-1a over the units of every part, each part followed by a full
// stop).
struct RawView {
  std::uint64_t words[2];
};
OVDBMETALAYER_API RawView DottedName2RawView(const DottedName& name);

}  // namespace metalayer

#endif  // OVDBMETALAYER_METALAYER_HPP_
