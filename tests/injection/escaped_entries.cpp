#include "tests/injection/escaped_entries.h"

#include <memory>
#include <string_view>
#include <utility>

#include "tests/injection/canary.h"

namespace corvane::test {

namespace {

// What an entry takes of a text.
std::string Whole(std::string const& text) { return text; }
std::string ToNul(std::string const& text) { return text.c_str(); }
std::string Cut(std::string const& text) { return text.substr(0, kCapacity); }
std::string CutToNul(std::string const& text) { return ToNul(Cut(text)); }
std::string Padded(std::string text) {
  text.resize(kCapacity, ' ');
  return text;
}
std::string PaddedToNul(std::string const& text) { return ToNul(Padded(text)); }
std::string ToNulPadded(std::string const& text) { return Padded(ToNul(text)); }

template <class Value>
Value Holding(std::string const& text) {
  Value value(kCapacity);
  value = Str(text);
  return value;
}

template <>
ASRealBlob Holding(std::string const& text) {
  ASRealBlob value(0);
  value = RealBlob(static_cast<unsigned>(text.size()), text.data());
  return value;
}

template <class Operand>
ASComparison Compared(int relation, ASAttribute const& column, Operand const& operand) {
  switch (relation) {
    case 0:
      return column == operand;
    case 1:
      return column != operand;
    case 2:
      return column > operand;
    case 3:
      return column < operand;
    case 4:
      return column >= operand;
    default:
      return column <= operand;
  }
}
constexpr char const* kRelations[] = {"==", "!=", ">", "<", ">=", "<="};

// What the statements are made of.
struct Context {
  explicit Context(ASSession& given) : session(given) {}

  std::string Selecting(ASComparison const& condition) const {
    ASCursor cursor(&session);
    cursor.Project() << row.idColumn;
    cursor.Where(condition);
    return cursor.Query().ToString();
  }
  std::string Having(ASGroupAttribute const& aggregate, ASGroupComparison const& condition) const {
    ASCursor cursor(&session);
    cursor.Project() << row.idColumn << aggregate;
    cursor.Having(condition);
    return cursor.Query().ToString();
  }

  ASSession& session;
  Canary row;
  Canary other;
};

class Entries {
 public:
  explicit Entries(ASSession& session) : on_(std::make_shared<Context>(session)) {}

  std::vector<EscapedEntry> All() {
    AddComparisons();
    AddPatterns();
    AddStatementForms();
    AddExpressions();
    AddRecords<ASVStr>("ASVStr", CutToNul);
    AddRecords<ASStr>("ASStr", PaddedToNul);
    AddBinaries();
    AddLiterals();
    return std::move(entries_);
  }

 private:
  using Statement = std::function<std::string(std::string const&)>;
  using Taken = std::string (*)(std::string const&);

  void Add(std::string name, Taken taken, Statement statement) {
    entries_.push_back({std::move(name), std::move(statement), taken});
  }

  template <class Condition>
  void AddCondition(std::string name, Taken taken, Condition condition) {
    Add(std::move(name), taken,
        [on = on_, condition](std::string const& text) { return on->Selecting(condition(on->row, text)); });
  }

  void AddComparisons() {
    for (int relation = 0; relation < 6; ++relation) {
      std::string const name = std::string("ASAttribute ") + kRelations[relation] + ' ';
      AddCondition(name + "char const*", ToNul, [relation](Canary& row, std::string const& text) {
        return Compared(relation, row.nameColumn, text.c_str());
      });
      AddCondition(name + "std::string_view", Whole, [relation](Canary& row, std::string const& text) {
        return Compared(relation, row.nameColumn, std::string_view(text));
      });
      AddCondition(name + "std::string", Whole, [relation](Canary& row, std::string const& text) {
        return Compared(relation, row.nameColumn, text);
      });
      AddCondition(name + "Str", ToNul, [relation](Canary& row, std::string const& text) {
        return Compared(relation, row.nameColumn, Str(text));
      });
      AddCondition(name + "ASVStr", CutToNul, [relation](Canary& row, std::string const& text) {
        return Compared(relation, row.nameColumn, Holding<ASVStr>(text));
      });
      AddCondition(name + "ASStr", PaddedToNul, [relation](Canary& row, std::string const& text) {
        return Compared(relation, row.nameColumn, Holding<ASStr>(text));
      });
    }
  }

