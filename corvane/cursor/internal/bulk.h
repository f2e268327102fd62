#ifndef CORVANE_CURSOR_INTERNAL_BULK_H
#define CORVANE_CURSOR_INTERNAL_BULK_H

class ASFilter;
class ASSession;

namespace corvane::internal {

/// Logs and runs `statement`, an UPDATE or DELETE; returns the number of affected rows. `object` is its address in the
/// log. Throws AException `noSession` without a session, and for a statement without a condition where the session is
/// in safe mode.
unsigned long ExecuteBulk(ASSession* session, void const* object, ASFilter const& statement, bool hasCondition,
                          char const* noSession);

}  // namespace corvane::internal

#endif
