#ifndef ZENTA_SIM_MADESET_H
#define ZENTA_SIM_MADESET_H

#include "Scenario.h"
#include "Simulation.h"
#include "support/Files.h"
#include <nlohmann/json.hpp>

/// A simulated set in a folder of its own, with its truth.
class MadeSet {
public:
  explicit MadeSet(sim::Scenario scenario) : scenario_(std::move(scenario)) {
    scenario_.folder = folder_.Path().string();
    sim::MakeFiles(scenario_);
    truth_ = nlohmann::json::parse(ReadWhole(folder_.Name("truth.json")));
  }
  const nlohmann::json& Truth() const { return truth_; }
  const sim::Scenario& Scenario() const { return scenario_; }
  /// Full name of the file of a kind ("observations", "p1p2", ...).
  std::string File(const char* kind) const { return truth_.at("files").at(kind); }
  std::string Name(const std::string& file) const { return folder_.Name(file); }

private:
  ScratchFolder folder_;
  sim::Scenario scenario_;
  nlohmann::json truth_;
};

/// Two hours every minute without noise.
inline sim::Scenario CleanScenario() {
  sim::Scenario s;
  s.duration = 7200;
  s.interval = 60;
  s.ionoInterval = 1800;
  s.codeNoise = 0;
  s.phaseNoise = 0;
  return s;
}

#endif
