#ifndef CORVANE_CORVANE_H
#define CORVANE_CORVANE_H

/// The whole public interface.

#include "corvane/data/blob.h"
#include "corvane/data/data.h"
#include "corvane/data/dcurrency.h"
#include "corvane/data/double.h"
#include "corvane/data/geometry.h"
#include "corvane/data/guid.h"
#include "corvane/data/int.h"
#include "corvane/data/int64.h"
#include "corvane/data/literal.h"
#include "corvane/data/real_blob.h"
#include "corvane/data/str.h"
#include "corvane/data/time.h"
#include "corvane/data/value/basic_type.h"
#include "corvane/data/value/blob.h"
#include "corvane/data/value/double.h"
#include "corvane/data/value/exception.h"
#include "corvane/data/value/guid.h"
#include "corvane/data/value/int.h"
#include "corvane/data/value/int64.h"
#include "corvane/data/value/mixed_arithmetic.h"
#include "corvane/data/value/narrow.h"
#include "corvane/data/value/numeric.h"
#include "corvane/data/value/real_blob.h"
#include "corvane/data/value/str.h"
#include "corvane/data/vstr.h"
#include "corvane/mapping/allocator.h"
#include "corvane/mapping/attribute.h"
#include "corvane/mapping/domain.h"
#include "corvane/session/ardbms.h"
#include "corvane/session/mysql_fwd.h"
#include "corvane/session/tcp_socket.h"

#endif
