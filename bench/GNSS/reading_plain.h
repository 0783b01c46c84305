#ifndef BENCH_GNSS_READING_PLAIN_H
#define BENCH_GNSS_READING_PLAIN_H

#include "GNSS/RINEX.h"
#include "GNSS/RINEXf.h"
#include "GNSS/TimeConverse.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

/// An observation file in two passes over the stream: lines into a buffer by getline, fields cut
/// into buffers of their own and converted by atof.
class Reading_plain {
public:
  Reading_plain(RINEXHeader& header, RINEXData& data) : header_(header), data_(data) {}

  /// \returns false for a text that ends within an epoch.
  bool ReadFile(const char* name) {
    data_.RINEXDataReset();
    std::ifstream first(name);
    if (!Count(first)) return false;
    data_.SetNRecords(epochs_, records_);
    data_.SetTimeCorr(timeCorr_);
    data_.nComment = 0;
    std::ifstream second(name);
    second >> header_;
    data_.SetData();
    if (!Fill(second)) return false;
    Finish();
    return true;
  }

private:
  static constexpr std::size_t kLimit = 99;   // of a line
  static constexpr int kListed = 12;          // satellites of a line
  static constexpr int kFields = 5;           // of a line
  static constexpr int kWidth = 16;           // of a field
  static constexpr std::size_t kColList = 32; // of satellites

  bool Next(std::istream& in) {
    if (!in.getline(line_, sizeof line_)) return false;
    std::size_t length = std::strlen(line_);
    if (length > 0 && line_[length - 1] == '\r') line_[--length] = '\0';
    return length <= kLimit;
  }

  void TakeEpochLine() {
    ParseFirstObsLine(line_, year_, month_, day_, hour_, minute_, second_, satellites_);
  }

  bool Count(std::istream& in) {
    int types = 0;
    while (Next(in)) {
      if (std::strstr(line_, "# / TYPES OF OBSERV") != nullptr) types = std::atoi(Cut(0, 6));
      if (std::strstr(line_, "END OF HEADER") != nullptr) break;
    }
    while (Next(in)) {
      if (!IsFirstObsLine(line_)) continue;
      TakeEpochLine();
      if (++epochs_ == 1) timeCorr_ = std::strlen(line_) > 69;
      records_ += static_cast<unsigned long>(satellites_);
      if (satellites_ > kListed) Next(in);
      for (int k = 0; k < satellites_; ++k) {
        if (!Next(in)) return false;
        if (types > kFields) Next(in);
      }
    }
    return true;
  }

  bool Fill(std::istream& in) {
    while (Next(in)) {
      if (!IsFirstObsLine(line_)) {
        ++data_.nComment;
        continue;
      }
      TakeEpoch();
      TakeList(in);
      for (int k = 0; k < satellites_; ++k)
        if (!TakeSatellite(in, k)) return false;
    }
    return true;
  }

  void TakeEpoch() {
    TakeEpochLine();
    data_.epoch(epoch_) = ymdhms2mjd(ymdhms(year_, month_, day_, hour_, minute_, second_));
    data_.nsat(epoch_) = satellites_;
    data_.flag(epoch_) = line_[28];
    data_.obslast = data_.epoch(epoch_);
    if (timeCorr_) data_.TCorr(epoch_) = Number(68, 12);
    if (epoch_ > 0) {
      const auto step = std::fabs(static_cast<float>(data_.epoch(epoch_).GetSecond() -
                                                     data_.epoch(epoch_ - 1).GetSecond()));
      if (header_.interval < 0 || step < header_.interval) header_.interval = step;
    }
    ++epoch_;
  }

  void TakeList(std::istream& in) {
    list_ = Padded(kColList, std::min(3 * satellites_, 3 * kListed));
    for (int listed = kListed; listed < satellites_; listed += kListed) {
      Next(in);
      list_ += Padded(kColList, 3 * kListed);
    }
  }

  bool TakeSatellite(std::istream& in, int k) {
    joined_.clear();
    for (int types = header_.nobs; types > 0; types -= kFields) {
      if (!Next(in)) return false;
      FillObsLine(line_, kFields);
      joined_ += line_;
    }
    TakeNumber(k);
    for (int j = 0; j < header_.nobs; ++j) TakeField(header_.obs(j), j * kWidth);
    ++record_;
    return true;
  }

