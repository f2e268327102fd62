#include "tests/injection/unescaped_entries.h"

#include <memory>
#include <string_view>
#include <utility>

#include "tests/injection/canary.h"

namespace corvane::test {

namespace {

using Condition = std::function<ASComparison(Canary& row, std::string const& text)>;
using GroupCondition = std::function<ASGroupComparison(ASGroupAttribute& max, std::string const& text)>;
using Run = std::function<int(ASSession&, std::string const&)>;

// A SELECT with the condition, which names the record whatever the text does.
Run Where(Condition const& condition) {
  return [condition](ASSession& session, std::string const& text) {
    Canary row;
    ASCursor cursor(&session);
    cursor.Project() << row.idColumn;
    cursor.Where(condition(row, text));
    return cursor.GetAmount();
  };
}

Run Having(GroupCondition const& condition) {
  return [condition](ASSession& session, std::string const& text) {
    Canary row;
    std::unique_ptr<ASGroupAttribute> const max(row.nameColumn.Max());
    ASCursor cursor(&session);
    cursor.Project() << row.idColumn << *max;
    cursor.Having(condition(*max, text));
    return cursor.GetAmount();
  };
}

// Something done to a cursor that would find no row; it projects what it needs.
Run OnCursor(std::function<void(Canary& row, ASCursor& cursor, std::string const& text)> const& act) {
  return [act](ASSession& session, std::string const& text) {
    Canary row;
    ASCursor cursor(&session);
    cursor.Where(row.idColumn == 0);
    act(row, cursor, text);
    return cursor.GetAmount();
  };
}

// A raw SELECT, or a statement that has no rows.
Run Raw(std::function<Str(ASSession& session, std::string const& text)> const& statement) {
  return [statement](ASSession& session, std::string const& text) {
    Str const sql = statement(session, text);
    if (sql.ToString().find("SELECT") != 0) {
      session.Execute(sql);
      return 0;
    }
    return static_cast<int>(Fetched(session, sql.ToString()).size());
  };
}

template <class Compare>
Run Values(Compare compare) {
  return Where([compare](Canary& row, std::string const& text) {
    ASVStr left(100);
    ASVStr right(100);
    left = "a";
    right = text;
    return row.idColumn.IsNotNull() && compare(left, right);
  });
}

template <class Act>
Run OldFilter(Act act) {
  return [act](ASSession& session, std::string const& text) {
    Str const table("canary");
    ORDBMS::old_filter filter;
    act(filter, table, Str(text));
    return static_cast<int>(Fetched(session, filter.Query().ToString()).size());
  };
}

// A record of the table with a name of its own for table and column.
struct Named : ASDomain {
  ASInt id;
  ASAttribute idColumn;

  Named(std::string const& table, std::string const& column)
      : ASDomain(Str(table), ""), idColumn(Str(column), "", 0, corvane::kKey) {
    Add(idColumn, id);
    id = 0;
  }
  Named(Named const&) = delete;
  Named& operator=(Named const&) = delete;
};

// A cache that archives a row before it writes it; its key is not escaped there.
struct Archiving : ASCache {
  ASVStr name{100};
  ASInt id;
  ASAttribute nameColumn{"name", "Name", 0, corvane::kKey};
  ASAttribute idColumn{"id"};

