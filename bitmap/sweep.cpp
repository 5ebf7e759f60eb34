#include "bitmap/sweep.h"

#include <algorithm>

#include "sibling/units/internal_units.h"

namespace {

constexpr int32_t kNoRow = -2147483648;

// From internal units to pixel coordinates, a pure scale per axis.
struct PixelScale {
  double width;   // pixels in a row
  double height;  // rows
  double sizeX;   // bitmap size in x, unit of length of MInternalUnits
  double sizeY;   // bitmap size in y, same unit

  MContourHelperPoint operator()(int32_t x, int32_t y) const {
    const double units = Kelvor::Common::MInternalUnits::Get();
    const double px = (static_cast<double>(x) / sizeX * width) / units;
    const double py = (static_cast<double>(y) / sizeY * height) / units;
    return MContourHelperPoint(px, py);
  }
};

PixelScale MakeScale(int32_t width, int32_t height, double sizeX, double sizeY) {
  return PixelScale{static_cast<double>(width), static_cast<double>(height), sizeX, sizeY};
}

// A contour's points walked by index; NextPoint passes over repeated points.
class ContourRing {
 public:
  using Cursor = int32_t;
  explicit ContourRing(const CONTOUR& contour) : m_contour(contour) {}
  Cursor Start() { return m_contour.LowestLeftmostPoint(); }
  Cursor Next(Cursor i) const { return m_contour.NextPoint(i); }
  int32_t X(Cursor i) const { return m_contour.Points[i].x; }
  int32_t Y(Cursor i) const { return m_contour.Points[i].y; }

 private:
  const CONTOUR& m_contour;
};

// A border contour's ring walked by its next links; Start turns the ring to
// begin at its lowest-leftmost point.
class BorderRing {
 public:
  using Point = M3dBorderPoint<long, void*>;
  using Cursor = Point*;
  explicit BorderRing(MContour2BitmapLineSweep::BorderContour& contour) : m_contour(contour) {}
  Cursor Start() {
    m_contour.SetFirstPointAt(m_contour.LowestLeftmostPoint());
    return m_contour.GetFirstPoint();
  }
  Cursor Next(Cursor p) const { return p->next; }
  int32_t X(Cursor p) const { return p->x; }
  int32_t Y(Cursor p) const { return p->y; }

 private:
  MContour2BitmapLineSweep::BorderContour& m_contour;
};

// Whether next continues a run from current, comparing y first and x on equal y.
bool ContinuesRun(int32_t cx, int32_t cy, int32_t nx, int32_t ny, bool rising) {
  if (rising)
    return cy < ny || (cy == ny && cx < nx);
  return ny < cy || (ny == cy && nx < cx);
}

// Follows one run from current into part and returns its last point. A point
// at the same place as the current one is passed over, and the run stops at
// the start point, so that a ring with repeated points still comes round.
template <class Ring>
typename Ring::Cursor FollowRun(Ring& ring, const PixelScale& scale, MContourYSplittedPart* part,
                                typename Ring::Cursor current, typename Ring::Cursor start, bool rising) {
  for (;;) {
    const typename Ring::Cursor next = ring.Next(current);
    if (next == current)
      return current;
    const bool samePlace = ring.X(next) == ring.X(current) && ring.Y(next) == ring.Y(current);
    if (!samePlace) {
      if (!ContinuesRun(ring.X(current), ring.Y(current), ring.X(next), ring.Y(next), rising))
        return current;
      part->PushPoint(scale(ring.X(next), ring.Y(next)));
    }
    current = next;
    if (current == start)
      return current;
  }
}

// Cuts a ring into y-monotone parts of alternating sign, the first one rising
// from the lowest-leftmost point with sign `adding`.
template <class Ring, class NewPart>
void SplitIntoRuns(Ring& ring, const PixelScale& scale, bool adding, NewPart newPart) {
  const typename Ring::Cursor start = ring.Start();
  typename Ring::Cursor current = start;
  bool rising = true;
  do {
    MContourYSplittedPart* part = newPart(adding);
    adding = !adding;
    part->PushPoint(scale(ring.X(current), ring.Y(current)));
    current = FollowRun(ring, scale, part, current, start, rising);
    rising = !rising;
  } while (current != start);
}

}  // namespace

MContour2BitmapLineSweep::MContour2BitmapLineSweep() : yPosition(kNoRow), outputRow(0) {
  nextPart = totalParts.end();
}

void MContour2BitmapLineSweep::Initialise(int32_t width, int32_t height, double sizeX, double sizeY,
                                          CONTOUR const* firstContour, int32_t count) {
  const CONTOUR* contour = firstContour;
  for (int32_t i = 0; i < count && contour != nullptr; ++i, contour = contour->NextContour) {
    _AddContour(width, height, sizeX, sizeY, contour);
  }
  totalParts.sort();
}

