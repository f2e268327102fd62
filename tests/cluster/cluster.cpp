#include "tests/cluster/cluster.h"

#include <cstdlib>
#include <sstream>
#include <stdexcept>

namespace corvane::test {

Cluster::Cluster() {
  std::istringstream in(Environment("CORVANE_TEST_NODE_PORTS"));
  for (std::string port; in >> port;) ports_.push_back(port);
  if (ports_.empty()) throw std::runtime_error("no cluster: tools/private-cluster run -- starts one");
}

Parameters Cluster::SessionParameters() const {
  return {
      {"Host", Environment("CORVANE_TEST_HOST")},
      {"Port", Environment("CORVANE_TEST_PORT")},
      {"UserName", Environment("CORVANE_TEST_USER")},
      {"Password", Environment("CORVANE_TEST_PASSWORD")},
      {"Database", Environment("CORVANE_TEST_DATABASE")},
      {"EmulateSequences", "no"},
      {"ConnectTimeout", "5"},
      {"ReadTimeout", "30"},
      {"WriteTimeout", "30"},
      {"RetryLimit", "10"},
  };
}

void Cluster::Kill(int node) { Control("kill \"$CORVANE_TEST_SERVER_DIR\" " + std::to_string(node)); }

void Cluster::Start(int node, bool empty) {
  Control("start \"$CORVANE_TEST_SERVER_DIR\" " + std::to_string(node) + (empty ? " empty" : ""));
}

void Cluster::Control(std::string const& arguments) {
  if (std::system(("\"$CORVANE_TEST_CLUSTER_TOOL\" " + arguments).c_str()) != 0) {
    throw std::runtime_error("private-cluster failed: " + arguments);
  }
}

Observer Cluster::At(int node) const {
  return Observer(Environment("CORVANE_TEST_DATABASE"), ports_.at(static_cast<std::size_t>(node - 1)));
}

void Cluster::Run(std::string const& statement) { At(1).Run(statement); }

// Having applied all that any node had committed by now.
Stored Cluster::Read(int node, char const* table) const {
  Observer observer = At(node);
  observer.Run("SET wsrep_sync_wait=1, group_concat_max_len=10000");
  Stored stored;
  std::string const query = std::string("SELECT id, GROUP_CONCAT(part ORDER BY part) FROM ") + table + " GROUP BY id";
  for (Row const& row : observer.Read(query)) stored[std::stoll(row.at(0).value())] = row.at(1).value();
  return stored;
}

std::string Cluster::Value(int node, std::string const& query) const {
  Observer observer = At(node);
  observer.Run("SET wsrep_sync_wait=1");
  return observer.Value(query).value_or("NULL");
}

}  // namespace corvane::test
