// The line sweep of the bitmap renderer: contours cut into y-monotone parts in
// pixel coordinates, and the list of the parts that reach the current row, in
// left-to-right order.
#pragma once

#include <cstdint>
#include <list>

#include "bitmap/part.h"
#include "kelvor2d_export.h"
#include "layer/contour.h"
#include "sibling/math/border.h"

// Owns all parts (by value, in a list, so that their addresses stay valid) and
// walks a horizontal line over them one pixel row at a time. Internal units
// become pixels here: pixel x = (x / sizeX * width) / MInternalUnits::Get(),
// likewise y, with the corner of pixel (0, 0) at the contours' origin.
// A copy is member-wise (its active list points into the source): copy only a
// sweep that has not started.
class KELVOR2D_API MContour2BitmapLineSweep {
 public:
  using Border = M3dBorder<long, void*, M3dBorderContour<long, void*, M3dBorderPoint<long, void*>>>;
  using BorderContour = M3dBorderContour<long, void*, M3dBorderPoint<long, void*>>;
  using PartList = std::list<MContourYSplittedPart>;
  using ActiveList = std::list<MContourYSplittedPart*>;

  // Both lists empty, yPosition -2147483648.
  MContour2BitmapLineSweep();
  MContour2BitmapLineSweep(const MContour2BitmapLineSweep&) = default;
  MContour2BitmapLineSweep& operator=(const MContour2BitmapLineSweep&) = default;

  // Adds `count` contours along NextContour (stopping early at a null link),
  // then sorts all parts. Each contour is drawn as solid whatever its direction.
  // Contours under 3 points, or whose points are all equal, add no part.
  void Initialise(int32_t width, int32_t height, double sizeX, double sizeY, CONTOUR const* firstContour,
                  int32_t count);
  // Adds every contour of the border (first run of each ring adding), then
  // sorts all parts; each ring is turned to start at its lowest-leftmost point.
  // Equal consecutive points are passed over, so an uncleaned ring never hangs.
  void Initialise(int32_t width, int32_t height, double sizeX, double sizeY, Border& border);

  // Starts or restarts the sweep at output row 0; with no parts only the output row is set.
  void ZeroY();
  // Moves one output row up; the sweep's row waits at the lowest row of the parts.
  void IncrementY();
  // The row that the active list describes.
  int32_t YPosition() const { return yPosition; }

  bool IsEmpty() const { return totalParts.empty(); }
  uint64_t TotalSize() const { return totalParts.size(); }
  PartList::iterator TotalBegin() { return totalParts.begin(); }
  PartList::iterator TotalEnd() { return totalParts.end(); }

  bool empty() const { return activeParts.empty(); }
  uint64_t size() const { return activeParts.size(); }
  ActiveList::iterator begin() { return activeParts.begin(); }
  ActiveList::iterator end() { return activeParts.end(); }
  ActiveList::reverse_iterator rbegin() { return activeParts.rbegin(); }

 protected:
  void _AddContour(int32_t width, int32_t height, double sizeX, double sizeY, CONTOUR const* contour);
  void _AddContour(int32_t width, int32_t height, double sizeX, double sizeY, BorderContour& contour);
  // A new empty part with that sign at the front of totalParts.
  MContourYSplittedPart* _AddNewSplittedPart(bool addingMaterial);
  // Appends the part and sorts the active list by ActivePartXCompare.
  void _AddToActiveList(PartList::iterator& position);
  // Removes the entry; position moves to the entry after it.
  void _RemoveFromActiveList(ActiveList::iterator& position);
  void _IncrementY();
  // Brings the sweep's row up to `row`, where _IncrementY would step there row
  // by row to the same state: across rows where no part starts in one step,
  // so that parts far below the bitmap cost no time per row.
  void _AdvanceTo(int32_t row);
  // One step of _AdvanceTo: active parts up to `row`, then the parts that start there.
  void _StepTo(int32_t row);
  // A border of `count` contours of the chain, outer ones with positive area.
  void _CreateBorderFromContours(Border& border, CONTOUR const* contours, int32_t count);

  // Activates the parts whose lowest row is yPosition, from nextPart on.
  void _ActivatePartsOfRow();
  // Drops the front part when the contour just walked left only a single point.
  void _DropDegeneratePart();

  int32_t yPosition;            // row of activeParts; -2147483648 at construction
  int32_t outputRow;            // row asked for by the caller; 0 after ZeroY
  PartList totalParts;          // all parts, owned; sorted by operator< after Initialise
  ActiveList activeParts;       // parts reaching yPosition, by ActivePartXCompare; not owned
  PartList::iterator nextPart;  // first part not yet activated
};
