#include "shape.hpp"

using namespace ovhost;

namespace bench {

namespace {

using object = core_loop::object;

// Every item once: the columns are read, and take gets the object.
template <class Take>
std::uint64_t each_item(core_loop& core, Take&& take) {
  std::uint64_t found = 0;
  core.walk(core.index("item.by_id"), [&](object at) {
    found += take(at);
    return true;
  });
  return found;
}

// A shape over all items: some columns of those for which a condition holds.
template <class Columns>
shape over_items(std::string name, Columns columns, std::string sql, floor_loop floor) {
  const auto make = [columns](query& q, std::size_t rows) {
    const table_variable t = q.over("item", "t");
    return columns(q, t, scan(t, "by_id"), rows);
  };
  return {std::move(name), make, std::move(sql), std::move(floor)};
}

shape scan_of(std::string name, std::vector<std::string> columns, std::string sql, floor_loop floor) {
  return over_items(
      std::move(name),
      [columns](query&, const table_variable& t, plan input, std::size_t) {
        std::vector<expression> items;
        for (const std::string& column : columns) items.push_back(t[column]);
        return project(std::move(items), std::move(input));
      },
      std::move(sql), std::move(floor));
}

shape with_cursor(std::string name, shape of) {
  of.name = std::move(name);
  of.with_cursor = true;
  return of;
}

// The ids of the items that a condition leaves.
template <class Condition>
shape filter_by(std::string name, Condition condition, const std::string& sql, floor_loop floor) {
  return over_items(
      std::move(name),
      [condition](query&, const table_variable& t, plan input, std::size_t) {
        return project({t["id"]}, filter(condition(t), std::move(input)));
      },
      "SELECT id FROM item WHERE " + sql, std::move(floor));
}

// The ids of the items of which a column has one of the values that a list spells for SQL, each also as an expression.
struct listed {
  std::vector<expression> members;
  std::string sql;

