#include "sample.hpp"

#include <random>
#include <variant>
#include <vector>

#include "ovhost/schema/catalog.hpp"
#include "ovhost/schema/schema.hpp"

namespace bench {

namespace {

using ovhost::value_kind;

// A column of the sample in both databases, and how its values are drawn.
struct column {
  std::string name;
  std::variant<value_kind, ovhost::refers_to> type;
  const char* sqlite_type;  // null: not there, since it has no references; ids serve instead
};

const std::vector<column> item_columns = {
    {"id", value_kind::int64, "INTEGER PRIMARY KEY"},
    {"a", value_kind::int64, "INTEGER"},
    {"v", value_kind::int64, "INTEGER"},
    {"b", value_kind::int64, "INTEGER"},
    {"c", value_kind::int64, "INTEGER"},
    {"price", value_kind::decimal, "REAL"},
    {"tax", value_kind::decimal, "REAL"},
    {"name", value_kind::text, "TEXT"},
    {"note", value_kind::text, "TEXT"},
    {"word", value_kind::text, "TEXT"},
    {"tens", value_kind::int64, "INTEGER"},
    {"thousands", value_kind::int64, "INTEGER"},
    {"many", value_kind::int64, "INTEGER"},
    {"owner", value_kind::int64, "INTEGER"},
    {"half", value_kind::int64, "INTEGER"},
};
const std::vector<column> owner_columns = {{"id", value_kind::int64, "INTEGER PRIMARY KEY"},
                                           {"name", value_kind::text, "TEXT"}};
const std::vector<column> pair_columns = {{"id", value_kind::int64, "INTEGER PRIMARY KEY"},
                                          {"k", value_kind::int64, "INTEGER"}};
const std::vector<column> document_columns = {{"id", value_kind::int64, "INTEGER PRIMARY KEY"},
                                              {"body", value_kind::text, "TEXT"}};
const std::vector<column> country_columns = {{"id", value_kind::int64, "INTEGER PRIMARY KEY"},
                                             {"name", value_kind::text, "TEXT"}};
const std::vector<column> state_columns = {{"id", value_kind::int64, "INTEGER PRIMARY KEY"},
                                           {"country", ovhost::refers_to{"country"}, nullptr},
                                           {"country_id", value_kind::int64, "INTEGER"},
                                           {"name", value_kind::text, "TEXT"}};
const std::vector<column> town_columns = {{"id", value_kind::int64, "INTEGER PRIMARY KEY"},
                                          {"state", ovhost::refers_to{"state"}, nullptr},
                                          {"state_id", value_kind::int64, "INTEGER"},
                                          {"name", value_kind::text, "TEXT"}};
const std::vector<column> trip_columns = {
    {"id", value_kind::int64, "INTEGER PRIMARY KEY"},
    {"town", ovhost::refers_to{"town"}, nullptr},
    {"town_id", value_kind::int64, "INTEGER"},
    {"k", value_kind::int64, "INTEGER"},
    {"half", value_kind::int64, "INTEGER"},
    {"tenth", value_kind::int64, "INTEGER"},
    {"c", value_kind::int64, "INTEGER"},
};

const std::vector<std::pair<std::string, const std::vector<column>&>> tables = {
    {"item", item_columns},       {"owner", owner_columns}, {"pair", pair_columns}, {"document", document_columns},
    {"country", country_columns}, {"state", state_columns}, {"town", town_columns}, {"trip", trip_columns},
};

using cell = std::variant<std::monostate, std::int64_t, ovcoredb::decimal, std::string, OV_OBJ_REF>;

// Fills one table in both databases.
class table_loader {
 public:
  table_loader(ovcoredb::database& core, sqlite_database& sqlite, const std::string& name,
               const std::vector<column>& columns)
      : core_(core), tag_(ovhost::catalog().table(name).tag), insert_(sqlite.get(), create(sqlite, name, columns)) {}

  OV_OBJ_REF add(const std::vector<cell>& cells) {
    std::vector<std::u16string> texts(cells.size());
    std::vector<ovcoredb::cell> for_core(cells.size());
    int position = 0;
    for (std::size_t i = 0; i < cells.size(); ++i) {
      if (const auto* reference = std::get_if<OV_OBJ_REF>(&cells[i])) {
        for_core[i] = *reference;
        continue;
      }
      ++position;
      if (std::holds_alternative<std::monostate>(cells[i])) {
        sqlite3_bind_null(insert_.get(), position);
      } else if (const auto* number = std::get_if<std::int64_t>(&cells[i])) {
        for_core[i] = *number;
        sqlite3_bind_int64(insert_.get(), position, *number);
      } else if (const auto* decimal = std::get_if<ovcoredb::decimal>(&cells[i])) {
        for_core[i] = *decimal;
        sqlite3_bind_double(insert_.get(), position, static_cast<double>(decimal->millionths) / 1e6);
      } else if (std::holds_alternative<std::monostate>(cells[i])) {
        sqlite3_bind_null(insert_.get(), position);
      } else {
        const std::string& text = std::get<std::string>(cells[i]);
        texts[i].assign(text.begin(), text.end());
        for_core[i] = std::u16string_view(texts[i]);
        sqlite3_bind_text(insert_.get(), position, text.data(), static_cast<int>(text.size()), SQLITE_STATIC);
      }
    }
    if (sqlite3_step(insert_.get()) != SQLITE_DONE) throw std::runtime_error("SQLite: an insertion failed");
    sqlite3_reset(insert_.get());
    return core_.insert(tag_, for_core);
  }

 private:
  static std::string create(sqlite_database& sqlite, const std::string& name, const std::vector<column>& columns);

