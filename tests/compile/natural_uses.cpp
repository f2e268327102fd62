// What callers write without thinking twice: it must compile in every language mode with every compiler, without a
// warning, and mean what it says. Built and run by natural_uses.sh; prints what is wrong and ends with 1.

#include <corvane/corvane.h>

#include <cstdio>
#include <iostream>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace {

int failures = 0;

void Check(bool right, char const* what, int line) {
  if (right) return;
  ++failures;
  std::printf("line %d: %s\n", line, what);
}

#define CHECK(...) Check((__VA_ARGS__), #__VA_ARGS__, __LINE__)

struct Item : ASDomain {
  ASInt id;
  ASVStr name{20};
  ASAttribute idColumn{"id", "Id", 0, corvane::kKey};
  ASAttribute nameColumn{"name"};

  Item() : ASDomain("item", "Item") { Add(idColumn, id).Add(nameColumn, name); }
};

void Texts() {
  Str s("x");
  Str const t = "y";
  std::string const standard("x");
  CHECK(s == "x" && "x" == s && s != "y" && "y" != s);
  CHECK(s < t && t > s && s <= t && t >= s && s < "y" && s <= "x" && s > "a" && s >= "x");
  CHECK(s == Str("x") && s != t && s == s);
  CHECK(s == standard && s != std::string("z"));
  s = standard;
  s = "abc";
  s << 5 << 5L << 5U << 5UL << 5LL << 5ULL << 2.5 << 'c' << "t" << t << standard << Int(7) << Int64(8L) << Double(0.5);
  CHECK(s == "abc5555552.5ctyx780.5");
  CHECK(Str("a") + "b" + Str("c") + 'd' == "abcd" && "a" + Str("b") == "ab" && Str("a") + standard == "ax");
  CHECK(Str("abc")[1] == 'b');
  std::ostringstream out;
  out << t;
  CHECK(out.str() == "y" && t.View() == "y" && t.ToString() == "y");
  std::vector<Str> texts{"b", "a"};
  texts.emplace_back("c");
  CHECK(texts.size() == 3 && texts[2] == "c");
  std::map<Str, int> counts;
  counts["a"] = 1;
  CHECK(counts["a"] == 1);
  char const* plain = t;
  CHECK(plain[0] == 'y');
  basic_type const& root = t;
  CHECK(t == root && !(t != root) && !(t < root) && root == t);
}

template <class Number>
void IntegersBesidePlainNumbers() {
  Number a;
  CHECK(a.IsNull() != 0);
  a = 5;
  CHECK(a == 5 && a == 5L && a == 5U && a == 5UL && a == 5LL && a == 5ULL && a == short{5} && a == 5.0 && a == 5.0F);
  CHECK(5 == a && 5L == a && a != 6 && a != 6L && a != 6U && a != 5.5 && 6 != a);
  CHECK(a < 6 && a < 6L && a < 6U && a < 5.5 && a > 4 && a > 4L && a >= 5 && a <= 5 && a <= 5L);
  CHECK(a == a && !(a != a) && !(a < a));
  a = 5L;
  a = 5U;
  a = 5UL;
  a = 5LL;
  a = short{5};
  CHECK(a + 1 == 6 && a + 1L == 6 && a - 1U == 4 && a * 2LL == 10 && a / 2UL == 2 && a + a == 10 && -a == -5 &&
        +a == 5);
  CHECK(a + 0.5 == 5.5 && a * 0.5 == 2.5 && 1 + a == 6);
  a += 1;
  a += 1L;
  a -= 1U;
  a *= 2ULL;
  a /= 3LL;
  CHECK(a == 4);
  a *= 1.5;
  CHECK(a == 6);
  ++a;
  a++;
  --a;
  a--;
  CHECK(a == 6 && a++ == 6 && ++a == 8);
  Number const b = a;
  CHECK(a == b && b == a);
  a += b;
  CHECK(a == 16);
  basic_type const& root = b;
  CHECK(b == root && root == b && !(b < root));
}

