// Deep and long statements, on a small stack.
#include <pthread.h>

#include <functional>

#include "ovsql/parsed.hpp"

namespace tests {
namespace {

using ovsql::error_kind;

void run_on_small_stack(std::function<void()> action) {
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setstacksize(&attributes, std::size_t{256} * 1024);
  pthread_t thread{};
  const auto start = [](void* any) -> void* { return (*static_cast<std::function<void()>*>(any))(), nullptr; };
  ASSERT_EQ(pthread_create(&thread, &attributes, start, &action), 0);
  pthread_attr_destroy(&attributes);
  pthread_join(thread, nullptr);
}

std::string repeated(std::string_view part, std::size_t times) {
  std::string all;
  all.reserve(part.size() * times);
  while (times-- != 0) all += part;
  return all;
}

struct nesting {
  const char* begin;
  const char* level;
  const char* inside;
  const char* end_of_level;
};

constexpr nesting nestings[] = {
    {"SELECT ", "(", "1", ")"},
    {"SELECT ", "NOT ", "a", ""},
    {"SELECT ", "- ", "1", ""},
    {"SELECT ", "a OR (", "b", ")"},
    {"SELECT ", "f(", "1", ")"},
    {"SELECT ", "a IN (", "1", ")"},
    {"SELECT ", "a BETWEEN ", "1", " AND 2"},
    {"SELECT ", "a LIKE (", "b", ")"},
    {"SELECT ", "CASE WHEN a THEN ", "1", " END"},
    {"SELECT ", "CAST(", "1", " AS INT)"},
    {"SELECT ", "(SELECT ", "1", ")"},
    {"SELECT ", "EXISTS (SELECT ", "1", ")"},
    {"SELECT ", "a = ANY (SELECT ", "1", ")"},
    {"SELECT * FROM ", "(", "a", " JOIN b ON c)"},
    {"SELECT * FROM ", "a JOIN ", "b", " ON c"},
    {"SELECT * FROM ", "(SELECT * FROM ", "a", ")"},
    {"SELECT * FROM ", "LATERAL (SELECT * FROM ", "a", ")"},
    {"", "(", "SELECT 1", ")"},
    {"SELECT 1 ", "UNION (SELECT 1 ", "", ")"},
    {"", "WITH a AS (", "SELECT 1", ") SELECT 1"},
};

// A statement nested `times` deep.
std::string nested(const nesting& of, std::size_t times) {
  return of.begin + repeated(of.level, times) + of.inside + repeated(of.end_of_level, times);
}

TEST(SqlDepth, is_an_error_where_the_stack_ends) {
  run_on_small_stack([] {
    for (const nesting& each : nestings) {
      const std::string sql = nested(each, 100000);
      ovsql::syntax::memory memory;
      std::size_t next = 0;
      try {
        ovsql::syntax::parse(sql, next, memory);
        ADD_FAILURE() << each.level;
      } catch (const ovsql::error& failed) {
        EXPECT_EQ(failed.kind(), error_kind::limit) << each.level << ": " << failed.what();
        EXPECT_GT(failed.position(), 0U);
        EXPECT_LT(failed.position(), sql.size() - 1);
        EXPECT_EQ(next, sql.size());
      }
    }
  });
}

TEST(SqlDepth, of_a_dozen_levels_fits_a_small_stack) {
  run_on_small_stack([] {
    for (const nesting& each : nestings) {
      const std::string words = parsed(nested(each, 12));
      EXPECT_FALSE(words.starts_with("error")) << each.level << ": " << words;
    }
  });
}

struct row {
  const char* begin;
  const char* part;
  const char* end;
};

TEST(SqlLength, needs_no_stack) {
  constexpr row rows[] = {{"SELECT a", " + b", ""},
                          {"SELECT a", " AND b", ""},
                          {"SELECT a", " || b", ""},
                          {"SELECT a", "::int", ""},
                          {"SELECT a", " IS NULL", ""},
                          {"SELECT a.b", ".c", ""},
                          {"SELECT a IN (1", ", 2", ")"},
                          {"SELECT CASE", " WHEN a THEN b", " END"},
                          {"SELECT 1", " UNION SELECT 2", ""},
                          {"SELECT 1", " INTERSECT SELECT 2", ""},
                          {"SELECT * FROM a", ", b", ""},
                          {"SELECT * FROM a", " CROSS JOIN b", ""},
                          {"VALUES (1)", ", (2)", ""}};
  run_on_small_stack([&] {
    for (const row& each : rows) {
      const std::string sql = each.begin + repeated(each.part, 100000) + each.end;
      ovsql::syntax::memory memory;
      std::size_t next = 0;
      EXPECT_NE(ovsql::syntax::parse(sql, next, memory), nullptr) << each.part;
    }
  });
}

TEST(SqlLength, may_be_a_million_terms) {
  const std::string sql = "SELECT a" + repeated(" + 1", 1000000);
  ovsql::syntax::memory memory;
  std::size_t next = 0;
  EXPECT_NE(ovsql::syntax::parse(sql, next, memory), nullptr);
}

TEST(SqlLength, has_a_limit) {
  const std::string sql(ovsql::syntax::most_bytes + 1, ' ');
  EXPECT_EQ(parsed(sql), "error: the text is longer than 64 MiB");
}

}  // namespace
}  // namespace tests
