#include "ovsql/tree_words.hpp"

#include <span>
#include <string_view>
#include <variant>

namespace tests {
namespace {

using namespace ovsql::syntax;  // NOLINT: the trees are what is written

using std::string, std::string_view;

string in_quotes(string_view text) { return "'" + string(text) + "'"; }
string_view not_if(bool negated) { return negated ? "not " : ""; }

template <class List, class Words>
string joined(const List& list, string_view between, const Words& words) {
  string all;
  for (const auto& each : list) {
    if (!all.empty()) all += between;
    all += words(each);
  }
  return all;
}

string words_of(const name& is) { return string(is.text); }
string names(name_list list, string_view between = ", ") {
  return joined(list, between, [](const name& each) { return words_of(each); });
}
string brackets(name_list list) { return list.empty() ? "" : "(" + names(list) + ")"; }
string expressions(expression_list list, string_view between = ", ") {
  return joined(list, between, [](const expression* each) { return tests::words_of(*each); });
}
string sub(const query* of) { return "{" + tests::words_of(*of) + "}"; }
string after(string_view word, const expression* is) {
  return is == nullptr ? "" : string(word) + tests::words_of(*is);
}

constexpr const char* binary_signs[] = {"+", "-", "*", "/", "%", "=", "<>", "<", "<=", ">", ">=", "^@"};
string_view sign(binary_operator op) { return binary_signs[static_cast<unsigned>(op)]; }

struct expression_words {
  string operator()(const null_literal&) const { return "null"; }
  string operator()(const truth_literal& is) const { return is.value ? "true" : "false"; }
  string operator()(const number_literal& is) const { return string(is.digits); }
  string operator()(const text_literal& is) const { return in_quotes(is.utf8); }
  string operator()(const binary_literal& is) const { return "x" + in_quotes(is.bytes); }
  string operator()(const parameter& is) const {
    return is.number == 0 ? ":" + string(is.name) : "$" + std::to_string(is.number);
  }
  string operator()(const column& is) const { return names(is.parts, "."); }
  string operator()(const all_columns& is) const { return is.of.empty() ? "*" : names(is.of, ".") + ".*"; }
  string operator()(const unary& is) const {
    constexpr const char* signs[] = {"+", "-", "not "};
    return "(" + string(signs[static_cast<unsigned>(is.op)]) + tests::words_of(*is.operand) + ")";
  }
  string operator()(const binary& is) const { return around(*is.left, string(sign(is.op)), *is.right); }
  string operator()(const chain& is) const {
    constexpr const char* signs[] = {" and ", " or ", " || "};
    return "(" + expressions(is.operands, signs[static_cast<unsigned>(is.op)]) + ")";
  }
  string operator()(const is_test& is) const {
    constexpr const char* tests[] = {"null", "true", "false", "unknown"};
    return behind(*is.operand, "is " + string(not_if(is.negated)) + tests[static_cast<unsigned>(is.test)]);
  }
  string operator()(const is_distinct& is) const {
    return around(*is.left, "is " + string(not_if(is.negated)) + "distinct from", *is.right);
  }
  string operator()(const is_of& is) const {
    return behind(*is.operand, "is " + string(not_if(is.negated)) + "of (" + names(is.types) + ")");
  }
  string operator()(const between& is) const {
    return behind(*is.operand, string(not_if(is.negated)) + "between " + tests::words_of(*is.low) + " and " +
                                   tests::words_of(*is.high));
  }
  string operator()(const like& is) const {
    return behind(*is.operand,
                  string(not_if(is.negated)) + "like " + tests::words_of(*is.pattern) + after(" escape ", is.escape));
  }
  string operator()(const in_list& is) const {
    return behind(*is.operand, string(not_if(is.negated)) + "in (" + expressions(is.members) + ")");
  }
  string operator()(const in_query& is) const {
    return behind(*is.operand, string(not_if(is.negated)) + "in " + sub(is.of));
  }
  string operator()(const exists& is) const { return "exists " + sub(is.of); }
  string operator()(const quantified& is) const {
    return behind(*is.left, string(sign(is.op)) + (is.all ? " all " : " any ") + sub(is.of));
  }
  string operator()(const scalar_query& is) const { return sub(is.of); }
  string operator()(const conditional& is) const {
    const auto branch = [](const case_branch& each) {
      return after(" when ", each.condition) + after(" then ", each.result);
    };
    return "case" + after(" ", is.operand) + joined(is.branches, "", branch) + after(" else ", is.otherwise) + " end";
  }
  string operator()(const cast& is) const {
    return "cast(" + tests::words_of(*is.operand) + " as " + string(is.to.words) + ")";
  }
  string operator()(const call& is) const {
    return words_of(is.function) + "(" + (is.star ? "*" : "") + (is.distinct ? "distinct " : "") +
           expressions(is.arguments) + ")" + after(" filter ", is.filter);
  }

