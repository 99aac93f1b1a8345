#include "ovsql/syntax/types.hpp"

#include <string>

#include "ovsql/syntax/literals.hpp"

namespace ovsql::syntax {
namespace {

// (10, 2)
void skip_size(reader& in) {
  if (!in.accept(token_kind::open)) return;
  do {
    in.accept(token_kind::minus);
    in.expect(token_kind::number, "a number");
  } while (in.accept(token_kind::comma));
  in.expect_close();
}

class type_words {
 public:
  explicit type_words(reader& in) : in_(in), first_(in.take_dotted_name("a type")), last_(lower(first_)) {}

  void add(const name& word) {
    if (more_.empty()) more_ = last_;
    more_ += ' ';
    more_ += lower(word);
  }
  type_name made() {
    return {more_.empty() ? last_ : in_.trees.keep(std::string_view(more_)), in_.from(first_.at.begin)};
  }
  std::string_view last() const { return last_; }

 private:
  std::string_view lower(const name& word) {
    const bool is_quoted = word.text.data() != nullptr && in_.text_of(word.at).front() == '"';
    return is_quoted ? word.text : lower_case(word.text, in_.trees);
  }

  reader& in_;
  name first_;
  std::string_view last_;
  std::string more_;
};

// time (3) WITH TIME ZONE
void add_time_zone(reader& in, type_words& words) {
  if (words.last() != "time" && words.last() != "timestamp") return;
  if (!in.at("with"_k) && !in.at("without"_k)) return;
  if (in.after_now().word != "time"_k) return;
  words.add(in.take_label("WITH"));
  words.add(in.take_label("TIME"));
  if (!in.at("zone"_k)) in.fail_expected("ZONE");
  words.add(in.take_label("ZONE"));
}

}  // namespace

type_name parse_type(reader& in) {
  type_words words(in);
  skip_size(in);
  add_time_zone(in, words);
  while (in.at_name() && !in.at("generated"_k)) {
    words.add(in.take_name("a type"));
    skip_size(in);
  }
  return words.made();
}

type_name parse_short_type(reader& in) {
  type_words words(in);
  const bool is_character = words.last() == "character" || words.last() == "char";
  if ((words.last() == "double" && in.at("precision"_k)) || (is_character && in.at("varying"_k))) {
    words.add(in.take_name("a type"));
  }
  skip_size(in);
  add_time_zone(in, words);
  return words.made();
}

}  // namespace ovsql::syntax
