#include "bridges/boolean_front_ends.h"

#include "bridges/border_conversion.h"
#include "bridges/graph_extraction.h"
#include "sibling/boolean/offsetter.h"

namespace {

constexpr int16_t kUnionLevel = 0;
constexpr int16_t kIntersectionLevel = 1;
// How many points ahead of the one fed the lookup of a point is started.
constexpr int32_t kPrefetchDistance = 8;

// True when the stored flags say the contour runs against the sense the
// engine expects for it.
bool FlagsCallForSwap(const CONTOUR& c) {
  return (c.Outer == 1 && c.RightHanded == 0) || (c.Outer == 0 && c.RightHanded == 1);
}

void FeedContour(M2dBoolean* engine, const CONTOUR& c, bool swap, bool lineFlag, bool addShells) {
  M2dGraphPoint* previous = engine->AddPoint(c.Points[0].x, c.Points[0].y);
  int32_t lowest = c.Points[0].y, highest = lowest;
  const int32_t m = c.Closed != 0 ? c.NumPoints : c.NumPoints - 1;
  for (int32_t i = 1; i < kPrefetchDistance && i < m; ++i)
    engine->PrefetchGridPoint(c.Points[i].x, c.Points[i].y);
  for (int32_t i = 1; i <= m; ++i) {
    if (i + kPrefetchDistance < m)
      engine->PrefetchGridPoint(c.Points[i + kPrefetchDistance].x, c.Points[i + kPrefetchDistance].y);
    const MMPoint2d<long>& p = c.Points[i < m ? i : 0];
    M2dGraphPoint* next = engine->AddPoint(p.x, p.y);
    if (swap) {
      engine->AddLine(next, previous, lineFlag);
    } else {
      engine->AddLine(previous, next, lineFlag);
    }
    if (p.y < lowest)
      lowest = p.y;
    if (p.y > highest)
      highest = p.y;
    previous = next;
  }
  if (addShells)
    engine->AddShell(lowest, highest);
}

// The sense in which a layer goes through the door: as its flags say, or
// every contour the other way (the operand that is taken away).
enum class FeedSense : bool { kAsStored = false, kReversed = true };

// Feeds the layer through the door as the front ends do: lines without their
// flag, one shell per contour.
void FeedLayer(M2dBoolean& engine, const CONTOUR_LAYER& layer, FeedSense sense) {
  constexpr bool kLineFlag = false;
  constexpr bool kOneShellPerContour = true;
  M2dBoolean_Utilities::AddContourLayerToBoolean(&engine, layer, sense == FeedSense::kReversed, kLineFlag,
                                                 kOneShellPerContour);
}

// Points that feeding the layer visits, closing visits included.
uint32_t CountFedPoints(const CONTOUR_LAYER& layer) {
  uint32_t count = 0;
  for (const CONTOUR* c = layer.FirstContour; c != nullptr; c = c->NextContour) {
    if (c->NumPoints > 0)
      count += static_cast<uint32_t>(c->NumPoints) + 1;
  }
  return count;
}

// Builds an engine, feeds a and b, keeps the region above `level` and
// writes it into result.
void RunTwoOperands(const CONTOUR_LAYER& a, const CONTOUR_LAYER& b, CONTOUR_LAYER& result,
                    AU::M2DBooleanOptions* options, FeedSense senseOfB, int16_t level) {
  M2dBoolean engine;
  if (options != nullptr)
    engine.options = options->flags;
  engine.ReservePoints(CountFedPoints(a) + CountFedPoints(b));
  FeedLayer(engine, a, FeedSense::kAsStored);
  FeedLayer(engine, b, senseOfB);
  engine.SplitClassifyAndFilter(level, M2dBoolean::kNoUpperBound);
  ExtractContourLayer(&engine, result);
}

}  // namespace

void M2dBoolean_Utilities::AddContourLayerToBoolean(M2dBoolean* engine, const CONTOUR_LAYER& layer,
                                                    bool reverse, bool lineFlag, bool addShells) {
  for (const CONTOUR* c = layer.FirstContour; c != nullptr; c = c->NextContour) {
    const bool swap = FlagsCallForSwap(*c) ? !reverse : reverse;
    if (c->NumPoints <= 0)
      continue;
    FeedContour(engine, *c, swap, lineFlag, addShells);
  }
}

bool AU::BooleanUnite(const CONTOUR_LAYER& a, const CONTOUR_LAYER& b, CONTOUR_LAYER& result,
                      M2DBooleanOptions* options) {
  RunTwoOperands(a, b, result, options, FeedSense::kAsStored, kUnionLevel);
  return true;
}

bool AU::BooleanIntersect(const CONTOUR_LAYER& a, const CONTOUR_LAYER& b, CONTOUR_LAYER& result,
                          M2DBooleanOptions* options) {
  if (a.NumContours == 0 || b.NumContours == 0) {
    result.LEEG_LAAG();
    return true;
  }
  RunTwoOperands(a, b, result, options, FeedSense::kAsStored, kIntersectionLevel);
  return true;
}

bool AU::BooleanSubtract(const CONTOUR_LAYER& a, const CONTOUR_LAYER& b, CONTOUR_LAYER& result,
                         M2DBooleanOptions* options) {
  if (a.NumContours == 0) {
    result.LEEG_LAAG();
    return true;
  }
  RunTwoOperands(a, b, result, options, FeedSense::kReversed, kUnionLevel);
  return true;
}

bool AU::BooleanUnify(CONTOUR_LAYER& layer, int32_t level) {
  M2dBoolean engine;
  engine.ReservePoints(CountFedPoints(layer));
  FeedLayer(engine, layer, FeedSense::kAsStored);
  engine.SplitClassifyAndFilter(static_cast<int16_t>(level), M2dBoolean::kNoUpperBound);
  ExtractContourLayer(&engine, layer);
  return true;
}

bool AU::BooleanRemoveSelfIntersections(CONTOUR_LAYER& layer) {
  M2dBoolean engine;
  FeedLayer(engine, layer, FeedSense::kAsStored);
  engine.RemoveIntegerSelfIntersections();
  ExtractContourLayer(&engine, layer);
  return true;
}

void CONTOUR_LAYER::OFFSET_LAAG(CONTOUR_LAYER& source, int32_t distance) {
  M2dOffsetter offsetter;
  M3dBorder2LayerConvertor::_Convert(source, offsetter.input);
  // -INT32_MIN does not exist: that distance is taken as -INT32_MAX.
  offsetter.CreateOffset(distance == INT32_MIN ? INT32_MAX : -distance);
  M3dBorder2LayerConvertor::_Convert(*offsetter.result, *this);
  offsetter.Clear();
  offsetter.input.MakeEmpty();
  offsetter.result->MakeEmpty();
}
