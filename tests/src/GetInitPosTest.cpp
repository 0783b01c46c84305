#include "GetInitPos.h"

#include "GNSS/TimeConverse.h"
#include "support/Captured.h"
#include "support/Ends.h"
#include "support/Files.h"
#include "support/Near.h"
#include "support/TinyRun.h"

#include <cstring>

namespace {

constexpr long double kEquator = 6378137.0L; // [m] GRS80

/// A receiver on the equator at longitude 0: up is x, east y, north z.
struct Receiver : TinyRun {
  Captured errors{std::cerr};
  ScratchFolder folder;

  Receiver() {
    Epochs(3);
    header.X0 = xyz(kEquator, 0, 0);
    std::strcpy(header.mname, "CAGZ");
    std::strcpy(header.mnumber, "12725M004");
    std::strcpy(header.rectype, "SOME RECEIVER");
  }
  /// \p n epochs at the beginnings of the years from 2005 on.
  void Epochs(unsigned short n) {
    std::vector<TinyEpoch> epochs;
    for (unsigned short i = 0; i < n; ++i)
      epochs.push_back({ymdhms2mjd(ymdhms(static_cast<unsigned short>(2005 + i), 1, 1, 0, 0, 0)),
                        {TinyRecord{}}});
    Fill(*this, epochs);
  }
  /// A list with SOME RECEIVER tracking the two codes.
  void List(const char* code1, const char* code2) {
    const std::string text = "SOME RECEIVER          2     " + std::string(code1) +
                             "    L1\n                             " + code2 + "    L2\n";
    codeTracking.SetFile(folder.Write("receivers", text).c_str());
    ctx.isRCodTrc = true;
  }
  /// A coordinate file with \p name at (1000, 2000, 3000) km on 2005-01-01, moving by (1, -2, 3)
  /// m a year.
  void Coordinates(const char* name) {
    char line[256];
    std::snprintf(line, sizeof line, "   1 %-20s %-60s%15.4f%15.4f%15.4f%10.4f%10.4f%10.4f %s\n",
                  name, "12725M004", 1.0e6, 2.0e6, 3.0e6, 1.0, -2.0, 3.0, "2005-01-01 00:00:00");
    coordinates.SetFile(folder.Write("stations", line).c_str());
    ctx.isAprCrd = true;
  }
};

void ExpectAt(const xyz& p, long double x, long double y, long double z) {
  EXPECT_TRUE(Near(p.GetX(), x, 1e-9L));
  EXPECT_TRUE(Near(p.GetY(), y, 1e-9L));
  EXPECT_TRUE(Near(p.GetZ(), z, 1e-9L));
}

// ---- Code tracking -----------------------------------------------------------------------------

TEST(GetReceiverProperties, TrackingClassComesFromTheList) {
  const struct {
    const char* code1;
    const char* code2;
    short tracking;
  } kinds[] = {{"P1", "P2", 0}, {"C1", "P2", 1}, {"C1", "X2", 2}};
  for (const auto& kind : kinds) {
    Receiver run;
    run.List(kind.code1, kind.code2);
    GetReceiverProperties(run.ctx);
    EXPECT_EQ(run.ctx.RecCodeTrackType, kind.tracking) << kind.code1 << kind.code2;
    EXPECT_EQ(run.errors.Text(), "");
  }
}

TEST(GetReceiverProperties, WithoutListTheReceiverTracksP1AndP2) {
  Receiver run;
  run.ctx.RecCodeTrackType = 2;
  GetReceiverProperties(run.ctx);
  EXPECT_EQ(run.ctx.RecCodeTrackType, 0);
}

// ---- Positions
// -----------------------------------------------------------------------------------

TEST(GetReceiverProperties, WithoutCoordinateFileTheHeaderGivesTheMarker) {
  Receiver run;
  GetReceiverProperties(run.ctx);
  ExpectAt(run.ctx.RecPos0, kEquator, 0, 0);
  ExpectAt(run.ctx.RecPosFC, kEquator, 0, 0);
}

TEST(GetReceiverProperties, OddNumberOfEpochsTakesTheMiddleOne) {
  Receiver run; // 2005, 2006, 2007: one year of motion
  run.Coordinates("CAGZ");
  GetReceiverProperties(run.ctx);
  ExpectAt(run.ctx.RecPos0, 1.0e6L + 1, 2.0e6L - 2, 3.0e6L + 3);
}

TEST(GetReceiverProperties, EvenNumberOfEpochsTakesTheOneBehindTheMiddle) {
  Receiver run; // 2005 to 2008: the third, two years of motion
  run.Epochs(4);
  run.Coordinates("CAGZ");
  GetReceiverProperties(run.ctx);
  ExpectAt(run.ctx.RecPos0, 1.0e6L + 2, 2.0e6L - 4, 3.0e6L + 6);
}

TEST(GetReceiverProperties, UnlistedSiteIsWarnedAboutAndStandsWhereTheHeaderSays) {
  Receiver run;
  run.Coordinates("BRUS");
  GetReceiverProperties(run.ctx);
  ExpectAt(run.ctx.RecPos0, kEquator, 0, 0);
  EXPECT_NE(run.errors.Text().find("#### Zenta: Warning -> SITE NAME NOT LISTED IN APRIORI "
                                   "COORDINATE FILE - USING RINEX VALUES! ####"),
            std::string::npos)
      << run.errors.Text();
}

TEST(GetReceiverProperties, AntennaOffsetLeadsFromMarkerToAntenna) {
  Receiver run;
  run.header.Dp = neu(3, 2, 1); // north, east, up: z, y, x here
  run.ctx.RecPosEccLG = neu(9, 9, 9);
  GetReceiverProperties(run.ctx);
  ExpectAt(run.ctx.RecPos0, kEquator, 0, 0);
  ExpectAt(run.ctx.RecPosFC, kEquator + 1, 2, 3);
  EXPECT_EQ(run.ctx.RecPosEccLG.GetN(), 3);
  EXPECT_EQ(run.ctx.RecPosEccLG.GetE(), 2);
  EXPECT_EQ(run.ctx.RecPosEccLG.GetU(), 1);
}

TEST(GetReceiverProperties, GeodeticFormsAreOnTheGpsEllipsoid) {
  Receiver run;
  run.header.Dp = neu(0, 0, 1.5L);
  GetReceiverProperties(run.ctx);
  EXPECT_TRUE(Near(run.ctx.RecPos0G.GetH(), 0, 1e-9L)); // PZ-90 is 1 m smaller
  EXPECT_TRUE(Near(run.ctx.RecPosFCG.GetH(), 1.5L, 1e-9L));
  EXPECT_TRUE(Near(run.ctx.RecPosFCG.GetF(), 0, 1e-15L));
  EXPECT_TRUE(Near(run.ctx.RecPosFCG.GetL(), 0, 1e-15L));
}

TEST(GetReceiverProperties, VerboseTellsTheSteps) {
  Receiver run;
  run.ctx.verbose = true;
  GetReceiverProperties(run.ctx);
  EXPECT_EQ(run.errors.Text(),
            "Zenta::GetReceiverProperties(): RECEIVER POSITION PARAMETERS!!\n"
            "Zenta::GetReceiverProperties():         Receiver code tracking type!\n"
            "Zenta::GetReceiverProperties():         Setting a-priori coordinates!\n"
            "Zenta::GetReceiverProperties():         RINEX eccentricity Delta H/E/N!\n");
}

TEST(GetReceiverPropertiesDeathTest, HeaderWithoutPositionEndsAtTheLatitude) {
  EXPECT_ENDS(
      {
        Receiver run;
        std::cerr.rdbuf(std::cout.rdbuf());
        run.header.X0 = xyz();
        GetReceiverProperties(run.ctx);
      },
      "LATITUDE not valid");
}

TEST(GetReceiverProperties, PositionOffTheSurfaceOfTheEarthIsWarnedAbout) {
  const std::string warning = "RECEIVER POSITION IS NOT NEAR THE SURFACE OF THE EARTH!";
  for (const long double x : {6.299e6L, 6.301e6L, 6.499e6L, 6.501e6L, 1e300L}) {
    Receiver run;
    run.header.X0 = xyz(x, 0, 0);
    GetReceiverProperties(run.ctx);
    EXPECT_EQ(run.errors.Text().find(warning) == std::string::npos, x > 6.3e6L && x < 6.5e6L);
  }
}

} // namespace
