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
#else
#error "no such misuse"
#endif
}
