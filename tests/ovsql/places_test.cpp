#include "ovsql/parsed.hpp"

namespace tests {
namespace {

using namespace ovsql::syntax;  // NOLINT: the trees are what is tested

// Places are parts of the whole text, brackets included.
TEST(SqlPlaces, cover_what_is_written) {
  const std::string_view sql = "; SELECT a+ b, (c AND d)  FROM t x WHERE f ( 1 ) ; SELECT 2";
  const auto text = [&](place at) { return sql.substr(at.begin, at.end - at.begin); };
  memory in;
  std::size_t next = 0;
  const statement* const made = parse(sql, next, in);
  ASSERT_NE(made, nullptr);
  EXPECT_EQ(text(made->at), "SELECT a+ b, (c AND d)  FROM t x WHERE f ( 1 )");
  EXPECT_EQ(sql.substr(next), " SELECT 2");

  const query& whole = *std::get<const query*>(made->is);
  EXPECT_EQ(text(whole.at), text(made->at));
  const auto& body = std::get<ovsql::syntax::select>(whole.body);
  EXPECT_EQ(text(body.items[0].value->at), "a+ b");
  EXPECT_EQ(text(std::get<binary>(body.items[0].value->is).sign), "+");
  EXPECT_EQ(text(body.items[1].value->at), "(c AND d)");
  EXPECT_EQ(text(body.from[0]->at), "t x");
  EXPECT_EQ(text(body.where->at), "f ( 1 )");
}

TEST(SqlPlaces, end_before_the_semicolon_of_what_is_skipped) {
  const std::string_view sql = " UPDATE t SET a = 1 ;";
  memory in;
  std::size_t next = 0;
  const statement* const made = parse(sql, next, in);
  EXPECT_EQ(sql.substr(made->at.begin, made->at.end - made->at.begin), "UPDATE t SET a = 1");
  EXPECT_EQ(next, sql.size());
}

TEST(SqlParameters, are_counted_up_to_the_highest_number) {
  memory in;
  std::size_t next = 0;
  EXPECT_EQ(parse("SELECT ?, ?7, :a, $3", next, in)->question_marks, 7U);
}

}  // namespace
}  // namespace tests
