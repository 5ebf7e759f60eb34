// Cutting the vectors and contours of a layer with a line segment; contours
// that are cut become blocks of vectors that start at their first cut.
#include <cstdlib>
#include <cstring>

#include "geometry/grid_arithmetic.h"
#include "geometry/plane_geometry.h"
#include "layer/layer.h"
#include "vectors/conversion.h"
#include "vectors/editing.h"

using namespace kelvor2d_detail;  // the internal grid helpers

namespace {

// A box with inclusive bounds; empty when a minimum exceeds its maximum.
struct LineBox {
  int32_t minX, minY, maxX, maxY;
  bool Contains(MMPoint2d<long> p) const { return minX <= p.x && p.x <= maxX && minY <= p.y && p.y <= maxY; }
  bool Overlaps(const LineBox& o) const {
    return minX <= o.maxX && o.minX <= maxX && minY <= o.maxY && o.minY <= maxY;
  }
};

LineBox BoxOfEnds(MMPoint2d<long> a, MMPoint2d<long> b) {
  return {a.x < b.x ? a.x : b.x, a.y < b.y ? a.y : b.y, a.x > b.x ? a.x : b.x, a.y > b.y ? a.y : b.y};
}

// Box of n points given as coordinate pairs; empty extents for none.
LineBox BoxOfCoordinates(const int32_t* xy, int32_t n) {
  LineBox box = {kEmptyExtentMin, kEmptyExtentMin, kEmptyExtentMax, kEmptyExtentMax};
  for (int32_t i = 0; i < n; ++i) {
    const int32_t x = xy[2 * i], y = xy[2 * i + 1];
    if (x < box.minX)
      box.minX = x;
    if (y < box.minY)
      box.minY = y;
    if (x > box.maxX)
      box.maxX = x;
    if (y > box.maxY)
      box.maxY = y;
  }
  return box;
}

// The cutting line: its two points and its box.
struct CutLine {
  MMPoint2d<long> p;
  MMPoint2d<long> q;
  LineBox box;
  // Whether the segment a-b is cut; the crossing goes to s.
  bool Cuts(MMPoint2d<long> a, MMPoint2d<long> b, MMPoint2d<long>& s) const {
    if (a.x < box.minX && b.x < box.minX)
      return false;
    if (a.x > box.maxX && b.x > box.maxX)
      return false;
    if (a.y < box.minY && b.y < box.minY)
      return false;
    if (a.y > box.maxY && b.y > box.maxY)
      return false;
    s = SNIJPUNT_TWEE_RECHTEN(p, q, a, b);
    return box.Contains(s) && BoxOfEnds(a, b).Contains(s);
  }
};

CutLine MakeCutLine(int32_t x1, int32_t y1, int32_t x2, int32_t y2) {
  const MMPoint2d<long> p = {x1, y1}, q = {x2, y2};
  return {p, q, BoxOfEnds(p, q)};
}

int64_t Distance64(int32_t a, int32_t b) {
  const int64_t d = static_cast<int64_t>(a) - static_cast<int64_t>(b);
  return d < 0 ? -d : d;
}

// The end of the piece a-S: S itself, or with a gap one unit back toward a
// along the axis of the larger distance (y at a tie).
MMPoint2d<long> EndBeforeCut(MMPoint2d<long> a, MMPoint2d<long> s, bool gap) {
  if (!gap)
    return s;
  if (Distance64(s.x, a.x) <= Distance64(s.y, a.y))
    return {s.x, s.y <= a.y ? Add32(s.y, 1) : Sub32(s.y, 1)};
  return {s.x > a.x ? Sub32(s.x, 1) : Add32(s.x, 1), s.y};
}

// Cuts the vectors of one block in place; true when one was cut.
bool CutBlock(VECTOR_BLOK* b, const CutLine& line, bool gap) {
  VectorList cut = MakeVectorList(2 * static_cast<size_t>(b->Size));
  bool any = false;
  for (int32_t i = 0; i + 3 < b->Size; i += 4) {
    const MMPoint2d<long> a = {b->Block[i], b->Block[i + 1]}, c = {b->Block[i + 2], b->Block[i + 3]};
    MMPoint2d<long> s = {0, 0};
    if (!line.Cuts(a, c, s)) {
      cut.Add(a, c);
      continue;
    }
    any = true;
    cut.Add(a, EndBeforeCut(a, s, gap));
    cut.Add(s, c);
  }
  free(b->Block);
  b->Block = static_cast<int32_t*>(
      realloc(cut.values, sizeof(int32_t) * static_cast<size_t>(cut.size > 0 ? cut.size : 1)));
  b->Size = cut.size;
  return any;
}

// Walks the contour's segments, closing one included, into the head list
// (up to the first cut) and the tail list; returns the number of cuts.
int32_t SplitContourAtCuts(const CONTOUR& c, const CutLine& line, bool gap, VectorList& head,
                           VectorList& tail) {
  int32_t cuts = 0;
  const int32_t n = c.NumPoints;
  for (int32_t i = 0; i < n; ++i) {
    const MMPoint2d<long> a = c.Points[i], b = c.Points[(i + 1) % n];
    MMPoint2d<long> s = {0, 0};
    if (!line.Cuts(a, b, s)) {
      (cuts == 0 ? head : tail).Add(a, b);
      continue;
    }
    (cuts == 0 ? head : tail).Add(a, EndBeforeCut(a, s, gap));
    tail.Add(s, b);
    ++cuts;
  }
  return cuts;
}

void ReleasePoints(CONTOUR& c) {
  free(c.Points);
  c.Points = nullptr;
  c.NumPoints = 0;
}

// Cuts one contour; when it has at least minimumCuts cuts it becomes a block
// (tail list, then head list) and loses its points. True when converted.
bool CutContour(LAYER& layer, CONTOUR& c, const CutLine& line, int32_t minimumCuts, bool gap) {
  if (!BoxOfCoordinates(&c.Points[0].x, c.NumPoints).Overlaps(line.box))
    return false;
  const size_t room = 8 * static_cast<size_t>(c.NumPoints);
  VectorList head = MakeVectorList(room), tail = MakeVectorList(2 * room);
  const int32_t cuts = SplitContourAtCuts(c, line, gap, head, tail);
  const bool convert = cuts >= minimumCuts;
  if (convert) {
    tail.Append(head);
    layer.Vectors.VOEG_COORD_TOE_AAN_VECTOR_LAYER(tail.values, tail.size,
                                                  static_cast<char>(kVectorTypeFromContour));
    layer.Vectors.VERWIJDER_PUNT_VECTOREN();
    ReleasePoints(c);
  }
  free(head.values);
  free(tail.values);
  return convert;
}

// The closing steps after a conversion: empty contours go, extents recomputed.
void FinishConversion(LAYER& layer) {
  RemoveContoursBelow(layer.Contours, 1);
  layer.Contours.BEPAAL_EXTREMA();
  layer.Vectors.BEPAAL_EXTREMA();
  layer.JoinExtents();
}

}  // namespace

