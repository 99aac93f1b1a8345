# What lets other projects find an install tree: the CMake package and the pkg-config files. Libraries and headers are
# installed where they are defined.

include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/ov_sql_executor)
install(EXPORT ov_sql_executorTargets NAMESPACE ov:: DESTINATION ${package_dir})

configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/ov_sql_executor-config.cmake.in ov_sql_executor-config.cmake
  INSTALL_DESTINATION ${package_dir}
  NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(ov_sql_executor-config-version.cmake COMPATIBILITY SameMajorVersion)
install(FILES
  ${PROJECT_BINARY_DIR}/ov_sql_executor-config.cmake
  ${PROJECT_BINARY_DIR}/ov_sql_executor-config-version.cmake
  DESTINATION ${package_dir})

# Every path in a pkg-config file is relative to the file's own place, so that an install tree can be moved.
file(RELATIVE_PATH prefix_from_pkgconfig ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" prefix_from_pkgconfig ${prefix_from_pkgconfig})
file(RELATIVE_PATH libdir_from_prefix ${CMAKE_INSTALL_PREFIX} ${CMAKE_INSTALL_FULL_LIBDIR})
file(RELATIVE_PATH includedir_from_prefix ${CMAKE_INSTALL_PREFIX} ${CMAKE_INSTALL_FULL_INCLUDEDIR})
foreach(package IN ITEMS ov_sql_executor ovhost ovsql)
  configure_file(${CMAKE_CURRENT_LIST_DIR}/${package}.pc.in ${package}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${package}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endforeach()

# What the headers refer to: the meaning of the operations, the dialect, and programs that need nothing but the install
# tree.
install(FILES ${PROJECT_SOURCE_DIR}/docs/operations.md ${PROJECT_SOURCE_DIR}/docs/sql.md
  DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(FILES
  ${PROJECT_SOURCE_DIR}/tests/packaging/consumer/first_query.cpp
  ${PROJECT_SOURCE_DIR}/tests/packaging/consumer/first_sql.cpp
  ${PROJECT_SOURCE_DIR}/tests/packaging/consumer/named_plan.cpp
  ${PROJECT_SOURCE_DIR}/tests/packaging/consumer/read_table.cpp
  DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples)
