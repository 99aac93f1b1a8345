#include "ovhost/plans/expression_words.hpp"

#include <array>
#include <concepts>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "ovhost/plans/join_words.hpp"
#include "ovhost/values/value_words.hpp"

namespace ovhost {

using namespace physical_queryplan;

namespace {

// Where the word of an operation stands.
enum class form { between, before, after, call, conditional };

struct phrase {
  form stands;
  std::string_view word;

  bool encloses() const { return stands == form::call || stands == form::conditional; }
};

// Every operation needs a line here, or it does not compile.
constexpr phrase phrase_of(const Equality&) { return {form::between, " = "}; }
constexpr phrase phrase_of(const Inequality&) { return {form::between, " <> "}; }
constexpr phrase phrase_of(const AtMost&) { return {form::between, " <= "}; }
constexpr phrase phrase_of(const Less&) { return {form::between, " < "}; }
constexpr phrase phrase_of(const Greater&) { return {form::between, " > "}; }
constexpr phrase phrase_of(const AtLeast&) { return {form::between, " >= "}; }
constexpr phrase phrase_of(const And&) { return {form::between, " and "}; }
constexpr phrase phrase_of(const Or&) { return {form::between, " or "}; }
constexpr phrase phrase_of(const Not&) { return {form::before, "not "}; }
constexpr phrase phrase_of(const NullTest&) { return {form::after, " is null"}; }
constexpr phrase phrase_of(const NotNullTest&) { return {form::after, " is not null"}; }
constexpr phrase phrase_of(const Sum&) { return {form::between, " + "}; }
constexpr phrase phrase_of(const Difference&) { return {form::between, " - "}; }
constexpr phrase phrase_of(const Negation&) { return {form::before, "-"}; }
constexpr phrase phrase_of(const Quotient&) { return {form::between, " / "}; }
constexpr phrase phrase_of(const Product&) { return {form::between, " * "}; }
constexpr phrase phrase_of(const PatternMatch&) { return {form::between, " like "}; }
constexpr phrase phrase_of(const PrefixTest&) { return {form::between, " begins with "}; }
constexpr phrase phrase_of(const Conditional&) { return {form::conditional, "case"}; }
constexpr phrase phrase_of(const ExclusiveOr&) { return {form::between, " xor "}; }
constexpr phrase phrase_of(const Concatenation&) { return {form::call, "concat"}; }
constexpr phrase phrase_of(const TypeTest&) { return {form::between, " is a "}; }
constexpr phrase phrase_of(const ObjectNumber&) { return {form::call, "object number"}; }
constexpr phrase phrase_of(const ToBool&) { return {form::call, "bool"}; }
constexpr phrase phrase_of(const ToUint64&) { return {form::call, "uint64"}; }
constexpr phrase phrase_of(const ToInt64&) { return {form::call, "int64"}; }
constexpr phrase phrase_of(const ToDecimal&) { return {form::call, "decimal"}; }
constexpr phrase phrase_of(const ToFloat&) { return {form::call, "float"}; }
constexpr phrase phrase_of(const ToDouble&) { return {form::call, "double"}; }
constexpr phrase phrase_of(const ToText&) { return {form::call, "text"}; }
constexpr phrase phrase_of(const ToSetSpecifier&) { return {form::call, "type"}; }
constexpr phrase phrase_of(const PrefixPattern&) { return {form::call, "prefix of pattern"}; }

// Tells whether the words are one unit that needs no brackets.
struct enclosed {
  template <std::derived_from<operation> Operation>
  bool operator()(const Operation& of) const {
    return phrase_of(of).encloses();
  }
  template <class Leaf>
  bool operator()(const Leaf&) const {
    return true;
  }
};

// Says "case when ... then ... else ... end", as far as there are operands.
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

  template <std::derived_from<operation> Operation>
  std::string operator()(const Operation& of) const {
    return say_operation(phrase_of(of), of.operands);
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
  std::string say_operation(const phrase& how, const std::vector<expression>& of) const {
    std::vector<std::string> operands;
    operands.reserve(of.size());
    for (const expression& each : of) operands.push_back(say_operand(how, each));
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

  std::string say_operand(const phrase& how, const expression& of) const {
    const std::string said = words(of);
    const bool stands_alone = how.encloses() || std::visit(enclosed(), static_cast<const expression_variant&>(of));
    return stands_alone ? said : "(" + said + ")";
  }

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
  return std::visit(word_chooser{*this}, static_cast<const expression_variant&>(of));
}
std::string expression_words::operator()(const column_ref& of) const { return std::visit(word_chooser{*this}, of); }
std::string expression_words::operator()(const computed_column& of) const {
  return std::visit(word_chooser{*this}, of);
}
std::string expression_words::operator()(const variable& of) const { return word_chooser{*this}(of); }

}  // namespace ovhost
