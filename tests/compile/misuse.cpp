// Each MISUSE must be refused by the compiler; MISUSE 0 is what is right, and must compile.

#include <corvane/corvane.h>

void Use(ASSession& session, ASStr& text, ASInt& number, ASTime& time, Str& name, ASGuid& guid, ASDomain& record);

void Use(ASSession& session, ASStr& text, ASInt& number, ASTime& time, Str& name, ASGuid& guid, ASDomain& record) {
  static_cast<void>(session);
  static_cast<void>(record);
#if MISUSE == 0
  text = "5";
  number = 5;
  time = 5;
  name << 1;
  guid = Guid("");
  ASStr const column(5);
  ASAttribute const attribute("name");
  static_cast<void>(attribute == 5);
  ASOrder order = -attribute;
  ASGroupAttribute const sum("SUM(b)", nullptr, nullptr);
  static_cast<void>(sum == attribute);
  static_cast<void>(order - sum);
  ASProject() << attribute;
  ASCursor(&session).Order(ASOrder("a"));
#elif MISUSE == 1  // a number is no text
  text = 5;
#elif MISUSE == 2  // nor a text a number
  number = "5";
#elif MISUSE == 3
  number = text;
#elif MISUSE == 4
  time = "2004-07-01 13:45:00";
#elif MISUSE == 5  // a capacity is not a column
  ASStr const column = 5U;
#elif MISUSE == 6
  ASBlob const column = 5;
#elif MISUSE == 7   // a text is not a column
  ASAttribute const attribute = Str("name");
#elif MISUSE == 8   // neither the digit 1 nor pointer arithmetic
  Str const sum = name + 1;
#elif MISUSE == 9   // a capacity is no text
  name = 5;
#elif MISUSE == 10  // sessions are not copied
  ASSession const copy(session);
#elif MISUSE == 11
  session = session;
#elif MISUSE == 12  // sockets neither
  IO::TcpSocket const socket("localhost", 1);
  IO::TcpSocket const copy(socket);
#elif MISUSE == 13  // a number is no GUID
  guid = 5;
#elif MISUSE == 14  // the root is abstract
  basic_type const root;
#elif MISUSE == 15  // and so is a column without a kind
  ASData const data;
#elif MISUSE == 16
  numeric const value;
#elif MISUSE == 17  // a character is no capacity
  Str const comma(',');
#elif MISUSE == 18
  ASTime const moment = 5;
#elif MISUSE == 19  // a record is not an attribute list of something else
  std::list<int>& numbers = record;
#elif MISUSE == 20  // a time has no fraction of a second
  time = 2.5;
#elif MISUSE == 21  // the abstract column has no text
  ASSimpleAttribute const attribute;
#elif MISUSE == 22  // a column stands on the left of a condition
  static_cast<void>(5 == ASAttribute("name"));
#elif MISUSE == 23
  static_cast<void>(number == ASAttribute("name"));
#elif MISUSE == 24  // and an aggregate on the left of one of a HAVING
  static_cast<void>(ASAttribute("a") == ASGroupAttribute("SUM(b)", nullptr, nullptr));
#elif MISUSE == 25  // aggregates are appended to an order that has a name
  static_cast<void>(-ASAttribute("a") - ASGroupAttribute("SUM(b)", nullptr, nullptr));
#elif MISUSE == 26  // a text is no column of a projection
  ASProject().operator<<(Str("a"));
#elif MISUSE == 27  // nor an order
  ASCursor(&session).Order("a");
#elif MISUSE == 28  // cursors are not copied
  ASCursor const cursor(&session);
  ASCursor const copy(cursor);
#elif MISUSE == 29
  ASCursor cursor(&session);
  cursor = cursor;
#elif MISUSE == 30  // nor their rows
  MapBuffer const rows;
  MapBuffer const copy(rows);
#elif MISUSE == 31  // a session is no filter
  ASFilter().Where(session);
#elif MISUSE == 32  // caches are not copied
  ASCache const cache(&session, 0);
  ASCache const copy(cache);
#elif MISUSE == 33
  ASSimpleCache cache(&session, 0);
  cache = cache;
#elif MISUSE == 34  // a record is no assignment
  ASUpdater const updater(record);
#elif MISUSE == 35  // nor one that a statement begins with by itself
  ASAttribute const attribute("a");
  ASUpdater const updater = attribute.Set(1);
#elif MISUSE == 36  // a deleter needs its record
  ASDeleter const deleter;
#elif MISUSE == 37  // a number before a code would be BETWEEN
  ORDBMS::old_filter().Set("a", 1, ORDBMS::EQUAL);
#elif MISUSE == 38
  ORDBMS::old_filter().And("a", 0, ORDBMS::LESS);
#elif MISUSE == 39
  ORDBMS::old_filter().Or("a", 2.5, ORDBMS::LESS);
#elif MISUSE == 40
  ORDBMS::old_filter().And("a", 1L, ORDBMS::LESS);
#elif MISUSE == 41  // a code of one kind is none of another
  ORDBMS::old_cursor().orderby("a", ORDBMS::EQUAL);
#elif MISUSE == 42
  ORDBMS::old_filter().Set("a", "b", ORDBMS::IS_NULL);
#elif MISUSE == 43
  ORDBMS::old_cursor const cursor;
  ORDBMS::old_cursor const copy(cursor);
#else
#error "no such misuse"
#endif
}
