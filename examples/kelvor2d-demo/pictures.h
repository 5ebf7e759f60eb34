// Pictures a person wants to look at: an SVG of contours and vectors with a
// legend, and a greyscale PNG of a coverage bitmap.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "kelvor2d.h"

// Small multiples: panels of the same rectangle of the layer, laid out in
// rows of `columns`, each with a title, and one legend for all.
class SvgPicture {
 public:
  // Every panel shows the rectangle [minX, maxX] x [minY, maxY] of internal
  // units, in double: a margin round a layer at the grid's ends lies beyond it.
  SvgPicture(double minX, double minY, double maxX, double maxY, int columns);
  // Starts the next panel; what is added from now on is drawn in it.
  void BeginPanel(const std::string& title);
  // Draws every contour of the layer; `label` goes into the legend.
  void AddContours(const CONTOUR_LAYER& layer, const std::string& colour, const std::string& label);
  // Draws the vectors of the blocks of `layer`, from block `firstBlock` on,
  // one colour per group.
  void AddVectors(const VECTOR_LAYER& layer, int firstBlock, const std::string& colour,
                  const std::string& label);
  // Writes the file; false when it cannot be written.
  bool Write(const std::string& path) const;

 private:
  double X(double x) const;
  double Y(double y) const;
  void AddLegend(const std::string& colour, const std::string& label);
  double m_MinX, m_MinY, m_MaxX, m_MaxY;
  int m_Columns;
  int m_Panels = 0;
  double m_Scale;
  double m_PanelWidth, m_PanelHeight;
  double m_OffsetX = 0.0, m_OffsetY = 0.0;
  std::string m_Body;
  std::vector<std::pair<std::string, std::string>> m_Legend;
};

// Writes an 8-bit greyscale PNG; `pixels` rows run from the lowest y upward,
// as the coverage bitmap holds them. False when the file cannot be written.
bool WriteGreyPng(const std::string& path, const unsigned char* pixels, int width, int height);
