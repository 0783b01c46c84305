#ifndef ZENTA_VIEW_SCRIPT_H
#define ZENTA_VIEW_SCRIPT_H

#include "report/Report.h"

#include <map>
#include <string>
#include <utility>

namespace view {

/// Seconds since 1970, which gnuplot takes as a time.
double PlotTime(const report::Epoch& t);

/// Lines, grid, text and key as all pictures have them.
std::string Frame();
/// The x axis as a time axis over \p span, labelled with its day or days.
std::string TimeAxis(const report::Span& span);
/// The time axis of a panel above another: marks without text.
std::string BareTimeAxis(const report::Span& span);

/// What the y axis of a panel shows, at the left edge of the picture: panels above each other have
/// it in one line, and wide marks do not push it out.
std::string PanelLabel(const std::string& text);

/// A round step between marks, at most six of them, of an axis from \p low to \p high.
double RoundStep(double low, double high);

/// \p rows as the data block $\p name.
std::string Block(const std::string& name, const std::string& rows);

/// Points of block $\p name (x, y, half the length of the bar) with their bars, in \p colour.
std::string PointsWithBars(const std::string& name, const std::string& colour);

/// Many points, drawn once where they fall on each other: the area is cut into cells of a
/// few pixels, and a cell shows its first point. In a drawing a point is a stroke too short to
/// have a length, drawn with round ends.
class Dots {
public:
  /// \param left ... the area in units of the data; \param columns and rows of cells
  Dots(double left, double right, double bottom, double top, int columns, int rows);
  /// A point outside of the area, or where there is one already, is passed over.
  void Add(double x, double y);
  bool Empty() const { return cells_.empty(); }
  /// Rows of a data block, to be drawn with lines.
  std::string Rows() const;

private:
  double left_, width_, bottom_, height_;
  int columns_, rows_;
  std::map<std::pair<int, int>, std::pair<double, double>> cells_; ///< and its point
};

/// Cells of a panel of \p pixels, three to a side.
constexpr int CellsOf(int pixels) { return pixels / 3; }

} // namespace view

#endif
