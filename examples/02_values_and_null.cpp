// A value of each common class: how it starts (as NULL), is set, written and read back, and what a text, a number or a
// time can hold.
//
//     ./run example 02

#include <corvane/corvane.h>

#include <iostream>
#include <string>

#include "example.h"

namespace {

struct Parcel : ASDomain {
  Parcel() : ASDomain("example_parcel", "") {
    Add(idColumn, id).Add(tagColumn, tag).Add(addresseeColumn, addressee).Add(noteColumn, note);
    Add(microgramsColumn, micrograms).Add(priceColumn, price).Add(sentColumn, sent).Add(sealColumn, seal);
  }
  Parcel(Parcel&&) = delete;

  ASInt id;
  ASGuid tag;
  ASVStr addressee{4 * 40};
  ASVStr note{10};  // ten bytes
  ASInt64 micrograms;
  ASDouble price;
  ASTime sent;
  ASRealBlob seal{0};  // of any size

  ASAttribute idColumn{"id", "", 0, corvane::kKey};
  ASAttribute tagColumn{"tag"};
  ASAttribute addresseeColumn{"addressee"};
  ASAttribute noteColumn{"note"};
  ASAttribute microgramsColumn{"micrograms"};
  ASAttribute priceColumn{"price"};
  ASAttribute sentColumn{"sent"};
  ASAttribute sealColumn{"seal"};
};

// A NULL has no value to show: ask first.
std::string Shown(ASData const& value) { return value.IsNull() ? "NULL" : value.getstr().ToString(); }

void Print(Parcel& parcel) {
  std::cout << "parcel " << Shown(parcel.id) << ": " << Shown(parcel.tag) << ", for " << Shown(parcel.addressee)
            << ", note '" << Shown(parcel.note) << "', " << Shown(parcel.micrograms) << " µg, " << Shown(parcel.price)
            << ", sent " << Shown(parcel.sent) << ", seal of " << parcel.seal.Length() << " bytes\n";
}

void Show(ASSession& session) {
  session.Execute(
      "CREATE TEMPORARY TABLE example_parcel (id INT PRIMARY KEY, tag CHAR(36), addressee VARCHAR(40), note "
      "VARCHAR(40),"
      " micrograms BIGINT, price DOUBLE, sent DATETIME, seal LONGBLOB) CHARACTER SET utf8mb4");

  Parcel parcel;  // all values are NULL
  parcel.id = 1;
  session.Insert(parcel);
  Print(parcel);

  parcel.id = 2;
  parcel.tag = Guid("6F1C2B1E-94D1-4C2B-8E0B-2A5D3C7F9E10");
  parcel.addressee = std::string("Zoë O'Neill");
  parcel.note = "";  // an empty text is not NULL
  parcel.micrograms = 5000000000;
  parcel.price = 0.1 + 0.2;
  parcel.sent = 1700000000;  // seconds since 1970, UTC
  parcel.seal = RealBlob(4, "\0\n'\\");
  std::cout << session.InsertQuery(parcel, 0) << '\n';
  session.Insert(parcel);

  Parcel found;
  found.id = 2;
  session.Select(found);
  Print(found);
  std::cout << "The same number: " << (found.price == parcel.price ? "yes" : "no")
            << ", the same bytes: " << (found.seal == parcel.seal ? "yes" : "no") << '\n';

  long const micrograms = found.micrograms;  // values become plain ones
  std::string const addressee = found.addressee.ToString();
  std::cout << addressee << " gets " << micrograms / 1000000000 << " kg\n";

  found.note = "do not bend";  // cut, without an error: eleven bytes
  found.addressee.SetNull();
  std::cout << "note '" << Shown(found.note) << "', for " << Shown(found.addressee) << '\n';
  try {
    found.id = 3000000000;
  } catch (AException const& error) {
    std::cout << error.what() << '\n';
  }
  session.Commit();
}

}  // namespace

int main(int count, char** arguments) {
  return example::Run(count, arguments, [](example::Parameters const& parameters) {
    ASSession session(parameters, 0, false);
    Show(session);
  });
}
