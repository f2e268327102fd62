#include "tests/cluster/writer.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace corvane::test {

namespace {

constexpr Id kIdsOfAWriter = 100'000'000;
constexpr Id kIdsOfAConnection = 100;  // then another one, so that nodes that have come back get writers, too
constexpr int kCounters = 16;          // few enough for writers to meet in one of them, through different nodes
constexpr std::chrono::milliseconds kPause(10);  // between two ids: a load that leaves the machine usable

struct Entry : ASDomain {
  ASInt64 id;
  ASInt part;
  ASAttribute idColumn{"id"};
  ASAttribute partColumn{"part"};

  Entry(Id number, int half) : ASDomain("transaction_entry", "") {
    Add(idColumn, id).Add(partColumn, part);
    id = number;
    part = half;
  }
  Entry(Entry const&) = delete;
  Entry& operator=(Entry const&) = delete;
};

struct Counter : ASDomain {
  ASInt slot;
  ASInt64 entries;
  ASAttribute slotColumn{"slot", "", 0, corvane::kKey};
  ASAttribute entriesColumn{"entries"};

  explicit Counter(Id id) : ASDomain("counter", "") {
    Add(slotColumn, slot).Add(entriesColumn, entries);
    slot = static_cast<int>(id % kCounters);
  }
  Counter(Counter const&) = delete;
  Counter& operator=(Counter const&) = delete;
};

// What the library tells of an exception decides, and nothing else: wherever it does not call the outcome unknown,
// nothing may be stored.
Line OutcomeOf(AException const& error, Id id) {
  using corvane::ErrorKind;
  std::string why = error.Kind() == ErrorKind::kConnectionLost ? kLost : "";
  why += error.Message().getUntil("\n\b\n", 0).ToString();
  std::replace(why.begin(), why.end(), '\n', ' ');
  bool const unknown = error.Kind() == ErrorKind::kOutcomeUnknown;
  return {unknown ? Event::kUnknown : Event::kRefused, id, Clock::now(), why};
}

Line Acknowledged(Id id) { return {Event::kAcknowledged, id, Clock::now(), ""}; }

void RollBack(ASSession& session) {
  try {
    session.Rollback();
  } catch (AException const&) {
    // Lost, and so rolled back; the next statement reports it once more.
  }
}

void WriteInTransaction(ASSession& session, Id id) {
  session.Insert(Entry(id, 1));
  Counter counter(id);
  session.Select(counter);
  counter.entries = counter.entries + 1;
  session.Update(counter);
  session.Insert(Entry(id, 2));
  session.Commit();
}

void WriteAtOnce(ASSession& session, char const* table, Id id) {
  auto const number = static_cast<long long>(id);
  Str statement("INSERT INTO ");
  statement << table << " (id, part) VALUES (" << number << ", 1), (" << number << ", 2)";
  session.Execute(statement);
}

}  // namespace

char const* const kSumOfCounters = "SELECT SUM(entries) FROM counter";

char const* TableOf(Kind kind) {
  switch (kind) {
    case Kind::kTransaction:
      return "transaction_entry";
    case Kind::kRepeating:
      return "repeating_entry";
    case Kind::kOnce:
      return "once_entry";
  }
  throw std::logic_error("no kind of writer");
}

std::vector<std::string> CreateTables() {
  std::string rows;
  for (int slot = 0; slot < kCounters; ++slot) rows += (slot > 0 ? ", (" : "(") + std::to_string(slot) + ", 0)";
  std::string const columns = " (serial BIGINT AUTO_INCREMENT PRIMARY KEY, id BIGINT NOT NULL, part INT NOT NULL)";
  return {
      "CREATE TABLE transaction_entry" + columns,
      "CREATE TABLE once_entry" + columns,
      "CREATE TABLE repeating_entry (id BIGINT, part INT, PRIMARY KEY (id, part))",
      "CREATE TABLE counter (slot INT PRIMARY KEY, entries BIGINT NOT NULL)",
      "INSERT INTO counter VALUES " + rows,
  };
}

Writer::Writer(int number, Kind kind, Parameters parameters, std::string const& journalFile)
    : number_(number), kind_(kind), parameters_(std::move(parameters)), journal_(journalFile), thread_([this] {
        Run();
      }) {}

Writer::~Writer() {
  Stop();
  if (thread_.joinable()) thread_.join();
}

void Writer::Stop() { stopping_ = true; }

void Writer::Join() {
  thread_.join();
  if (failure_) std::rethrow_exception(failure_);
}

void Writer::Run() {
  try {
    WriteIds();
  } catch (...) {
    failure_ = std::current_exception();
  }
  ended_ = true;
}

void Writer::WriteIds() {
  parameters_["AutoCommit"] = kind_ == Kind::kTransaction ? "off" : "on";
  if (kind_ == Kind::kOnce) parameters_["RetryWrites"] = "off";
  Session session(parameters_);
  for (Id id = number_ * kIdsOfAWriter; !stopping_; ++id) {
    Clock::time_point const begun = Clock::now();
    journal_.Write({Event::kIntent, id, begun, ""});
    Line const outcome = Attempt(session, id);
    journal_.Write(outcome);
    if (outcome.event == Event::kAcknowledged) lastAcknowledged_ = begun.time_since_epoch().count();
    std::this_thread::sleep_for(kPause);
  }
}

Line Writer::Attempt(ASSession& session, Id id) const {
  try {
    if (id % kIdsOfAConnection == 0) session.Connect(false);
    if (kind_ == Kind::kTransaction) {
      WriteInTransaction(session, id);
    } else {
      WriteAtOnce(session, TableOf(kind_), id);
    }
    return Acknowledged(id);
  } catch (AException const& error) {
    Line const outcome = OutcomeOf(error, id);
    if (kind_ == Kind::kTransaction) RollBack(session);
    return outcome;
  }
}

}  // namespace corvane::test