template <class Number>
void DoublesBesidePlainNumbers() {
  Number d;
  CHECK(d.IsNull() != 0);
  d = 2.5;
  CHECK(d == 2.5 && 2.5 == d && d != 2 && d < 3 && d < 3L && d > 2U && d >= 2.5F && d == d && !(d != d));
  CHECK(d + 1 == 3.5 && d - 1L == 1.5 && d * 2U == 5.0 && d / 5 == 0.5 && d + d == 5.0 && -d == -2.5 && 1 + d == 3.5);
  d = 1;
  d = 2L;
  d = 3U;
  d += 1;
  d -= 1L;
  d *= 2U;
  d /= 3ULL;
  d += 0.5;
  CHECK(d == 2.5);
  Number const e = d;
  CHECK(d == e && e == d);
  basic_type const& root = e;
  CHECK(e == root && root == e);
}

void Numbers() {
  IntegersBesidePlainNumbers<Int>();
  IntegersBesidePlainNumbers<Int64>();
  IntegersBesidePlainNumbers<ASInt>();
  IntegersBesidePlainNumbers<ASInt64>();
  IntegersBesidePlainNumbers<ASTime>();
  DoublesBesidePlainNumbers<Double>();
  DoublesBesidePlainNumbers<ASDouble>();
  DoublesBesidePlainNumbers<ASDCurrency>();

  ASInt i;
  i = Int(3);
  int const plain = i;
  CHECK(plain == 3 && i == Int(3) && Int(3) == i);
  ASInt64 wide;
  wide = Int64(4L);
  long const plainWide = wide;
  CHECK(plainWide == 4 && wide == Int64(4L) && Int64(4L) == wide && wide != Int64(5L));
  CHECK(wide != 4000000000U && i != 5000000000L && i < 5000000000L);
  ASTime time(7);
  time = 5U;
  time = 5LL;
  time = 5UL;
  time = 5L;
  time = i;
  time = ASTime(9);
  CHECK(time == 9 && time == ASTime(9) && i != time && time != i);
  i = time;
  CHECK(i == time && time == i);
  ASDouble real;
  ASDCurrency money;
  real = Double(1.5);
  money = real;
  money = 2;
  CHECK(real == Double(1.5) && money == 2.0 && money != real);
}

void NumbersBesideEachOther() {
  ASDouble price;
  ASInt count;
  ASInt64 wide;
  CHECK((price * count).IsNull() != 0 && (wide + count).IsNull() != 0 && count == wide && !(count < wide));
  price = 2.5;
  count = 4;
  CHECK((wide += count).IsNull() != 0 && wide < count && count > wide && wide != count && !(price < wide));
  wide = 5000000000L;
  CHECK(price * count == 10.0 && count * price == 10.0 && count / price == 1.6 && wide + count == 5000000004L);
  CHECK(count < wide && wide > count && count <= wide && count != wide && price < count && count >= price);
  wide -= count;
  price += count;
  count *= price;
  CHECK(wide == 4999999996L && price == 6.5 && count == 26 && count == Int64(26L) && count == Double(26.0));
  CHECK((1 + Int()).IsNull() != 0 && (7 / Int(0)).IsNull() != 0 && (2.5 * ASInt64()).IsNull() != 0);
  CHECK(1 + Int(2) == 3 && 10L - Int(4) == 6 && 3 * Int64(5L) == 15 && 7.0 / Int(2) == 3.5 && 1U < Int64(2L));
  Int const four(4);
  CHECK(!(1U < Int(-1)) && 5 >= four && 3 < four && 4 <= four && 4.5 > four && !(4 != four) && 4L == four);
  CHECK(Int64(Int()).IsNull() != 0 && Double(Int(3)) == 3.0 && Int(Double(2.9)) == 2 && Int(Int64(7L)) == 7);
  ASDCurrency amount;
  amount = price * count;
  CHECK(amount == 169.0 && amount == Int(169));
  ASInt thousand;
  thousand = 1000;
  ASTime moment(1600000000);
  long const milliseconds = moment * 1000L;
  CHECK(milliseconds == 1600000000000L && 1000L * moment == milliseconds && thousand * Int64(5000000L) == 5000000000L);
  thousand = thousand + 5L;
  Int const sum = thousand + 5L;
  wide = thousand;
  price = wide;
  CHECK(thousand == 1005 && sum == 1010 && wide == 1005 && price == 1005.0);
  wide.SetNull();
  moment = wide;
  price = wide;
  thousand = wide;
  CHECK(moment.IsNull() != 0 && price.IsNull() != 0 && thousand.IsNull() != 0);
}