bool VECTOR_LAYER::CUT_VECTORS_WITH_LINE(int32_t& x1, int32_t& y1, int32_t& x2, int32_t& y2, bool gap) {
  VERWIJDER_PUNT_VECTOREN();
  const CutLine line = MakeCutLine(x1, y1, x2, y2);
  bool cut = false;
  for (VECTOR_BLOK* b = FirstBlock; b != nullptr; b = b->NextBlock) {
    if (b->Size <= 0 || !BoxOfCoordinates(b->Block, b->Size / 2).Overlaps(line.box))
      continue;
    if (CutBlock(b, line, gap))
      cut = true;
  }
  return cut;
}

bool LAYER::CUT_CONTOURS_WITH_LINE(int32_t& x1, int32_t& y1, int32_t& x2, int32_t& y2, int32_t minimumCuts,
                                   bool gap) {
  const CutLine line = MakeCutLine(x1, y1, x2, y2);
  if (Contours.FirstContour == nullptr)
    return false;
  bool converted = false;
  for (CONTOUR* c = Contours.FirstContour; c != nullptr; c = c->NextContour) {
    if (c->NumPoints > 0 && CutContour(*this, *c, line, minimumCuts, gap))
      converted = true;
  }
  if (!converted)
    return false;
  FinishConversion(*this);
  return true;
}

bool LAYER::CUT_VECTORS_WITH_LINE(int32_t& x1, int32_t& y1, int32_t& x2, int32_t& y2, bool gap) {
  const bool vectorsCut = Vectors.CUT_VECTORS_WITH_LINE(x1, y1, x2, y2, gap);
  const bool contoursCut = CUT_CONTOURS_WITH_LINE(x1, y1, x2, y2, 2, gap);
  return vectorsCut || contoursCut;
}

bool LAYER::CONVERT_CONTOURS_CUT_BY_LINE_TO_VECTORS(int32_t& x1, int32_t& y1, int32_t& x2, int32_t& y2, bool,
                                                    int32_t minimumCuts) {
  if (Contours.FirstContour == nullptr)
    return false;
  bool converted = false;
  for (CONTOUR* c = Contours.FirstContour; c != nullptr; c = c->NextContour) {
    if (c->NumPoints <= 0 || c->INTERSECT_WITH_LINE(x1, y1, x2, y2) < minimumCuts)
      continue;
    AddContourAsVectors(Vectors, *c, true);
    ReleasePoints(*c);
    converted = true;
  }
  if (!converted)
    return false;
  FinishConversion(*this);
  return true;
}
