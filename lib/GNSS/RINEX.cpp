#include "GNSS/RINEX.h"

#include "GNSS/RINEXReading.h"
#include "GNSS/RINEXf.h"
#include "PROGINC/EndProgram.h"
#include "PROGINC/LineSource.h"
#include "PROGINC/ProgramError.h"
#include "PROGINC/TextNumber.h"
#include "PROGINC/cfilef.h"

#include <fstream>
#include <iostream>
#include <string>

namespace {

constexpr std::size_t kClockLongerThan = 69; // an epoch line that has a clock offset

bool SkipLine(LineSource& text) { return text.Skip(kRINEXLineLimit); }

// Passes over the header and returns the number of observation types of its last line of
// them: 0 where the list took more than one, as the lines that continue it have none.
int CountTypes(LineSource& text) {
  int ntypes = 0;
  std::string_view line;
  while (text.Next(line, kRINEXLineLimit)) {
    if (Contains(line, kTypesOfObservations))
      ntypes = ToInt(Columns(line, kColNTypes, kNTypesWidth));
    if (Contains(line, kEndOfHeader)) break;
  }
  return ntypes;
}

// Passes over the lines of an epoch, or the first ones of each satellite: those left over open
// no epoch, so that the search for the next one passes over them.
void SkipSatellites(LineSource& text, short nsat, int ntypes) {
  if (nsat > static_cast<short>(kSatellitesPerLine)) SkipLine(text);
  for (short k = 0; k < nsat; ++k) {
    if (!SkipLine(text)) EndProgram();
    if (ntypes > static_cast<int>(kFieldsPerLine) && !SkipLine(text)) return;
  }
}

} // namespace

RINEX::RINEX(RINEXHeader& header, RINEXData& data)
    : rinexfile(""), rhead(header), rdata(data), nepoch(0), nobsall(0), nwfepoch(0), nwfsat(0),
      IsTimeCorr(false) {}

void RINEX::SetFile(const char* name) {
  CopyText(name, rinexfile);
  if (!FileExists(rinexfile)) RINEXError("RINEX FILE CAN NOT BE OPENED!");
}

void RINEX::CountRec() {
  LineSource text = LineSource::FromFile(rinexfile);
  CountRec(text);
}

void RINEX::CountRec(LineSource& text) {
  const int ntypes = CountTypes(text);
  nepoch = 0;
  nobsall = 0;
  IsTimeCorr = false;
  std::string_view line;
  while (text.Next(line, kRINEXLineLimit)) {
    if (!IsFirstObsLine(line)) continue;
    const short nsat = SatellitesOfFirstObsLine(line);
    ++nepoch;
    if (nepoch == 1) IsTimeCorr = line.size() > kClockLongerThan;
    nobsall += static_cast<unsigned long>(nsat);
    SkipSatellites(text, nsat, ntypes);
  }
}

void RINEX::ReadFile() {
  rdata.RINEXDataReset();
  rhead.RINEXHeaderReset();
  LineSource text = LineSource::FromFile(rinexfile);
  CountRec(text);
  rdata.SetNRecords(nepoch, nobsall);
  rdata.SetTimeCorr(IsTimeCorr);
  text.Rewind();
  ReadRINEXHeader(text, rhead);
  // The counting pass sees a list of types that goes on over the end of the header, or a lost line
  // of a satellite, otherwise than the filling one.
  if (!ReadRINEXData(text, rdata))
    ProgramError("Zenta",
                 ("NUMBER OF EPOCHS AND OBSERVATIONS DOES NOT FIT THE DATA IN RINEX FILE " +
                  std::string(rinexfile) + "!")
                     .c_str());
  rhead.obsfirst = rdata.epoch(0);
  rhead.obslast = rdata.obslast;
  for (auto* system : {&rhead.obsfirstts, &rhead.obslastts})
    if ((*system)[0] == '\0') CopyText("GPS", *system);
}

void RINEX::PrintFile() const { std::cout << rhead << rdata; }

void RINEX::PrintFile(const char* name) const {
  std::ofstream out(name);
  if (!out) RINEXError(("FILE " + std::string(name) + " CAN NOT BE OPENED FOR WRITING").c_str());
  out << rhead << rdata;
}

void RINEX::RINEXWarning(const char* text) const {
  std::cout << "\n#### RINEX: Warning -> " << text << " ####\n"
            << "     Continuing RINEX ... " << std::endl;
}

void RINEX::RINEXError(const char* text) const {
  std::cout << "\n#### RINEX: Error -> " << text << " ####\n"
            << "     Exiting RINEX ... " << std::endl;
  EndProgram();
}