void ColumnTexts() {
  ASStr fixed(5);
  ASVStr variable(5);
  CHECK(fixed.IsNull() != 0 && variable.IsNull() != 0);
  fixed = "ab";
  variable = std::string("ab");
  CHECK(fixed == "ab" && "ab" == fixed && fixed != "x" && "x" != fixed && fixed == Str("ab") && fixed < "b");
  CHECK(variable == "ab" && "ab" == variable && variable != "x" && variable == Str("ab") && variable > "a");
  CHECK(fixed == variable && variable == fixed && !(fixed != variable) && fixed == fixed && variable == variable);
  Str const ab("ab");
  Str const b("b");
  CHECK(fixed == ab && ab == fixed && !(ab != fixed) && fixed < b && b > fixed && ab <= fixed && ab >= fixed);
  CHECK(variable == ab && ab == variable && variable < b && b > variable && "b" > fixed && "a" < variable);
  CHECK(!(fixed < variable) && !(variable > fixed) && fixed <= variable && variable >= fixed && !(fixed < fixed));
  CHECK(std::string("ab") == fixed);
  CHECK(fixed == std::string("ab") && variable != std::string("x") && fixed <= "ab" && fixed >= "ab");
  variable = fixed;
  fixed = variable;
  fixed = Str("cd");
  variable << "!";
  CHECK(Str(variable) == "ab   " && fixed.getstr() == "cd   ");
  fixed = nullptr;
  CHECK(fixed.IsNull() != 0);
  ASVStr const copy = variable;
  CHECK(copy == variable);
  basic_type const& root = variable;
  CHECK(variable == root && root == variable && !(variable != root));
}

void Binaries() {
  RealBlob const bytes(3, "abc");
  ASRealBlob column(0);
  CHECK(column.IsNull() != 0 && column != bytes);
  column = bytes;
  CHECK(column == bytes && bytes == column && column == column && !(column != column) && bytes == bytes);
  ASRealBlob other(2);
  other = column;
  CHECK(other == column);
  Guid const id("6ba7b810-9dad-11d1-80b4-00c04fd430c8");
  ASGuid guid;
  guid = id;
  guid = "6ba7b810-9dad-11d1-80b4-00c04fd430c8";
  CHECK(guid == id && id == guid && guid == guid && !(guid != id) && !(guid < id) && id == id);
  ASBlob small(8);
  small = Blob(3, "abc");
  ASGeometry shape(64);
  shape = Blob(3, "abc");
  CHECK(small.size() == 3 && shape.size() == 3);
  Blob const plain(3, "abc");
  CHECK(small == plain && plain == small && small == small && !(small != small) && shape == shape && plain == plain);
  CHECK(small == shape && shape == small && !(small != shape) && !(small < plain) && !(shape < small));
}

void Records() {
  Item a;
  Item b;
  a.id = 1;
  b.id = 2L;
  a.name = "first";
  CHECK(a != b && a < b && b > a && a <= b && b >= a && !(a == b));
  ASDomain const copy(a);
  CHECK(copy == a && copy.Label() == "COPY" && a.size() == 2);
  for (ASAttribute const* attribute : a) CHECK(attribute->Data() != nullptr);
  CHECK(a.idColumn.IsKey() != 0 && a.nameColumn.SimpleQuery() == "name" && a.name.GetName() == "name");
  CHECK(corvane::Literal(a.id) == "1" && corvane::Literal(a.name) == "'first'");
}

