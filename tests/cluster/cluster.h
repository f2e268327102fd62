#ifndef CORVANE_TESTS_CLUSTER_CLUSTER_H
#define CORVANE_TESTS_CLUSTER_CLUSTER_H

#include <string>
#include <vector>

#include "tests/cluster/account.h"
#include "tests/support/live.h"

namespace corvane::test {

/// The cluster that tools/private-cluster has started. Its nodes are numbered from 1.
class Cluster {
 public:
  /// Throws std::runtime_error when there is none.
  Cluster();

  int Nodes() const { return static_cast<int>(ports_.size()); }
  /// Those of a session through the proxy, in the database of the tests.
  Parameters SessionParameters() const;

  void Kill(int node);
  /// With the data that the node had, or with none; returns when it takes part again, and throws when it does not.
  void Start(int node, bool empty);

  /// Runs on the first node.
  void Run(std::string const& statement);
  Stored Read(int node, char const* table) const;
  /// The first field of the only row.
  std::string Value(int node, std::string const& query) const;

 private:
  void Control(std::string const& arguments);
  Observer At(int node) const;

  std::vector<std::string> ports_;
};

}  // namespace corvane::test

#endif
