#ifndef OV_SQL_EXECUTOR_VALUES_TYPE_IDENTITY_HPP_
#define OV_SQL_EXECUTOR_VALUES_TYPE_IDENTITY_HPP_

namespace meta_support {

// Names a type where no value of it is at hand.
template <class T>
struct TypeIdentity {};

}  // namespace meta_support

#endif  // OV_SQL_EXECUTOR_VALUES_TYPE_IDENTITY_HPP_
