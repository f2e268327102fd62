#include "database.h"

#include <cstdlib>
#include <stdexcept>

namespace bench {

namespace {

std::string Environment(char const* name) {
  char const* const value = std::getenv(name);
  return value != nullptr ? value : "";
}

void Run(MYSQL* handle, std::string const& statement) {
  if (mysql_query(handle, statement.c_str()) != 0) throw std::runtime_error(mysql_error(handle));
}

}  // namespace

std::map<std::string, std::string> Parameters() {
  if (Environment("CORVANE_TEST_PORT").empty()) {
    throw std::runtime_error("no server: CORVANE_TEST_PORT is not set; use ./run bench");
  }
  return {{"Host", Environment("CORVANE_TEST_HOST")},
          {"Port", Environment("CORVANE_TEST_PORT")},
          {"UserName", Environment("CORVANE_TEST_USER")},
          {"Password", Environment("CORVANE_TEST_PASSWORD")},
          {"Database", Environment("CORVANE_TEST_DATABASE")},
          {"AutoCommit", "on"},
          {"EmulateSequences", "no"}};
}

Handle Connect() {
  auto parameters = Parameters();
  Handle handle(mysql_init(nullptr));
  if (handle == nullptr ||
      mysql_real_connect(handle.get(), parameters["Host"].c_str(), parameters["UserName"].c_str(),
                         parameters["Password"].c_str(), parameters["Database"].c_str(),
                         static_cast<unsigned>(std::stoul(parameters["Port"])), nullptr, 0) == nullptr) {
    throw std::runtime_error("cannot connect");
  }
  return handle;
}

void SaleColumns::AddTo(ASDomain& record) {
  record.Add(idColumn, id).Add(quantityColumn, quantity).Add(customerColumn, customer).Add(weightColumn, weight);
  record.Add(priceColumn, price).Add(soldColumn, sold).Add(codeColumn, code).Add(nameColumn, name);
  record.Add(noteColumn, note).Add(ticketColumn, ticket);
}

Sale::Sale() : ASDomain("sale", "Sale") { AddTo(*this); }

void MakeSales(MYSQL* handle, int rows, std::string const& table) {
  Run(handle, "DROP TABLE IF EXISTS " + table);
  Run(handle,
      "CREATE TABLE " + table +
          " (id INT PRIMARY KEY, quantity INT, customer BIGINT, weight DOUBLE, price DECIMAL(10,2), "
          "sold DATETIME, code CHAR(8), name VARCHAR(40), note VARCHAR(80), ticket CHAR(36)) CHARACTER SET latin1");
  Run(handle,
      "INSERT INTO " + table +
          " SELECT seq, seq % 97, 9007199254740993 + seq, seq / 7, seq % 10000 / 100, "
          "'2004-07-01 13:45:00' + INTERVAL seq MINUTE, LPAD(HEX(seq % 65536), 6, 'x'), CONCAT('Customer number ', "
          "seq), "
          "IF(seq % 3 = 0, NULL, REPEAT('note ', 1 + seq % 12)), INSERT(INSERT(INSERT(INSERT(MD5(seq), 9, 0, '-'), "
          "14, 0, '-'), 19, 0, '-'), 24, 0, '-') FROM seq_1_to_" +
          std::to_string(rows));
}

int Rows() {
  std::string const rows = Environment("CORVANE_BENCH_ROWS");
  return rows.empty() ? 100000 : std::stoi(rows);
}

}  // namespace bench
