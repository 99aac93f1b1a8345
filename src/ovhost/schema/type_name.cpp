#include "ovhost/schema/type_name.hpp"

#include <algorithm>
#include <string>

#include "ovdbmetalayer/metalayer.hpp"
#include "ovhost/values/text.hpp"

namespace ovhost {

std::uint64_t type_name_word(std::u16string_view name) {
  const std::u16string folded = base_form(name);
  metalayer::DottedName parts;
  for (std::size_t start = 0; start < folded.size();) {
    const std::size_t end = std::min(folded.find(u'.', start), folded.size());
    parts.push_back(folded.substr(start, end - start));
    start = end + 1;
  }
  return metalayer::DottedName2RawView(parts).words[0];
}

}  // namespace ovhost
