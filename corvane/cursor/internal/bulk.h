#ifndef CORVANE_CURSOR_INTERNAL_BULK_H
#define CORVANE_CURSOR_INTERNAL_BULK_H

class ASFilter;
class ASSession;
class Str;

namespace corvane::internal {

/// Logs and runs `statement`, an UPDATE or DELETE; returns the number of affected rows. `object` is its address in the
/// log. Throws AException `noSession` without a session and, where the session is in safe mode, for a statement that
/// does not contain its `condition` or has an empty one.
unsigned long ExecuteBulk(ASSession* session, void const* object, ASFilter const& statement, Str const& condition,
                          char const* noSession);

}  // namespace corvane::internal

#endif
