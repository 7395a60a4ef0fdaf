// Reads lines "DIGITS OPERATION A [B]" and answers each with the result: the side of the differential tests that uses
// the number library.
#include <iostream>
#include <sstream>

#include "vectors/operations.h"

int main() {
  std::ios::sync_with_stdio(false);
  std::string line;
  while (std::getline(std::cin, line)) {
    std::istringstream fields(line);
    int digits = 0;
    std::string name;
    std::string a;
    std::string b;
    fields >> digits >> name >> a >> b;
    const vectors::Operation* operation = vectors::find_operation(name);
    if (operation == nullptr) {
      std::cerr << "calculator: unknown operation in '" << line << "'\n";
      return 2;
    }
    std::cout << vectors::evaluate(*operation, digits, a, b) << '\n';
  }
}
