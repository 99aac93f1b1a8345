#include "core_shim/core_shim.hpp"

#include <dlfcn.h>

#include <boost/preprocessor/cat.hpp>
#include <boost/preprocessor/punctuation/comma_if.hpp>
#include <boost/preprocessor/seq/for_each_i.hpp>
#include <boost/preprocessor/variadic/to_seq.hpp>
#include <set>
#include <string>
#include <utility>

#include "ovcoredb/ovcoredb.h"

namespace core_shim {

namespace {

constexpr const char* free_name = "orv_iterator_free";

struct planned_failure {
  std::string name;              // empty: any call but a free
  std::uint64_t calls_left = 0;  // 0: none fails
  std::uint32_t status = 0;
  repeat how = repeat::once;

  bool concerns(std::string_view call) const { return name.empty() ? call != free_name : call == name; }
};

struct records {
  planned_failure failure;
  std::uint64_t failures = 0;
  std::vector<std::uint32_t> opening_flags;
};

records now;
std::set<std::uint64_t> open;
std::uint64_t frees_of_nothing = 0;

place here = place::elsewhere;

// Marks where the program is until the end of the block.
class stay {
 public:
  explicit stay(place at) : before_(std::exchange(here, at)) {}
  ~stay() { here = before_; }
  stay(const stay&) = delete;
  stay& operator=(const stay&) = delete;

