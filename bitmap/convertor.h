// Renders contours into a caller's 8-bit bitmap by exact area coverage: each
// pixel gets 255 times the fraction of its area that is material, rounded.
#pragma once

#include <cstdint>

#include "bitmap/sweep.h"
#include "kelvor2d_export.h"
#include "layer/contour.h"
#include "layer/contour_layer.h"
#include "sibling/math/border.h"

// The bitmap is one byte per pixel, width x height bytes, rows from the lowest
// y upward without padding; pixel (x, y) is at y * width + x. Pixel (0, 0) has
// its corner at the contours' origin, and the bitmap covers 0..sizeX by
// 0..sizeY in the unit of length of MInternalUnits; what lies outside is cut
// off. Build, call Operate once, then the bytes are the caller's. Each byte is
// exact to within a grey level wherever the active parts of a row stay in x
// order; detail much finer than a pixel can break that order (see
// ActivePartXCompare) and then leaves pixels of that row wrong.
class KELVOR2D_API MContours2BitmapConvertor {
 public:
  using Border = MContour2BitmapLineSweep::Border;

  // Keeps the arguments and converts the layer into the private border; the
  // layer is not read again. A null layer renders as an empty one.
  MContours2BitmapConvertor(unsigned char* bitmap, int32_t width, int32_t height, double sizeX, double sizeY,
                            CONTOUR_LAYER const* layer);
  // Copies the border; the caller's border never changes.
  MContours2BitmapConvertor(unsigned char* bitmap, int32_t width, int32_t height, double sizeX, double sizeY,
                            Border& border);
  // The bitmap stays the caller's.
  ~MContours2BitmapConvertor() = default;
  // Member-wise: the copy shares the bitmap and has its own border.
  MContours2BitmapConvertor(const MContours2BitmapConvertor&) = default;
  MContours2BitmapConvertor& operator=(const MContours2BitmapConvertor&) = default;

  // Erases the bitmap, cleans and orients the border, and renders it. Writes
  // nothing at all (not even the erase) when the bitmap is null, width or
  // height is below 1, or MInternalUnits::Get(), sizeX or sizeY is not
  // positive or not finite. Contours whose lowest row is height or more leave the bitmap erased.
  // Call it once: a second call would count every contour twice.
  void Operate();
  // Sets width x height bytes to 0; nothing for a null bitmap or a size below 1.
  void EraseBitmap();

  // The pixel operations check nothing: x and y must lie inside the bitmap.
  unsigned char Pixel(int32_t x, int32_t y) const { return bitmap[Index(x, y)]; }
  bool IsEmptyPixel(int32_t x, int32_t y) const { return Pixel(x, y) == 0; }
  void SetPixel(int32_t x, int32_t y, unsigned char value) { bitmap[Index(x, y)] = value; }
  // Adds modulo 256.
  void AddMaterialToPixel(int32_t x, int32_t y, unsigned char value) {
    bitmap[Index(x, y)] = static_cast<unsigned char>(bitmap[Index(x, y)] + value);
  }
  // Subtracts modulo 256.
  void RemoveMaterialFromPixel(int32_t x, int32_t y, unsigned char value) {
    bitmap[Index(x, y)] = static_cast<unsigned char>(bitmap[Index(x, y)] - value);
  }

 protected:
  using ActivePosition = MContour2BitmapLineSweep::ActiveList::iterator;

  // The row loop; false when there is nothing to render.
  bool _OperateWithSweep();
  void _StructureContourPointsForSweep();
  // True when the sweep has no parts at all.
  bool _Empty() const { return sweep.IsEmpty(); }
  void _ResetCachedData() { sweep.ZeroY(); }
  void _ZeroWorkingYLevel() { sweep.ZeroY(); }
  void _IncrementY() { sweep.IncrementY(); }
  // Renders the sweep's current row; rows outside the bitmap are not written.
  void _ProcessIntersections();
  // The sum of one pixel of the current row, in grey levels; 0.0 with no active part.
  double _ProcessIntersections(int32_t x);
  // Sum of GetRightArea(x) over [begin, end), in list order.
  double _CalculateArea(int32_t x, ActivePosition begin, ActivePosition end);
  // Alternating sum of the values of [begin, end), greatest first, from 0.0
  // (add) or 255.0 (not add).
  double _SafeCalculateArea(int32_t x, ActivePosition begin, ActivePosition end, bool add);
  // The end of the parts that can reach pixel column x: the first with Left() > x + 1.
  ActivePosition _EndOfRange(int32_t x);
  // Whether the arguments allow any writing at all.
  bool _CanRender() const;

  int64_t Index(int32_t x, int32_t y) const { return static_cast<int64_t>(y) * width + x; }

  unsigned char* bitmap;           // the caller's pixels, never owned
  int32_t width;                   // pixels in a row, also the distance between rows
  int32_t height;                  // number of rows
  double sizeX;                    // bitmap size in x, unit of length of MInternalUnits
  double sizeY;                    // bitmap size in y, same unit
  CONTOUR* contours;               // the layer's first contour at construction; null from a border
  int32_t numContours;             // the layer's contour count at construction; 0 from a border
  Border border;                   // private working copy of the contours
  MContour2BitmapLineSweep sweep;  // the parts and the active list
};
