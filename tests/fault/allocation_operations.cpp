#include "tests/fault/allocation_operations.h"

#include <cctype>
#include <cstdint>
#include <cstring>
#include <memory>
#include <set>
#include <string>

namespace corvane::test {

namespace {

constexpr char const* kLong = "a text that is longer than any text that is kept without an allocation of its own";
constexpr char const* kGuid = "00112233-4455-6677-8899-aabbccddeeff";

std::string PointBytes() {
  std::string bytes("\x01\x01\x00\x00\x00", 5);
  double const coordinates[2] = {1.5, -2};
  return bytes.append(reinterpret_cast<char const*>(coordinates), sizeof coordinates);
}

Str Joined(Str left, Str const& right) {
  left << '|' << right;
  return left;
}

// Assigns to a value, which has one already, from another one, in all the ways there are.
template <class Value, class Make, class Assign>
Operation OfAValue(char const* name, char const* gives, Make make, Assign assign) {
  return {name, gives, [=]() -> Prepared {
            std::shared_ptr<Value> const value = make();
            return {[=] {
                      assign(*value);
                      Value const copy(*value);
                      value->copy(copy);
                      return Joined(Everything::Shown(*value), Literal(copy));
                    },
                    [=] { return Everything::Shown(*value); }};
          }};
}

// A text that takes a record for its columns.
template <class Render>
Operation OfARecord(char const* name, char const* gives, Render render) {
  return {name, gives, [=]() -> Prepared {
            auto const record = std::make_shared<Everything>();
            record->Fill();
            return {[=] { return render(*record); }, nullptr};
          }};
}

Str Joins(ASComparison const& condition) {
  Str text = condition.Query();
  for (Str const& each : condition.JoinConditions()) text << " ON " << each;
  return text;
}

Str Conditions(Everything const& r) {
  ASComparison all = r.idColumn == 1 && r.realColumn > 2.5 && r.textColumn != "it's" && r.bigColumn <= r.idColumn;
  all = all || r.moneyColumn < r.money || r.timeColumn >= r.time || !(r.guidColumn == r.guid);
  return all.Query();
}

Str Predicates(Everything const& r) {
  ASComparison const all = r.textColumn.Like("a%", '!') && r.textColumn.NotLike("b%") && r.textColumn.IsNull() &&
                           r.idColumn.IsNotNull() && r.idColumn.In(r.bigColumn) && r.idColumn.NotIn(r.bigColumn) &&
                           r.idColumn.Between(1, 2) && r.realColumn.Between(1.5, 2.5) &&
                           r.textColumn.Between("a", "b") && r.idColumn.Between(r.id, r.id) &&
                           r.shapeColumn.IntersectGeo("0 0,1 1,0 0") && r.textColumn.Like(r.fixedColumn) &&
                           (r.realColumn.Abs() == 1 || r.textColumn.Upper() == "A" || r.textColumn.Lower() == "a" ||
                            r.textColumn.InStr("x") > 0 || r.textColumn.InStr(r.fixedColumn) > 0);
  return all.Query();
}

Str OuterJoins(Everything const& r) {
  Everything other;
  return Joins(++other.idColumn == r.idColumn && ++other.textColumn == "a text of some length" && r.idColumn > 0);
}

Str Aggregates(Everything const& r) {
  std::unique_ptr<ASGroupAttribute> const sum(r.idColumn.Sum());
  std::unique_ptr<ASGroupAttribute> const most(r.textColumn.Max());
  std::unique_ptr<ASGroupAttribute> const count(r.textColumn.CountDistinct());
  ASFilter filter;
  filter.Project() << r.fixedColumn << *sum << *most << r.textColumn.Expression("COUNT(*)");
  filter.Having((*sum > 5 && *most == "x" && most->Like("y%")) || *count <= 2.5 || most->IsNull());
  return filter.Query();
}

Str SubQueries(Everything const& r) {
  ASFilter inner;
  inner.Project() << r.bigColumn;
  inner.Where(r.realColumn > 1.0);
  ASFilter outer;
  outer.Project() << r.idColumn << r.textColumn.Upper();
  outer.Where(r.idColumn.In(inner.Select()) && r.bigColumn != inner.Any() && inner.Exists() && inner.NotExists());
  outer.Hint("/*+ hint that is a little longer */").ConnectBy(r.idColumn == 1, r.bigColumn == 2);
  ASFilter const copy(outer);
  ASFilter assigned;
  assigned = copy;
  return assigned.Query();
}

Str DistinctQuery(Everything const& r) {
  ASFilter filter;
  filter.DistinctProject() << r.idColumn << r.largeColumn;
  filter.Project().setKW("`", "`");
  return Joined(filter.Query(), filter.Project().ProjectForLimitQuery());
}

Str Orders(Everything const& r) {
  ASOrder order = -r.idColumn + r.textColumn - r.realColumn;
  std::unique_ptr<ASGroupAttribute> const sum(r.idColumn.Sum());
  order << "something that is a little longer than that";
  order - *sum;
  return order.Query();
}

Str Expressions(Everything const& r) {
  ASExpression expression = r.idColumn + 1;
  expression = expression * 2.5 - ASExpression("it's longer than a few letters") / (r.bigColumn - r.idColumn);
  ASExpression const copy(expression + r.real + r.textColumn.Abs());
  return copy.Query();
}

Str UpdaterText(Everything const& r) {
  ASUpdater updater(r.idColumn.Set(r.bigColumn + 1));
  updater << r.textColumn.Set("a text of some length") << r.realColumn.Set(2.5);
  updater.Where(r.idColumn == 1);
  ASUpdater const copy(updater);
  updater = copy;
  return updater.Query();
}

Str DeleterText(Everything const& r) {
  ASDeleter deleter(r);
  deleter.Where(r.textColumn == "x" && r.idColumn > 3);
  ASDeleter const copy(deleter);
  return copy.Query();
}

Str OlderFilter(Everything const& r) {
  ORDBMS::old_filter filter;
  filter.Set("a", "1", ORDBMS::EQUAL).And("b", &r.id, ORDBMS::EQUAL).Or("c", 1, 2).And("d", 1.5, 2.5);
  filter.Project("a").Project("a longer name of a column, longer than others");
  filter.Distinct(1);
  ORDBMS::old_filter copy;
  copy = filter;
  return copy.Query();
}

Str Literals(Everything const& r) {
  Str text;
  for (ASAttribute const* const column : r) {
    if (column != &r.shapeColumn) text << Literal(*column->Data()) << ',';
  }
  text << Escaped("it's \\ \n a text") << Literal(ASInt()) << Literal(Str());
  return text;
}

Str TextOperations() {
  Str text(kLong);
  text << 1 << -2.5 << 'c' << 12345678901L << Str(" and ") << true;
  text.replaceStr("text", "TEXT, a longer one");
  Str const moved = std::move(text);
  Str assigned = moved.toLower() + "x" + moved.getInterval(0, 5) + moved.getUntil("is", 0);
  assigned = assigned.getUntil("any", 3);
  return assigned;
}

Str Exceptions() {
  AException error(7, kLong);
  error << " and " << 5 << 'c' << 2.5 << Str(kLong) << 6UL << -7L;
  AException const copy(error);
  AException assigned("");
  assigned = copy;
  return assigned.Message() << assigned.Number();
}

Str RowBuffer() {
  MapBuffer buffer;
  std::memset(buffer.Get(100), 1, 100);
  std::memset(buffer.Grow(40000), 2, 40000);  // pages of its own from here on
  buffer.Grow(200000);
  buffer.Fit(50000);
  unsigned char const* const bytes = buffer.KeepBytes("abc", 3);
  RealBlob const* const blob = buffer.KeepBlob(50000, std::string(50000, 'x').data());
  Str kept(static_cast<char const*>(static_cast<void const*>(bytes)), 3);
  return kept << blob->Length() << ' ' << static_cast<int>(static_cast<char*>(buffer.GetBegin())[39999]);
}

Prepared Clone() {
  auto const record = std::make_shared<Everything>();
  record->Fill();
  return {[=] {
            ASDomain const copy(*record);
            return Everything::Shown(copy);
          },
          nullptr};
}

// Assigning to a record without columns makes them.
Prepared AssignToEmpty() {
  auto const record = std::make_shared<Everything>();
  auto const target = std::make_shared<ASDomain>("", "");
  record->Fill();
  return {[=] {
            *target = *record;
            return Everything::Shown(*target);
          },
          [=] { return Everything::Shown(*target); }};
}

Prepared Assign() {
  auto const record = std::make_shared<Everything>();
  auto const target = std::make_shared<Everything>();
  record->Fill();
  return {[=] {
            static_cast<ASDomain&>(*target) = *record;
            target->JustifyNull();
            target->Trim();
            return Everything::Shown(*target);
          },
          nullptr};
}

Prepared Store() {
  auto const record = std::make_shared<Everything>();
  auto const store = std::make_shared<std::set<ASDomain>>();
  record->Fill();
  return {[=] {
            store->insert(*record);
            return Str() << static_cast<int>(store->size()) << Everything::Shown(*store->begin());
          },
          [=] { return Str() << static_cast<int>(store->size()); }};
}

Prepared Declare() {
  return {[] {
            Everything const record;
            ASAttribute named("name", "a longer label of that column, longer than others", 0, kKey | kEncrypted);
            ASAttribute const copy(named);
            named = ASAttribute("other");
            Str text = record.Query("`", "`");
            text << copy.Label() << copy.Query() << named.SimpleQuery() << record.textColumn.Query();
            return text;
          },
          nullptr};
}

std::function<Prepared()> Of(Str (*act)()) {
  return [=]() -> Prepared { return {act, nullptr}; };
}

template <class Value, class... Arguments>
auto Make(Arguments... arguments) {
  return [=] { return std::make_shared<Value>(arguments...); };
}

std::vector<Operation> MakeOperations() {
  return {
      OfAValue<Str>("Str",
                    "a text that is longer than any text that is kept without an allocation of its own|'a text that is "
                    "longer than any text that is kept without an allocation of its own'",
                    Make<Str>("old"), [](Str& value) { value = kLong; }),
      OfAValue<ASStr>(
          "FixedText",
          "a text that is longer than any text that is kept without an allocation of its own                   |'a "
          "text that is longer than any text that is kept without an allocation of its own                   '",
          Make<ASStr>(100U), [](ASStr& value) { value = kLong; }),
      OfAValue<ASVStr>("Text",
                       "a text that is longer than any text that is kept without an allocation of its own|'a text that "
                       "is longer than any text that is kept without an allocation of its own'",
                       Make<ASVStr>(100U), [](ASVStr& value) { value = kLong; }),
      OfAValue<ASInt>("Int", "-7|-7", Make<ASInt>(), [](ASInt& value) { value = -7; }),
      OfAValue<ASInt64>("Int64", "12345678901|12345678901", Make<ASInt64>(),
                        [](ASInt64& value) { value = 12345678901L; }),
      OfAValue<ASDouble>("Double", "0.1|0.1", Make<ASDouble>(), [](ASDouble& value) { value = 0.1; }),
      OfAValue<ASDCurrency>("Currency", "9.99|9.99", Make<ASDCurrency>(), [](ASDCurrency& value) { value = 9.99; }),
      OfAValue<ASTime>("Time", "2020-01-02 03:04:05|'2020-01-02 03:04:05'", Make<ASTime>(),
                       [](ASTime& value) { value = ASTime::YYMMDDtoInt("2020-01-02 03:04:05"); }),
      OfAValue<Guid>("PlainGuid", "00112233-4455-6677-8899-aabbccddeeff|'00112233-4455-6677-8899-aabbccddeeff'",
                     Make<Guid>(), [](Guid& value) { value = Guid(kGuid); }),
      OfAValue<ASGuid>("Guid", "00112233-4455-6677-8899-aabbccddeeff|'00112233-4455-6677-8899-aabbccddeeff'",
                       Make<ASGuid>(), [](ASGuid& value) { value = Guid(kGuid); }),
      OfAValue<ASBlob>("Blob", "a.b|'BLOB'", Make<ASBlob>(std::uint16_t{100}),
                       [](ASBlob& value) { value.Fill("a\0b", 3); }),
      OfAValue<RealBlob>("PlainRealBlob", "a.'cd|'BLOB'", Make<RealBlob>(),
                         [](RealBlob& value) { value = RealBlob(5, "a\0'cd"); }),
      OfAValue<ASRealBlob>("RealBlob", "a.'cd|'BLOB'", Make<ASRealBlob>(0U),
                           [](ASRealBlob& value) { value = RealBlob(5, "a\0'cd"); }),
      OfAValue<ASGeometry>("Geometry", "............?........|'BLOB'", Make<ASGeometry>(std::uint16_t{100}),
                           [](ASGeometry& value) {
                             static std::string const kPoint = PointBytes();
                             value.Fill(kPoint.data(), kPoint.size());
                           }),
      {"TextOperations", "ext, a longer one that is longer than ", Of(TextOperations)},
      {"Exceptions",
       "a text that is longer than any text that is kept without an allocation of its own and 5c2.5a text that is "
       "longer than any text that is kept without an allocation of its own6-77",
       Of(Exceptions)},
      {"RowBuffer", "abc50000 2", Of(RowBuffer)},
      OfARecord("Conditions",
                "((((((T#.id=1) AND (T#.real>2.5)) AND (T#.text<>'it\\'s')) AND (T#.big<=T#.id)) OR (T#.money<9.99)) "
                "OR (T#.time>='2020-01-02 03:04:05')) OR ( NOT (T#.guid='00112233-4455-6677-8899-aabbccddeeff') )",
                Conditions),
      OfARecord("Predicates",
                "((((((((((((T#.text LIKE 'a%' ESCAPE '!') AND (T#.text NOT LIKE 'b%')) AND (T#.text IS NULL)) AND "
                "(T#.id IS NOT NULL)) AND (T#.id IN (T#.big))) AND (T#.id NOT IN (T#.big))) AND (T#.id BETWEEN 1 AND "
                "2)) AND (T#.real BETWEEN 1.5 AND 2.5)) AND (T#.text BETWEEN 'a' AND 'b')) AND (T#.id BETWEEN '7' AND "
                "'7')) AND ( Intersects(T#.shape,GeomFromText('POLYGON((0 0,1 1,0 0))')))) AND (T#.text LIKE "
                "CONCAT(T#.fixed, '%') )) AND ((((( ABS(T#.real)=1) OR ( UPPER(T#.text)='A')) OR ( "
                "LOWER(T#.text)='a')) OR ( INSTR(T#.text, 'x')>0)) OR ( INSTR(T#.text, RTRIM(T#.fixed))>0))",
                Predicates),
      OfARecord("OuterJoins", "(T#.text='a text of some length') AND (T#.id>0) ON T#.id=(T#.id)", OuterJoins),
      OfARecord("Aggregates",
                "SELECT T#.fixed, SUM(T#.id), MAX(T#.text), COUNT(*) FROM (everything T#) GROUP BY T#.fixed  HAVING "
                "((((SUM(T#.id)>5) AND (MAX(T#.text)=x)) AND (MAX(T#.text) LIKE 'y%')) OR (COUNT( DISTINCT "
                "T#.text)<=2.5)) OR (MAX(T#.text) IS NULL)",
                Aggregates),
      OfARecord("SubQueries",
                "SELECT T#.id,  UPPER(T#.text) FROM (everything T#) WHERE (((T#.id IN (SELECT T#.big FROM (everything "
                "T#) WHERE T#.real>1)) AND (T#.big!= ANY (SELECT T#.big FROM (everything T#) WHERE T#.real>1))) AND ( "
                "EXISTS (SELECT T#.big FROM (everything T#) WHERE T#.real>1))) AND ( NOT EXISTS (SELECT T#.big FROM "
                "(everything T#) WHERE T#.real>1)) START WITH T#.big=2 CONNECT BY PRIOR T#.id=1",
                SubQueries),
      OfARecord("DistinctQuery",
                "SELECT DISTINCT T#.id, T#.large FROM (`everything` T#) GROUP BY T#.id, T#.large|ALIAS.Q1, ALIAS.Q2",
                DistinctQuery),
      OfARecord("Orders",
                "T#.id DESC, T#.text ASC, T#.real DESC, something that is a little longer than that, SUM(T#.id) DESC",
                Orders),
      OfARecord("Expressions",
                "T#.id + '1' * '2.5' - 'it\\'s longer than a few letters' / T#.big - T#.id + '2.5' +  ABS(T#.text)",
                Expressions),
      OfARecord("UpdaterText",
                "UPDATE everything T# SET T#.id = T#.big + '1', T#.text = 'a text of some length', T#.real = '2.5' "
                "WHERE T#.id=1",
                UpdaterText),
      OfARecord("DeleterText", "DELETE FROM T# USING everything T# WHERE (T#.text='x') AND (T#.id>3)", DeleterText),
      OfARecord("OlderFilter",
                "SELECT a, a longer name of a column, longer than othersDISTINCT  FROM  WHERE a=1 AND b='7' OR c "
                "BETWEEN 1 AND 2 AND d BETWEEN 1.500000 AND 2.500000",
                OlderFilter),
      OfARecord("Literals",
                "7,12345678901,2.5,9.99,'2020-01-02 03:04:05','fixed   ','a text that is longer than any text that is "
                "kept without an allocation of its own','00112233-4455-6677-8899-aabbccddeeff','BLOB','BLOB',it\\'s "
                "\\\\ \\n a text-2147483648''",
                Literals),
      {"Clone",
       "id=7;big=12345678901;real=2.5;money=9.99;time=1577934245;fixed=fixed   ;text=a text that is longer than any "
       "text that is kept without an allocation of its "
       "own;guid=00112233-4455-6677-8899-aabbccddeeff;small=s.t;large=l.'rg;shape=............?........;",
       Clone},
      {"AssignToEmpty",
       "id=7;big=12345678901;real=2.5;money=9.99;time=1577934245;fixed=fixed   ;text=a text that is longer than any "
       "text that is kept without an allocation of its "
       "own;guid=00112233-4455-6677-8899-aabbccddeeff;small=s.t;large=l.'rg;shape=............?........;",
       AssignToEmpty},
      {"Assign",
       "id=7;big=12345678901;real=2.5;money=9.99;time=2020-01-02 03:04:05;fixed=fixed;text=a text that is longer than "
       "any text that is kept without an allocation of its "
       "own;guid=00112233-4455-6677-8899-aabbccddeeff;small=s.t;large=l.'rg;shape=............?........;",
       Assign},
      {"Store",
       "1id=7;big=12345678901;real=2.5;money=9.99;time=1577934245;fixed=fixed   ;text=a text that is longer than any "
       "text that is kept without an allocation of its "
       "own;guid=00112233-4455-6677-8899-aabbccddeeff;small=s.t;large=l.'rg;shape=............?........;",
       Store},
      {"Declare", "`everything` T#a longer label of that column, longer than othersnameotherT#.text", Declare},
  };
}

}  // namespace

Everything::Everything() : ASDomain("everything", "Everything") {
  Add(idColumn, id).Add(bigColumn, big).Add(realColumn, real).Add(moneyColumn, money).Add(timeColumn, time);
  Add(fixedColumn, fixed).Add(textColumn, text).Add(guidColumn, guid).Add(smallColumn, small).Add(largeColumn, large);
  Add(shapeColumn, shape);
}

void Everything::Fill() {
  id = 7;
  big = 12345678901L;
  real = 2.5;
  money = 9.99;
  time = ASTime::YYMMDDtoInt("2020-01-02 03:04:05");
  fixed = "fixed";
  text = kLong;
  guid = Guid(kGuid);
  small.Fill("s\0t", 3);
  large = RealBlob(5, "l\0'rg");
  std::string const point = PointBytes();
  shape.Fill(point.data(), point.size());
}

Str Everything::Shown(basic_type const& value) {
  if (value.IsNull() != 0) return "NULL";
  bool const block = value.GetType() == kTypeBlob;
  if (!block && value.GetType() != kTypeRealBlob) return value.getstr();
  Str bytes;
  auto const* const begin = static_cast<char const*>(value.voidptr()) + (block ? 2 : 0);
  for (int i = 0; i < value.size(); ++i)
    bytes << (std::isprint(static_cast<unsigned char>(begin[i])) != 0 ? begin[i] : '.');
  return bytes;
}

Str Everything::Shown(ASDomain const& record) {
  Str text;
  for (ASAttribute const* const column : record) text << column->Name() << '=' << Shown(*column->Data()) << ';';
  return text;
}

std::vector<Operation> const& PlainOperations() {
  static std::vector<Operation> const operations = MakeOperations();
  return operations;
}

}  // namespace corvane::test
