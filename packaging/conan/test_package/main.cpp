#include <corvane/corvane.h>

#include <iostream>

int main() {
  ASVStr name(40);
  name = "it's";
  std::cout << corvane::Literal(name) << "\n";  // 'it\'s'
}
