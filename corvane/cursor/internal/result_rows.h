#ifndef CORVANE_CURSOR_INTERNAL_RESULT_ROWS_H
#define CORVANE_CURSOR_INTERNAL_RESULT_ROWS_H

#include <mysql.h>

#include <cstddef>
#include <list>
#include <memory>
#include <vector>

#include "corvane/cursor/cell.h"
#include "corvane/mapping/attribute.h"

class ASGeometry;
class ASGuid;
class ASInt;
class ASRealBlob;
class ASBlob;
class ASStr;
class ASTime;
class Int64;
class MapBuffer;

namespace corvane::internal {

/// The layout of one cursor's rows: which columns there are, where their cells lie, and into which value each is read.
/// Settled when the cursor opens, whatever becomes of its projection afterwards.
class ResultRows {
 public:
  /// The columns of a projection, `kept` holding those of them that nobody else owns. Throws AException "Incompatible
  /// types for ASCursor::Open(). " for a value whose class is not what its type code says.
  ResultRows(std::list<ASSimpleAttribute*> const& items, std::list<std::shared_ptr<ASSimpleAttribute>> kept);

  /// Cells that one row occupies; valid after Read().
  int Width() const { return static_cast<int>(width_); }
  /// Reads the rows of a result, stored by the client library or not, into the buffer, which is empty before, and
  /// returns how many there are. A result that breaks off is the caller's to notice. Throws what ASCursor says of
  /// opening.
  int Read(MYSQL_RES* result, MapBuffer& buffer);
  /// Copies a row into the values.
  void Deliver(UU const* row);

 private:
  enum class Kind {
    kNone,
    kInteger,
    kTime,
    kTimeNumber,
    kReal,
    kCurrency,
    kInteger64,
    kText,
    kGuid,
    kBlob,
    kGeometry,
    kRealBlob
  };

  // How a row is delivered into a time or a text: by the value's own assignment, or, where its class is the library's,
  // straight to what that does.
  enum class Store { kAssign, kTime, kFixedText, kVariableText };

  // Where a value takes its content; which one holds is told by the kind.
  union Target {
    void* storage;  // integer, real, currency: voidptr()
    ASTime* time;
    ASInt* integer;  // an application's own, read as a time
    Int64* integer64;
    ASStr* text;
    ASGuid* guid;
    ASBlob* blob;
    ASGeometry* geometry;
    ASRealBlob* realBlob;
  };

  struct Column {
    ASSimpleAttribute const* attribute;
    ASData* data;  // the attribute's value as of the last look; null for a column without
    Kind kind;
    Target target;
    std::size_t size;   // GetSize() when the cursor opened
    std::size_t area;   // of a text or GUID: where its bytes lie, from the row's beginning
    bool hasSpatialId;  // of a geometry: four bytes stand in front of it
    Store store;
  };

  static Kind KindOf(ASData const& data);
  static Store StoreOf(ASData const& data);
  static bool HasArea(Kind kind) { return kind == Kind::kText || kind == Kind::kGuid; }
  static bool Bind(Column& column, ASData* data);
  void ReadRow(char* row, MYSQL_ROW texts, unsigned long const* lengths, MapBuffer& buffer) const;
  void Relocate(char* row, std::size_t rows) const;
  static void ReadInto(UU& cell, char* area, Column const& column, char const* text, std::size_t length,
                       MapBuffer& buffer);
  static void Deliver(UU const& cell, Column const& column);

  std::vector<Column> columns_;
  std::list<std::shared_ptr<ASSimpleAttribute>> kept_;
  std::size_t width_ = 0;  // cells
};

}  // namespace corvane::internal

#endif
