#ifndef ZENTA_VIEW_PAGE_H
#define ZENTA_VIEW_PAGE_H

#include "Picture.h"
#include "ViewData.h"

#include <string>
#include <vector>

namespace view {

/// A picture with the svg element that shows it.
struct DrawnPicture {
  Picture picture;
  std::string svg;
};

/// The whole page: one file that asks for nothing else.
std::string PageOf(const ViewData& data, const std::vector<DrawnPicture>& pictures);

} // namespace view

#endif