  void AddPatterns() {
    AddCondition("ASAttribute::Like char const*", ToNul,
                 [](Canary& row, std::string const& text) { return row.nameColumn.Like(text.c_str()); });
    AddCondition("ASAttribute::Like std::string_view", Whole,
                 [](Canary& row, std::string const& text) { return row.nameColumn.Like(std::string_view(text)); });
    AddCondition("ASAttribute::Like with an escape character", Whole,
                 [](Canary& row, std::string const& text) { return row.nameColumn.Like(std::string_view(text), '!'); });
    AddCondition("ASAttribute::NotLike char const*", ToNul,
                 [](Canary& row, std::string const& text) { return row.nameColumn.NotLike(text.c_str()); });
    AddCondition("ASAttribute::NotLike std::string_view", Whole, [](Canary& row, std::string const& text) {
      return row.nameColumn.NotLike(std::string_view(text), '!');
    });
    AddCondition("ASAttribute::InStr char const*", ToNul, [](Canary& row, std::string const& text) {
      return row.idColumn.IsNotNull() && row.nameColumn.InStr(text.c_str()) > 0;
    });
    AddCondition("ASAttribute::InStr std::string_view", Whole, [](Canary& row, std::string const& text) {
      return row.idColumn.IsNotNull() && row.nameColumn.InStr(std::string_view(text)) > 0;
    });
    Add("ASGroupAttribute::Like char const*", ToNul, [on = on_](std::string const& text) {
      std::unique_ptr<ASGroupAttribute> const max(on->row.nameColumn.Max());
      return on->Having(*max, max->Like(text.c_str()));
    });
    Add("ASGroupAttribute::Like std::string_view", Whole, [on = on_](std::string const& text) {
      std::unique_ptr<ASGroupAttribute> const max(on->row.nameColumn.Max());
      return on->Having(*max, max->Like(std::string_view(text), '!'));
    });
    Add("ASGroupAttribute == Literal", ToNul, [on = on_](std::string const& text) {
      std::unique_ptr<ASGroupAttribute> const max(on->row.nameColumn.Max());
      return on->Having(*max, *max == Literal(Str(text)));
    });
  }

  // A condition in each part of a statement.
  void AddStatementForms() {
    AddCondition("&&, || and !", Whole, [](Canary& row, std::string const& text) {
      return row.idColumn.IsNotNull() && !(row.nameColumn == text || row.idColumn == 3) && row.idColumn > 0;
    });
    AddCondition("a derived column", Whole, [](Canary& row, std::string const& text) {
      return row.idColumn.IsNotNull() && row.nameColumn.Upper() == text;
    });
    Add("ASFilter::Exists", Whole, [on = on_](std::string const& text) {
      ASFilter filter;
      filter.Where(on->other.nameColumn == text);
      return on->Selecting(on->row.idColumn.IsNotNull() && filter.Exists());
    });
    Add("ASFilter::Select", Whole, [on = on_](std::string const& text) {
      ASFilter filter;
      filter.Project() << on->other.idColumn;
      filter.Where(on->other.nameColumn == text);
      return on->Selecting(on->row.idColumn.In(filter.Select()));
    });
    Add("ASCursor::Union", Whole, [on = on_](std::string const& text) {
      ASFilter filter;
      filter.Project() << on->other.idColumn;
      filter.Where(on->other.nameColumn == text);
      ASCursor cursor(&on->session);
      cursor.Project() << on->row.idColumn;
      cursor.Union(filter);
      cursor.Order(ASOrder("1"));
      return cursor.Query().ToString();
    });
    Add("an outer join", ToNul, [on = on_](std::string const& text) {
      ASCursor cursor(&on->session);
      cursor.Project() << on->row.idColumn;
      cursor.Where(++on->other.idColumn == on->row.idColumn && ++on->other.nameColumn == Str(text));
      return cursor.Query().ToString();
    });
    Add("ASUpdater's condition", Whole, [on = on_](std::string const& text) {
      ASUpdater updater(on->row.idColumn.Set(on->row.idColumn + 10));
      updater.Where(on->row.nameColumn == text);
      return updater.Query().ToString();
    });
    Add("ASDeleter's condition", Whole, [on = on_](std::string const& text) {
      ASDeleter deleter(on->row);
      deleter.Where(on->row.nameColumn == text);
      return deleter.Query().ToString();
    });
    Add("a cursor's raw text with a Literal", ToNul,
        [](std::string const& text) { return ("SELECT id FROM canary WHERE name=" + Literal(Str(text))).ToString(); });
    Add("ORDBMS::old_filter with a Literal", ToNul, [](std::string const& text) {
      static Str const table("canary");  // its address is the alias
      ORDBMS::old_filter filter;
      filter.Join(table);
      filter.Project("id");
      filter.Set("name", Literal(Str(text)), ORDBMS::EQUAL);
      return filter.Query().ToString();
    });
  }

  template <class Expression>
  void AddExpression(std::string name, Taken taken, Expression expression) {
    Add(std::move(name), taken, [on = on_, expression](std::string const& text) {
      ASUpdater updater(on->row.nameColumn.Set(expression(on->row, text)));
      updater.Where(on->row.idColumn == 2);
      return updater.Query().ToString();
    });
  }