void Exceptions() {
  try {
    throw AException("Number ") << 5 << 6U << 7L << " and " << Str("text");
  } catch (std::exception const& error) {
    CHECK(std::string(error.what()) == "Number 567 and text");
  }
  AException const numbered(102, "refused");
  CHECK(numbered.Number() == 102 && numbered.Message() == "refused");
}

// The text with the records' aliases replaced by "a" and "b".
std::string Text(Str text, Item const& a, Item const& b) {
  text.replaceStr(a.Alias(), "a").replaceStr(b.Alias(), "b");
  return text.ToString();
}

struct Pair {
  Item a, b;
  ASAttribute &id = a.idColumn, &name = a.nameColumn, &other = b.idColumn, &otherName = b.nameColumn;

  template <class Query>
  std::string operator()(Query const& query) const {
    return Text(query.Query(), a, b);
  }
};

void Conditions() {
  Pair p;
  ASAttribute const& id = p.id;
  ASInt five;
  five = 5;
  ASInt64 wide;
  wide = 5L;
  ASVStr text(5);
  text = "x";
  ASInt const null;
  long const five64 = 5;
  CHECK(p(id == 5) == "a.id=5" && p(id == 5L) == "a.id=5" && p(id == 5U) == "a.id=5" && p(id == 5LL) == "a.id=5");
  CHECK(p(id == 5UL) == "a.id=5" && p(id == five64) == "a.id=5" && p(id == short{5}) == "a.id=5");
  CHECK(p(id == 0) == "a.id=0" && p(id == 0L) == "a.id=0" && p(id == true) == "a.id=1" && p(id == 'A') == "a.id=65");
  CHECK(p(id != 5L) == "a.id<>5" && p(id > 5L) == "a.id>5" && p(id < 5L) == "a.id<5" && p(id >= 5U) == "a.id>=5");
  CHECK(p(id <= 18446744073709551615UL) == "a.id<=18446744073709551615");
  CHECK(p(id == 2.5) == "a.id=2.5" && p(id > 2.5F) == "a.id>2.5" && p(id != 2.5) == "a.id<>2.5");
  CHECK(p(id == five) == "a.id=5" && p(id != wide) == "a.id<>5" && p(id == Int(5)) == "a.id=5");
  CHECK(p(id == null) == "a.id IS NULL " && p(id != null) == "a.id IS NOT NULL " && p(id > null) == " 0 = 1 ");
  CHECK(p(id == nullptr) == "a.id IS NULL ");
  enum Code : unsigned { kSeven = 7 };
  CHECK(p(id == kSeven) == "a.id=7" && p(id == 2.5L) == "a.id=2.5" &&
        p(id.Between(kSeven, 9)) == "a.id BETWEEN 7 AND 9");
  ASInt64 big;
  big = 5000000000L;
  ASDouble real;
  real = 2.5;
  CHECK(p(id.Between(big, 5)) == "a.id BETWEEN '5000000000' AND 5");
  CHECK(p(id.Between(1, big)) == "a.id BETWEEN 1 AND '5000000000'");
  CHECK(p(id.Between(real, 5L)) == "a.id BETWEEN '2.5' AND 5" &&
        p(id.Between(real, big)) == "a.id BETWEEN '2.5' AND '5000000000'");
  CHECK(p(p.name == "x") == "a.name='x'" && p(p.name == std::string("x")) == "a.name='x'");
  CHECK(p(p.name == std::string_view("x")) == "a.name='x'" && p(p.name == Str("x")) == "a.name='x'");
  CHECK(p(p.name == text) == "a.name='x'" && p(p.name != std::string("x")) == "a.name<>'x'");
  CHECK(p(p.name >= std::string("x")) == "a.name>='x'" && p(p.name < "x") == "a.name<'x'");
  CHECK(p(id == p.other) == "a.id=(b.id)" && p(id != p.other) == "a.id!=b.id" && p(id <= p.other) == "a.id<=b.id");
  CHECK(p(id == p.id.Abs()) == "a.id=( ABS(a.id))");

  CHECK(p((id == 1 && p.other == 2) || p.name.IsNull()) == "((a.id=1) AND (b.id=2)) OR (a.name IS NULL)");
  CHECK(p(id == 1 && p.other == 2 && id != 3) == "((a.id=1) AND (b.id=2)) AND (a.id<>3)");
  CHECK(p(!(id == 3)) == " NOT (a.id=3) ");
  ASComparison c = id == 1 && p.other == 2;
  ASComparison const& reference = id == 1 && p.other == 2;
  CHECK(p(c) == "(a.id=1) AND (b.id=2)" && p(reference) == p(c) && c.Domains().size() == 2);
  c&& id != 3;
  CHECK(p(c) == "((a.id=1) AND (b.id=2)) AND (a.id<>3)");
  ASComparison const first = id == 1;
  CHECK(p(first && id != 3) == "(a.id=1) AND (a.id<>3)" && p(first || id != 3) == "(a.id=1) OR (a.id<>3)");
  CHECK(p(first) == "a.id=1");
  ASComparison const join = ++p.id == p.other;
  CHECK(p(join).empty() && join.JoinPairs().front().second == &p.a);
  ASComparison nothing("", nullptr, nullptr);
  for (int i = 0; i < 2; ++i) nothing || id == i;
  CHECK(p(nothing) == "(a.id=0) OR (a.id=1)");

  CHECK(p(p.name.Like("x%")) == "a.name LIKE 'x%'" && p(p.name.Like("x!%", '!')) == "a.name LIKE 'x!%' ESCAPE '!'");
  CHECK(p(p.name.Like(Str("x%"), 0)) == "a.name LIKE 'x%'" && p(p.name.Like(std::string("x%"))) == "a.name LIKE 'x%'");
  CHECK(p(p.name.NotLike("x%")) == "a.name NOT LIKE 'x%'" &&
        p(p.name.Like(p.otherName)) == "a.name LIKE CONCAT(b.name, '%') ");
  CHECK(p(id.Between(1, 2)) == "a.id BETWEEN 1 AND 2" && p(id.Between(1L, 2L)) == "a.id BETWEEN 1 AND 2");
  CHECK(p(id.Between(1, 2.5)) == "a.id BETWEEN 1 AND 2.5" && p(id.Between(0.5, 2.5)) == "a.id BETWEEN 0.5 AND 2.5");
  CHECK(p(id.Between(five, wide)) == "a.id BETWEEN '5' AND '5'" &&
        p(id.Between("1", "2")) == "a.id BETWEEN '1' AND '2'");
  CHECK(p(id.Between(std::string("1"), std::string("2"))) == "a.id BETWEEN '1' AND '2'");
  CHECK(p(id.Between(p.other, p.id)) == "a.id BETWEEN b.id AND a.id");
  CHECK(p(p.name.InStr("x") > 0) == " INSTR(a.name, 'x')>0" &&
        p(p.name.InStr(Str("x")) == 1L) == " INSTR(a.name, 'x')=1");
  CHECK(p(p.name.Upper() == "X") == " UPPER(a.name)='X'" && p(five.EQ(wide)) == "'5'='5'");
}

