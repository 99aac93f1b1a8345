# Language level, warnings, visibility and instrumentation shared by every target of the tree.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_C_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

set(OV_WARNINGS -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion -Wnon-virtual-dtor -Werror)
add_compile_options(${OV_WARNINGS})
# gcc 12 warns of overlapping copies inside std::string's own concatenation (its bug 105651).
add_compile_options($<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
# Where speed does not count, the standard library checks subscripts and preconditions.
add_compile_definitions($<$<CONFIG:Debug>:_GLIBCXX_ASSERTIONS>)

if(OV_SANITIZE)
  # -g1: the lines of a stack trace; more would make the build a third slower.
  add_compile_options(-fsanitize=${OV_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer -O1 -g1)
  add_link_options(-fsanitize=${OV_SANITIZE})
  # gcc's flow analysis stumbles over the sanitizers' checks and warns of values that are never read uninitialised.
  add_compile_options($<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
  # For targets around the library, which build and read whole plans: without the checks of every single member access,
  # which double the build time of variants with 55 alternatives. The address sanitizer sees most of what they would.
  set(OV_PLAN_OPTIONS -fno-sanitize=null,alignment,object-size,vptr)
endif()
if(OV_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()
if(OV_COVERAGE)
  add_compile_options(--coverage -fprofile-update=atomic)
  add_link_options(--coverage)
endif()

# With link-time optimisation, library objects hold both forms of the code: the shared library is linked from the one,
# programs that take the objects themselves (tests and small benchmarks, see ov_plain_link) from the other.
if(CMAKE_INTERPROCEDURAL_OPTIMIZATION AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  add_compile_options(-ffat-lto-objects)
endif()
# For the folders of such programs: optimising the library again for each takes longer than compiling it.
macro(ov_plain_link)
  set(CMAKE_INTERPROCEDURAL_OPTIMIZATION OFF)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    add_link_options(-fno-lto)
  endif()
endmacro()
