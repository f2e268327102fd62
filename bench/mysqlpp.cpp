// MySQL++: the text protocol. Rows are read from a result that is not buffered (Query::use) and their columns converted
// by the library; statements are streamed into a query.

#include <mysql++.h>

#include <ctime>
#include <optional>
#include <stdexcept>

#include "program.h"

namespace bench {

namespace {

// Not through time_t, which MySQL++ takes for local time.
std::int64_t FromDateTime(mysqlpp::DateTime const& time) {
  return Seconds(time.year(), time.month(), time.day(), time.hour(), time.minute(), time.second());
}

mysqlpp::DateTime ToDateTime(std::time_t seconds) {
  std::tm parts{};
  gmtime_r(&seconds, &parts);
  auto const byte = [](int number) { return static_cast<unsigned char>(number); };
  return {static_cast<unsigned short>(parts.tm_year + 1900),
          byte(parts.tm_mon + 1),
          byte(parts.tm_mday),
          byte(parts.tm_hour),
          byte(parts.tm_min),
          byte(parts.tm_sec)};
}

void Read(Account& account, mysqlpp::Row const& row) {
  account.id = row[0];
  account.account = row[1];
  row[2].to_string(account.name);
  row[3].to_string(account.code);
  account.balance = row[4];
  account.price = row[5];
  account.created = FromDateTime(mysqlpp::DateTime(row[6]));
  account.hasNote = !row[7].is_null();
  if (account.hasNote) row[7].to_string(account.note);
  account.hasAge = !row[8].is_null();
  if (account.hasAge) account.age = row[8];
  account.hasPhoto = !row[9].is_null();
  if (account.hasPhoto) row[9].to_string(account.photo);
}

class MySqlPp {
 public:
  explicit MySqlPp(Server const& server)
      : connection_(server.database.c_str(), server.host.c_str(), server.user.c_str(), server.password.c_str(),
                    server.port),
        query_(connection_.query()) {
    query_.precision(17);  // a double exactly
  }

  void Fetch(long rows, std::vector<Account>& into) {
    query_ << kSelect << " <= " << rows;
    mysqlpp::UseQueryResult const result = query_.use();
    while (mysqlpp::Row const row = result.fetch_row()) Read(into.emplace_back(), row);
  }

  void Iterate(long rows, Checksum& checksum) {
    query_ << kSelect << " <= " << rows;
    mysqlpp::UseQueryResult const result = query_.use();
    Account account;
    while (mysqlpp::Row const row = result.fetch_row()) {
      Read(account, row);
      checksum.Add(account);
    }
  }

  void Select(int id, Account& account) {
    query_ << kSelect << " = " << id;
    mysqlpp::UseQueryResult const result = query_.use();
    mysqlpp::Row const row = result.fetch_row();
    if (!row) throw std::runtime_error("no such account");
    Read(account, row);
  }

  void Begin() { transaction_.emplace(connection_); }
  void Commit() { transaction_->commit(); }

  void Insert(Account const& account) {
    query_ << "INSERT INTO inserted (account, name, code, balance, price, created, note, age, photo) VALUES ("
           << account.account << ", " << mysqlpp::quote << account.name << ", " << mysqlpp::quote << account.code
           << ", " << account.balance << ", " << account.price << ", " << mysqlpp::quote << ToDateTime(account.created)
           << ", ";
    AppendIf(account.hasNote, account.note);
    query_ << ", ";
    AppendIf(account.hasAge, account.age);
    query_ << ", ";
    AppendIf(account.hasPhoto, account.photo);
    query_ << ")";
    query_.execute();
  }

  void Update(Account const& account) {
    query_ << "UPDATE updated SET account = " << account.account << ", name = " << mysqlpp::quote << account.name
           << ", code = " << mysqlpp::quote << account.code << ", balance = " << account.balance
           << ", price = " << account.price << ", created = " << mysqlpp::quote << ToDateTime(account.created)
           << ", note = ";
    AppendIf(account.hasNote, account.note);
    query_ << ", age = ";
    AppendIf(account.hasAge, account.age);
    query_ << ", photo = ";
    AppendIf(account.hasPhoto, account.photo);
    query_ << " WHERE id = " << account.id;
    query_.execute();
  }

 private:
  void AppendIf(bool has, std::string const& bytes) {
    if (has) {
      query_ << mysqlpp::quote << bytes;
    } else {
      query_ << "NULL";
    }
  }

  void AppendIf(bool has, int number) {
    if (has) {
      query_ << number;
    } else {
      query_ << "NULL";
    }
  }

  mysqlpp::Connection connection_;
  mysqlpp::Query query_;
  std::optional<mysqlpp::Transaction> transaction_;
};

}  // namespace

}  // namespace bench

int main(int argc, char** argv) { return bench::Run(argc, argv, bench::CommonWorkloads<bench::MySqlPp>()); }
