#ifndef CORVANE_TESTS_FAULT_ALLOCATION_OPERATIONS_H
#define CORVANE_TESTS_FAULT_ALLOCATION_OPERATIONS_H

#include <functional>
#include <ostream>
#include <vector>

#include "corvane/corvane.h"
#include "tests/support/scripted_client.h"

// What takes memory, piece by piece, each as something that can be done again when it has failed.
namespace corvane::test {

/// On objects of its own, which it holds.
struct Prepared {
  std::function<Str()> act;    // says what it gave
  std::function<Str()> state;  // as before `act` or as after it, nothing in between; may be missing
};

struct Operation {
  char const* name;
  char const* gives;  // records' addresses are written "#"
  std::function<Prepared()> prepare;

  friend std::ostream& operator<<(std::ostream& out, Operation const& operation) { return out << operation.name; }
};

/// On values, records and queries: without a session.
std::vector<Operation> const& PlainOperations();

/// On an open session; the caller keeps it.
struct SessionOperation {
  char const* name;
  char const* gives;
  std::function<Prepared(ASSession&)> prepare;

  friend std::ostream& operator<<(std::ostream& out, SessionOperation const& operation) {
    return out << operation.name;
  }
};

std::vector<SessionOperation> const& SessionOperations();

/// The answers of all their statements, as often as they are asked for.
void AnswerOperations(ScriptedClient& client);

/// A record with a column of each kind.
struct Everything : ASDomain {
  Everything();
  Everything(Everything const&) = delete;
  Everything& operator=(Everything const&) = delete;

  /// Gives every column a value.
  void Fill();
  /// A value, of binary ones the bytes; all values, one behind the other.
  static Str Shown(basic_type const& value);
  static Str Shown(ASDomain const& record);

  ASInt id;
  ASInt64 big;
  ASDouble real;
  ASDCurrency money;
  ASTime time;
  ASStr fixed{8};
  ASVStr text{100};
  ASGuid guid;
  ASBlob small{100};
  ASRealBlob large{0};
  ASGeometry shape{100};
  ASAttribute idColumn{"id", "Id", 0, kKey};
  ASAttribute bigColumn{"big"};
  ASAttribute realColumn{"real"};
  ASAttribute moneyColumn{"money"};
  ASAttribute timeColumn{"time"};
  ASAttribute fixedColumn{"fixed"};
  ASAttribute textColumn{"text"};
  ASAttribute guidColumn{"guid"};
  ASAttribute smallColumn{"small"};
  ASAttribute largeColumn{"large"};
  ASAttribute shapeColumn{"shape"};
};

}  // namespace corvane::test

#endif
