#include "corvane/ordbms/comparison.h"

#include "corvane/internal/sql_text.h"

namespace sql = corvane::internal::sql;
using corvane::Relation;

namespace ORDBMS {

char const* const comp_string[6] = {sql::Word(Relation::kEqual),     sql::Word(Relation::kNotEqual),
                                    sql::Word(Relation::kLess),      sql::Word(Relation::kGreater),
                                    sql::Word(Relation::kLessEqual), sql::Word(Relation::kGreaterEqual)};
char const* const null_comp_string[2] = {sql::kIsNull, sql::kIsNotNull};
char const* const order_string[2] = {sql::kAscending, sql::kDescending};

}  // namespace ORDBMS
