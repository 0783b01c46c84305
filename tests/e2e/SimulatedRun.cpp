#include "SimulatedRun.h"
#include "Simulation.h"
#include "report/ReadReport.h"
#include "support/Paths.h"
#include <cmath>
#include <gtest/gtest.h>
#include <iomanip>
#include <sstream>

SimulatedRun::SimulatedRun(sim::Scenario scenario, const std::vector<std::string>& estimation) {
  scenario.folder = folder_.Path().string();
  sim::MakeFiles(scenario);
  truth_ = nlohmann::json::parse(ReadWhole(folder_.Name("truth.json")));
  std::vector<std::string> arguments = truth_.at("arguments").at("inputs");
  const std::vector<std::string> own = truth_.at("arguments").at("estimation");
  const auto& rest = estimation.empty() ? own : estimation;
  arguments.insert(arguments.end(), rest.begin(), rest.end());
  outcome_ = RunProgram(ZENTA_PROGRAM, arguments, folder_.Path().string());
  if (outcome_.status != 0) return;
  report_ = report::ReadReport("standard output", outcome_.out);
  for (const sim::Deviations& d : sim::CompareWithTruth(report_, truth_, unmatched_))
    errors_[d.what] = d;
}

sim::Scenario ExactDay() {
  sim::Scenario s;
  s.interval = 60;
  s.ionoInterval = 3590; // the next begins at the first epoch beyond it
  s.codeNoise = 0;
  s.phaseNoise = 0;
  s.windUp = sim::WindUp::kExact;
  s.withSp3 = false;
  return s;
}

std::vector<std::string> Estimation(const sim::Scenario& scenario, const std::string& unknowns,
                                    const std::string& observations,
                                    const std::vector<std::string>& further) {
  const long interval = std::lround(scenario.ionoInterval);
  std::ostringstream ii;
  ii << std::setfill('0') << "-ii" << std::setw(2) << interval / 3600 << ':' << std::setw(2)
     << interval / 60 % 60 << ':' << std::setw(2) << interval % 60;
  std::vector<std::string> all = {"-x" + unknowns, "-l" + observations, "-pCOSZ", ii.str(),
                                  "-me" + std::to_string(scenario.cutoff)};
  all.insert(all.end(), further.begin(), further.end());
  return all;
}

void ExpectTruth(const SimulatedRun& run, std::size_t kinds, double limit) {
  ASSERT_EQ(run.Result().status, 0) << run.Result().err;
  EXPECT_GE(run.Errors().size(), kinds);
  for (const auto& [what, deviations] : run.Errors())
    EXPECT_LE(deviations.Largest(), limit) << what << " [" << deviations.unit << "]";
}