  ovcoredb::database& core_;
  std::uint16_t tag_;
  sqlite_statement insert_;
};

std::string table_loader::create(sqlite_database& sqlite, const std::string& name, const std::vector<column>& columns) {
  std::string list;
  std::string marks;
  for (const column& each : columns) {
    if (each.sqlite_type == nullptr) continue;
    list += (list.empty() ? "" : ", ") + each.name + " " + each.sqlite_type;
    marks += marks.empty() ? "?" : ",?";
  }
  sqlite.execute("CREATE TABLE " + name + "(" + list + ")");
  return "INSERT INTO " + name + " VALUES(" + marks + ")";
}

ovhost::table_definition definition(const std::string& name, const std::vector<column>& columns) {
  ovhost::table_definition defined{name, {}};
  for (const column& each : columns) defined.members.push_back({each.name, each.type});
  return defined;
}

void define_schema(ovcoredb::database& core) {
  ovhost::schema schema(core);
  for (const auto& [name, columns] : tables) {
    schema.define_table(definition(name, columns));
    schema.define_index({name, "by_id", {{"id"}}, true});
  }
  schema.define_index({"item", "by_a", {{"a"}}});
  schema.define_index({"trip", "by_k", {{"k"}}});
  schema.define_index({"trip", "by_town", {{"town"}}});
  schema.define_index({"town", "by_state", {{"state"}}});
}

class random_values {
 public:
  std::int64_t below(std::size_t bound) { return static_cast<std::int64_t>(random_() % bound); }
  ovcoredb::decimal money() { return {below(1'000'000) * 10'000}; }
  std::string letters(std::size_t count, std::size_t alphabet = 26) {
    std::string text(count, 'a');
    for (char& letter : text) letter = static_cast<char>('a' + below(alphabet));
    return text;
  }
  std::string words(const std::vector<std::string>& known) {
    std::string text = known[random_() % known.size()];
    for (int i = 0; i < 3; ++i) text += ' ' + known[random_() % known.size()];
    return text;
  }

 private:
  std::mt19937_64 random_{20'260'101};
};

void load_trips(ovcoredb::database& core, sqlite_database& sqlite, random_values& random, std::size_t rows) {
  const auto any_of = [&](const std::vector<OV_OBJ_REF>& all, std::int64_t& id) {
    id = random.below(all.size());
    return all[static_cast<std::size_t>(id)];
  };
  std::vector<OV_OBJ_REF> countries(rows / 1'000);
  std::vector<OV_OBJ_REF> states(rows / 100);
  std::vector<OV_OBJ_REF> towns(rows / 10);
  std::int64_t id = 0;
  table_loader country_loader(core, sqlite, "country", country_columns);
  for (OV_OBJ_REF& each : countries) each = country_loader.add({id++, random.letters(12)});
  std::int64_t above = 0;
  id = 0;
  table_loader state_loader(core, sqlite, "state", state_columns);
  for (OV_OBJ_REF& each : states) {
    const OV_OBJ_REF country = any_of(countries, above);
    each = state_loader.add({id++, country, above, random.letters(12)});
  }
  id = 0;
  table_loader town_loader(core, sqlite, "town", town_columns);
  for (OV_OBJ_REF& each : towns) {
    const OV_OBJ_REF state = any_of(states, above);
    each = town_loader.add({id++, state, above, random.letters(12)});
  }
  table_loader trip_loader(core, sqlite, "trip", trip_columns);
  for (id = 0; id < static_cast<std::int64_t>(rows); ++id) {
    const OV_OBJ_REF town = any_of(towns, above);
    const auto in_one_of = [&](std::size_t count) {
      return random.below(count) == 0 ? cell(random.below(1'000'000)) : cell();
    };
    const cell half = in_one_of(2);
    const cell tenth = in_one_of(10);
    trip_loader.add({id, town, above, random.below(rows / 4), half, tenth, random.below(1'000)});
  }
}

}  // namespace

sample::sample(std::size_t rows) : rows_(rows) {
  define_schema(core_);
  session_ = std::make_unique<ovhost::session>(core_);
  sqlite_.execute("BEGIN");
  random_values random;
  std::vector<std::string> words(1'000);
  for (std::string& word : words) word = random.letters(8);
  const std::size_t owners = rows / 10;

  table_loader items(core_, sqlite_, "item", item_columns);
  for (std::size_t id = 0; id < rows; ++id) {
    items.add({static_cast<std::int64_t>(id), random.below(rows), random.below(1'000'000), random.below(1'000),
               random.below(1'000), random.money(), random.money(), random.letters(12), random.words(words),
               words[static_cast<std::size_t>(random.below(words.size()))], random.below(10), random.below(10'000),
               random.below(rows / 2), random.below(owners), id % 2 == 0 ? cell() : static_cast<std::int64_t>(id)});
  }
  table_loader owner_loader(core_, sqlite_, "owner", owner_columns);
  for (std::size_t id = 0; id < owners; ++id) owner_loader.add({static_cast<std::int64_t>(id), random.letters(12)});
  table_loader pairs(core_, sqlite_, "pair", pair_columns);
  for (std::size_t id = 0; id < pair_rows; ++id) pairs.add({static_cast<std::int64_t>(id), random.below(pair_rows)});
  table_loader documents(core_, sqlite_, "document", document_columns);
  for (std::size_t id = 0; id < rows / 100; ++id) {
    documents.add({static_cast<std::int64_t>(id), random.letters(200, 2)});
  }
  load_trips(core_, sqlite_, random, rows);
  sqlite_.execute("COMMIT");
  sqlite_.execute("CREATE INDEX by_a ON item(a)");
  sqlite_.execute("CREATE INDEX by_k ON trip(k)");
  sqlite_.execute("CREATE INDEX by_town ON trip(town_id)");
  sqlite_.execute("CREATE INDEX by_state ON town(state_id)");
}

}  // namespace bench