  void AddExpressions() {
    AddExpression("ASExpression char const*", ToNul,
                  [](Canary&, std::string const& text) { return ASExpression(text.c_str()); });
    AddExpression("ASExpression std::string_view", Whole,
                  [](Canary&, std::string const& text) { return ASExpression(std::string_view(text)); });
    AddExpression("ASExpression std::string", Whole,
                  [](Canary&, std::string const& text) { return ASExpression(text); });
    AddExpression("ASExpression Str", Whole, [](Canary&, std::string const& text) { return ASExpression(Str(text)); });
    AddExpression("ASExpression ASVStr", CutToNul,
                  [](Canary&, std::string const& text) { return ASExpression(Holding<ASVStr>(text)); });
    AddExpression("ASExpression ASStr", PaddedToNul,
                  [](Canary&, std::string const& text) { return ASExpression(Holding<ASStr>(text)); });
    AddExpression("ASExpression in a tree", Whole, [](Canary& row, std::string const& text) {
      return row.idColumn * 2 + ASExpression(text) / row.idColumn - 1;
    });
    AddExpression("ASAttribute + text", ToNul,
                  [](Canary& row, std::string const& text) { return row.idColumn + text.c_str(); });
  }

  template <class Text>
  void AddRecords(std::string const& kind, Taken taken) {
    Add("ASSession::InsertQuery " + kind, taken, [on = on_](std::string const& text) {
      CanaryOf<Text> row;
      row.id = 7;
      row.name = Str(text);
      return on->session.InsertQuery(row, 0).ToString();
    });
    Add("ASSession::UpdateQuery " + kind, taken, [on = on_](std::string const& text) {
      CanaryOf<Text> row;
      row.id = 2;
      row.name = Str(text);
      return on->session.UpdateQuery(row, 0).ToString();
    });
    Add("ASSession::UpdateQuery key " + kind, taken, [on = on_](std::string const& text) {
      CanaryByName<Text> row;
      row.id = 8;
      row.name = Str(text);
      return on->session.UpdateQuery(row, 0).ToString();
    });
    Add("ASSession::SelectQuery key " + kind, taken, [on = on_](std::string const& text) {
      CanaryByName<Text> row;
      row.name = Str(text);
      return on->session.SelectQuery(row, 0).ToString();
    });
    Add("ASSession::DeleteQuery key " + kind, taken, [on = on_](std::string const& text) {
      CanaryByName<Text> row;
      row.name = Str(text);
      return on->session.DeleteQuery(row, 0).ToString();
    });
    Add("ASSession::InsertQuery " + kind + ", assigned as char const*",
        taken == &CutToNul ? &CutToNulOfPlain : &ToNulPadded, [on = on_](std::string const& text) {
          CanaryOf<Text> row;
          row.id = 7;
          row.name = text.c_str();
          return on->session.InsertQuery(row, 0).ToString();
        });
    Add("ASSession::InsertQuery " + kind + ", filled as by a fetch", CutToNul, [on = on_](std::string const& text) {
      CanaryOf<Text> row;
      row.id = 7;
      row.name.Fill(text.data(), text.size());
      return on->session.InsertQuery(row, 0).ToString();
    });
  }

  static std::string CutToNulOfPlain(std::string const& text) { return Cut(ToNul(text)); }

  void AddBinaries() {
    Add("ASSession::InsertQuery ASRealBlob", Whole, [on = on_](std::string const& text) {
      CanaryOf<ASRealBlob> row;
      row.id = 7;
      row.name = Holding<ASRealBlob>(text);
      return on->session.InsertQuery(row, 0).ToString();
    });
    Add("ASSession::UpdateQuery ASRealBlob", Whole, [on = on_](std::string const& text) {
      CanaryOf<ASRealBlob> row;
      row.id = 2;
      row.name = Holding<ASRealBlob>(text);
      return on->session.UpdateQuery(row, 0).ToString();
    });
  }

  void AddLiterals() {
    Add("Literal ASVStr", CutToNul, [](std::string const& text) {
      return ("SELECT id FROM canary WHERE name=" + Literal(Holding<ASVStr>(text))).ToString();
    });
    Add("AppendLiteral Str", ToNul, [](std::string const& text) {
      Str statement("SELECT id FROM canary WHERE name=");
      AppendLiteral(statement, Str(text));
      return statement.ToString();
    });
    Add("Escaped, in quotes", ToNul, [](std::string const& text) {
      return ("SELECT id FROM canary WHERE name='" + Escaped(text.c_str()) + "'").ToString();
    });
    Add("AppendEscaped, in quotes", Whole, [](std::string const& text) {
      Str statement("SELECT id FROM canary WHERE name='");
      AppendEscaped(statement, text.data(), text.size());
      return (statement << '\'').ToString();
    });
  }

  std::shared_ptr<Context> on_;
  std::vector<EscapedEntry> entries_;
};

}  // namespace

std::vector<EscapedEntry> EscapedEntries(ASSession& session) { return Entries(session).All(); }

}  // namespace corvane::test