void Expressions() {
  Pair p;
  ASInt five;
  five = 5;
  CHECK(p(p.id + 5) == "a.id + '5'" && p(p.id + 2.5) == "a.id + '2.5'" && p(p.id - 5L) == "a.id - '5'");
  CHECK(p(p.id * five) == "a.id * '5'" && p(p.id / p.other) == "a.id / b.id" &&
        p((p.id + 1) * p.other) == "a.id + '1' * b.id");
  CHECK(p((p.id + 1) * 0.5) == "a.id + '1' * '0.5'" && p(p.id + (p.other - 1)) == "a.id + b.id - '1'");
  ASExpression const kept = p.id.Abs() + 1;
  CHECK(p(kept) == " ABS(a.id) + '1'" && p(ASExpression(7)) == "'7'" && p(ASExpression()).empty());
  ASExpression copy;
  copy = kept;
  CHECK(p(copy) == p(kept));
  CHECK(p(p.id.Set(p.other + 1)) == "a.id = b.id + '1'" && p(p.id.Set(5)) == "a.id = '5'");
  CHECK(p(p.name.Set(std::string("x"))) == "a.name = 'x'" && p(p.name + std::string("x")) == "a.name + 'x'");
  CHECK(p(p.name.Set("x")) == "a.name = 'x'" && p(p.id.Set(Int())) == "a.id = NULL");
  CHECK(p.id.Set(5).UpdateQuery() == "item");
}

