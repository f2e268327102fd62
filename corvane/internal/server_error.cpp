#include "corvane/internal/server_error.h"

#include <algorithm>
#include <iterator>

namespace corvane::internal {

namespace {

constexpr char const* kGeneralError = "HY000";

struct State {
  int number;
  char const* state;
};

// In the order of their numbers.
constexpr State kStates[] = {
    {1022, "23000"}, {1037, "HY001"}, {1038, "HY001"}, {1040, "08004"}, {1042, "08S01"}, {1043, "08S01"},
    {1044, "42000"}, {1045, "28000"}, {1046, "3D000"}, {1047, "08S01"}, {1048, "23000"}, {1049, "42000"},
    {1050, "42S01"}, {1051, "42S02"}, {1052, "23000"}, {1053, "08S01"}, {1054, "42S22"}, {1055, "42000"},
    {1056, "42000"}, {1057, "42000"}, {1058, "21S01"}, {1059, "42000"}, {1060, "42S21"}, {1061, "42000"},
    {1062, "23000"}, {1063, "42000"}, {1064, "42000"}, {1065, "42000"}, {1066, "42000"}, {1067, "42000"},
    {1068, "42000"}, {1069, "42000"}, {1070, "42000"}, {1071, "42000"}, {1072, "42000"}, {1073, "42000"},
    {1074, "42000"}, {1075, "42000"}, {1091, "42000"}, {1101, "42000"}, {1103, "42000"}, {1104, "42000"},
    {1109, "42S02"}, {1110, "42000"}, {1113, "42000"}, {1115, "42000"}, {1118, "42000"}, {1132, "42000"},
    {1133, "42000"}, {1136, "21S01"}, {1140, "42000"}, {1142, "42000"}, {1143, "42000"}, {1146, "42S02"},
    {1149, "42000"}, {1152, "08S01"}, {1153, "08S01"}, {1154, "08S01"}, {1155, "08S01"}, {1156, "08S01"},
    {1157, "08S01"}, {1158, "08S01"}, {1159, "08S01"}, {1160, "08S01"}, {1161, "08S01"}, {1169, "23000"},
    {1171, "42000"}, {1172, "42000"}, {1176, "42000"}, {1177, "42000"}, {1178, "42000"}, {1179, "25000"},
    {1184, "08S01"}, {1189, "08S01"}, {1190, "08S01"}, {1203, "42000"}, {1207, "25000"}, {1211, "42000"},
    {1213, "40001"}, {1216, "23000"}, {1217, "23000"}, {1218, "08S01"}, {1222, "21000"}, {1226, "42000"},
    {1227, "42000"}, {1230, "42000"}, {1231, "42000"}, {1232, "42000"}, {1234, "42000"}, {1235, "42000"},
    {1241, "21000"}, {1242, "21000"}, {1247, "42S22"}, {1248, "42000"}, {1250, "42000"}, {1251, "08004"},
    {1253, "42000"}, {1264, "22003"}, {1265, "01000"}, {1280, "42000"}, {1286, "42000"}, {1292, "22007"},
    {1304, "42000"}, {1305, "42000"}, {1317, "70100"}, {1318, "42000"}, {1365, "22012"}, {1367, "22007"},
    {1370, "42000"}, {1402, "XA100"}, {1406, "22001"}, {1410, "42000"}, {1415, "0A000"}, {1451, "23000"},
    {1452, "23000"}, {1460, "42000"}, {1461, "42000"}, {1463, "42000"}, {1557, "23000"}, {1568, "25001"},
    {1582, "42000"}, {1586, "23000"}, {1613, "XA106"}, {1614, "XA102"}, {1690, "22003"}, {1698, "28000"},
    {1761, "23000"}, {1762, "23000"}, {1792, "25006"}, {1859, "23000"}, {1927, "70100"}, {1969, "70100"},
    {4025, "23000"}};

struct Kind {
  int number;
  ErrorKind kind;
};

// Those that are neither refusals nor losses by their SQLSTATE. Not by the state's class 23: an ambiguous column name
// (1052) is of it, too.
constexpr Kind kKinds[] = {
    {1020, ErrorKind::kLockConflict},    // the row has changed since it was read in this transaction
    {1022, ErrorKind::kDuplicateKey},    // in the table of a foreign key, or while making an index
    {1048, ErrorKind::kConstraint},      // NOT NULL
    {1062, ErrorKind::kDuplicateKey},    //
    {1153, ErrorKind::kRefused},         // too large, now and ever
    {1169, ErrorKind::kDuplicateKey},    // a unique constraint of some engines
    {1205, ErrorKind::kLockConflict},    // waited too long
    {1213, ErrorKind::kLockConflict},    // deadlock, or a conflict with another node of a cluster
    {1216, ErrorKind::kConstraint},      // foreign key: no parent
    {1217, ErrorKind::kConstraint},      // foreign key: has children
    {1451, ErrorKind::kConstraint},      // the same two of newer servers
    {1452, ErrorKind::kConstraint},      //
    {1557, ErrorKind::kConstraint},      // foreign key: the change would give a duplicate in a child
    {1586, ErrorKind::kDuplicateKey},    //
    {1614, ErrorKind::kLockConflict},    // deadlock in a distributed transaction
    {1761, ErrorKind::kDuplicateKey},    // by a foreign key's action
    {1762, ErrorKind::kDuplicateKey},    //
    {1859, ErrorKind::kDuplicateKey},    // while changing a table
    {1927, ErrorKind::kConnectionLost},  // killed
    {2002, ErrorKind::kConnectionLost},  // no server at the socket
    {2003, ErrorKind::kConnectionLost},  // none at the address
    {2005, ErrorKind::kConnectionLost},  // no such host
    {2006, ErrorKind::kConnectionLost},  //
    {2012, ErrorKind::kConnectionLost},  // in the handshake
    {2013, ErrorKind::kConnectionLost},  //
    {2014, ErrorKind::kConnectionLost},  // out of step
    {2055, ErrorKind::kConnectionLost},  // like 2013, with the system's reason
    {3572, ErrorKind::kLockConflict},    // NOWAIT
    {3819, ErrorKind::kConstraint},      // CHECK
    {4025, ErrorKind::kConstraint},      // CHECK, of the other server
    {4031, ErrorKind::kConnectionLost},  // the server has closed an idle connection
};

template <class Entry, std::size_t count>
Entry const* Find(Entry const (&table)[count], int number) {
  auto const* const found = std::lower_bound(std::begin(table), std::end(table), number,
                                             [](Entry const& entry, int wanted) { return entry.number < wanted; });
  return found != std::end(table) && found->number == number ? found : nullptr;
}

// Class 08 of the SQLSTATE: connection exceptions.
bool IsConnectionState(char const* state) { return state[0] == '0' && state[1] == '8'; }

}  // namespace

char const* SqlStateOf(int serverError) {
  State const* const found = Find(kStates, serverError);
  return found != nullptr ? found->state : kGeneralError;
}

ErrorKind KindOf(int serverError) {
  if (serverError == 0) return ErrorKind::kOther;
  if (Kind const* const found = Find(kKinds, serverError)) return found->kind;
  return IsConnectionState(SqlStateOf(serverError)) ? ErrorKind::kConnectionLost : ErrorKind::kRefused;
}

}  // namespace corvane::internal
