#include "ovsql/syntax/copying.hpp"

#include <string_view>

#include "ovsql/errors/error.hpp"
#include "ovsql/syntax/literals.hpp"

namespace ovsql::syntax {
namespace {

char take_delimiter(reader& in) {
  const place at = in.now().at;
  const std::string_view text = in.take_text("a character in single quotes");
  const bool fits = text.size() == 1 && static_cast<unsigned char>(text[0]) < 0x80 && text[0] != '"' &&
                    text[0] != '\n' && text[0] != '\r';
  if (!fits) throw error(error_kind::syntax, "a delimiter is one character of ASCII, no quote", at.begin);
  return text[0];
}

// HEADER, HEADER true, HEADER off
bool take_flag(reader& in) {
  if (!in.at(token_kind::word) && !in.at(token_kind::number)) return true;
  const token taken = in.take();
  const std::string_view word = lower_case(in.text_of(taken.at), in.trees);
  if (word == "true" || word == "on" || word == "1") return true;
  if (word == "false" || word == "off" || word == "0") return false;
  in.refuse("HEADER is true or false", taken.at);
}

void parse_format(reader& in) {
  const place at = in.now().at;
  const bool is_text = in.at(token_kind::text);
  const std::string_view format = is_text ? in.take_text("csv") : in.take_label("csv").text;
  if (lower_case(format, in.trees) != "csv") in.refuse("COPY reads the format csv only", at);
}

// What both styles of options have; false for anything else.
bool parse_option(reader& in, copy_from& of) {
  if (in.accept("delimiter"_k)) {
    in.accept("as"_k);
    of.delimiter = take_delimiter(in);
    return true;
  }
  if (!in.accept("null"_k)) return false;
  in.accept("as"_k);
  of.null_text = in.take_text("a text in single quotes");
  return true;
}

[[noreturn]] void fail_option(reader& in) {
  if (in.at(token_kind::word)) in.refuse("COPY has the options FORMAT csv, HEADER, DELIMITER and NULL", in.now().at);
  in.fail_expected("an option");
}

void parse_options_in_brackets(reader& in, copy_from& of) {
  do {
    if (in.accept("header"_k)) {
      of.header = take_flag(in);
    } else if (in.accept("format"_k)) {
      parse_format(in);
    } else if (!parse_option(in, of)) {
      fail_option(in);
    }
  } while (in.accept(token_kind::comma));
  in.expect_close();
}

void parse_options(reader& in, copy_from& of) {
  while (!in.at(token_kind::end) && !in.at(token_kind::semicolon)) {
    if (in.accept("header"_k)) {
      of.header = true;
    } else if (!in.accept("csv"_k) && !parse_option(in, of)) {
      fail_option(in);
    }
  }
}

}  // namespace

copy_from parse_copy(reader& in) {
  copy_from made{};
  made.delimiter = ',';
  in.take();
  if (in.at(token_kind::open)) in.refuse("COPY loads tables; it writes no files", in.now().at);
  made.table = in.take_dotted_name("a table");
  if (in.at(token_kind::open)) made.columns = in.take_names_in_brackets("a column");
  in.refuse_at("to"_k, "COPY loads tables; it writes no files");
  in.expect("from"_k, "FROM");
  in.refuse_at("stdin"_k, "COPY reads from a file");
  made.path = in.take_text("a file's name in single quotes");
  in.accept("with"_k);
  if (in.accept(token_kind::open)) {
    parse_options_in_brackets(in, made);
  } else {
    parse_options(in, made);
  }
  return made;
}

}  // namespace ovsql::syntax
