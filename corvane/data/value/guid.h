#ifndef CORVANE_DATA_VALUE_GUID_H
#define CORVANE_DATA_VALUE_GUID_H

#include <cstdint>

#include "corvane/data/value/basic_type.h"
#include "corvane/data/value/str.h"

/// A globally unique identifier of 16 bytes, held in a heap array that is absent when NULL. The bytes lie in the order
/// of the text form (RFC 4122, 4.1.2: most significant byte first).
class CORVANE_API Guid : public virtual basic_type {
 public:
  /// How many bytes a GUID has.
  static constexpr int kBytes = 16;

  /// NULL.
  Guid() = default;
  /// Reads 32 hexadecimal digits of either case, with or without the dashes of the form 8-4-4-4-12 (each on its own
  /// may be missing) and with or without braces around the whole. Any other text, and a null pointer, gives NULL.
  Guid(char const* text);
  /// `first` is the first 8 bytes of the text form, most significant byte first, `second` the last 8.
  Guid(std::uint64_t first, std::uint64_t second);
  /// Copies the bytes; of a NULL value makes another NULL.
  Guid(Guid const& other);
  ~Guid() override;

  /// Reads a text as the constructor does into 16 bytes. False when it is none; the bytes are then not to be used.
  static bool Parse(char const* text, char* bytes);

  /// Copies the bytes; a NULL source makes this NULL.
  Guid& operator=(Guid const& other);

  /// Compared byte by byte as unsigned numbers. Two NULLs are equal; NULL comes before everything.
  /// @{
  bool operator==(Guid const& other) const;
  bool operator!=(Guid const& other) const { return !(*this == other); }
  bool operator<(Guid const& other) const;
  /// @}

  bool operator==(basic_type const& other) const override;
  bool operator<(basic_type const& other) const override;

  /// 16, or 0 when the array is absent.
  int length() const { return bytes_ != nullptr ? kBytes : 0; }

  int IsNull() const override;
  /// Frees the array.
  void SetNull() override;
  /// length().
  int GetSize() const override;
  int size() const override;
  /// corvane::kTypeGuid (30).
  int GetType() const override;
  /// The form 8-4-4-4-12 in lower case, 36 characters; empty when NULL.
  Str getstr() const override;
  /// The 16 bytes, or a null pointer when NULL.
  void* voidptr() const override;
  void copy(basic_type const& other) override;

 protected:
  /// Chooses the constructor for columns.
  struct InPlace {};
  /// For columns, whose array is filled in place: 16 zero bytes, never freed.
  explicit Guid(InPlace);
  /// Sets the null state of an in-place value; the bytes stay.
  void MarkNull(bool null) { null_ = null; }
  /// `==` and `<` of a value of any type, for the columns, which name themselves in what they throw:
  /// "Incompatible types for ", `operation` (like "ASGuid::operator < ()") and ". ".
  /// @{
  bool Equals(basic_type const& other, char const* operation) const;
  bool Less(basic_type const& other, char const* operation) const;
  /// @}

 private:
  char* bytes_ = nullptr;  // owned
  bool inPlace_ = false;
  bool null_ = true;  // of an in-place value only; else a value is NULL when it has no array
};

#endif