void Aggregates() {
  Pair p;
  std::unique_ptr<ASGroupAttribute> const sum(p.id.Sum()), count(p.other.Count());
  ASGroupAttribute const free = p.id.Expression("NOW()");
  CHECK(p(*sum == 5) == "SUM(a.id)=5" && p(*sum == 5L) == "SUM(a.id)=5" && p(*sum > 2.5) == "SUM(a.id)>2.5");
  CHECK(p(*sum != 5U) == "SUM(a.id)<>5" && p(*sum <= 5L) == "SUM(a.id)<=5" && p(free == "1") == "NOW()=1");
  CHECK(p(*sum == *count) == "SUM(a.id)=COUNT(b.id)" && p(*sum != *count) == "SUM(a.id)<>COUNT(b.id)");
  CHECK(p(*sum == p.other) == "SUM(a.id)=b.id" && p(*sum != p.other) == "SUM(a.id)<>b.id");
  CHECK(p(*sum == std::string("'x'")) == "SUM(a.id)='x'");
  ASInt64 big;
  big = 5000000000L;
  ASInt const null;
  CHECK(p(*sum > big) == "SUM(a.id)>5000000000" && p(*sum != Int(5)) == "SUM(a.id)<>5");
  CHECK(p(*sum > null) == " 0 = 1 " && p(*sum == null) == "SUM(a.id) IS NULL " && p(*sum < 2.5L) == "SUM(a.id)<2.5");
  CHECK(p((*sum > 3) || (*count < 1)) == "(SUM(a.id)>3) OR (COUNT(b.id)<1)");
  ASGroupComparison const few = *count < 1;
  CHECK(p(few && *sum > 3) == "(COUNT(b.id)<1) AND (SUM(a.id)>3)" &&
        p(few || *sum > 3) == "(COUNT(b.id)<1) OR (SUM(a.id)>3)" && p(few) == "COUNT(b.id)<1");
  ASGroupComparison const& reference = *sum > 3 && *count < 1;
  CHECK(p(reference) == "(SUM(a.id)>3) AND (COUNT(b.id)<1)" && reference.Domains().size() == 2);
}

void Queries() {
  Pair p;
  std::unique_ptr<ASGroupAttribute> const sum(p.id.Sum());
  ASFilter filter;
  filter.Project() << p.id << p.otherName.Upper() << *sum << sum.get() << p.id.Expression("1");
  CHECK(Text(filter.Project().ProjectQuery(), p.a, p.b) == "a.id,  UPPER(b.name), SUM(a.id), SUM(a.id), 1");
  for (ASSimpleAttribute const* item : filter.Project().Items()) CHECK(item->Query().length() > 0);
  filter.Where(p.id == p.other).Having(*sum > 1).Hint("x");
  CHECK(Text(filter.Query(), p.a, p.b) ==
        "SELECT /*+ x */a.id,  UPPER(b.name), SUM(a.id), SUM(a.id), 1 FROM (item a, item b) WHERE a.id=(b.id) "
        "GROUP BY a.id,  UPPER(b.name)  HAVING SUM(a.id)>1");
  ASFilter inner;
  inner.Project() << p.other;
  CHECK(p(p.id.In(inner.Select())) == "a.id IN (SELECT b.id FROM (item b))");
  CHECK(p(p.id > inner.Any()) == "a.id> ANY (SELECT b.id FROM (item b))");
  CHECK(p(inner.Exists()) == " EXISTS (SELECT b.id FROM (item b))");
  CHECK(p(p.id == 1 && !inner.Exists()) == "(a.id=1) AND ( NOT ( EXISTS (SELECT b.id FROM (item b))) )");

  CHECK(p(-p.id) == "a.id DESC" && p(-p.id + p.name - p.other) == "a.id DESC, a.name ASC, b.id DESC");
  ASOrder order = -p.id;
  order - *sum;
  order + *sum;
  CHECK(p(order) == "a.id DESC, SUM(a.id) DESC, SUM(a.id) ASC" && p(-*sum) == "SUM(a.id) DESC");
  CHECK(p(ASOrder(p.id.Query()) - p.name) == "a.id, a.name DESC" && p(ASOrder("1") << "2") == "1, 2");
}

