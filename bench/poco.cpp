// POCO Data with its MySQL connector; statements prepared once and bound to variables: the binary protocol. Rows are
// read straight from the connection, many of them into a vector, through a type handler; no result is buffered.

#include <Poco/Data/MySQL/Connector.h>
#include <Poco/Data/Session.h>
#include <Poco/Data/Statement.h>
#include <Poco/Data/TypeHandler.h>
#include <Poco/DateTime.h>
#include <Poco/Nullable.h>
#include <Poco/Timestamp.h>

#include <stdexcept>

#include "program.h"

template <>
class Poco::Data::TypeHandler<bench::Account> {
 public:
  static std::size_t size() { return 10; }

  static void extract(std::size_t at, bench::Account& to, bench::Account const&, AbstractExtractor::Ptr from) {
    from->extract(at++, to.id);
    from->extract(at++, to.account);
    from->extract(at++, to.name);
    from->extract(at++, to.code);
    from->extract(at++, to.balance);
    from->extract(at++, to.price);
    DateTime created;
    from->extract(at++, created);
    to.created = created.timestamp().epochTime();
    to.hasNote = from->extract(at++, to.note);
    to.hasAge = from->extract(at++, to.age);
    to.hasPhoto = from->extract(at++, to.photo);
  }

  static void prepare(std::size_t, bench::Account const&, AbstractPreparator::Ptr const&) {}
};

namespace bench {

namespace {

using Poco::Data::Statement;
using Poco::Data::Keywords::into;
using Poco::Data::Keywords::limit;
using Poco::Data::Keywords::now;
using Poco::Data::Keywords::use;

template <class Value>
Poco::Nullable<Value> If(bool has, Value const& value) {
  return has ? Poco::Nullable<Value>(value) : Poco::Nullable<Value>();
}

// What the statements that write are bound to.
struct Row {
  int id;
  std::int64_t account;
  std::string name, code;
  double balance, price;
  Poco::DateTime created;
  Poco::Nullable<std::string> note;
  Poco::Nullable<int> age;
  Poco::Nullable<std::string> photo;

  void From(Account const& from) {
    id = from.id;
    account = from.account;
    name = from.name;
    code = from.code;
    balance = from.balance;
    price = from.price;
    created = Poco::Timestamp::fromEpochTime(from.created);
    note = If(from.hasNote, from.note);
    age = If(from.hasAge, from.age);
    photo = If(from.hasPhoto, from.photo);
  }
};

Poco::Data::Session Connect(Server const& server) {
  Poco::Data::MySQL::Connector::registerConnector();
  return {Poco::Data::MySQL::Connector::KEY, "host=" + server.host + ";port=" + std::to_string(server.port) +
                                                 ";user=" + server.user + ";password=" + server.password +
                                                 ";db=" + server.database};
}

class PocoData {
 public:
  explicit PocoData(Server const& server)
      : session_(Connect(server)),
        select_((session_ << kSelect << " = ?", into(account_), use(row_.id))),
        insert_((session_ << "INSERT INTO inserted (account, name, code, balance, price, created, note, age, photo) "
                             "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)",
                 use(row_.account), use(row_.name), use(row_.code), use(row_.balance), use(row_.price),
                 use(row_.created), use(row_.note), use(row_.age), use(row_.photo))),
        update_((session_ << "UPDATE updated SET account = ?, name = ?, code = ?, balance = ?, price = ?, created = ?, "
                             "note = ?, age = ?, photo = ? WHERE id = ?",
                 use(row_.account), use(row_.name), use(row_.code), use(row_.balance), use(row_.price),
                 use(row_.created), use(row_.note), use(row_.age), use(row_.photo), use(row_.id))) {}

  void Fetch(long rows, std::vector<Account>& to) { session_ << kSelect << " <= ?", into(to), use(rows), now; }

  void Iterate(long rows, Checksum& checksum) {
    std::vector<Account> some;
    Statement statement = (session_ << kSelect << " <= ?", into(some), use(rows), limit(100));
    while (!statement.done()) {
      some.clear();
      statement.execute(false);
      for (Account const& account : some) checksum.Add(account);
    }
  }

  void Select(int id, Account& account) {
    row_.id = id;
    if (select_.execute() == 0) throw std::runtime_error("no such account");
    account = account_;
  }

  void Begin() { session_.begin(); }
  void Commit() { session_.commit(); }

  void Insert(Account const& account) {
    row_.From(account);
    insert_.execute();
  }

  void Update(Account const& account) {
    row_.From(account);
    update_.execute();
  }

 private:
  Poco::Data::Session session_;
  Account account_;
  Row row_{};
  Statement select_, insert_, update_;
};

}  // namespace

}  // namespace bench

int main(int argc, char** argv) { return bench::Run(argc, argv, bench::CommonWorkloads<bench::PocoData>()); }
