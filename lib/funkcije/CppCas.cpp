#include "funkcije/CppCas.h"

CppCas::CppCas() { Update(); }

void CppCas::Update() {
  rawtime = std::time(nullptr);
  timeinfo = std::localtime(&rawtime);
}

char* CppCas::Ascii() {
  Update();
  if (std::strftime(ascii, sizeof ascii, "%Y-%m-%d  %H:%M:%S", timeinfo) == 0) ascii[0] = '\0';
  return ascii;
}

int CppCas::LetoDt() {
  Update();
  return timeinfo->tm_year + 1900;
}

int CppCas::MesecDt() {
  Update();
  return timeinfo->tm_mon;
}

int CppCas::DanDt() {
  Update();
  return timeinfo->tm_mday;
}

int CppCas::Ura() {
  Update();
  return timeinfo->tm_hour;
}

int CppCas::Min() {
  Update();
  return timeinfo->tm_min;
}

int CppCas::Sec() {
  Update();
  return timeinfo->tm_sec;
}

void CppCas::Start() {
  casTece = true;
  startUra = std::clock();
}

double CppCas::Stop() {
  if (!casTece) return 0;
  casTece = false;
  stopUra = std::clock();
  return static_cast<double>(stopUra - startUra) / CLOCKS_PER_SEC;
}

void CppCas::Pocakaj(int s) {
  const std::clock_t end = std::clock() + static_cast<std::clock_t>(s) * CLOCKS_PER_SEC;
  while (std::clock() < end) {
  }
}
