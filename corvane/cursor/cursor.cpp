#include "corvane/cursor/cursor.h"

#include <algorithm>
#include <cstddef>
#include <new>
#include <utility>

#include "corvane/cache/map_buffer.h"
#include "corvane/cursor/internal/raw_text.h"
#include "corvane/cursor/internal/result_rows.h"
#include "corvane/cursor/internal/statement_record.h"
#include "corvane/data/value/exception.h"
#include "corvane/internal/client_library.h"
#include "corvane/internal/number_text.h"
#include "corvane/internal/sql_text.h"
#include "corvane/mapping/domain.h"
#include "corvane/query/order.h"
#include "corvane/session/ardbms.h"

using corvane::internal::ResultPtr;
using corvane::internal::ResultRows;
using corvane::internal::StatementRecord;

namespace {

constexpr char kOrderBy[] = " ORDER BY ";
constexpr char kLimit[] = " LIMIT ";
constexpr char kOffset[] = " OFFSET ";
constexpr std::size_t kEndRoom = sizeof kOrderBy + sizeof kLimit + sizeof kOffset + 2 * corvane::internal::kNumberRoom;

void CheckSession(ASSession const* session) {
  if (session == nullptr) throw AException("There is no session for cursor. ");
}

// Every failure of opening is an AException.
template <class Action>
void Guarded(Action action) {
  try {
    action();
  } catch (std::bad_alloc const&) {
    throw AException("Out of memory for the row buffer. ");
  }
}

}  // namespace

ASCursor::ASCursor(ASSession* session) : session_(session) {}

// The owned record may be what the rows were read into: it goes after them.
ASCursor::~ASCursor() {
  Close();
  record_.reset();
}

ASCursor& ASCursor::Limit(unsigned count, unsigned offset) {
  limited_ = true;
  limit_ = count;
  offset_ = offset;
  return *this;
}

void ASCursor::Order(ASOrder const& order) {
  if (order_.length() > 0) order_ << corvane::internal::sql::kSeparator;
  order_ << order.text_;
}

void ASCursor::Order(ASOrder&& order) {
  if (order_.length() > 0) return Order(order);
  order_ = std::move(order.text_);
}

ASCursor& ASCursor::Union(ASFilter const& other) { return Append(" UNION ", other); }
ASCursor& ASCursor::UnionAll(ASFilter const& other) { return Append(" UNION ALL ", other); }
ASCursor& ASCursor::Intersect(ASFilter const& other) { return Append(" INTERSECT ", other); }
ASCursor& ASCursor::Minus(ASFilter const& other) { return Append(" MINUS ", other); }

ASCursor& ASCursor::Append(char const* word, ASFilter const& other) {
  SetKeywords(other);
  Str const operand = other.Query();  // first: it may throw, and it may be this cursor's own
  setOperations_ << word << operand;
  return *this;
}

void ASCursor::SetKeywords(ASFilter const& filter) const {
  CheckSession(session_);
  filter.Project().setKW(session_->getKWPrefix(), session_->getKWSuffix());
  filter.GroupBy().setKW(session_->getKWPrefix(), session_->getKWSuffix());
}

Str ASCursor::Query() const {
  if (raw_.length() > 0) return raw_;
  SetKeywords(*this);
  Str text = Rendered(setOperations_.View().size() + order_.View().size() + kEndRoom);
  text << setOperations_;
  if (order_.length() > 0) text << kOrderBy << order_;
  if (limited_) text << kLimit << limit_;
  if (limited_ && offset_ != 0) text << kOffset << offset_;
  return text;
}

Str ASCursor::SimpleQuery() const {
  if (raw_.length() > 0) return raw_;
  SetKeywords(*this);
  Str text("(");
  text << ASFilter::Query() << setOperations_ << ')';
  return text;
}

void ASCursor::Statement(Str const& sql) {
  CheckSession(session_);
  Str raw(sql);  // it may be a value of the columns that go now
  if (IsOpen()) currentRow_ = 0;
  Close();
  DropStatementColumns();
  raw_ = std::move(raw);
  rawState_ = RawState::kDone;  // whatever happens to it, Fetch() must not send it again
  if (!corvane::internal::ContainsSelect(raw_)) {
    Execute(raw_);
    return;
  }
  rawState_ = RawState::kFailed;
  try {
    Guarded([this] {
      Execute(raw_);
      Describe();
    });
    rawState_ = RawState::kReady;
    Open(0, 0);
  } catch (...) {
    DropStatementColumns();
    if (rawState_ == RawState::kReady) rawState_ = RawState::kFailed;
    throw;
  }
}

// Only a raw text can leave a result that nobody takes, or several. Whether it may is settled before it is sent:
// nothing may fail between that and the result, which would stay in the next statement's way.
void ASCursor::Execute(Str const& statement) {
  bool const raw = raw_.length() > 0;
  bool const several = raw && corvane::internal::MayGiveResults(statement);
  session_->Execute(statement);
  if (several) {
    session_->AdmitUntakenOf(statement);
  } else if (raw) {
    session_->AdmitUntaken();
  }
}

