// Makes visible what a host calls; everything else in the library is hidden.
#ifndef OVHOST_VALUES_EXPORT_HPP_
#define OVHOST_VALUES_EXPORT_HPP_

#if defined(_WIN32)
#define OVHOST_API
#else
// On a function: exported. On a class: its members are, and a host can catch it.
#define OVHOST_API __attribute__((visibility("default")))
#endif

#endif  // OVHOST_VALUES_EXPORT_HPP_
