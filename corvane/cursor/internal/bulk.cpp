#include "corvane/cursor/internal/bulk.h"

#include <algorithm>
#include <string_view>

#include "corvane/data/value/exception.h"
#include "corvane/internal/log.h"
#include "corvane/query/filter.h"
#include "corvane/session/ardbms.h"
#include "corvane/session/internal/options.h"

namespace corvane::internal {

namespace {

bool BeginsWith(std::string_view text, std::string_view start) { return text.substr(0, start.size()) == start; }

// Whether the statement has the condition, and the condition says something. Both may come from a class of the
// application's.
bool IsConditional(std::string_view statement, std::string_view condition) {
  constexpr std::string_view kWhere = " WHERE ";
  if (!BeginsWith(condition, kWhere) || statement.find(condition) == std::string_view::npos) return false;
  condition.remove_prefix(kWhere.size());
  condition.remove_prefix(std::min(condition.find_first_not_of(" \t\n\v\f\r"), condition.size()));
  bool const isComment = BeginsWith(condition, "--") || BeginsWith(condition, "#") || BeginsWith(condition, "/*");
  return !condition.empty() && !isComment;
}

}  // namespace

unsigned long ExecuteBulk(ASSession* session, void const* object, ASFilter const& statement, Str const& condition,
                          char const* noSession) {
  if (session == nullptr) throw AException(noSession);
  Str const sql = statement.Query();
  if (session->IsSafeMode() && !IsConditional(sql.View(), condition.View())) throw WithoutCondition();
  Log(session->DebugLevel(), kLogStatements, "SESSION ", Pointer{object}, " EXECUTE-> ", sql, "\n\n");
  return session->Execute(sql);
}

}  // namespace corvane::internal