void MContour2BitmapLineSweep::Initialise(int32_t width, int32_t height, double sizeX, double sizeY,
                                          Border& border) {
  BorderContour* contour = border.GetFirstContour();
  const uint32_t count = border.GetNumContours();
  for (uint32_t i = 0; i < count && contour != nullptr; ++i, contour = contour->GetNextContour()) {
    _AddContour(width, height, sizeX, sizeY, *contour);
  }
  totalParts.sort();
}

void MContour2BitmapLineSweep::_AddContour(int32_t width, int32_t height, double sizeX, double sizeY,
                                           CONTOUR const* contour) {
  if (contour->NumPoints < 3)
    return;
  ContourRing ring(*contour);
  SplitIntoRuns(ring, MakeScale(width, height, sizeX, sizeY), contour->RECHTS_DRAAIEND(),
                [this](bool adding) { return _AddNewSplittedPart(adding); });
  _DropDegeneratePart();
}

void MContour2BitmapLineSweep::_AddContour(int32_t width, int32_t height, double sizeX, double sizeY,
                                           BorderContour& contour) {
  if (contour.GetNumPoints() < 3)
    return;
  BorderRing ring(contour);
  SplitIntoRuns(ring, MakeScale(width, height, sizeX, sizeY), true,
                [this](bool adding) { return _AddNewSplittedPart(adding); });
  _DropDegeneratePart();
}

void MContour2BitmapLineSweep::_DropDegeneratePart() {
  // Only a ring whose points all lie at one place ends with a part of one
  // point; it covers nothing and could not be ordered.
  if (!totalParts.empty() && totalParts.front().size() < 2)
    totalParts.pop_front();
}

MContourYSplittedPart* MContour2BitmapLineSweep::_AddNewSplittedPart(bool addingMaterial) {
  totalParts.push_front(MContourYSplittedPart(addingMaterial));
  return &totalParts.front();
}

void MContour2BitmapLineSweep::_AddToActiveList(PartList::iterator& position) {
  activeParts.push_back(&*position);
  activeParts.sort(ActivePartXCompare);
}

void MContour2BitmapLineSweep::_RemoveFromActiveList(ActiveList::iterator& position) {
  position = activeParts.erase(position);
}

void MContour2BitmapLineSweep::_ActivatePartsOfRow() {
  while (nextPart != totalParts.end() && nextPart->GetLowestYPixel() == yPosition) {
    nextPart->Activate();
    _AddToActiveList(nextPart);
    ++nextPart;
  }
}

void MContour2BitmapLineSweep::ZeroY() {
  outputRow = 0;
  if (totalParts.empty())
    return;
  yPosition = totalParts.front().GetLowestYPixel();
  activeParts.clear();
  nextPart = totalParts.begin();
  _ActivatePartsOfRow();
  _AdvanceTo(outputRow);
}

void MContour2BitmapLineSweep::_IncrementY() {
  _AdvanceTo(yPosition + 1);
}

void MContour2BitmapLineSweep::_AdvanceTo(int32_t row) {
  while (yPosition < row) {
    int32_t next = row;  // the next row where a part starts, or `row`
    if (nextPart != totalParts.end() && nextPart->GetLowestYPixel() < next)
      next = std::max(nextPart->GetLowestYPixel(), yPosition + 1);
    _StepTo(next);
  }
}

void MContour2BitmapLineSweep::_StepTo(int32_t row) {
  yPosition = row;
  for (ActiveList::iterator entry = activeParts.begin(); entry != activeParts.end();) {
    if ((*entry)->AdvanceWorkingYTo(row)) {
      ++entry;
    } else {
      _RemoveFromActiveList(entry);
    }
  }
  _ActivatePartsOfRow();
}

void MContour2BitmapLineSweep::IncrementY() {
  outputRow = outputRow + 1;
  _AdvanceTo(outputRow);
}

void MContour2BitmapLineSweep::_CreateBorderFromContours(Border& border, CONTOUR const* contours,
                                                         int32_t count) {
  const CONTOUR* contour = contours;
  for (int32_t i = 0; i < count && contour != nullptr; ++i, contour = contour->NextContour) {
    BorderContour* ring = border.AddContourAtEnd();
    ring->SetIsOuterContour(contour->Outer != 0);
    for (int32_t p = 0; p < contour->NumPoints; ++p) {
      ring->InsertAtEnd(contour->Points[p].x, contour->Points[p].y, nullptr);
    }
    if (ring->SurfaceAreaWithSignXY() > 0.0) {
      if (!ring->GetIsOuterContour())
        ring->Invert();
    } else if (ring->GetIsOuterContour()) {
      ring->Invert();
    }
  }
}
