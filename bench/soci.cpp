// SOCI with its MySQL backend; statements prepared once and bound to variables. It puts the values into the text by
// itself: the text protocol. It buffers the result (mysql_store_result); many rows are taken from there by the hundred,
// into vectors, which is faster than one by one or by the thousand.

#include <soci/mysql/soci-mysql.h>
#include <soci/soci.h>

#include <ctime>
#include <stdexcept>

#include "program.h"

namespace bench {

namespace {

using soci::into;
using soci::use;

std::int64_t FromTm(std::tm const& time) {
  return Seconds(time.tm_year + 1900, time.tm_mon + 1, time.tm_mday, time.tm_hour, time.tm_min, time.tm_sec);
}

soci::indicator Is(bool has) { return has ? soci::i_ok : soci::i_null; }

// What a statement of one row is bound to.
struct Row : Account {
  std::tm time{};
  soci::indicator noteIs{}, ageIs{}, photoIs{};

  void To(Account& to) {
    created = FromTm(time);
    hasNote = noteIs == soci::i_ok;
    hasAge = ageIs == soci::i_ok;
    hasPhoto = photoIs == soci::i_ok;
    to = *this;
  }

  void From(Account const& from) {
    Account::operator=(from);
    std::time_t const seconds = created;
    gmtime_r(&seconds, &time);
    noteIs = Is(hasNote);
    ageIs = Is(hasAge);
    photoIs = Is(hasPhoto);
  }
};

// What a statement of many rows is bound to.
struct Rows {
  explicit Rows(std::size_t n)
      : id(n),
        account(n),
        name(n),
        code(n),
        balance(n),
        price(n),
        time(n),
        note(n),
        noteIs(n),
        age(n),
        ageIs(n),
        photo(n),
        photoIs(n) {}

  void MoveTo(Account& to, std::size_t i) {
    to.id = id[i];
    to.account = account[i];
    to.name = std::move(name[i]);
    to.code = std::move(code[i]);
    to.balance = balance[i];
    to.price = price[i];
    to.created = FromTm(time[i]);
    to.hasNote = noteIs[i] == soci::i_ok;
    if (to.hasNote) to.note = std::move(note[i]);
    to.hasAge = ageIs[i] == soci::i_ok;
    if (to.hasAge) to.age = age[i];
    to.hasPhoto = photoIs[i] == soci::i_ok;
    if (to.hasPhoto) to.photo = std::move(photo[i]);
  }

  std::vector<int> id;
  std::vector<std::int64_t> account;
  std::vector<std::string> name, code;
  std::vector<double> balance, price;
  std::vector<std::tm> time;
  std::vector<std::string> note;
  std::vector<soci::indicator> noteIs;
  std::vector<int> age;
  std::vector<soci::indicator> ageIs;
  std::vector<std::string> photo;
  std::vector<soci::indicator> photoIs;
};

class Soci {
 public:
  explicit Soci(Server const& server)
      : session_(soci::mysql, "host=" + server.host + " port=" + std::to_string(server.port) + " user=" + server.user +
                                  " password=" + server.password + " dbname=" + server.database),
        select_(Read(" = :id", row_.id, row_)),
        insert_((session_.prepare << "INSERT INTO inserted (account, name, code, balance, price, created, note, age, "
                                     "photo) VALUES (:account, :name, :code, :balance, :price, :created, :note, :age, "
                                     ":photo)",
                 use(row_.account), use(row_.name), use(row_.code), use(row_.balance), use(row_.price), use(row_.time),
                 use(row_.note, row_.noteIs), use(row_.age, row_.ageIs), use(row_.photo, row_.photoIs))),
        update_((session_.prepare << "UPDATE updated SET account = :account, name = :name, code = :code, "
                                     "balance = :balance, price = :price, created = :created, note = :note, "
                                     "age = :age, photo = :photo WHERE id = :id",
                 use(row_.account), use(row_.name), use(row_.code), use(row_.balance), use(row_.price), use(row_.time),
                 use(row_.note, row_.noteIs), use(row_.age, row_.ageIs), use(row_.photo, row_.photoIs), use(row_.id))) {
  }

  void Fetch(long rows, std::vector<Account>& into) {
    ForEach(rows, [&](Rows& some, std::size_t i) { some.MoveTo(into.emplace_back(), i); });
  }

  void Iterate(long rows, Checksum& checksum) {
    Account account;
    ForEach(rows, [&](Rows& some, std::size_t i) {
      some.MoveTo(account, i);
      checksum.Add(account);
    });
  }

  void Select(int id, Account& account) {
    row_.id = id;
    if (!select_.execute(true)) throw std::runtime_error("no such account");
    row_.To(account);
  }

  void Begin() { session_.begin(); }
  void Commit() { session_.commit(); }

  void Insert(Account const& account) {
    row_.From(account);
    insert_.execute(true);
  }

  void Update(Account const& account) {
    row_.From(account);
    update_.execute(true);
  }

 private:
  template <class RowOrRows>
  soci::statement Read(char const* condition, int& key, RowOrRows& to) {
    return (session_.prepare << kSelect << condition, into(to.id), into(to.account), into(to.name), into(to.code),
            into(to.balance), into(to.price), into(to.time), into(to.note, to.noteIs), into(to.age, to.ageIs),
            into(to.photo, to.photoIs), use(key));
  }

  template <class Function>
  void ForEach(long rows, Function const& function) {
    auto last = static_cast<int>(rows);
    Rows some(100);
    soci::statement statement = Read(" <= :last", last, some);
    statement.execute();
    while (statement.fetch()) {
      for (std::size_t i = 0; i < some.id.size(); ++i) function(some, i);
    }
  }

  soci::session session_;
  Row row_;
  soci::statement select_, insert_, update_;
};

}  // namespace

}  // namespace bench

int main(int argc, char** argv) { return bench::Run(argc, argv, bench::CommonWorkloads<bench::Soci>()); }