  void add(expression member, const std::string& spelled) {
    members.push_back(std::move(member));
    sql += (sql.empty() ? "" : ", ") + spelled;
  }
};

shape filter_by_list(std::string name, const std::string& column, const listed& list, floor_loop floor) {
  const auto any_equal = [column, members = list.members](const table_variable& t) {
    expression any = eq(t[column], members.front());
    for (auto each = members.begin() + 1; each != members.end(); ++each) any = either(any, eq(t[column], *each));
    return any;
  };
  return filter_by(std::move(name), any_equal, column + " IN (" + list.sql + ")", std::move(floor));
}

listed hundred_numbers() {
  listed list;
  for (std::int64_t each = 0; each < 1'000'000; each += 10'000) list.add(lit(each), std::to_string(each));
  return list;
}

// Of eight letters, as the words are.
listed hundred_texts() {
  listed list;
  for (char each = 0; each < 100; ++each) {
    const std::string word =
        std::string("abc") + static_cast<char>('a' + each / 10) + static_cast<char>('a' + each % 10) + "xyz";
    list.add(text(std::u16string(word.begin(), word.end())), "'" + word + "'");
  }
  return list;
}

// A value of every trip, where half and tenth are often NULL.
template <class Value>
shape compute_of_trips(std::string name, Value compute_value, const std::string& sql) {
  const auto make = [compute_value](query& q, std::size_t) {
    const table_variable t = q.over("trip", "t");
    const computation result = q.define("result", compute_value(t));
    return project({result}, extend({result}, scan(t, "by_id")));
  };
  return {std::move(name), make, "SELECT " + sql + " FROM trip", reads_of("trip", {"tenth", "half", "c"})};
}

template <class Value>
shape compute(std::string name, Value compute_value, const std::string& sql, floor_loop floor) {
  return over_items(
      std::move(name),
      [compute_value](query& q, const table_variable& t, plan input, std::size_t rows) {
        const computation result = q.define("result", compute_value(t, rows));
        return project({result}, extend({result}, std::move(input)));
      },
      "SELECT " + sql + " FROM item", std::move(floor));
}

auto ids_below(const char* column, std::int64_t bound) {
  return [column, bound](core_loop& core, std::int64_t) {
    const std::uint32_t tested = core.column(std::string("item.") + column);
    const std::uint32_t id = core.column("item.id");
    return each_item(core, [&](object at) -> std::uint64_t {
      return core.number(at, tested) < bound ? static_cast<std::uint64_t>(core.number(at, id)) : 0;
    });
  };
}

auto ids_of_texts(const char* column, bool (*holds)(std::u16string_view)) {
  return [column, holds](core_loop& core, std::int64_t) {
    const std::uint32_t tested = core.column(std::string("item.") + column);
    const std::uint32_t id = core.column("item.id");
    return each_item(core, [&](object at) -> std::uint64_t {
      return holds(core.text(at, tested)) ? static_cast<std::uint64_t>(core.number(at, id)) : 0;
    });
  };
}

shape hostile_like() {
  const auto make = [](query& q, std::size_t) {
    const table_variable t = q.over("document", "t");
    return project({t["id"]}, filter(like(t["body"], text(u"%ab%ba%c")), scan(t, "by_id")));
  };
  const auto floor = [](core_loop& core, std::int64_t) {
    const std::uint32_t body = core.column("document.body");
    std::uint64_t found = 0;
    core.walk(core.index("document.by_id"), [&](object at) {
      found += core.text(at, body).ends_with(u'c') ? 1 : 0;
      return true;
    });
    return found;
  };
  shape made{"like_hostile", make, "SELECT id FROM document WHERE body LIKE '%ab%ba%c'", floor};
  made.steps = [](std::size_t rows) { return rows / 100; };
  return made;
}

}  // namespace

std::vector<shape> reading_shapes() {
  const shape scan_int = scan_of("scan_int", {"v"}, "SELECT v FROM item", reads({"v"}));
  return {
      scan_int,
      with_cursor("scan_int_cursor", scan_int),
      scan_of("scan_text", {"name"}, "SELECT name FROM item", reads({}, {"name"})),
      scan_of("scan_five", {"id", "v", "b", "c", "name"}, "SELECT id, v, b, c, name FROM item",
              reads({"id", "v", "b", "c"}, {"name"})),
      filter_by(
          "filter_int_50", [](const auto& t) { return lt(t["v"], lit(500'000)); }, "v < 500000",
          ids_below("v", 500'000)),
      filter_by(
          "filter_int_1", [](const auto& t) { return lt(t["v"], lit(10'000)); }, "v < 10000", ids_below("v", 10'000)),
      filter_by(
          "filter_text_1", [](const auto& t) { return lt(t["name"], text(u"ag")); }, "name < 'ag'",
          ids_of_texts("name", [](std::u16string_view name) { return name < u"ag"; })),
      filter_by(
          "filter_int_double", [](const auto& t) { return lt(t["v"], lit(10'000.5)); }, "v < 10000.5",
          ids_below("v", 10'001)),
      filter_by_list("list_100", "v", hundred_numbers(),
                     [](core_loop& core, std::int64_t) {
                       const std::uint32_t v = core.column("item.v");
                       return each_item(
                           core, [&](object at) -> std::uint64_t { return core.number(at, v) % 10'000 == 0 ? 1 : 0; });
                     }),
      filter_by_list(
          "list_100_texts", "word", hundred_texts(),
          ids_of_texts("word",
                       [](std::u16string_view word) { return word.starts_with(u"abc") && word.ends_with(u"xyz"); })),
      compute(
          "arithmetic_int", [](const auto& t, std::size_t) { return add(mul(t["b"], t["c"]), t["v"]); }, "b * c + v",
          reads({"b", "c", "v"})),
      compute(
          "arithmetic_decimal", [](const auto& t, std::size_t) { return add(mul(t["price"], t["tax"]), t["price"]); },
          "price * tax + price",
          [](core_loop& core, std::int64_t) {
            const std::uint32_t price = core.column("item.price");
            const std::uint32_t tax = core.column("item.tax");
            return each_item(core, [&](object at) {
              return static_cast<std::uint64_t>(core.decimal(at, price) + core.decimal(at, tax));
            });
          }),
      compute(
          "case_of_two", [](const auto& t, std::size_t) { return when(lt(t["v"], lit(500'000)), t["b"], t["c"]); },
          "CASE WHEN v < 500000 THEN b ELSE c END",
          [](core_loop& core, std::int64_t) {
            const std::uint32_t v = core.column("item.v");
            const std::uint32_t b = core.column("item.b");
            const std::uint32_t c = core.column("item.c");
            return each_item(core, [&](object at) {
              return static_cast<std::uint64_t>(core.number(at, core.number(at, v) < 500'000 ? b : c));
            });
          }),
      compute(
          "arithmetic_ten",
          [](const auto& t, std::size_t) {
            const expression first = sub(add(mul(t["b"], t["c"]), t["v"]), mul(t["a"], lit(3)));
            return add(sub(mul(add(first, t["b"]), lit(2)), t["c"]), mul(lit(5), sub(t["tens"], lit(1))));
          },
          "(b * c + v - a * 3 + b) * 2 - c + 5 * (tens - 1)", reads({"b", "c", "v", "a", "b", "c", "tens"})),
      compute_of_trips(
          "first_not_null",
          [](const auto& t) {
            return when(is_not_null(t["tenth"]), t["tenth"], when(is_not_null(t["half"]), t["half"], t["c"]));
          },
          "COALESCE(tenth, half, c)"),
      compute(
          "cast_to_double", [](const auto& t, std::size_t) { return to(value_kind::float64, t["v"]); },
          "CAST(v AS REAL)", reads({"v"})),
      compute(
          "cast_to_int", [](const auto& t, std::size_t) { return to(value_kind::int64, t["price"]); },
          "CAST(price AS INTEGER)",
          [](core_loop& core, std::int64_t) {
            const std::uint32_t price = core.column("item.price");
            return each_item(core, [&](object at) { return static_cast<std::uint64_t>(core.decimal(at, price)); });
          }),
      compute(
          "concat_texts",
          [](const auto& t, std::size_t) {
            return concat({t["word"], text(u"-"), t["name"]});
          },
          "word || '-' || name", reads({}, {"word", "name"})),
      filter_by(
          "like_prefix", [](const auto& t) { return like(t["name"], text(u"abc%")); }, "name LIKE 'abc%'",
          ids_of_texts("name", [](std::u16string_view name) { return name.starts_with(u"abc"); })),
      filter_by(
          "like_infix", [](const auto& t) { return like(t["note"], text(u"%xyz%")); }, "note LIKE '%xyz%'",
          ids_of_texts("note", [](std::u16string_view note) { return note.find(u"xyz") != note.npos; })),
      hostile_like(),
  };
}

}  // namespace bench
