#ifndef FUNKCIJE_CPPCAS_H
#define FUNKCIJE_CPPCAS_H

#include <ctime>

/// Wall clock in local time, and a stopwatch of processor time.
class CppCas {
public:
  /// Reads the clock.
  CppCas();
  /// Reads the clock anew, as every query below does first.
  void Update();
  /// "2012-07-20  23:59:59", with two blanks between date and time. The text lives in this
  /// object until the next call.
  char* Ascii();
  /// Year, four digits.
  int LetoDt();
  /// Month counted from 0 for January, unlike the month of Ascii.
  int MesecDt();
  /// Day of the month, from 1.
  int DanDt();
  /// Hour, minute, second.
  int Ura();
  int Min();
  int Sec();

  /// Starts the stopwatch.
  void Start();
  /// Stops it. \returns processor time since Start [s]; 0 when it was not running.
  double Stop();
  /// Keeps the processor busy for \p s seconds of its time; not at all for 0 and less.
  void Pocakaj(int s);

private:
  std::time_t rawtime = 0;     ///< last value read by Update
  std::clock_t startUra = 0;   ///< processor clock at Start
  std::clock_t stopUra = 0;    ///< processor clock at Stop
  std::tm* timeinfo = nullptr; ///< local time of rawtime, in storage of the platform
  bool casTece = false;        ///< stopwatch running
  char ascii[25] = {};         ///< text of the last Ascii
};

#endif
