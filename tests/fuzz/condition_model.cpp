#include "tests/fuzz/condition_model.h"

#include <algorithm>
#include <cctype>
#include <optional>
#include <utility>

namespace corvane::fuzz {

namespace {

constexpr std::size_t kLongest = 3000;  // what doubles its text, or its joins, at each step
constexpr std::size_t kMostJoins = 50;
char const* const kWords[] = {"=", "<>", ">", "<", ">=", "<="};
char const kEscapeCharacters[] = {0, '!', '|', '/'};

template <class Number>
std::string NumberText(Number number) {
  return (Str() << number).ToString();
}

std::string Alias(ASDomain const& record) {
  return "T" + std::to_string(reinterpret_cast<std::uintptr_t>(&record)) + ".";
}

// `left relation right`, whatever stands on the right.
template <class Operand>
ASComparison Compare(ASAttribute const& left, unsigned relation, Operand const& right) {
  switch (relation) {
    case 0:
      return left == right;
    case 1:
      return left != right;
    case 2:
      return left > right;
    case 3:
      return left < right;
    case 4:
      return left >= right;
    default:
      return left <= right;
  }
}

Condition Of(Column const& column, ASComparison built, std::string text, std::vector<std::string> literals = {}) {
  Condition condition{std::move(built), std::move(text), column.literals, {}, {}};
  condition.literals.insert(condition.literals.end(), literals.begin(), literals.end());
  if (column.attribute.Domain() != nullptr) condition.domains.push_back(column.attribute.Domain());
  return condition;
}

void AddDomain(Condition& condition, ASDomain* domain) {
  auto& domains = condition.domains;
  if (domain != nullptr && std::find(domains.begin(), domains.end(), domain) == domains.end()) {
    domains.push_back(domain);
  }
}

// What `==` makes of a marked column: the condition of a join, not of the statement.
Condition Joined(Condition condition, ASDomain* requiredSide, ASDomain* optionalSide) {
  condition.joins.push_back({requiredSide, optionalSide, std::move(condition.text), std::move(condition.literals)});
  condition.text.clear();
  condition.literals.clear();
  condition.domains.clear();
  return condition;
}

Condition WithColumn(Column const& left, unsigned relation, Column const& right) {
  std::string const word = relation == 0 ? "=(" : relation == 1 ? "!=" : kWords[relation];
  Condition condition = Of(left, Compare(left.attribute, relation, right.attribute),
                           left.text + word + right.text + (relation == 0 ? ")" : ""), right.literals);
  ASDomain* const own = left.attribute.Domain();
  ASDomain* const other = right.attribute.Domain();
  if (relation == 0 && left.optional) return Joined(std::move(condition), other, own);
  if (relation == 0 && right.optional) return Joined(std::move(condition), own, other);
  AddDomain(condition, other);
  return condition;
}

std::string ComparedWithNull(Column const& left, unsigned relation) {
  return relation == 0 ? left.text + " IS NULL " : relation == 1 ? left.text + " IS NOT NULL " : " 0 = 1 ";
}

// With a value: NULL, or written as it stands, or as a literal.
Condition WithValue(Column left, unsigned relation, basic_type const& value, std::optional<std::string> const& number,
                    std::string const& text) {
  ASComparison built = Compare(left.attribute, relation, value);
  if (value.IsNull() != 0) {
    std::string const expected = ComparedWithNull(left, relation);
    if (relation > 1) left.literals.clear();  // the column is not named
    Condition condition = Of(left, std::move(built), expected);
    return relation == 0 && left.optional ? Joined(std::move(condition), nullptr, left.attribute.Domain()) : condition;
  }
  Condition condition = number.has_value() ? Of(left, std::move(built), left.text + kWords[relation] + *number)
                                           : Of(left, std::move(built), left.text + kWords[relation] + "?", {text});
  return relation == 0 && left.optional ? Joined(std::move(condition), nullptr, left.attribute.Domain()) : condition;
}

Condition WithAnyValue(Input& input, Column const& left, unsigned relation) {
  bool const null = input.Below(5) == 0;
  switch (input.Below(6)) {
    case 0: {
      Int const value = null ? Int() : Int(input.Take<int>());
      return WithValue(left, relation, value, NumberText(static_cast<int>(value)), "");
    }
    case 1: {
      ASInt64 value;
      if (!null) value = Int64(input.Take<long>());
      return WithValue(left, relation, value, NumberText(static_cast<long>(value)), "");
    }
    case 2: {
      Double const value = null ? Double() : Double(input.Take<double>());
      return WithValue(left, relation, value, NumberText(static_cast<double>(value)), "");
    }
    case 3: {
      ASTime const value(input.Take<int>());
      return WithValue(left, relation, value, std::nullopt, value.getstr().ToString());
    }
    case 4: {
      ASVStr value(input.Byte());
      if (!null) value = Str(input.Text());
      return WithValue(left, relation, value, std::nullopt, value.getstr().ToString());
    }
    default: {
      std::string const text = input.Text();
      Str const value = null ? Str() : Str(text);
      return WithValue(left, relation, value, std::nullopt, text.c_str());
    }
  }
}

Condition Comparison(Input& input, Column const& left) {
  unsigned const relation = input.Below(6);
  switch (input.Below(6)) {
    case 0:
      return WithColumn(left, relation, MakeColumn(input));
    case 1: {
      int const number = input.Take<int>();
      return Of(left, Compare(left.attribute, relation, number), left.text + kWords[relation] + NumberText(number));
    }
    case 2: {
      double const number = input.Take<double>();
      return Of(left, Compare(left.attribute, relation, number), left.text + kWords[relation] + NumberText(number));
    }
    case 3: {
      std::string const text = input.CText();
      if (text.empty()) {
        char const* const null = nullptr;
        Column named = left;
        if (relation > 1) named.literals.clear();  // the column is not named
        return Of(named, Compare(left.attribute, relation, null), ComparedWithNull(left, relation));
      }
      return Of(left, Compare(left.attribute, relation, text.c_str()), left.text + kWords[relation] + "?", {text});
    }
    case 4: {
      std::string const text = input.Text();
      return Of(left, Compare(left.attribute, relation, std::string_view(text)), left.text + kWords[relation] + "?",
                {text});
    }
    default:
      return WithAnyValue(input, left, relation);
  }
}

Condition Like(Input& input, Column const& left) {
  char const escape = kEscapeCharacters[input.Below(4)];
  std::vector<std::string> literals;
  if (escape != 0) literals.emplace_back(1, escape);
  if (input.Below(3) == 0) {
    Column const right = MakeColumn(input);
    Column both = left;
    both.literals.insert(both.literals.end(), right.literals.begin(), right.literals.end());
    literals.insert(literals.begin(), "%");
    return Of(both, left.attribute.Like(right.attribute, escape),
              left.text + " LIKE CONCAT(" + right.text + ", ?) " + (escape != 0 ? "ESCAPE ? " : ""), literals);
  }
  bool const isNot = input.Flag();
  std::string const pattern = input.Text();
  literals.insert(literals.begin(), pattern);
  return Of(left, isNot ? left.attribute.NotLike(pattern, escape) : left.attribute.Like(pattern, escape),
            left.text + (isNot ? " NOT LIKE ?" : " LIKE ?") + (escape != 0 ? " ESCAPE ?" : ""), literals);
}

Condition Between(Input& input, Column const& left) {
  std::string const between = left.text + " BETWEEN ";
  if (input.Flag()) {
    int const low = input.Take<int>();
    int const high = input.Take<int>();
    return Of(left, left.attribute.Between(low, high), between + NumberText(low) + " AND " + NumberText(high));
  }
  if (input.Flag()) {
    std::string const low = Harmless(input.Text());
    std::string const high = Harmless(input.Text());
    return Of(left, left.attribute.Between(low.c_str(), high.c_str()), between + "? AND ?", {low, high});
  }
  Column const low = MakeColumn(input);
  Column const high = MakeColumn(input);
  Condition condition = Of(left, left.attribute.Between(low.attribute, high.attribute),
                           between + low.text + " AND " + high.text, low.literals);
  condition.literals.insert(condition.literals.end(), high.literals.begin(), high.literals.end());
  return condition;
}

Condition Predicate(Input& input) {
  Column const left = MakeColumn(input);
  switch (input.Below(8)) {
    case 0:
      return Like(input, left);
    case 1:
      return Between(input, left);
    case 2: {
      Column const right = MakeColumn(input);
      bool const isNot = input.Flag();
      return Of(left, isNot ? left.attribute.NotIn(right.attribute) : left.attribute.In(right.attribute),
                left.text + (isNot ? " NOT IN (" : " IN (") + right.text + ")", right.literals);
    }
    case 3:
      return input.Flag() ? Of(left, left.attribute.IsNull(), left.text + " IS NULL")
                          : Of(left, left.attribute.IsNotNull(), left.text + " IS NOT NULL");
    case 4: {
      std::string const points = Harmless(input.Text());
      return Of(left, left.attribute.IntersectGeo(Str(points)), " Intersects(" + left.text + ",GeomFromText(?))",
                {"POLYGON((" + points + "))"});
    }
    default:
      return Comparison(input, left);
  }
}

// What `left` holds after it was combined with `right`.
void Account(Condition& left, Condition const& right, bool isAnd) {
  std::string const word = isAnd ? ") AND (" : ") OR (";
  if (left.text.empty()) {
    left.text = right.text;
  } else if (!right.text.empty()) {
    left.text = "(" + left.text + word + right.text + ")";
  }
  for (std::string const& literal : right.literals) left.literals.push_back(literal);
  for (ASDomain* const domain : right.domains) AddDomain(left, domain);
  if (!isAnd) return;
  for (Condition::Join const& join : right.joins) left.joins.push_back(join);
}

void Combine(Condition& left, Condition const& right, bool isAnd) {
  static_cast<void>(isAnd ? left.built && right.built : left.built || right.built);
  Account(left, right, isAnd);
}

}  // namespace

Records& Records::All() {
  static auto* const records = new Records;
  return *records;
}

std::string Harmless(std::string text) {
  for (char& c : text) {
    if (std::isalnum(static_cast<unsigned char>(c)) == 0) c = ' ';
  }
  return text;
}

Column MakeColumn(Input& input) {
  Records& all = Records::All();
  std::pair<ASAttribute const*, ASDomain const*> const known[] = {
      {&all.orders.idColumn, &all.orders},         {&all.orders.noteColumn, &all.orders},
      {&all.orders.totalColumn, &all.orders},      {&all.customers.idColumn, &all.customers},
      {&all.customers.nameColumn, &all.customers}, {&all.cities.nameColumn, &all.cities}};
  unsigned const number = input.Below(7);
  Column column{ASAttribute("free"), "free", {}, false};
  if (number < 6) {
    auto const& [attribute, record] = known[number];
    column = {*attribute, Alias(*record) + attribute->Name().ToString(), {}, false};
  }
  switch (input.Below(12)) {
    case 0:
      return {column.attribute.Abs(), " ABS(" + column.text + ")", {}, false};
    case 1:
      return {column.attribute.Upper(), " UPPER(" + column.text + ")", {}, false};
    case 2:
      return {column.attribute.Lower(), " LOWER(" + column.text + ")", {}, false};
    case 3: {
      std::string const text = input.Text();
      return {column.attribute.InStr(text), " INSTR(" + column.text + ", ?)", {text}, false};
    }
    case 4:
    case 5:
      return {++column.attribute, column.text, {}, number < 6};
    default:
      return column;
  }
}

Condition MakeCondition(Input& input) {
  std::vector<Condition> stack;
  for (unsigned count = input.Below(40); count > 0 && !input.AtEnd(); --count) {
    unsigned const what = input.Below(8);
    if (stack.empty() || what < 3) {
      stack.push_back(Predicate(input));
    } else if (what == 3) {
      Condition const top = std::move(stack.back());
      stack.pop_back();
      stack.push_back({!top.built, " NOT (" + top.text + ") ", top.literals, {}, {}});
    } else if (what == 4 && stack.back().text.size() < kLongest && stack.back().joins.size() < kMostJoins) {
      Condition& top = stack.back();
      Condition const same = top;
      static_cast<void>(top.built && top.built);
      Account(top, same, true);
    } else if (stack.size() > 1) {
      Condition const right = std::move(stack.back());
      stack.pop_back();
      Combine(stack.back(), right, what != 5);
    }
  }
  Condition all{ASComparison("", nullptr, nullptr), "", {}, {}, {}};
  for (Condition const& condition : stack) {
    Combine(all, condition, true);
  }
  return all;
}

}  // namespace corvane::fuzz