  Archiving(ASSession& session, std::string const& text)
      : ASDomain("canary", ""), ASSimpleCache(&session, 1), ASCache(&session, 1) {
    Add(nameColumn, name).Add(idColumn, id);
    name = text;
    id = 9;
  }
  Archiving(Archiving const&) = delete;
  Archiving& operator=(Archiving const&) = delete;
};

int Archived(ASSession& session) { return static_cast<int>(Fetched(session, "SELECT id FROM canaryArc").size()); }

// The condition of a filter, which derived classes alone can write to.
struct OpenFilter : ASFilter {
  Str& Open() { return ConditionForUpdate(); }
};

void AddStatements(std::vector<UnescapedEntry>& all) {
  constexpr char const* rename = "UPDATE canary SET name='x'";
  all.push_back({"ASSession::Execute",
                 [](ASSession& session, std::string const& text) {
                   session.Execute(Str(text));
                   return 0;
                 },
                 "DO 0", rename});
  all.push_back({"ASSession::ExecuteSeq",
                 [](ASSession& session, std::string const& text) {
                   session.ExecuteSeq(Str(text));
                   return 0;
                 },
                 "DO 0", rename});
  all.push_back({"ASCursor::Statement",
                 [](ASSession& session, std::string const& text) {
                   ASCursor cursor(&session);
                   cursor.Statement(Str(text));
                   return 0;
                 },
                 "DO 0", rename});
  all.push_back({"ASSequence::ASSequence",
                 [](ASSession& session, std::string const& text) {
                   ASSequence(&session, Str(text)).getNext();
                   return 0;
                 },
                 "numbers", "canary SET name='x' -- "});
  all.push_back({"corvane::Escaped", Raw([](ASSession&, std::string const& text) {
                   return "SELECT id FROM canary WHERE id=" + corvane::Escaped(text.c_str());
                 }),
                 "0", "0 OR 1=1"});
  all.push_back({"corvane::AppendEscaped", Raw([](ASSession&, std::string const& text) {
                   Str sql("SELECT id FROM canary WHERE `id");
                   corvane::AppendEscaped(sql, text.data(), text.size());
                   return sql << "`=0";
                 }),
                 "", "`=0 OR 1=1 OR `id"});
}

void AddNames(std::vector<UnescapedEntry>& all) {
  constexpr char const* table = "canary` WHERE 1=1 -- ";
  auto const record = [](auto text) {
    return Raw([text](ASSession& session, std::string const& name) { return text(session, name); });
  };
  all.push_back({"ASDomain::ASDomain", record([](ASSession& session, std::string const& name) {
                   return session.SelectQuery(Named(name, "id"), 0);
                 }),
                 "canary", table});
  all.push_back({"ASDomain::ASDomain", record([](ASSession& session, std::string const& name) {
                   return session.DeleteQuery(Named(name, "id"), 0);
                 }),
                 "canary", table});
  all.push_back({"ASDomain::ASDomain", record([](ASSession& session, std::string const& name) {
                   return session.UpdateQuery(Named(name, "id"), 0);
                 }),
                 "numbers` SET Val=1 -- ", "canary` SET name='x' -- "});
  all.push_back({"ASDomain::ASDomain", record([](ASSession& session, std::string const& name) {
                   return session.InsertQuery(Named(name, "Val"), 0);
                 }),
                 "numbers", "canary` (id) VALUES (4) -- "});
  all.push_back({"ASDomain::ASDomain", Raw([](ASSession& session, std::string const& name) {
                   Named row(name, "id");
                   ASCursor cursor(&session);
                   cursor.Project() << row.idColumn;
                   cursor.Where(row.idColumn == 0);
                   return cursor.Query().replaceStr(row.Alias() + ".", "");
                 }),
                 "canary", "canary`) WHERE 1=1 -- "});
  constexpr char const* column = "id`=0 OR 1=1 OR `id";
  all.push_back({"ASAttribute::ASAttribute", Raw([](ASSession& session, std::string const& name) {
                   Named row("canary", "id");
                   ASInt key;
                   key = 0;
                   ASAttribute keyColumn(Str(name), "", 0, corvane::kKey);
                   row.Add(keyColumn, key);
                   return session.SelectQuery(row, 0).replaceStr("`id`, `" + Str(name) + "`", "*");
                 }),
                 "id", column});
  all.push_back({"ASAttribute::ASAttribute", Raw([](ASSession& session, std::string const& name) {
                   return session.DeleteQuery(Named("canary", name), 0);
                 }),
                 "id", column});
  all.push_back({"ASAttribute::ASAttribute", Raw([](ASSession& session, std::string const& name) {
                   return session.UpdateQuery(Named("canary", name), 1).replaceStr("SET ", "SET name='x'");
                 }),
                 "id`=0 -- ", column + std::string("`=0 -- ")});
  all.push_back({"ASAttribute::ASAttribute", Where([](Canary& row, std::string const& name) {
                   return row.idColumn == 0 && ASAttribute(Str(name)) == 0;
                 }),
                 "id", "id=0) OR 1=1 OR (id"});
  all.push_back({"ASDomain::Query", Raw([](ASSession&, std::string const& quote) {
                   return "SELECT id FROM " + Named("canary", "id").Query(Str(quote), "`") + " WHERE id=0";
                 }),
                 "`", "canary UNION SELECT id FROM `"});
  all.push_back({"ASDomain::AppendQuery", Raw([](ASSession&, std::string const& quote) {
                   Str sql("SELECT id FROM ");
                   Named("canary", "id").AppendQuery(sql, quote, "`");
                   return sql << " WHERE id=0";
                 }),
                 "`", "canary UNION SELECT id FROM `"});
  all.push_back({"ASSimpleAttribute::AppendTo", Raw([](ASSession&, std::string const& text) {
                   Str sql("SELECT id FROM canary WHERE");
                   ASAttribute("id").AppendTo(sql, text.c_str());
                   return sql << "=0";
                 }),
                 " ", " 1=1 OR "});
  all.push_back({"ASProject::setKW",
                 [](ASSession& session, std::string const& quote) {
                   Canary row;
                   ASUpdater updater(row.nameColumn.Set("x"));
                   updater.Where(row.idColumn == 0);
                   updater.Project().setKW(Str(quote), "`");
                   updater.Execute(&session);
                   return 0;
                 },
                 "`", "canary SET name='x' -- "});
}

void AddConditions(std::vector<UnescapedEntry>& all) {
  constexpr char const* breakOut = "b' OR '1'='1";
  all.push_back({"ASAttribute::Between",
                 Where([](Canary& row, std::string const& text) { return row.nameColumn.Between("a", text.c_str()); }),
                 "b", breakOut});
  all.push_back({"ASAttribute::Between", Where([](Canary& row, std::string const& text) {
                   return row.nameColumn.Between(std::string_view("a"), std::string_view(text));
                 }),
                 "b", breakOut});
  all.push_back({"ASAttribute::Between", Where([](Canary& row, std::string const& text) {
                   return row.nameColumn.Between(Str("a"), Str(text));
                 }),
                 "b", breakOut});
  all.push_back({"ASAttribute::Between",
                 Where([](Canary& row, std::string const& text) { return row.idColumn.Between(-1, Str(text)); }), "0",
                 "0' OR '1'='1"});
  all.push_back({"ASAttribute::IntersectGeo",
                 Where([](Canary& row, std::string const& text) { return row.nameColumn.IntersectGeo(Str(text)); }),
                 "0 0,0 1,1 1,0 0", "0 0,0 1,1 1,0 0))')) OR 1=1 -- "});

  std::string const always = "b' OR '1'='1";
  all.push_back({"ASData::EQ", Values([](ASData const& a, ASData const& b) { return a.EQ(b); }), "b", always});
  all.push_back(
      {"ASData::NE", Values([](ASData const& a, ASData const& b) { return a.NE(b); }), "b", "'') OR 1=1 -- "});
  all.push_back({"ASData::GT", Values([](ASData const& a, ASData const& b) { return a.GT(b); }), "b", always});
  all.push_back({"ASData::LT", Values([](ASData const& a, ASData const& b) { return b.LT(a); }), "b", "b' OR 1 OR '"});
  all.push_back({"ASData::GE", Values([](ASData const& a, ASData const& b) { return a.GE(b); }), "b", always});
  all.push_back({"ASData::LE", Values([](ASData const& a, ASData const& b) { return b.LE(a); }), "b", "b' OR 1 OR '"});

  all.push_back({"ASComparison::ASComparison",
                 Where([](Canary& row, std::string const& text) { return ASComparison(Str(text), &row, nullptr); }),
                 "0", "1"});
  all.push_back({"ASComparison::OuterJoin", Where([](Canary& row, std::string const& text) {
                   static Canary other;
                   return row.idColumn == 0 && ASComparison::OuterJoin(Str(text), &row, &other);
                 }),
                 "1", "1) WHERE 1=1 -- "});
  all.push_back({"ASFilter::ConditionForUpdate", Raw([](ASSession&, std::string const& text) {
                   Canary row;
                   OpenFilter filter;
                   filter.Project() << row.idColumn;
                   filter.Open() = " WHERE ";
                   filter.Open() << Str(text);
                   return filter.Query();
                 }),
                 "0", "1"});
}

void AddAggregates(std::vector<UnescapedEntry>& all) {
  constexpr char const* hostile = "'' OR 1=1";
  all.push_back({"ASGroupAttribute::operator==",
                 Having([](ASGroupAttribute& max, std::string const& text) { return max == text.c_str(); }), "''",
                 hostile});
  all.push_back({"ASGroupAttribute::operator==",
                 Having([](ASGroupAttribute& max, std::string const& text) { return max == std::string_view(text); }),
                 "''", hostile});
  all.push_back({"ASGroupAttribute::operator!=",
                 Having([](ASGroupAttribute& max, std::string const& text) { return max != text.c_str(); }), "NULL",
                 "NULL OR 1=1"});
  all.push_back({"ASGroupAttribute::operator!=",
                 Having([](ASGroupAttribute& max, std::string const& text) { return max != std::string_view(text); }),
                 "NULL", "NULL OR 1=1"});
  all.push_back({"ASGroupAttribute::InStr",
                 Having([](ASGroupAttribute& max, std::string const& text) { return max.InStr(text.c_str()); }), "0",
                 "0) OR (1=1"});
  all.push_back({"ASGroupAttribute::InStr", Having([](ASGroupAttribute& max, std::string const& text) {
                   return max.InStr(std::string_view(text));
                 }),
                 "0", "0) OR (1=1"});
  all.push_back({"ASGroupComparison::ASGroupComparison", Having([](ASGroupAttribute& max, std::string const& text) {
                   return ASGroupComparison(Str(text), max.Domain(), nullptr);
                 }),
                 "0", "1"});
  all.push_back({"ASAttribute::Expression", OnCursor([](Canary& row, ASCursor& cursor, std::string const& text) {
                   cursor.Project() << row.idColumn.Expression(Str(text));
                 }),
                 "1", "id FROM canary -- "});
  all.push_back({"ASGroupAttribute::ASGroupAttribute",
                 OnCursor([](Canary& row, ASCursor& cursor, std::string const& text) {
                   cursor.Project() << ASGroupAttribute(Str(text), &row, &row.id);
                 }),
                 "1", "id FROM canary -- "});
  all.push_back({"ASProject::ProjectQueryForUpdate",
                 OnCursor([](Canary& row, ASCursor& cursor, std::string const& text) {
                   cursor.Project() << row.idColumn;
                   cursor.Project().ProjectQueryForUpdate() = Str(text);
                 }),
                 "1", "id FROM canary -- "});
  all.push_back({"ASFilter::Hint", OnCursor([](Canary& row, ASCursor& cursor, std::string const& text) {
                   cursor.Project() << row.idColumn;
                   cursor.Hint(Str(text));
                 }),
                 "a hint", "*/ id FROM canary -- "});
  // What stands behind the order is commented out: a limit behind the last row.
  all.push_back({"ASOrder::ASOrder", OnCursor([](Canary& row, ASCursor& cursor, std::string const& text) {
                   cursor.Where(row.idColumn > 0).Project() << row.idColumn;
                   cursor.Order(ASOrder(Str(text)));
                   cursor.Limit(1, 100);
                 }),
                 "1", "1 -- "});
  all.push_back({"ASOrder::operator<<", OnCursor([](Canary& row, ASCursor& cursor, std::string const& text) {
                   cursor.Where(row.idColumn > 0).Project() << row.idColumn;
                   ASOrder order("1");
                   order << Str(text);
                   cursor.Order(order);
                   cursor.Limit(1, 100);
                 }),
                 "1", "1 -- "});
}

void AddArchives(std::vector<UnescapedEntry>& all) {
  constexpr char const* hostile = "x' OR '1'='1";
  all.push_back({"ASSession::SaveQuery",
                 [](ASSession& session, std::string const& text) {
                   session.Execute(session.SaveQuery(Archiving(session, text), 0));
                   return Archived(session);
                 },
                 "x", hostile});
  all.push_back({"ASUpdatableCache::Put",
                 [](ASSession& session, std::string const& text) {
                   Archiving(session, text).Put();
                   return Archived(session);
                 },
                 "x", hostile});
  all.push_back({"ASInsertableCache::Delete",
                 [](ASSession& session, std::string const& text) {
                   Archiving(session, text).Delete();
                   return Archived(session);
                 },
                 "x", hostile});
}

void AddOldInterface(std::vector<UnescapedEntry>& all) {
  using ORDBMS::old_filter;
  auto const add = [&all](char const* member, Run run, char const* harmless, char const* hostile) {
    all.push_back({member, std::move(run), harmless, hostile});
  };
  auto const set = OldFilter([](old_filter& filter, Str const& table, Str const& text) {
    filter.Join(table);
    filter.Set("id", text, ORDBMS::EQUAL);
  });
  add("ORDBMS::old_filter::Set", set, "0", "0 OR 1=1");
  add("ORDBMS::old_filter::Set", OldFilter([](old_filter& filter, Str const& table, Str const& text) {
        filter.Join(table);
        filter.Set("name", &text, ORDBMS::EQUAL);
      }),
      "x", "x' OR '1'='1");
  add("ORDBMS::old_filter::Set", OldFilter([](old_filter& filter, Str const& table, Str const& text) {
        filter.Join(table);
        filter.Set(text, ORDBMS::IS_NULL);
      }),
      "id", "1=1 OR id");
  add("ORDBMS::old_filter::And", OldFilter([](old_filter& filter, Str const& table, Str const& text) {
        filter.Join(table);
        filter.Set("id", 0, 0);
        filter.And("id", text, ORDBMS::EQUAL);
      }),
      "0", "0 OR 1=1");
  add("ORDBMS::old_filter::Or", OldFilter([](old_filter& filter, Str const& table, Str const& text) {
        filter.Join(table);
        filter.Set("id", 0, 0);
        filter.Or("name", &text, ORDBMS::EQUAL);
      }),
      "x", "x' OR '1'='1");
  add("ORDBMS::old_filter::Project", OldFilter([](old_filter& filter, Str const& table, Str const& text) {
        filter.Join(table);
        filter.Project(text);
        filter.Set("id", 0, 0);
      }),
      "id", "id FROM canary -- ");
  add("ORDBMS::old_filter::Join", OldFilter([](old_filter& filter, Str const&, Str const& text) {
        filter.Join(text);
        filter.Set("id", 0, 0);
      }),
      "canary", "canary WHERE 1=1 -- ");
  add(
      "ORDBMS::old_cursor::orderby",
      [](ASSession& session, std::string const& text) {
        Str const table("canary");
        ORDBMS::old_cursor cursor(&session);
        cursor.Join(table);
        static_cast<old_filter&>(cursor).Project("id");
        cursor.orderby(Str(text), ORDBMS::ASCENDING);
        return 3 - static_cast<int>(Fetched(session, cursor.Query().ToString()).size());  // those that are hidden
      },
      "id", "id LIMIT 0 -- ");
}

}  // namespace

std::vector<UnescapedEntry> UnescapedEntries() {
  std::vector<UnescapedEntry> all;
  AddStatements(all);
  AddNames(all);
  AddConditions(all);
  AddAggregates(all);
  AddArchives(all);
  AddOldInterface(all);
  return all;
}

}  // namespace corvane::test
