#ifndef OV_SQL_EXECUTOR_DATABASE_OBJ_REF_HPP_
#define OV_SQL_EXECUTOR_DATABASE_OBJ_REF_HPP_

#include "ov_sql_executor/errors/export.hpp"
#include "ovcoredb/ovcoredb.h"

namespace db_util {

// Converts a reference from the form of the core to that of rows. Loses the top 16 bits of the high part.
inline OV_OBJ_REF to_obj_ref(const ORV_REFERENCE_VALUE& reference) {
  return {reference.object_number, reference.high_part << 16 | reference.low_part};
}

// An object reference; its identity is the object number alone.
class OV_SQL_EXECUTOR_API OvObjRef {
 public:
  OvObjRef();  // names no object
  OvObjRef(const ORV_REFERENCE_VALUE& reference);
  OvObjRef(OV_OBJ_REF reference);
  OvObjRef(const OvObjRef&) = default;
  OvObjRef& operator=(const OvObjRef& other);
  OvObjRef& operator=(OvObjRef&& other) noexcept;

  bool is_valid() const;
  bool equals(const OvObjRef& other) const;
  OV_OBJ_REF reference() const;

 private:
  OV_OBJ_REF reference_;
};

static_assert(sizeof(OvObjRef) == sizeof(OV_OBJ_REF));

}  // namespace db_util

#endif  // OV_SQL_EXECUTOR_DATABASE_OBJ_REF_HPP_
