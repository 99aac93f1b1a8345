#include "ov_sql_executor/database/obj_ref.hpp"

namespace db_util {

OvObjRef::OvObjRef() : reference_{0, 0} {}
OvObjRef::OvObjRef(const ORV_REFERENCE_VALUE& reference) : reference_(to_obj_ref(reference)) {}
OvObjRef::OvObjRef(OV_OBJ_REF reference) : reference_(reference) {}
OvObjRef& OvObjRef::operator=(const OvObjRef& other) = default;
OvObjRef& OvObjRef::operator=(OvObjRef&& other) noexcept = default;

bool OvObjRef::is_valid() const { return reference_.object_number != 0; }

bool OvObjRef::equals(const OvObjRef& other) const {
  return reference_.object_number == other.reference_.object_number;
}

OV_OBJ_REF OvObjRef::reference() const { return reference_; }

}  // namespace db_util
