// The bare client library with prepared statements, each prepared and bound once: the binary protocol. Rows are read
// straight from the connection into the bound variables; no result is buffered.

#include <mysql.h>

#include <cstring>
#include <ctime>
#include <memory>
#include <stdexcept>

#include "program.h"

namespace bench {

namespace {

struct CloseHandle {
  void operator()(MYSQL* handle) const { mysql_close(handle); }
};
struct CloseStatement {
  void operator()(MYSQL_STMT* statement) const { mysql_stmt_close(statement); }
};
using Statement = std::unique_ptr<MYSQL_STMT, CloseStatement>;

template <std::size_t kCapacity>
struct Bytes {
  char data[kCapacity];
  unsigned long length;

  void To(std::string& to) const { to.assign(data, length); }
  void From(std::string const& from) {
    if (from.size() > kCapacity) throw std::length_error("longer than its column");
    length = from.size();
    std::memcpy(data, from.data(), length);
  }
};

// The bound variables: of a row that is read, and of one that is written.
struct Row {
  int id;
  std::int64_t account;
  Bytes<4 * 64> name;  // up to four bytes for each character
  Bytes<4 * 8> code;
  double balance;
  double price;
  MYSQL_TIME created;
  Bytes<4 * 200> note;
  my_bool noteIsNull;
  int age;
  my_bool ageIsNull;
  Bytes<65'535> photo;
  my_bool photoIsNull;

  void To(Account& to) const {
    to.id = id;
    to.account = account;
    name.To(to.name);
    code.To(to.code);
    to.balance = balance;
    to.price = price;
    to.created =
        Seconds(static_cast<int>(created.year), static_cast<int>(created.month), static_cast<int>(created.day),
                static_cast<int>(created.hour), static_cast<int>(created.minute), static_cast<int>(created.second));
    to.hasNote = noteIsNull == 0;
    if (to.hasNote) note.To(to.note);
    to.hasAge = ageIsNull == 0;
    if (to.hasAge) to.age = age;
    to.hasPhoto = photoIsNull == 0;
    if (to.hasPhoto) photo.To(to.photo);
  }

  void From(Account const& from) {
    id = from.id;
    account = from.account;
    name.From(from.name);
    code.From(from.code);
    balance = from.balance;
    price = from.price;
    SetCreated(from.created);
    noteIsNull = !from.hasNote;
    if (from.hasNote) note.From(from.note);
    ageIsNull = !from.hasAge;
    if (from.hasAge) age = from.age;
    photoIsNull = !from.hasPhoto;
    if (from.hasPhoto) photo.From(from.photo);
  }

