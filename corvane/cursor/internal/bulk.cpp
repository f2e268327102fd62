#include "corvane/cursor/internal/bulk.h"

#include "corvane/data/value/exception.h"
#include "corvane/internal/log.h"
#include "corvane/query/filter.h"
#include "corvane/session/ardbms.h"
#include "corvane/session/internal/options.h"

namespace corvane::internal {

unsigned long ExecuteBulk(ASSession* session, void const* object, ASFilter const& statement, bool hasCondition,
                          char const* noSession) {
  if (session == nullptr) throw AException(noSession);
  if (!hasCondition && session->IsSafeMode()) throw WithoutCondition();
  Str const sql = statement.Query();
  Log(session->DebugLevel(), kLogStatements, "SESSION ", Pointer{object}, " EXECUTE-> ", sql, "\n\n");
  return session->Execute(sql);
}

}  // namespace corvane::internal