struct ItemCache : ASCache {
  explicit ItemCache(ASSession* session) : ASDomain("item", "Item"), ASCache(session, 1) {
    Add(idColumn, id).Add(nameColumn, name);
  }
  ASInt id;
  ASVStr name{40};
  ASAttribute idColumn{"id", "Id", 0, corvane::kKey};
  ASAttribute nameColumn{"name"};
};

// Derived further, and naming both bases.
struct SmallCache : ItemCache {
  explicit SmallCache(ASSession* session) : ASDomain("small", ""), ASSimpleCache(session, 0), ItemCache(session) {}
  void Get(int index) override { ItemCache::Get(index); }
  using ItemCache::Get;
};

[[maybe_unused]] void Caches(ASSession& session) {
  ItemCache items(&session);
  items.id = 1;
  items.Get(-1);
  items.Get(items);
  items.name = "x";
  items.Put();
  items.Insert();
  InsertItem("x", items);
  InsertItem(Str("x"), items);
  items.Delete();
  items.CacheOn().PreFetch();
  items.CacheOff();
  items.ReadOnlyGet();
  items.ReadOnlyGet(0);
  std::cout << items.Size() << items.size();
  SmallCache small(&session);
  ASDomain& record = small;
  small.Get(record);
  session.Insert(record);
  ASDomain const copy(items);
  items.Clear();
  std::unique_ptr<ASSimpleCache> const base = std::make_unique<ItemCache>(&session);
  base->Clear();
}

[[maybe_unused]] void Changes(ASSession& session) {
  Item item;
  ASUpdater updater(item.nameColumn.Set("x"));
  updater << item.idColumn.Set(item.idColumn + 1) << item.nameColumn.Set(std::string("y"));
  updater.Where(item.idColumn > 5).Where(item.idColumn == 3);
  unsigned long const changed = updater.Execute(&session);
  ASUpdater const again = updater;
  ASDeleter deleter(item);
  deleter.Where(item.idColumn == 3 && item.nameColumn != "z");
  std::cout << changed << deleter.Execute(&session) << again.Query() << deleter.Query();
  ASSequence numbers(&session, "numbers");
  ASSequence others(&session, Str("others"));
  int const next = numbers.getNext();
  std::cout << next << others.getNext();
}

[[maybe_unused]] void OlderQueries(ASSession& session) {
  using namespace ORDBMS;
  Str const table("item");
  Int value(5);
  ASVStr text(5);
  old_filter filter;
  filter.Join(table);
  filter.Join("other");
  filter.Project("id").Project(Str("name")).Distinct(0);
  filter.Set("id", "5", EQUAL).And(Str("id"), Str("5"), NOT_EQUAL).Or(std::string("id"), std::string("5"), LESS);
  filter.And("id", &value, GREATER).Or("name", &text, GREATER_EQUAL).And("id", nullptr, LESS_EQUAL);
  filter.And("id", IS_NULL).Or("id", IS_NOT_NULL).And("id", 1, 5).Or("price", 1.5, 2.5);
  filter.And("id", 1L, 5).Or("id", 1U, 5ULL).And("price", 1, 2.5).Or("price", 1.5F, 2);
  old_cursor cursor(&session);
  cursor << &filter;
  cursor.orderby("id", ASCENDING);
  cursor.orderby(1, DESCENDING);
  cursor.SetRecord(new Item);
  cursor.Open(&session);
  cursor.Open();
  Rdbms::SetSession(&session);
  Item found;
  while (Rdbms::OpenCursor(cursor) != 0 && Rdbms::Fetch(cursor) != 0) {
    Rdbms::GetField(cursor, found.name);
    Rdbms::GetField(cursor, value, "id");
    Rdbms::GetField(cursor, found.id, "id");
  }
  std::cout << Rdbms::CursorBulk(cursor) << Rdbms::CloseCursor(cursor) << Rdbms::Simplify("order date");
  std::cout << comp_string[LESS] << null_comp_string[IS_NULL] << order_string[DESCENDING];
  field_name const field(1, "id");
  std::cout << field << field.Position() << Rdbms::session->DebugLevel();
}