 private:
  static string behind(const expression& operand, const string& rest) {
    return "(" + tests::words_of(operand) + " " + rest + ")";
  }
  static string around(const expression& left, const string& between, const expression& right) {
    return behind(left, between + " " + tests::words_of(right));
  }
};

string words_of(const source& is);

struct source_words {
  string operator()(const named_source& is) const { return words_of(is.table); }
  string operator()(const query_source& is) const { return (is.lateral ? "lateral " : "") + sub(is.of); }
  string operator()(const joined_source& is) const {
    constexpr const char* kinds[] = {"cross", "inner", "left", "right", "full"};
    const string kind = string(is.natural ? "natural " : "") + kinds[static_cast<unsigned>(is.kind)];
    const string columns = is.using_names.empty() ? "" : " using " + brackets(is.using_names);
    return "[" + words_of(*is.left) + " " + kind + " " + words_of(*is.right) + after(" on ", is.on) + columns + "]";
  }
};

string words_of(const source& is) {
  const string alias = is.alias.text.empty() ? "" : " as " + words_of(is.alias);
  return std::visit(source_words{}, is.is) + alias + brackets(is.columns);
}

struct body_words {
  string operator()(const ovsql::syntax::select& is) const {
    const auto item = [](const select_item& each) {
      return tests::words_of(*each.value) + (each.alias.text.empty() ? "" : " as " + words_of(each.alias));
    };
    string all = string("select ") + (is.distinct ? "distinct " : "") + joined(is.items, ", ", item);
    const auto from = [](const source* each) { return words_of(*each); };
    if (!is.from.empty()) all += " from " + joined(is.from, ", ", from);
    all += after(" where ", is.where);
    if (!is.group_by.empty()) all += " group by " + expressions(is.group_by);
    return all + after(" having ", is.having);
  }
  string operator()(const values& is) const {
    return "values " + joined(is.rows, ", ", [](expression_list row) { return "(" + expressions(row) + ")"; });
  }
  string operator()(const set_operation& is) const {
    constexpr const char* signs[] = {" union ", " except ", " intersect "};
    return sub(is.left) + signs[static_cast<unsigned>(is.op)] + (is.all ? "all " : "") + sub(is.right);
  }
};

string words_of(const order_item& is) {
  string all = tests::words_of(*is.key) + (is.descending ? " desc" : "");
  if (is.nulls_first) all += *is.nulls_first ? " nulls first" : " nulls last";
  return all;
}

string words_of(const column_definition& is) {
  string all = words_of(is.column);
  if (!is.type.words.empty()) all += " " + string(is.type.words);
  if (is.not_null) all += " not null";
  if (is.primary_key) all += " primary key";
  if (is.unique) all += " unique";
  if (!is.references.text.empty()) all += " references " + words_of(is.references);
  return all + after(" default ", is.default_value);
}

struct statement_words {
  string operator()(const query* is) const { return tests::words_of(*is); }
  string operator()(const create_table& is) const {
    string all = "create table " + string(is.if_not_exists ? "if not exists " : "") + words_of(is.table);
    if (is.as != nullptr) return all + " as " + sub(is.as);
    all += " (" + joined(is.columns, ", ", [](const column_definition& each) { return words_of(each); });
    for (const key_constraint& each : is.keys) {
      all += (each.primary ? "; primary key " : "; unique ") + brackets(each.columns);
    }
    return all + ")" + (is.inherits.text.empty() ? "" : " inherits " + words_of(is.inherits));
  }
  string operator()(const create_index& is) const {
    const auto key = [](const index_key& each) { return words_of(each.column) + (each.descending ? " desc" : ""); };
    return string("create ") + (is.unique ? "unique " : "") + "index " + (is.if_not_exists ? "if not exists " : "") +
           words_of(is.index) + " on " + words_of(is.table) + " (" + joined(is.keys, ", ", key) + ")";
  }
  string operator()(const create_view& is) const {
    return string("create ") + (is.or_replace ? "or replace " : "") + "view " +
           (is.if_not_exists ? "if not exists " : "") + words_of(is.view) + brackets(is.columns) + " as " + sub(is.of);
  }
  string operator()(const drop& is) const {
    constexpr const char* kinds[] = {"table ", "index ", "view "};
    return string("drop ") + kinds[static_cast<unsigned>(is.what)] + (is.if_exists ? "if exists " : "") +
           names(is.names);
  }
  string operator()(const insert& is) const {
    return "insert into " + words_of(is.table) + brackets(is.columns) +
           (is.rows == nullptr ? " default values" : " " + sub(is.rows));
  }
  string operator()(const copy_from& is) const {
    string all = "copy " + words_of(is.table) + brackets(is.columns) + " from " + in_quotes(is.path);
    if (is.header) all += " header";
    all += " delimiter " + in_quotes(string(1, is.delimiter));
    return is.null_text ? all + " null " + in_quotes(*is.null_text) : all;
  }
  string operator()(const explain& is) const {
    constexpr const char* formats[] = {"text ", "dot ", "json "};
    return string("explain ") + formats[static_cast<unsigned>(is.format)] + sub(is.of);
  }
  string operator()(const unsupported& is) const { return "unsupported " + string(is.word); }
};

}  // namespace

string words_of(const expression& is) { return std::visit(expression_words{}, is.is); }

string words_of(const query& is) {
  const auto table = [](const common_table& each) {
    return words_of(each.table) + brackets(each.columns) + " as " + sub(each.of);
  };
  string all = is.with.empty() ? "" : "with " + joined(is.with, ", ", table) + " ";
  all += std::visit(body_words{}, is.body);
  if (!is.order_by.empty()) {
    all += " order by " + joined(is.order_by, ", ", [](const order_item& each) { return words_of(each); });
  }
  return all + after(" limit ", is.limit) + after(" offset ", is.offset);
}

string words_of(const statement& is) { return std::visit(statement_words{}, is.is); }

}  // namespace tests
