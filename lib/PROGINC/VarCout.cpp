#include "PROGINC/VarCout.h"

#include <iomanip>
#include <iostream>

void PrintChar(char c, int n) {
  PrintCharNoEndl(c, n);
  std::cout << std::endl;
}

void PrintCharNoEndl(char c, int n) {
  // A field narrower than its one character is widened to it.
  std::cout << std::setfill(c) << std::setw(n) << c << std::setfill(' ');
}
