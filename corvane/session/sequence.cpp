#include "corvane/session/sequence.h"

#include "corvane/internal/client_library.h"
#include "corvane/internal/number_text.h"
#include "corvane/session/ardbms.h"

ASSequence::ASSequence(ASSession* session, Str const& name)
    : update_("UPDATE "), select_("SELECT LAST_INSERT_ID()"), session_(session) {
  update_ << name << " SET Val=LAST_INSERT_ID(Val+1)";
}

int ASSequence::getNext() {
  ASSession::CheckSequence(session_);
  session_->reconnections_ = 0;
  while (true) {
    session_->ReopensForSeq(update_, true);
    // When no row was changed, LAST_INSERT_ID() would repeat an earlier number.
    if (mysql_affected_rows(session_->sequenceHandle_) == 0) return 0;
    bool const reopened = session_->ReopensForSeq(select_, true);
    corvane::internal::ResultPtr const result(mysql_store_result(session_->sequenceHandle_));
    if (reopened) continue;  // the number is known only to the connection that counted it
    MYSQL_ROW const row = result != nullptr ? mysql_fetch_row(result.get()) : nullptr;
    if (row == nullptr || row[0] == nullptr) return 0;
    return value_ = corvane::internal::TruncateToInt(corvane::internal::ParseInteger(row[0]));
  }
}
