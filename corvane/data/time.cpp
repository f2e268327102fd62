#include "corvane/data/time.h"

#include <algorithm>
#include <boost/date_time/posix_time/conversion.hpp>
#include <boost/date_time/posix_time/posix_time_types.hpp>
#include <climits>
#include <cstring>
#include <ctime>
#include <exception>
#include <optional>

#include "corvane/internal/number_text.h"
#include "corvane/internal/time_text.h"

namespace {

boost::posix_time::ptime Epoch() { return boost::posix_time::ptime(boost::gregorian::date(1970, 1, 1)); }

// Never INT_MIN, which has no absolute value.
int ReadNumber(char const* text, int position) {
  return std::max(corvane::internal::TruncateToInt(corvane::internal::ParseInteger(text + position)), -INT_MAX);
}

}  // namespace

ASTime::~ASTime() = default;

bool ASTime::operator==(basic_type const& other) const { return Equals(other, "ASTime::operator == ()"); }
bool ASTime::operator<(basic_type const& other) const { return Less(other, "ASTime::operator < ()"); }
void ASTime::copy(basic_type const& other) { Assign(other, "ASTime::copy()"); }
int ASTime::GetDBType() const { return corvane::kDbTime; }

Str ASTime::getstr() const {
  if (IsNull() != 0) return "NULL";
  Str text;
  corvane::internal::AppendTime(text, *this);
  return text;
}

ASTime& ASTime::operator=(long seconds) { return *this = Int(corvane::internal::TruncateToInt(seconds)); }

ASTime& ASTime::operator=(int const& seconds) { return *this = Int(seconds); }

ASTime& ASTime::operator=(Int64 const& seconds) {
  return seconds.IsNull() != 0 ? *this = Int() : *this = static_cast<long>(seconds);
}

ASTime& ASTime::operator=(Int const& other) {
  ASInt::operator=(other);
  return *this;
}

ASTime& ASTime::operator=(ASInt const& other) { return *this = static_cast<Int const&>(other); }

int ASTime::YYMMDDtoInt(char const* text) {
  if (text == nullptr || strnlen(text, corvane::internal::kTimeLength) < corvane::internal::kTimeLength) return kNull;
  if (std::optional<int> const seconds = corvane::internal::ReadPlainTime(text)) return *seconds;
  int const year = ReadNumber(text, 0);
  int const month = ReadNumber(text, 5);
  int const day = ReadNumber(text, 8);
  // Asked here and not left to the calendar's exceptions: it would first cut the numbers to 16 bits.
  if (!corvane::internal::InCalendar(year, month, day)) return kNull;
  std::tm parts{};
  parts.tm_year = year - 1900;
  parts.tm_mon = month - 1;
  parts.tm_mday = day;
  parts.tm_hour = ReadNumber(text, 11);
  parts.tm_min = ReadNumber(text, 14);
  parts.tm_sec = ReadNumber(text, 17);
  parts.tm_isdst = -1;
  try {
    boost::posix_time::time_duration const since = boost::posix_time::ptime_from_tm(parts) - Epoch();
    return corvane::internal::TruncateToInt(since.ticks() / boost::posix_time::time_duration::ticks_per_second());
  } catch (std::exception const&) {  // hours beyond the end of the calendar
    return kNull;
  }
}