  void TakeNumber(int k) {
    const auto at = static_cast<std::size_t>(3 * k);
    const char tens = list_[at + 1] == ' ' ? '0' : list_[at + 1];
    const int number = 10 * (tens - '0') + (list_[at + 2] - '0');
    const char letter = list_[at] == ' ' ? 'G' : list_[at];
    const char* const letters = "GRESC";
    data_.sat(record_) =
        static_cast<short>(number + 100 * static_cast<int>(std::strchr(letters, letter) - letters));
  }

  void TakeField(unsigned short code, int column) {
    std::string_view field = std::string_view(joined_).substr(static_cast<std::size_t>(column));
    const auto obs = [&](matrix<gnssobs>& table) {
      table(record_).obs = Value(field.substr(0, 14));
      table(record_).lli = Flag(field[14]);
      table(record_).ss = Flag(field[15]);
    };
    const auto bare = [&](matrix<gnssobsshort>& table, std::size_t width) {
      table(record_).obs = Value(field.substr(0, width));
    };
    switch (code) {
    case 0:
      return obs(data_.C1);
    case 1:
      return obs(data_.P1);
    case 2:
      return obs(data_.P2);
    case 3:
      return obs(data_.L1);
    case 4:
      return obs(data_.L2);
    case 5:
      return obs(data_.C2);
    case 6:
      return bare(data_.S1, 14);
    case 7:
      return bare(data_.S2, 14);
    case 8:
      return bare(data_.D1, 14);
    case 9:
      return bare(data_.D2, 14);
    case 10:
      return obs(data_.C5);
    case 11:
      return obs(data_.L5);
    case 13:
      return bare(data_.S5, 16);
    default:
      return;
    }
  }

  static unsigned short Flag(char c) { return static_cast<unsigned short>(c == ' ' ? 0 : c - '0'); }

  const char* Cut(std::size_t first, std::size_t n) {
    const std::size_t length = std::strlen(line_);
    const std::size_t from = std::min(first, length);
    n = std::min(n, length - from);
    std::memcpy(cut_, line_ + from, n);
    cut_[n] = '\0';
    return cut_;
  }
  std::string Padded(std::size_t first, int n) {
    std::string text = Cut(first, static_cast<std::size_t>(n));
    text.resize(static_cast<std::size_t>(n), ' ');
    return text;
  }
  long double Number(std::size_t first, std::size_t n) {
    const double value = std::atof(Cut(first, n));
    return std::isfinite(value) ? value : 0.0;
  }
  static double Value(std::string_view field) {
    char text[kWidth + 1];
    std::memcpy(text, field.data(), field.size());
    text[field.size()] = '\0';
    const double value = std::atof(text);
    return std::isfinite(value) ? value : 0.0;
  }

  void Finish() {
    std::vector<short> numbers(&data_.sat(0), &data_.sat(0) + record_);
    std::sort(numbers.begin(), numbers.end());
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    data_.satList.Resize(static_cast<long>(numbers.size()));
    for (std::size_t k = 0; k < numbers.size(); ++k)
      data_.satList(static_cast<long>(k)) = numbers[k];
    data_.satstart = data_.istart = 0;
    data_.iend = data_.nepochall;
    if (!header_.iC1 && header_.iP1) {
      data_.C1 = data_.P1;
      header_.iC1 = true;
    }
  }

  RINEXHeader& header_;
  RINEXData& data_;
  char line_[kLimit + 2] = "";
  char cut_[kLimit + 2] = "";
  std::string list_;   // satellites of the epoch, three characters each
  std::string joined_; // lines of a satellite, 80 characters each
  unsigned long epochs_ = 0;
  unsigned long records_ = 0;
  long epoch_ = 0;
  long record_ = 0;
  bool timeCorr_ = false;
  unsigned short year_ = 0, month_ = 0, day_ = 0, hour_ = 0, minute_ = 0;
  long double second_ = 0;
  short satellites_ = 0;
};

#endif