 private:
  place before_;
};

// Returns the status that a call is to fail with, or 0.
std::uint32_t begin(std::string_view name) {
  planned_failure& failure = now.failure;
  if (failure.calls_left == 0 || !failure.concerns(name) || --failure.calls_left != 0) return 0;
  if (failure.how == repeat::from_then_on) failure.calls_left = 1;
  ++now.failures;
  return failure.status;
}

// Begins a call that only fails when it is asked to by name.
std::uint32_t begin_by_name(std::string_view name) { return now.failure.name == name ? begin(name) : 0; }

template <class Function>
Function* next_definition(const char* name) {
  const stay in(place::shim);
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

void reset() {
  const stay in(place::shim);
  now = {};
}

place where() { return here; }
std::uint64_t failures() { return now.failures; }
std::size_t open_iterators() { return open.size(); }
std::uint64_t wrong_frees() { return frees_of_nothing; }

void fail_call(std::uint64_t k, std::uint32_t status, repeat how) { fail_call("", k, status, how); }
void fail_call(std::string_view name, std::uint64_t k, std::uint32_t status, repeat how) {
  const stay in(place::shim);
  now.failure = {std::string(name), k, status, how};
}

const std::vector<std::uint32_t>& opening_flags() { return now.opening_flags; }

}  // namespace core_shim

using namespace core_shim;

// NOLINTBEGIN(cppcoreguidelines-macro-usage): functions of a given name and signature are made by a macro only
#define CORE_SHIM_PARAMETER(r, data, i, type) BOOST_PP_COMMA_IF(i) type BOOST_PP_CAT(argument, i)
#define CORE_SHIM_ARGUMENT(r, data, i, type) BOOST_PP_COMMA_IF(i) BOOST_PP_CAT(argument, i)
#define CORE_SHIM_EACH(what, ...) BOOST_PP_SEQ_FOR_EACH_I(what, _, BOOST_PP_VARIADIC_TO_SEQ(__VA_ARGS__))

// A call that returns a status.
#define CORE_SHIM_CALL(name, ...)                                     \
  uint32_t name(CORE_SHIM_EACH(CORE_SHIM_PARAMETER, __VA_ARGS__)) {   \
    static auto* const next = next_definition<decltype(name)>(#name); \
    if (const std::uint32_t status = begin(#name)) return status;     \
    const stay in(place::core);                                       \
    return next(CORE_SHIM_EACH(CORE_SHIM_ARGUMENT, __VA_ARGS__));     \
  }

// A call that returns a size. Fails only by name, since it has no status.
#define CORE_SHIM_SIZE(result, name, ...)                                                  \
  result name(CORE_SHIM_EACH(CORE_SHIM_PARAMETER, __VA_ARGS__)) {                          \
    static auto* const next = next_definition<decltype(name)>(#name);                      \
    if (const std::uint32_t size = begin_by_name(#name)) return static_cast<result>(size); \
    const stay in(place::core);                                                            \
    return next(CORE_SHIM_EACH(CORE_SHIM_ARGUMENT, __VA_ARGS__));                          \
  }

#define CORE_SHIM_GETTER(name, out) CORE_SHIM_CALL(name, uint64_t, uint64_t, uint64_t, uint32_t, out)
// NOLINTEND(cppcoreguidelines-macro-usage)

CORE_SHIM_GETTER(orv_context_get_ulong, uint64_t*)
CORE_SHIM_GETTER(orv_context_get_long, int64_t*)
CORE_SHIM_GETTER(orv_context_get_decimal, int64_t*)
CORE_SHIM_GETTER(orv_context_get_float, float*)
CORE_SHIM_GETTER(orv_context_get_double, double*)
CORE_SHIM_GETTER(orv_context_get_binary, ORV_BYTES*)
CORE_SHIM_GETTER(orv_context_get_reference, ORV_REFERENCE_VALUE*)
CORE_SHIM_GETTER(orv_context_get_string, const uint8_t**)
CORE_SHIM_GETTER(orv_meta_get_bool, uint64_t*)
CORE_SHIM_CALL(orv_context_get_setspec, uint64_t, uint64_t, uint64_t, const uint8_t**)
CORE_SHIM_CALL(orv_context_lookup, uint64_t, uint64_t, uint64_t*)
CORE_SHIM_CALL(orv_context_convert_turbotext_to_ucs2, uint64_t, const uint8_t*, uint32_t, const uint8_t**, uint32_t)
CORE_SHIM_CALL(orv_context_convert_turbotext_to_base_ucs2, uint64_t, const uint8_t*, uint32_t, const uint8_t**,
               uint32_t)
CORE_SHIM_CALL(orv_context_convert_ucs2_to_turbotext, uint64_t, const ORV_UCS2*, uint8_t, const uint8_t**)
CORE_SHIM_CALL(orv_context_convert_ucs2_to_setspectt, uint64_t, const ORV_UCS2*, uint8_t, const uint8_t**)
CORE_SHIM_SIZE(int32_t, orv_convert_turbotext_to_ucs2, const uint8_t*, uint32_t, ORV_UCS2*, uint32_t)
CORE_SHIM_SIZE(int32_t, orv_convert_turbotext_to_base_ucs2, const uint8_t*, uint32_t, ORV_UCS2*, uint32_t)
CORE_SHIM_SIZE(uint32_t, orv_convert_ucs2_to_turbotext, const ORV_UCS2*, uint8_t, uint8_t*, uint32_t)
CORE_SHIM_CALL(orv_iterator_next, uint64_t, ORV_REFERENCE_VALUE*)
#ifndef CORE_SHIM_ONLY_STEPS
CORE_SHIM_CALL(orv_iterator_skip, uint64_t, uint64_t, uint64_t*)
#endif

uint32_t orv_context_create_iterator(uint64_t context, uint64_t index, uint32_t flags, const uint8_t* first_key,
                                     const uint8_t* last_key, uint64_t* iterator) {
  static auto* const next = next_definition<decltype(orv_context_create_iterator)>("orv_context_create_iterator");
  if (const std::uint32_t status = begin("orv_context_create_iterator")) return status;
  std::uint32_t status = ORV_OK;
  {
    const stay in(place::core);
    status = next(context, index, flags, first_key, last_key, iterator);
  }
  const stay in(place::shim);
  now.opening_flags.push_back(flags);
  if (status == ORV_OK) open.insert(*iterator);
  return status;
}

uint32_t orv_iterator_free(uint64_t iterator) {
  static auto* const next = next_definition<decltype(orv_iterator_free)>("orv_iterator_free");
  const std::uint32_t failure = begin(free_name);
  {
    const stay in(place::shim);
    if (open.erase(iterator) == 0) ++frees_of_nothing;
  }
  const stay in(place::core);
  const std::uint32_t status = next(iterator);
  return failure != 0 ? failure : status;
}
