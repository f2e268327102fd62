#include <corvane/corvane.h>

#include <iostream>

// Uses what crosses the library's boundary: virtual bases, exceptions, run-time type information, inline members.
class Note : public ASDomain {
 public:
  Note() : ASDomain("note", "Note") { Add(idColumn_, id).Add(textColumn_, text); }
  Note(Note const&) = delete;
  Note& operator=(Note const&) = delete;

  ASInt id;
  ASVStr text{40};

 private:
  ASAttribute idColumn_{"id", "Id", 0, corvane::kKey};
  ASAttribute textColumn_{"text"};
};

int main() {
  Note note;
  note.id = 7;
  note.text = "it's";
  std::cout << corvane::Literal(note.id) << " " << corvane::Literal(note.text) << "\n";
  basic_type const& root = note.id;
  std::cout << (dynamic_cast<numeric const*>(&root) != nullptr) << "\n";
  try {
    static_cast<void>(note.text == root);
  } catch (AException const& error) {
    std::cout << error.what() << "\n";
  }
  try {
    ASSession const session({{"Host", "127.0.0.1"}, {"ControlPort", "1"}}, 0, false);
  } catch (std::exception const&) {
    std::cout << "refused\n";
  }
}
