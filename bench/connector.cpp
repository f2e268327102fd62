// MySQL Connector/C++ 1.1, which is made like JDBC; statements prepared once: the binary protocol. It buffers the
// result of every prepared statement (mysql_stmt_store_result); a plain statement can be read without that, which takes
// less memory and as much time.

#include <cppconn/connection.h>
#include <cppconn/prepared_statement.h>
#include <cppconn/resultset.h>
#include <mysql_driver.h>

#include <memory>
#include <stdexcept>

#include "program.h"

namespace bench {

namespace {

void Read(Account& account, sql::ResultSet const& row) {
  account.id = row.getInt(1);
  account.account = row.getInt64(2);
  account.name = row.getString(3);
  account.code = row.getString(4);
  account.balance = static_cast<double>(row.getDouble(5));
  account.price = static_cast<double>(row.getDouble(6));
  account.created = ParseTime(row.getString(7).c_str());
  account.hasNote = !row.isNull(8);
  if (account.hasNote) account.note = row.getString(8);
  account.hasAge = !row.isNull(9);
  if (account.hasAge) account.age = row.getInt(9);
  account.hasPhoto = !row.isNull(10);
  if (account.hasPhoto) account.photo = row.getString(10);
}

class Connector {
 public:
  explicit Connector(Server const& server)
      : connection_(sql::mysql::get_mysql_driver_instance()->connect(
            "tcp://" + server.host + ":" + std::to_string(server.port), server.user, server.password)) {
    connection_->setSchema(server.database);
    fetch_.reset(connection_->prepareStatement(kSelect + std::string(" <= ?")));
    select_.reset(connection_->prepareStatement(kSelect + std::string(" = ?")));
    insert_.reset(connection_->prepareStatement(
        "INSERT INTO inserted (account, name, code, balance, price, created, note, age, photo) "
        "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)"));
    update_.reset(connection_->prepareStatement(
        "UPDATE updated SET account = ?, name = ?, code = ?, balance = ?, price = ?, created = ?, note = ?, age = ?, "
        "photo = ? WHERE id = ?"));
  }

  void Fetch(long rows, std::vector<Account>& into) {
    fetch_->setInt64(1, rows);
    std::unique_ptr<sql::ResultSet> const result(fetch_->executeQuery());
    while (result->next()) Read(into.emplace_back(), *result);
  }

  void Iterate(long rows, Checksum& checksum) {
    fetch_->setInt64(1, rows);
    std::unique_ptr<sql::ResultSet> const result(fetch_->executeQuery());
    Account account;
    while (result->next()) {
      Read(account, *result);
      checksum.Add(account);
    }
  }

  void Select(int id, Account& account) {
    select_->setInt(1, id);
    std::unique_ptr<sql::ResultSet> const result(select_->executeQuery());
    if (!result->next()) throw std::runtime_error("no such account");
    Read(account, *result);
  }

  void Begin() { connection_->setAutoCommit(false); }
  void Commit() { connection_->commit(); }

  void Insert(Account const& account) {
    Set(*insert_, account);
    insert_->executeUpdate();
  }

  void Update(Account const& account) {
    Set(*update_, account);
    update_->setInt(10, account.id);
    update_->executeUpdate();
  }

 private:
  static void Set(sql::PreparedStatement& statement, Account const& account) {
    statement.setInt64(1, account.account);
    statement.setString(2, account.name);
    statement.setString(3, account.code);
    statement.setDouble(4, account.balance);
    statement.setDouble(5, account.price);
    statement.setDateTime(6, TimeText(account.created));
    if (account.hasNote) {
      statement.setString(7, account.note);
    } else {
      statement.setNull(7, sql::DataType::VARCHAR);
    }
    if (account.hasAge) {
      statement.setInt(8, account.age);
    } else {
      statement.setNull(8, sql::DataType::INTEGER);
    }
    if (account.hasPhoto) {
      statement.setString(9, account.photo);  // setBlob() sends it in a packet of its own
    } else {
      statement.setNull(9, sql::DataType::BINARY);
    }
  }

  std::unique_ptr<sql::Connection> connection_;
  std::unique_ptr<sql::PreparedStatement> fetch_, select_, insert_, update_;
};

}  // namespace

}  // namespace bench

int main(int argc, char** argv) { return bench::Run(argc, argv, bench::CommonWorkloads<bench::Connector>()); }