// A text without a result has done what it can do; one whose result could not be read has failed.
MYSQL_RES* ASCursor::TakeResult() {
  try {
    return session_->FetchMultiple();
  } catch (AException const&) {
    if (!session_->HasError()) rawState_ = RawState::kDone;
    throw;
  }
}

// Makes a column for each of the result's.
void ASCursor::Describe() {
  ResultPtr const result(TakeResult());
  statement_ = std::make_unique<StatementRecord>(result.get());
  for (ASAttribute* const attribute : statement_->Record()) Project().items_.push_back(attribute);
}

void ASCursor::DropStatementColumns() {
  if (statement_ == nullptr) return;
  for (ASAttribute* const attribute : statement_->Record()) Project().items_.remove(attribute);
  statement_.reset();
}

void ASCursor::Open(int, int) {
  if (IsOpen()) return;
  if (raw_.length() > 0 && rawState_ == RawState::kDone) return;
  if (raw_.length() > 0 && rawState_ == RawState::kFailed) {
    throw AException("Raw statement has failed, it is not run again. ");
  }
  CheckSession(session_);
  Guarded([this] {
    Execute(Query());
    // The client library's own copy of all rows is saved where nobody needs it: a raw text may give several results,
    // and its columns may have to be as long as the longest value.
    ResultPtr const result(raw_.length() > 0 ? session_->FetchMultiple() : session_->FetchUnstored());
    if (statement_ != nullptr) statement_->Resize(result.get());
    auto rows = std::make_unique<ResultRows>(Project().items_, Project().kept_);
    auto buffer = std::make_unique<MapBuffer>();
    int const count = rows->Read(result.get(), *buffer);
    if (session_->HasError()) throw session_->FetchError();  // the rest never came
    rowCount_ = count;
    rows_ = std::move(rows);
    buffer_ = std::move(buffer);
  });
  grid_ = static_cast<UU*>(buffer_->GetBegin());
  rowWidth_ = rows_->Width();
}

int ASCursor::Fetch() { return Fetch(currentRow_); }

int ASCursor::Fetch(int row) {
  if (!IsOpen()) Open(0, 0);
  currentRow_ = row;
  if (!IsOpen() || row < 0 || row >= rowCount_) return 0;
  rows_->Deliver(GetUURecord(row));
  return currentRow_ = row + 1;
}

int ASCursor::Fetch(ASDomain& record) { return IsOpen() ? Fetch() : FetchFirst(record); }

int ASCursor::FetchFirst(ASDomain& record) {
  ASProject before(Project());
  try {
    for (ASAttribute const* const attribute : record) {
      if (attribute != nullptr) Project() << *attribute;
    }
    currentRow_ = 0;
    int const next = Fetch();
    if (!IsOpen()) Project().Swap(before);
    return next;
  } catch (...) {
    if (!IsOpen()) Project().Swap(before);
    throw;
  }
}

int ASCursor::FetchSingle() {
  CheckSession(session_);
  Query();  // the text is not needed; an application's own rendering may count on being asked
  return rowCount_ = Fetch();
}

int ASCursor::GetAmount() {
  if (!IsOpen()) Open(0, 0);
  return rowCount_;
}

ASCursor& ASCursor::Reset() {
  if (!IsOpen()) Open(0, 0);
  currentRow_ = 0;
  return *this;
}

UU* ASCursor::GetUURecord(int row) {
  return grid_ != nullptr ? grid_ + static_cast<std::ptrdiff_t>(row) * rowWidth_ : nullptr;
}

MapBuffer* ASCursor::Detach() {
  MapBuffer* const detached = buffer_.release();  // the caller owns the rows from here on
  Close();
  return detached;
}

void ASCursor::Close() {
  buffer_.reset();
  rows_.reset();
  grid_ = nullptr;
  rowCount_ = 0;
}

void ASCursor::OpenWithRecord() {
  if (IsOpen() || record_ == nullptr) return Open(0, 0);
  Guarded([this] {
    auto& items = Project().items_;
    auto before = items;
    try {
      for (ASAttribute* const attribute : *record_) {
        bool const listed = std::find(items.begin(), items.end(), attribute) != items.end();
        if (attribute != nullptr && !listed) items.push_back(attribute);
      }
      Open(0, 0);
    } catch (...) {
      items.swap(before);
      throw;
    }
  });
}

void ASCursor::SetRecord(ASDomain* owned) {
  if (owned == record_.get()) return;
  if (record_ != nullptr) {
    Close();
    currentRow_ = 0;
    for (ASAttribute* const attribute : *record_) Project().items_.remove(attribute);
    Project().domains_.remove(record_.get());
  }
  record_.reset(owned);
}
