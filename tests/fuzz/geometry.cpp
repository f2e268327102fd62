// Geometries: any bytes in a column, whatever its length field says, against another reading of well-known binary; and
// polygons there and back.

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

#include "corvane/corvane.h"
#include "tests/fuzz/scripted.h"
#include "tests/fuzz/target.h"

namespace corvane::fuzz {
namespace {

struct Shapes : ASDomain {
  explicit Shapes(std::uint16_t capacity) : ASDomain("s", ""), shape(capacity) { Add(column, shape); }
  ASGeometry shape;
  ASAttribute column{"g"};
};

template <class Number>
Number At(std::string const& bytes, std::uint64_t offset) {
  Number number{};
  std::memcpy(&number, bytes.data() + offset, sizeof number);
  return number;
}

// The points of each ring, when the bytes are a polygon and nothing else.
std::optional<std::vector<std::string>> Rings(std::string const& bytes) {
  if (bytes.size() < 9 || At<std::uint32_t>(bytes, 1) != 3) return std::nullopt;
  std::vector<std::string> rings;
  std::uint64_t offset = 9;
  for (std::uint64_t left = At<std::uint32_t>(bytes, 5); left > 0; --left) {
    if (offset + 4 > bytes.size()) return std::nullopt;
    std::uint64_t const size = At<std::uint32_t>(bytes, offset) * std::uint64_t{16};
    offset += 4;
    if (offset + size > bytes.size()) return std::nullopt;
    rings.push_back(bytes.substr(offset, size));
    offset += size;
  }
  if (rings.empty() || offset != bytes.size()) return std::nullopt;
  return rings;
}

std::string const kNotFinite = "Value has no SQL form, it is not a finite number: g. ";

// The text of the value, or the message of the exception that is thrown instead.
std::string Expected(std::string const& bytes) {
  std::string points = bytes.size() >= 5 ? bytes.substr(5, (bytes.size() - 5) / 16 * 16) : "";
  if (auto const rings = Rings(bytes)) {
    if (rings->size() > 1) return "Polygon of more than one ring has no SQL form: g. ";
    points = rings->front();
  }
  std::uint32_t const type = bytes.size() >= 5 ? At<std::uint32_t>(bytes, 1) : 0;
  std::string text = "GeomFromText('";
  if (type == 1) text += "POINT((";
  if (type == 3) text += "POLYGON((";
  for (std::size_t at = 0; at < points.size(); at += 16) {
    auto const x = At<double>(points, at);
    auto const y = At<double>(points, at + 8);
    if (!std::isfinite(x) || !std::isfinite(y)) return kNotFinite;
    text += (at > 0 ? "," : "") + (Str() << x << ' ' << y).ToString();
  }
  return text + "))')";
}

std::string Literal(ASDomain const& record) {
  try {
    std::string const insert = Scripted::One().InsertQuery(record, 0).ToString();
    std::string const before = "INSERT INTO `s` (`g`) VALUES (";
    CheckEqual(insert.substr(0, before.size()), before, "the INSERT");
    return insert.substr(before.size(), insert.size() - before.size() - 1);
  } catch (AException const& error) {
    return error.what();
  }
}

void CheckContent(ASGeometry const& shape, std::string const& bytes, char const* what) {
  CheckEqual(shape.size(), static_cast<int>(bytes.size()), what);
  CheckEqual(std::string(reinterpret_cast<char const*>(shape.Bytes()), bytes.size()), bytes, what);
}

// A polygon of one ring: its points are read from the text that is written.
void ThereAndBack(std::string const& coordinates) {
  std::size_t const count = coordinates.size() / 16;
  std::string bytes = {1, 3, 0, 0, 0, 1, 0, 0, 0};
  auto const points = static_cast<std::uint32_t>(count);
  bytes.append(reinterpret_cast<char const*>(&points), sizeof points);
  bytes += coordinates.substr(0, count * 16);
  Shapes record(static_cast<std::uint16_t>(bytes.size()));
  record.shape.Fill(bytes.data(), bytes.size());
  std::string const literal = Literal(record);
  if (literal == kNotFinite) return;
  char const* at = literal.c_str() + std::strlen("GeomFromText('POLYGON((");
  for (std::size_t i = 0; i < 2 * count; ++i) {
    char* end = nullptr;
    CheckEqual(std::strtod(at, &end), At<double>(coordinates, i * 8), "a coordinate that was written and read");
    at = end + (*end != ')' ? 1 : 0);
  }
  CheckEqual(std::string(at), "))')", "what stands behind the points");
}

// Mostly small.
std::uint16_t Capacity(Input& input) {
  auto const capacity = input.Take<std::uint16_t>();
  return capacity % 256 == 255 ? capacity : static_cast<std::uint16_t>(capacity % 509);
}

Target const target("geometry", "literal against another reading; polygons there and back", [](Input input) {
  std::uint16_t const capacity = Capacity(input);
  std::uint16_t const otherCapacity = Capacity(input);
  auto const lengthField = input.Take<std::uint16_t>();
  std::string const bytes = input.Rest();
  ThereAndBack(bytes.substr(0, 65000));

  Shapes record(capacity);
  record.shape.Fill(bytes.data(), bytes.size());
  std::string const held = bytes.substr(0, capacity);
  CheckContent(record.shape, held, "the bytes");
  CheckEqual(Literal(record), held.empty() ? "NULL" : Expected(held), "the literal");

  ASGeometry const copy(record.shape);
  CheckContent(copy, held, "a copy");
  Shapes other(otherCapacity);
  other.shape = record.shape;
  std::string const shorter = held.substr(0, otherCapacity);
  CheckContent(other.shape, shorter, "what is assigned to another capacity");
  CheckEqual(Literal(other), held.empty() ? "NULL" : Expected(shorter), "its literal");

  // The length is open to writing: no reader believes more than there is.
  std::memcpy(record.shape.voidptr(), &lengthField, sizeof lengthField);
  std::string const whole = held + std::string(capacity - held.size(), '\0');
  std::string const said = whole.substr(0, lengthField);
  CheckContent(record.shape, said, "what a length field says");
  CheckEqual(Literal(record), lengthField == 0 ? "NULL" : Expected(said), "the literal of a length field");
});

}  // namespace
}  // namespace corvane::fuzz
