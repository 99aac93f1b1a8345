#include "ovhost/expression_words.hpp"

#include <array>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "ovhost/join_words.hpp"
#include "ovhost/value_words.hpp"

namespace ovhost {

using namespace physical_queryplan;

namespace {

// How an operation is said.
enum class form { between, before, after, call, conditional };

struct phrase {
  form stands;
  std::string_view word;
};

// By the operation's alternative.
constexpr std::array<phrase, 32> phrases = {{
    {form::between, " = "},        {form::between, " <> "},
    {form::between, " <= "},       {form::between, " < "},
    {form::between, " > "},        {form::between, " >= "},
    {form::between, " and "},      {form::between, " or "},
    {form::before, "not "},        {form::after, " is null"},
    {form::after, " is not null"}, {form::between, " + "},
    {form::between, " - "},        {form::before, "-"},
    {form::between, " / "},        {form::between, " * "},
    {form::between, " like "},     {form::between, " begins with "},
    {form::conditional, "case"},   {form::between, " xor "},
    {form::call, "concat"},        {form::between, " is a "},
    {form::call, "object number"}, {form::call, "bool"},
    {form::call, "uint64"},        {form::call, "int64"},
    {form::call, "decimal"},       {form::call, "float"},
    {form::call, "double"},        {form::call, "text"},
    {form::call, "type"},          {form::call, "prefix of pattern"},
}};

bool is_call(const expression& of) {
  return of.index() >= phrases.size() || phrases[of.index()].stands == form::call ||
         phrases[of.index()].stands == form::conditional;
}

// "case when ... then ... else ... end", as far as there are operands.
std::string say_conditional(const std::vector<std::string>& operands) {
  constexpr std::array<std::string_view, 3> words = {" when ", " then ", " else "};
  std::string result = "case";
  for (std::size_t at = 0; at < operands.size() && at < words.size(); ++at) {
    result += std::string(words[at]) + operands[at];
  }
  return result + " end";
}

}  // namespace

struct word_chooser {
  const expression_words& words;
  std::size_t alternative;

  std::string operator()(const operation& of) const {
    const phrase& how = phrases[alternative];
    std::vector<std::string> operands;
    for (const expression& each : of.operands) {
      const std::string said = words(each);
      operands.push_back(
          how.stands == form::call || how.stands == form::conditional || is_call(each) ? said : "(" + said + ")");
    }
    switch (how.stands) {
      case form::between:
        return join_words(operands, how.word);
      case form::before:
        return std::string(how.word) + join_words(operands, ", ");
      case form::after:
        return join_words(operands, ", ") + std::string(how.word);
      case form::call:
        return std::string(how.word) + "(" + join_words(operands, ", ") + ")";
      case form::conditional:
        return say_conditional(operands);
    }
    return {};
  }

  template <class T>
  std::string operator()(const property_column<T>& of) const {
    return words(of.variable) + "." + words.metadata_.property(of.property.object).name;
  }
  template <class T>
  std::string operator()(const computed<T>& of) const {
    return words.name_of(of.id, "column ");
  }
  std::string operator()(const variable& of) const {
    return words.name_of(of.id, words.metadata_.table(of.table).name + " ");
  }
  std::string operator()(const literal& of) const {
    return std::visit([this](const auto& held) { return say_literal(held); }, of);
  }

 private:
  template <class T>
  std::string say_literal(const parameter<T>& of) const {
    return "parameter " + std::to_string(of.number);
  }
  template <class T>
  std::string say_literal(const T& of) const {
    return literal_words(ov::sql_executor::value(std::in_place_type<T>, of), "");
  }
};

expression_words::expression_words(const catalog& metadata, column_names columns)
    : metadata_(metadata), columns_(std::move(columns)) {}

std::string expression_words::name_of(const identifier& id, const std::string& unnamed) const {
  const auto found = columns_.find(id);
  if (found != columns_.end()) return found->second;
  return unnamed + std::to_string(id[3]);
}

std::string expression_words::operator()(const expression& of) const {
  return std::visit(word_chooser{*this, of.index()}, static_cast<const expression_variant&>(of));
}
std::string expression_words::operator()(const column_ref& of) const { return std::visit(word_chooser{*this, 0}, of); }
std::string expression_words::operator()(const computed_column& of) const {
  return std::visit(word_chooser{*this, 0}, of);
}
std::string expression_words::operator()(const variable& of) const { return word_chooser{*this, 0}(of); }

}  // namespace ovhost
