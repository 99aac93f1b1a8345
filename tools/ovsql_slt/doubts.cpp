#include "doubts.hpp"

#include "statement_target.hpp"

namespace slt {
namespace {

bool begins_anew(const statement_target& target) {
  return target.action == "CREATE TABLE" || target.action == "CREATE VIEW" || target.action.starts_with("DROP");
}

}  // namespace

void doubts::failed(std::string_view sql, const verdict& how) {
  const statement_target target = target_of(sql);
  if (!target.name.empty()) reasons_.insert_or_assign(target.name, verdict{how.is, "after " + target.action});
}

void doubts::done(std::string_view sql) {
  if (reasons_.empty()) return;
  const statement_target target = target_of(sql);
  if (target.name.empty()) return;
  if (begins_anew(target)) reasons_.erase(target.name);
  if (const verdict* const why = about(sql)) reasons_.insert_or_assign(target.name, verdict(*why));
}

const verdict* doubts::about(std::string_view sql) const {
  if (reasons_.empty()) return nullptr;
  if (const auto any = reasons_.find("*"); any != reasons_.end()) return &any->second;
  for (const std::string& word : words_of(sql)) {
    if (const auto found = reasons_.find(word); found != reasons_.end()) return &found->second;
  }
  return nullptr;
}

}  // namespace slt
