#include "Pictures.h"
#include "Script.h"

#include "report/Quantities.h"

#include <cmath>
#include <fmt/format.h>

namespace view {

namespace {

using namespace report;

struct Column {
  std::string name;
  std::optional<Bias> p1c1;
  std::optional<Bias> p2c1;
  const char* colour;
};

std::vector<Column> ColumnsOf(const Report& r) {
  std::vector<Column> columns;
  if (r.receiverP1C1 || r.receiverP2C1)
    columns.push_back({"receiver", r.receiverP1C1, r.receiverP2C1, "@ink@"});
  for (const SatelliteBiases& b : r.satellites)
    if (b.p1c1 || b.p2c1)
      columns.push_back(
          {NameOf(b.satellite), b.p1c1, b.p2c1, IsGPS(b.satellite) ? "@gps@" : "@glonass@"});
  return columns;
}

std::string Row(std::size_t column, const Bias& b) {
  constexpr double kBars = 3; // formal errors to either side
  if (!std::isfinite(b.value)) return {};
  return fmt::format("{} {:.6g} {:.6g}\n", column, ToNanoseconds(b.value),
                     std::isfinite(b.sigma) ? kBars * ToNanoseconds(b.sigma) : 0);
}

std::string Rows(const std::vector<Column>& columns, bool p1c1, const char* colour) {
  std::string rows;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    const std::optional<Bias>& b = p1c1 ? columns[i].p1c1 : columns[i].p2c1;
    if (b && columns[i].colour == std::string_view(colour)) rows += Row(i, *b);
  }
  return rows;
}

/// One bias of the receiver on an axis of its own, which its error bar fills in good part.
std::string ReceiverPanel(const char* name, const Bias& b) {
  const std::string block = name[1] == '1' ? "P1C1" : "P2C1";
  return Block(block, Row(0, b)) +
         fmt::format("set xrange [-1:1]\nset xtics ('receiver {}' 0)\nset offsets 0,0,graph "
                     "0.5,graph 0.5\nset ylabel '{}, ns' textcolor rgb '@ink@'\nplot ",
                     name, name) +
         PointsWithBars(block, "@gps@") + "\n";
}

/// The biases of the receiver beside each other.
std::string ReceiverPanels(const Report& r) {
  std::string script = "set multiplot layout 1,2\n";
  int panel = 0;
  for (const auto& [name, bias] : {std::pair("P1-C1", r.receiverP1C1), {"P2-C1", r.receiverP2C1}}) {
    if (!bias) continue;
    script += fmt::format("set lmargin at screen {0}\nset rmargin at screen {0} + 0.385\n",
                          0.1 + 0.5 * panel++) +
              ReceiverPanel(name, *bias);
  }
  return script + "unset multiplot\n";
}

std::string Panel(const std::vector<Column>& columns, bool p1c1) {
  const char* name = p1c1 ? "P1C1" : "P2C1";
  std::string script = PanelLabel(p1c1 ? "P1-C1, ns" : "P2-C1, ns");
  std::string plots = "0 with lines linecolor rgb '@shade@' linewidth 0.8 notitle";
  int series = 0;
  for (const char* colour : {"@ink@", "@gps@", "@glonass@"}) {
    const std::string rows = Rows(columns, p1c1, colour);
    if (rows.empty()) continue;
    const std::string block = fmt::format("{}_{}", name, series++);
    script += Block(block, rows);
    plots += ", " + PointsWithBars(block, colour);
  }
  return script + "plot " + plots + '\n';
}

} // namespace

std::optional<Picture> BiasPicture(const ViewData& data) {
  const std::vector<Column> columns = ColumnsOf(data.report);
  if (columns.empty()) return {};
  Picture p;
  p.name = "dcb";
  p.title = "Differential code biases";
  p.caption = "Bars are three formal errors to either side.";
  p.script = Frame() + "unset key\nset offsets 0,0,graph 0.08,graph 0.08\n";
  if (data.report.satellites.empty()) {
    p.height = 240;
    p.script += ReceiverPanels(data.report);
    return p;
  }
  p.caption += " Satellite biases contain that of the receiver.";
  p.height = 480;
  std::string marks;
  std::string bare;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    marks += fmt::format("{}'{}' {}", i == 0 ? "" : ", ", columns[i].name, i);
    bare += fmt::format("{}'' {}", i == 0 ? "" : ", ", i);
  }
  const bool many = columns.size() > 12;
  p.script += fmt::format("set xrange [-0.7:{}]\n", static_cast<double>(columns.size()) - 0.3) +
              fmt::format("set multiplot layout 2,1\nset xtics ({})\n", bare) +
              Panel(columns, true) +
              fmt::format("set xtics {} ({})\n", many ? "rotate by 90 right" : "", marks) +
              Panel(columns, false) + "unset multiplot\n";
  return p;
}

} // namespace view
