// The numbers of docs/pictures/row-buffer.dot, the picture of a cursor's rows.

#include <gtest/gtest.h>

#include <cstddef>
#include <fstream>
#include <iterator>
#include <regex>
#include <string>
#include <vector>

#include "corvane/corvane.h"
#include "tests/support/scripted_cursor.h"

namespace corvane::test {
namespace {

// Offset and bytes of each line that the picture has.
std::vector<std::string> Drawn() {
  std::ifstream file(CORVANE_PICTURE_OF_ROWS);
  std::string const source{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  std::regex const line(R"(<tr><td[^>]*>(\d+)</td><td[^>]*>(\d*) ?</td>)");
  std::vector<std::string> lines;
  for (std::sregex_iterator found(source.begin(), source.end(), line), end; found != end; ++found) {
    lines.push_back((*found)[1].str() + " " + (*found)[2].str());
  }
  return lines;
}

std::string Line(std::ptrdiff_t offset, std::ptrdiff_t bytes) {
  return std::to_string(offset) + " " + std::to_string(bytes);
}

using RowBuffer = ScriptedCursor;

TEST_F(RowBuffer, LiesAsItIsDrawn) {
  Column<ASInt> id("id");
  Column<ASGuid> station("station");
  Column<ASDouble> value("value");
  Column<ASVStr> note("note", 80U);
  Row const read{"7", "00112233-4455-6677-8899-aabbccddeeff", "21.25", "calm"};
  Answer(4, {read, read});
  ASCursor cursor(session);
  cursor.Project() << id << station << value << note;
  cursor.Open();

  UU const* const cells = cursor.GetUURecord(0);
  char const* const row = reinterpret_cast<char const*>(cells);
  std::ptrdiff_t const size = reinterpret_cast<char const*>(cursor.GetUURecord(1)) - row;
  std::ptrdiff_t const stationBytes = cells[1].extra.text - row;
  std::ptrdiff_t const noteBytes = cells[3].extra.text - row;
  std::ptrdiff_t const used = noteBytes + note.value.GetSize() + 1;
  std::vector<std::string> lies;
  for (int column = 0; column < 4; ++column) {
    lies.push_back(Line(reinterpret_cast<char const*>(cells + column) - row, sizeof(UU)));
  }
  lies.push_back(Line(stationBytes, noteBytes - stationBytes));
  lies.push_back(Line(noteBytes, used - noteBytes));
  lies.push_back(Line(used, size - used));
  lies.push_back(std::to_string(size) + " ");
  lies.push_back(Line(offsetof(UU, value), sizeof UU::value));
  lies.push_back(Line(offsetof(UU, extra), sizeof UU::extra));
  lies.push_back(Line(offsetof(UU, mark), sizeof UU::mark));
  lies.push_back(Line(offsetof(UU, unused), sizeof UU::unused));
  EXPECT_EQ(Drawn(), lies);
}

}  // namespace
}  // namespace corvane::test