// Never called: no server is needed for these to compile.
[[maybe_unused]] void Cursors(ASSession& session, ASFilter const& filter, std::string const& sql) {
  Pair p;
  ASCursor cursor(&session);
  cursor.Project() << p.id << p.name.Upper();
  cursor.Where(p.id > 5);
  cursor.Order(-p.id);
  cursor.Limit(10).Limit(10, 5);
  cursor.Union(filter).UnionAll(filter);
  while (cursor.Fetch()) std::cout << p.a.id << '\n';
  while (cursor.Fetch(p.a) != 0) std::cout << p.a.name << '\n';
  cursor.Open();
  cursor.Open(0, 0);
  cursor.Reset().FetchSingle();
  ASCursor raw(&session);
  raw.Statement("SELECT 1");
  raw.Statement(Str("SELECT ") + "1");
  raw.Statement(sql);
  for (ASSimpleAttribute* item : raw.Project().Items()) std::cout << item->Data()->getstr();
  ASCursor late(nullptr);
  late.AssignSession(&session);
  late = filter;
  std::unique_ptr<MapBuffer> const rows(late.Detach());
  std::cout << rows->Capacity() << late.GetAmount();
}

// Never called: no server is needed for these to compile.
[[maybe_unused]] void Sessions() {
  ASSession empty({}, 0, false);
  ASSession braced({{"Host", "h"}}, 0, false);
  ASSession longer({{"Host", "h"}, {"Port", "3306"}, {"AutoCommit", "on"}}, 0, false);
  ASSession literal("u:p@db/h:3306", 0, false);
  ASSession standard(std::string("u:p@db/h:3306"), 0, false);
  Str statement("SELECT 1");
  literal.Execute(statement);
  literal.Execute("SELECT 1");
  literal.Execute(Str("SELECT ") + "1");
  Item item;
  item.id = 1;
  unsigned long const rows = literal.Insert(item);
  int const found = literal.Select(item);
  std::cout << rows << found << static_cast<int>(literal.GetInsertId());
}

static_assert(!std::is_copy_constructible<ASSession>::value, "a session is not copied");
static_assert(!std::is_copy_constructible<ASCursor>::value, "nor is a cursor");
static_assert(!std::is_copy_constructible<MapBuffer>::value, "nor its rows");
static_assert(!std::is_convertible<Str, ASOrder>::value, "a text is no order");
static_assert(!std::is_assignable<ASStr&, int>::value, "a number is no text");
static_assert(!std::is_convertible<int, Str>::value, "a capacity is no text");
static_assert(!std::is_convertible<Str, ASAttribute>::value, "a text is no column");
static_assert(!std::is_convertible<unsigned, ASStr>::value, "a capacity is no column");
static_assert(!std::is_convertible<int, ASTime>::value, "a number is no column");
static_assert(std::has_virtual_destructor<ASDomain>::value && std::has_virtual_destructor<basic_type>::value, "bases");

}  // namespace

int main() {
  Texts();
  Numbers();
  NumbersBesideEachOther();
  ColumnTexts();
  Binaries();
  Records();
  Exceptions();
  Conditions();
  Expressions();
  Aggregates();
  Queries();
  return failures == 0 ? 0 : 1;
}