 private:
  void SetCreated(std::time_t seconds) {
    std::tm parts{};
    gmtime_r(&seconds, &parts);
    created = {};
    created.year = static_cast<unsigned>(parts.tm_year + 1900);
    created.month = static_cast<unsigned>(parts.tm_mon + 1);
    created.day = static_cast<unsigned>(parts.tm_mday);
    created.hour = static_cast<unsigned>(parts.tm_hour);
    created.minute = static_cast<unsigned>(parts.tm_min);
    created.second = static_cast<unsigned>(parts.tm_sec);
    created.time_type = MYSQL_TIMESTAMP_DATETIME;
  }
};

template <class Value>
MYSQL_BIND Bind(enum_field_types type, Value& value, my_bool* isNull = nullptr) {
  MYSQL_BIND bind{};
  bind.buffer_type = type;
  bind.buffer = &value;
  bind.is_null = isNull;
  return bind;
}

template <std::size_t kCapacity>
MYSQL_BIND Bind(enum_field_types type, Bytes<kCapacity>& bytes, my_bool* isNull = nullptr) {
  MYSQL_BIND bind = Bind(type, bytes.data, isNull);
  bind.buffer_length = kCapacity;
  bind.length = &bytes.length;
  return bind;
}

class Prepared {
 public:
  explicit Prepared(Server const& server) : handle_(mysql_init(nullptr)), row_(std::make_unique<Row>()) {
    if (mysql_real_connect(handle_.get(), server.host.c_str(), server.user.c_str(), server.password.c_str(),
                           server.database.c_str(), server.port, nullptr, 0) == nullptr) {
      throw std::runtime_error(mysql_error(handle_.get()));
    }
    // The id stands at both ends: the first of what is read, and the last of what an UPDATE is given.
    MYSQL_BIND binds[] = {Bind(MYSQL_TYPE_LONG, row_->id),
                          Bind(MYSQL_TYPE_LONGLONG, row_->account),
                          Bind(MYSQL_TYPE_STRING, row_->name),
                          Bind(MYSQL_TYPE_STRING, row_->code),
                          Bind(MYSQL_TYPE_DOUBLE, row_->balance),
                          Bind(MYSQL_TYPE_DOUBLE, row_->price),
                          Bind(MYSQL_TYPE_DATETIME, row_->created),
                          Bind(MYSQL_TYPE_STRING, row_->note, &row_->noteIsNull),
                          Bind(MYSQL_TYPE_LONG, row_->age, &row_->ageIsNull),
                          Bind(MYSQL_TYPE_BLOB, row_->photo, &row_->photoIsNull),
                          Bind(MYSQL_TYPE_LONG, row_->id)};
    fetch_ = Prepare(kSelect + std::string(" <= ?"), binds, binds);
    select_ = Prepare(kSelect + std::string(" = ?"), binds, binds);
    insert_ = Prepare(
        "INSERT INTO inserted (account, name, code, balance, price, created, note, age, photo) "
        "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)",
        binds + 1);
    update_ = Prepare(
        "UPDATE updated SET account = ?, name = ?, code = ?, balance = ?, price = ?, created = ?, note = ?, age = ?, "
        "photo = ? WHERE id = ?",
        binds + 1);
  }

  void Fetch(long rows, std::vector<Account>& into) {
    row_->id = static_cast<int>(rows);
    Execute(fetch_);
    while (Next(fetch_)) row_->To(into.emplace_back());
  }

  void Iterate(long rows, Checksum& checksum) {
    row_->id = static_cast<int>(rows);
    Execute(fetch_);
    Account account;
    while (Next(fetch_)) {
      row_->To(account);
      checksum.Add(account);
    }
  }

  void Select(int id, Account& account) {
    row_->id = id;
    Execute(select_);
    if (!Next(select_)) throw std::runtime_error("no such account");
    row_->To(account);
    mysql_stmt_free_result(select_.get());  // reads to the end
  }

  void Begin() { Execute("START TRANSACTION"); }
  void Commit() { Execute("COMMIT"); }

  void Insert(Account const& account) {
    row_->From(account);
    Execute(insert_);
  }

  void Update(Account const& account) {
    row_->From(account);
    Execute(update_);
  }

 private:
  Statement Prepare(std::string const& text, MYSQL_BIND* parameters, MYSQL_BIND* results = nullptr) {
    Statement statement(mysql_stmt_init(handle_.get()));
    Check(statement, mysql_stmt_prepare(statement.get(), text.data(), text.size()) == 0);
    Check(statement, mysql_stmt_bind_param(statement.get(), parameters) == 0);
    if (results != nullptr) Check(statement, mysql_stmt_bind_result(statement.get(), results) == 0);
    return statement;
  }

  static bool Next(Statement const& statement) {
    int const status = mysql_stmt_fetch(statement.get());
    if (status == MYSQL_DATA_TRUNCATED) throw std::runtime_error("a value does not fit");
    Check(statement, status != 1);
    return status == 0;
  }

  static void Execute(Statement const& statement) { Check(statement, mysql_stmt_execute(statement.get()) == 0); }

  void Execute(char const* statement) {
    if (mysql_query(handle_.get(), statement) != 0) throw std::runtime_error(mysql_error(handle_.get()));
  }

  static void Check(Statement const& statement, bool good) {
    if (!good) throw std::runtime_error(mysql_stmt_error(statement.get()));
  }

  std::unique_ptr<MYSQL, CloseHandle> handle_;
  std::unique_ptr<Row> row_;
  Statement fetch_, select_, insert_, update_;
};

}  // namespace

}  // namespace bench

int main(int argc, char** argv) { return bench::Run(argc, argv, bench::CommonWorkloads<bench::Prepared>()); }
