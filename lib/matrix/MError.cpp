#include "matrix/MError.h"

#include "PROGINC/EndProgram.h"
#include "PROGINC/InputInWork.h"

#include <iomanip>
#include <iostream>
#include <string>

namespace {

const std::string kFrame(60, '*');

std::ostream& Open(const char* kind, const char* name) {
  return std::cout << '\n' << kFrame << "\nMATRIX::" << kind << ":\n\n\t" << name;
}
std::ostream& OpenError(const char* name) { return Open("ERROR", name); }
std::ostream& OpenWarning(const char* name) { return Open("WARNING", name); }

void WriteFrame() { std::cout << kFrame << '\n'; }

[[noreturn]] void CloseError() {
  WriteFrame();
  std::cout << "Exiting program..." << std::endl << std::endl;
  InputInWork::Report();
  EndProgram();
}

} // namespace

void Error(const char* name, long a, long b) {
  OpenError(name) << std::setw(5) << a << " -> [" << std::setw(5) << 0 << ',' << std::setw(5) << b
                  << "]\n\n";
  CloseError();
}

void Error(const char* name, long r1, long c1, long r2, long c2) {
  OpenError(name) << "  [" << std::setw(5) << r1 << ',' << std::setw(5) << c1 << "] -> ["
                  << std::setw(5) << r2 << ',' << std::setw(5) << c2 << "]\n\n";
  CloseError();
}

void invError(const char* name, long r, long c) {
  OpenError(name) << " [" << std::setw(5) << r << ',' << std::setw(5) << c << "]\n\n";
  CloseError();
}

void UError(const char* name, long a) {
  OpenError(name) << " [" << std::setw(5) << a << "]\n\n";
  CloseError();
}

void invError(const char* name, long double x, long n) {
  OpenError(name) << std::setw(10) << x << " 10**-15 " << std::setw(5) << n << "\n\n";
  CloseError();
}

void invWarning(const char* name, long double x, long n) {
  OpenWarning(name) << std::setw(10) << x << " 10**-15 " << std::setw(5) << n << "\n\n";
  WriteFrame();
}

void normWarning(const char* name) {
  OpenWarning(name) << "\n\n";
  WriteFrame();
  std::cout << "Continuing program..." << std::endl << std::endl;
}

void qrgivError(const char* name) {
  OpenError(name) << "\n\n";
  CloseError();
}

void subnormError(const char* name, long n, long a, long b) {
  OpenError(name) << " [" << std::setw(5) << a << ',' << std::setw(5) << b << "] -> n = " << n
                  << "\n\n";
  CloseError();
}
