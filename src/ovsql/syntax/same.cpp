#include "ovsql/syntax/same.hpp"

#include <algorithm>

namespace ovsql::syntax {
namespace {

class comparison {
 public:
  comparison(std::string_view text, const std::function<bool(const expression&, const expression&)>& same_column)
      : text_(text), same_column_(same_column) {}

  bool operator()(const expression* left, const expression* right) const {
    if (left == right) return true;
    if (left == nullptr || right == nullptr || left->is.index() != right->is.index()) return false;
    if (std::holds_alternative<column>(left->is)) return same_column_(*left, *right);
    if (has_query(*left)) return words(*left) == words(*right);
    return std::visit([&]<class T>(const T& held) { return alike(held, *std::get_if<T>(&right->is)); }, left->is);
  }

 private:
  bool all(expression_list left, expression_list right) const {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(), *this);
  }

  static bool has_query(const expression& of) {
    return std::holds_alternative<in_query>(of.is) || std::holds_alternative<exists>(of.is) ||
           std::holds_alternative<quantified>(of.is) || std::holds_alternative<scalar_query>(of.is);
  }
  std::string_view words(const expression& of) const { return text_.substr(of.at.begin, of.at.end - of.at.begin); }

  template <class Query>
  static bool alike(const Query&, const Query&) {
    return false;
  }
  static bool alike(const null_literal&, const null_literal&) { return true; }
  static bool alike(const truth_literal& a, const truth_literal& b) { return a.value == b.value; }
  static bool alike(const number_literal& a, const number_literal& b) { return a.digits == b.digits; }
  static bool alike(const text_literal& a, const text_literal& b) { return a.utf8 == b.utf8; }
  static bool alike(const binary_literal& a, const binary_literal& b) { return a.bytes == b.bytes; }
  static bool alike(const parameter& a, const parameter& b) { return a.number == b.number && a.name == b.name; }
  static bool alike(const column&, const column&) { return false; }
  static bool alike(const all_columns&, const all_columns&) { return false; }
  bool alike(const unary& a, const unary& b) const { return a.op == b.op && (*this)(a.operand, b.operand); }
  bool alike(const binary& a, const binary& b) const {
    return a.op == b.op && (*this)(a.left, b.left) && (*this)(a.right, b.right);
  }
  bool alike(const chain& a, const chain& b) const { return a.op == b.op && all(a.operands, b.operands); }
  bool alike(const is_test& a, const is_test& b) const {
    return a.test == b.test && a.negated == b.negated && (*this)(a.operand, b.operand);
  }
  bool alike(const is_distinct& a, const is_distinct& b) const {
    return a.negated == b.negated && (*this)(a.left, b.left) && (*this)(a.right, b.right);
  }
  bool alike(const is_of& a, const is_of& b) const {
    return a.negated == b.negated && (*this)(a.operand, b.operand) &&
           std::equal(a.types.begin(), a.types.end(), b.types.begin(), b.types.end(),
                      [](const name& left, const name& right) { return left.text == right.text; });
  }
  bool alike(const between& a, const between& b) const {
    return a.negated == b.negated && (*this)(a.operand, b.operand) && (*this)(a.low, b.low) && (*this)(a.high, b.high);
  }
  bool alike(const like& a, const like& b) const {
    return a.negated == b.negated && (*this)(a.operand, b.operand) && (*this)(a.pattern, b.pattern) &&
           (*this)(a.escape, b.escape);
  }
  bool alike(const in_list& a, const in_list& b) const {
    return a.negated == b.negated && (*this)(a.operand, b.operand) && all(a.members, b.members);
  }
  bool alike(const conditional& a, const conditional& b) const {
    return (*this)(a.operand, b.operand) && (*this)(a.otherwise, b.otherwise) &&
           std::equal(a.branches.begin(), a.branches.end(), b.branches.begin(), b.branches.end(),
                      [this](const case_branch& left, const case_branch& right) {
                        return (*this)(left.condition, right.condition) && (*this)(left.result, right.result);
                      });
  }
  bool alike(const cast& a, const cast& b) const { return a.to.words == b.to.words && (*this)(a.operand, b.operand); }
  bool alike(const call& a, const call& b) const {
    return a.function.text == b.function.text && a.star == b.star && a.distinct == b.distinct &&
           all(a.arguments, b.arguments) && (*this)(a.filter, b.filter);
  }

  std::string_view text_;
  const std::function<bool(const expression&, const expression&)>& same_column_;
};

}  // namespace

bool same(const expression& left, const expression& right, std::string_view text,
          const std::function<bool(const expression&, const expression&)>& same_column) {
  return comparison(text, same_column)(&left, &right);
}

}  // namespace ovsql::syntax
