#include "tests/support/live.h"

#include <mysql.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <stdexcept>
#include <thread>
#include <utility>

namespace corvane::test {

namespace {

constexpr std::chrono::seconds kPatience(5);
constexpr std::chrono::milliseconds kPollStep(1);

struct FreeResult {
  void operator()(MYSQL_RES* result) const { mysql_free_result(result); }
};
using ResultPtr = std::unique_ptr<MYSQL_RES, FreeResult>;

Rows RowsOf(MYSQL_RES* result) {
  Rows rows;
  unsigned const columns = mysql_num_fields(result);
  while (MYSQL_ROW const fields = mysql_fetch_row(result)) {
    unsigned long const* const lengths = mysql_fetch_lengths(result);
    Row row;
    for (unsigned column = 0; column < columns; ++column) {
      row.push_back(fields[column] != nullptr ? Field(std::string(fields[column], lengths[column])) : Field());
    }
    rows.push_back(std::move(row));
  }
  return rows;
}

Field OnlyRowOf(Rows const& rows, std::string const& query) {
  if (rows.size() != 1) throw std::runtime_error(std::to_string(rows.size()) + " rows: " + query);
  return rows[0].at(0);
}

template <class Condition>
bool BecomesTrue(Condition condition) {
  auto const deadline = std::chrono::steady_clock::now() + kPatience;
  while (!condition()) {
    if (std::chrono::steady_clock::now() > deadline) return false;
    std::this_thread::sleep_for(kPollStep);
  }
  return true;
}

}  // namespace

std::string Environment(char const* name) {
  char const* const value = std::getenv(name);
  return value != nullptr ? value : "";
}

Observer::Observer(std::string schema, std::string port) : schema_(std::move(schema)), port_(std::move(port)) {
  Connect();
}

Observer::~Observer() { Close(); }

void Observer::Close() {
  if (handle_ != nullptr) mysql_close(std::exchange(handle_, nullptr));
}

// Leaves the handle with its error when it fails.
bool Observer::Opens() {
  Close();
  handle_ = mysql_init(nullptr);
  auto const port = static_cast<unsigned>(std::stoul(port_));
  return mysql_real_connect(handle_, Environment("CORVANE_TEST_HOST").c_str(), Environment("CORVANE_TEST_USER").c_str(),
                            Environment("CORVANE_TEST_PASSWORD").c_str(), nullptr, port, nullptr, 0) != nullptr;
}

void Observer::Connect() {
  if (!BecomesTrue([this] { return Opens(); })) {
    std::string const error = mysql_error(handle_);
    Close();
    throw std::runtime_error("the observer cannot connect: " + error);
  }
  Run("SET lock_wait_timeout=10, innodb_lock_wait_timeout=0");
  Run("CREATE DATABASE IF NOT EXISTS " + schema_ + " CHARACTER SET utf8mb4");
  Run("USE " + schema_);
}

MYSQL* Observer::Handle() const {
  if (handle_ == nullptr) throw std::runtime_error("the observer is not connected");
  return handle_;
}

unsigned Observer::Refusal(std::string const& statement) {
  if (mysql_real_query(Handle(), statement.data(), statement.size()) != 0) return mysql_errno(handle_);
  ResultPtr const unwanted(mysql_store_result(handle_));
  return mysql_errno(handle_);
}

std::string Observer::RefusalText() const { return mysql_error(Handle()); }

void Observer::Run(std::string const& statement) {
  if (Refusal(statement) != 0) throw std::runtime_error(RefusalText() + ": " + statement);
}

Rows Observer::Read(std::string const& query) {
  if (mysql_real_query(Handle(), query.data(), query.size()) == 0) {
    if (ResultPtr const result{mysql_store_result(handle_)}) return RowsOf(result.get());
  }
  throw std::runtime_error("no result, " + RefusalText() + ": " + query);
}

Field Observer::Value(std::string const& query) { return OnlyRowOf(Read(query), query); }

bool Observer::Becomes(std::string const& query, std::string const& value) {
  return BecomesTrue([&] { return Value(query) == value; });
}

void Observer::Kill(std::string const& connectionId) {
  Run("KILL CONNECTION " + connectionId);
  if (!Becomes("SELECT COUNT(*) FROM information_schema.processlist WHERE id=" + connectionId, "0")) {
    throw std::runtime_error("connection " + connectionId + " survives being killed");
  }
}

bool Observer::SeesSleeping(std::string const& connectionId) {
  return Becomes("SELECT COUNT(*) FROM information_schema.processlist WHERE state='User sleep' AND id=" + connectionId,
                 "1");
}

Rows Fetched(ASSession& session, std::string const& query) {
  session.Execute(query);
  ResultPtr const result(session.FetchMultiple());
  return RowsOf(result.get());
}

Field FetchedValue(ASSession& session, std::string const& query) { return OnlyRowOf(Fetched(session, query), query); }

std::string ConnectionId(ASSession& session) { return FetchedValue(session, "SELECT CONNECTION_ID()").value(); }

int OpenFiles() {
  std::filesystem::directory_iterator const files("/proc/self/fd");
  return static_cast<int>(std::distance(begin(files), end(files)));
}

void LiveTest::SetUp() {
  if (Port().empty()) GTEST_SKIP() << "no server: CORVANE_TEST_PORT is not set; see tools/private-server";
  static int schemas = 0;
  schema_ = "corvane_live_" + std::to_string(getpid()) + "_" + std::to_string(++schemas);
  observer_ = std::make_unique<Observer>(schema_);
  CreateTables();
}

void LiveTest::TearDown() {
  if (serverIsDown_) StartServer();
  if (observer_ == nullptr) return;
  // Sessions may have left connections open, with transactions that would keep the schema from being dropped.
  for (Row const& connection :
       StoredRows("SELECT id FROM information_schema.processlist WHERE db='" + schema_ + "' AND id<>CONNECTION_ID()")) {
    Refusal("KILL CONNECTION " + connection.at(0).value());  // it may have ended in the meantime
  }
  Run("DROP DATABASE " + schema_);
  observer_.reset();
}

Parameters LiveTest::With(Parameters const& changes) const {
  Parameters parameters = changes;  // insert() leaves what is there
  parameters.insert({{"Host", Host()},
                     {"Port", Port()},
                     {"UserName", User()},
                     {"Password", Password()},
                     {"Database", schema_},
                     {"AutoCommit", "on"},
                     {"EmulateSequences", "no"}});
  return parameters;
}

Parameters LiveTest::WithTransactions(Parameters const& changes) const {
  Parameters parameters = changes;
  parameters["AutoCommit"] = "off";
  return With(parameters);
}

bool LiveTest::ConnectionsBecome(int count) {
  return Becomes(
      "SELECT COUNT(*) FROM information_schema.processlist WHERE db='" + schema_ + "' AND id<>CONNECTION_ID()",
      std::to_string(count));
}

Rows LiveTest::ConnectionHosts() {
  return StoredRows("SELECT SUBSTRING_INDEX(host, ':', 1) FROM information_schema.processlist WHERE db='" + schema_ +
                    "' AND id<>CONNECTION_ID() ORDER BY id");
}

bool LiveTest::HasServerControl() {
  return !Environment("CORVANE_TEST_SERVER_TOOL").empty() && !Environment("CORVANE_TEST_SERVER_DIR").empty();
}

void LiveTest::ControlServer(char const* action) {
  std::string const command = std::string("\"$CORVANE_TEST_SERVER_TOOL\" ") + action + " \"$CORVANE_TEST_SERVER_DIR\"";
  if (std::system(command.c_str()) != 0) throw std::runtime_error(command + " fails");
}

void LiveTest::StopServer() {
  serverIsDown_ = true;
  ControlServer("stop");
}

void LiveTest::KillServer() {
  serverIsDown_ = true;
  ControlServer("kill");
}

void LiveTest::StartServer() {
  ControlServer("start");
  observer_->Connect();
  serverIsDown_ = false;
}

}  // namespace corvane::test
