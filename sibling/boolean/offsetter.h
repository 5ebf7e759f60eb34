// Offsetting borders: the raw offset of every contour with round joins, and
// the region of positive winding of all raw offsets through the boolean
// engine.
#pragma once

#include <cstdint>

#include "kelvor2d_export.h"
#include "sibling/math/border.h"

class KELVOR2D_API M2dOffsetter {
 public:
  M3dBorderLong input;    // the border to offset: outer contours clockwise, holes counter-clockwise
  M3dBorderLong* result;  // the offset, valid after CreateOffset; never null

  M2dOffsetter();
  ~M2dOffsetter();
  M2dOffsetter(const M2dOffsetter&) = delete;
  M2dOffsetter& operator=(const M2dOffsetter&) = delete;

  // Offsets the closed contours of input by `distance`: a positive distance
  // shrinks the material, a negative one grows it, 0 only cleans it. Arcs
  // keep a chord error of at most half a unit before rounding to the grid;
  // coordinates are clamped to the 32-bit range. When growing, a contour of
  // one point becomes a disc and one of two points a rounded bar (outer
  // contours only); otherwise contours without area add nothing. Open
  // contours are ignored. Result contours are closed rings, outer ones
  // clockwise, with status and order 0. Up to 2^19 raw offset points the
  // result is the exact region of positive winding of all raw offsets,
  // rounded to the grid once. Beyond that, contours are offset and united in
  // groups of about 2^15 points and the groups' unions united in turn, so
  // memory follows a group and the result, not the raw offsets; each union is rounded
  // to the grid, which may move the boundary by up to a unit near crossings.
  // A group with a region of negative winding (where uniting groups would not
  // be exact) makes it unite all raw offsets at once instead.
  void CreateOffset(int32_t distance);
  // Empties the result.
  void Clear();

 private:
  M3dBorderLong m_result;  // storage of *result
};
