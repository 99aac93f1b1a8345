// Makes the few names visible that cross the boundary of the library; everything else is hidden.
#ifndef OV_SQL_EXECUTOR_ERRORS_EXPORT_HPP_
#define OV_SQL_EXECUTOR_ERRORS_EXPORT_HPP_

#if defined(_WIN32)
#define OV_SQL_EXECUTOR_API
#else
// On a function: exported. On a class: its type information is shared, so that a host can catch or derive from it.
#define OV_SQL_EXECUTOR_API __attribute__((visibility("default")))
#endif

#endif  // OV_SQL_EXECUTOR_ERRORS_EXPORT_HPP_
