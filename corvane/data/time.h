#ifndef CORVANE_DATA_TIME_H
#define CORVANE_DATA_TIME_H

#include <type_traits>

#include "corvane/data/int.h"

/// A date-time column: seconds since 1970-01-01 00:00:00 UTC as a signed 32-bit number, 1901-12-13 20:45:53 to
/// 2038-01-19 03:14:07; NULL is 0x80000000. No time zone is ever applied. A later or earlier time is truncated to
/// 32 bits: 9999-12-31 23:59:59 reads as a time in 1969. Keep far dates in an ASStr.
class CORVANE_API ASTime : public ASInt {
 public:
  /// NULL.
  ASTime() = default;
  /// So many seconds behind 1970-01-01 00:00:00 UTC; -2147483648 is NULL.
  explicit ASTime(int seconds) { Int::operator=(seconds); }
  /// Copies the value and the binding.
  ASTime(ASTime const&) = default;
  ~ASTime() override;

  bool operator==(basic_type const& other) const override;
  bool operator<(basic_type const& other) const override;
  void copy(basic_type const& other) override;
  /// corvane::kDbTime (100).
  int GetDBType() const override;
  /// "2004-07-01 13:45:00"; "NULL" when NULL.
  Str getstr() const override;

  /// Assign seconds, a NULL too, and write only when they change; the binding stays. A number of more than 32 bits is
  /// truncated to its lower 32 bits; what is -2147483648 then sets NULL.
  /// @{
  virtual ASTime& operator=(long seconds);
  virtual ASTime& operator=(int const& seconds);
  ASTime& operator=(Int const& other) override;
  ASTime& operator=(ASInt const& other) override;
  /// @}

  /// Assigns seconds likewise, truncated to 32 bits; a NULL sets NULL.
  ASTime& operator=(Int64 const& seconds);
  /// Assigns a time, a NULL too; the binding stays.
  ASTime& operator=(ASTime const& other) { return *this = static_cast<Int const&>(other); }
  /// Assigns a plain integer of any other type, truncated to 32 bits.
  template <class T,
            std::enable_if_t<
                std::is_integral<T>::value && !std::is_same<T, int>::value && !std::is_same<T, long>::value, int> = 0>
  ASTime& operator=(T seconds) {
    return *this = static_cast<long>(seconds);
  }
  /// Compares two columns by their values; an exact match, which the language prefers to the other forms.
  bool operator==(ASTime const& other) const { return *this == static_cast<Int const&>(other); }
  /// As ASInt has it.
  using ASInt::operator==;
  /// As ASInt has it.
  using ASInt::operator<;

  /// The seconds of a text of the form "2004-07-01 13:45:00" (UTC): six decimal numbers are read at the positions 0,
  /// 5, 8, 11, 14 and 17; what stands between them is not looked at, and what follows is dropped. 0x80000000 (NULL) for
  /// a null pointer, a text of 18 characters or fewer, and a date outside the calendar (years 1400 to 9999).
  /// Hours, minutes and seconds beyond their range roll over; when one of them is negative, all of them count back. The
  /// result is truncated to 32 bits. Throws nothing.
  static int YYMMDDtoInt(char const* text);
};

#endif
