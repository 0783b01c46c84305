#ifndef ZENTA_VIEW_PICTURE_H
#define ZENTA_VIEW_PICTURE_H

#include "Palette.h"

#include <string>

namespace view {

/// One picture before it is drawn.
struct Picture {
  std::string name;    ///< of its file and its parts: small letters, digits and _
  std::string title;   ///< a few words
  std::string caption; ///< how to read it
  int width = 900;     ///< [pixel]
  int height = 360;
  std::string script; ///< gnuplot commands behind the terminal's, colours as @role@
};

/// Draw with gnuplot. Where it is missing or fails, a Refusal says so.
std::string DrawSvg(const Picture& p, Theme theme);
std::string DrawPng(const Picture& p, Theme theme);
/// An svg element to stand in a page beside others: its colours are CSS variables, its size is
/// that of its place, and no name of a part is there twice.
std::string DrawForPage(const Picture& p);

} // namespace view

#endif
