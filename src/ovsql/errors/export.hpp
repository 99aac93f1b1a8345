#ifndef OVSQL_ERRORS_EXPORT_HPP_
#define OVSQL_ERRORS_EXPORT_HPP_

#if defined(__GNUC__)
#define OVSQL_API __attribute__((visibility("default")))
#else
#define OVSQL_API
#endif

#endif  // OVSQL_ERRORS_EXPORT_HPP_
