#ifndef ZENTA_VIEW_PICTURES_H
#define ZENTA_VIEW_PICTURES_H

#include "Picture.h"
#include "ViewData.h"

#include <optional>

namespace view {

// Each picture, or none where the results do not hold what it shows.

/// Vertical delay by interval with its error band, and epoch by epoch.
std::optional<Picture> DelayPicture(const ViewData& data);
/// Rate of the delay by interval.
std::optional<Picture> RatePicture(const ViewData& data);
/// Gradients to east and north.
std::optional<Picture> GradientPicture(const ViewData& data);
/// Receiver and satellite biases with error bars.
std::optional<Picture> BiasPicture(const ViewData& data);
/// Residuals along the time axis, a panel for each observable.
std::optional<Picture> ResidualTimePicture(const ViewData& data);
/// Residuals over elevation with their root mean square.
std::optional<Picture> ResidualElevationPicture(const ViewData& data,
                                                const std::vector<LocatedResidual>& located);
/// Residuals of one observable over the sky.
std::optional<Picture> SkyPicture(report::Observable observable,
                                  const std::vector<LocatedResidual>& located);
/// Arcs of the satellites on a time axis with slips and eclipses.
std::optional<Picture> ArcPicture(const ViewData& data);

} // namespace view

#endif
