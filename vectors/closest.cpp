// Nearest point, vector and polyline of a vector layer, the selection of runs
// by a box, and the count of open runs. Linear scans without allocation.
#include "vectors/closest.h"

#include <cmath>
#include <cstdlib>
#include <vector>

#include "geometry/grid_arithmetic.h"
#include "geometry/segment_tests.h"
#include "layer/layer.h"
#include "vectors/editing.h"

using namespace kelvor2d_detail;  // the internal grid helpers

namespace {

// Bit t set for each selectable type code t below 42: 1, 33, 34, 37, 38, 40, 41.
constexpr uint64_t kSelectableTypeMask = 0x36600000002ULL;
constexpr uint16_t kFirstUnselectableType = 42;

bool IsSelectable(const VECTOR_BLOK* b) {
  return b->Type < kFirstUnselectableType && ((kSelectableTypeMask >> b->Type) & 1U) != 0;
}

bool IsFromContour(const VECTOR_BLOK* b) {
  return b->Type == kVectorTypeFromContour;
}

// The best vector of a scan: its block and index, squared distance and flag.
struct ClosestVector {
  float best = kNoDistance;
  VECTOR_BLOK* block = nullptr;
  int32_t index = -1;
  bool nearEnd = false;
  bool Found() const { return block != nullptr; }
  int32_t* Coordinates() const { return block->Block + 4 * index; }
};

// Scans every vector of the blocks that `select` accepts; strictly nearer wins.
template <class Select>
ClosestVector ScanClosestVector(const VECTOR_LAYER& layer, int32_t px, int32_t py, Select select) {
  ClosestVector result;
  for (VECTOR_BLOK* b = layer.FirstBlock; b != nullptr; b = b->NextBlock) {
    if (b->Size <= 0 || !select(b))
      continue;
    for (int32_t i = 0; i < b->Size / 4; ++i) {
      const int32_t* v = b->Block + 4 * i;
      bool nearEnd = false;
      const float d = KWADRAAT_AFSTAND_TOT_LIJNSTUK(px, py, v[0], v[1], v[2], v[3], nearEnd);
      if (!(d < result.best))
        continue;
      result = {d, b, i, nearEnd};
    }
  }
  return result;
}

// The scan of the polyline operations with their tolerance test on the
// truncated distance; an empty result when nothing is accepted.
ClosestVector FindAcceptedVector(const VECTOR_LAYER& layer, int32_t x, int32_t y, int32_t tolerance) {
  const ClosestVector found = ScanClosestVector(layer, x, y, IsSelectable);
  if (found.Found() && TruncatedDistance(found.best) < tolerance)
    return found;
  return ClosestVector();
}

void StorePointers(const ClosestVector& found, int32_t*& x1, int32_t*& y1, int32_t*& x2, int32_t*& y2) {
  int32_t* v = found.Coordinates();
  x1 = v;
  y1 = v + 1;
  x2 = v + 2;
  y2 = v + 3;
}

bool SamePoint(const int32_t* p, const int32_t* q) {
  return p[0] == q[0] && p[1] == q[1];
}

// First and last vector index of the run through vector `index` of the block.
void FindRunAround(const VECTOR_BLOK* b, int32_t index, int32_t& first, int32_t& last) {
  const int32_t vectors = b->Size / 4;
  last = index;
  while (last + 1 < vectors && SamePoint(b->Block + 4 * (last + 1), b->Block + 4 * last + 2))
    ++last;
  first = index;
  while (first > 0 && SamePoint(b->Block + 4 * (first - 1) + 2, b->Block + 4 * first))
    --first;
}

void AppendVector(MMPoint2d<long>* out, int32_t& count, const int32_t* v) {
  out[count] = {v[0], v[1]};
  out[count + 1] = {v[2], v[3]};
  count += 2;
}

// Whether the point at coordinate index i of the block is an end of its run:
// the block's first and last points always are; a start of a vector is not
// when it equals the point before it, an end not when it equals the one after.
bool IsRunEnd(const VECTOR_BLOK* b, int32_t i) {
  if (i == 0 || i + 3 >= b->Size)
    return true;
  if (i % 4 == 0)
    return !SamePoint(b->Block + i, b->Block + i - 2);
  return !SamePoint(b->Block + i, b->Block + i + 2);
}

bool RunInBox(const VECTOR_BLOK* b, int32_t first, int32_t last, const BOX& box) {
  for (int32_t i = 4 * first; i < 4 * (last + 1); i += 2) {
    const int32_t x = b->Block[i], y = b->Block[i + 1];
    if (x < box.MinX || x > box.MaxX || y < box.MinY || y > box.MaxY)
      return false;
  }
  return true;
}

bool HasCoordinates(const VECTOR_LAYER& layer) {
  for (const VECTOR_BLOK* b = layer.FirstBlock; b != nullptr; b = b->NextBlock) {
    if (b->Size > 0)
      return true;
  }
  return false;
}

}  // namespace

unsigned short ZOEK_DICHTSTE_LIJNSTUK_IN_VECTOR_LAYER(VECTOR_LAYER& layer, MMPoint2d<long> point,
                                                      int32_t*& x1, int32_t*& y1, int32_t*& x2, int32_t*& y2,
                                                      bool& nearEnd) {
  const ClosestVector found = ScanClosestVector(layer, point.x, point.y, IsFromContour);
  if (!found.Found())
    return 0;
  StorePointers(found, x1, y1, x2, y2);
  nearEnd = found.nearEnd;
  return 1;
}

bool VECTOR_LAYER::SEARCH_CLOSEST_VECTOR(MMPoint2d<long> point, int32_t*& x1, int32_t*& y1, int32_t*& x2,
                                         int32_t*& y2, bool& nearEnd, VECTOR_BLOK** block, int32_t& distance,
                                         int32_t tolerance) {
  const ClosestVector found = ScanClosestVector(*this, point.x, point.y, IsSelectable);
  distance = TruncatedDistance(found.best);
  if (!found.Found())
    return false;
  StorePointers(found, x1, y1, x2, y2);
  nearEnd = found.nearEnd;
  if (block != nullptr)
    *block = found.block;
  return distance < tolerance;
}

bool VECTOR_LAYER::REMOVE_CLOSEST_VECTOR(int32_t& x, int32_t& y, int32_t tolerance) {
  const ClosestVector found = ScanClosestVector(*this, x, y, IsSelectable);
  if (!found.Found() || !(sqrtf(found.best) < static_cast<float>(tolerance)))
    return false;
  KeepVectors(found.block, [&](const int32_t*, int32_t i) { return i != found.index; });
  RemoveEmptyBlocks(*this);
  BEPAAL_EXTREMA();
  return true;
}

MMPoint2d<long>* VECTOR_LAYER::GET_CLOSEST_VECTOR_POLYLINE(int32_t& count, int32_t& x, int32_t& y,
                                                           int32_t tolerance) {
  count = 0;
  const ClosestVector found = FindAcceptedVector(*this, x, y, tolerance);
  if (!found.Found())
    return nullptr;
  const VECTOR_BLOK* b = found.block;
  int32_t first = 0, last = 0;
  FindRunAround(b, found.index, first, last);
  auto* result = static_cast<MMPoint2d<long>*>(malloc(sizeof(MMPoint2d<long>) * 2 * (last - first + 1)));
  AppendVector(result, count, found.Coordinates());
  for (int32_t i = found.index + 1; i <= last; ++i)
    AppendVector(result, count, b->Block + 4 * i);
  for (int32_t i = found.index - 1; i >= first; --i)
    AppendVector(result, count, b->Block + 4 * i);
  return result;
}

bool VECTOR_LAYER::REMOVE_CLOSEST_VECTOR_POLYLINE(int32_t& x, int32_t& y, int32_t tolerance) {
  const ClosestVector found = FindAcceptedVector(*this, x, y, tolerance);
  if (!found.Found())
    return false;
  int32_t first = 0, last = 0;
  FindRunAround(found.block, found.index, first, last);
  KeepVectors(found.block, [&](const int32_t*, int32_t i) { return i < first || i > last; });
  RemoveEmptyBlocks(*this);
  return true;
}

bool VECTOR_LAYER::GET_CLOSEST_POINT(int32_t& x, int32_t& y, bool endsOnly) {
  double best = DBL_MAX;
  const int32_t* nearest = nullptr;
  for (const VECTOR_BLOK* b = FirstBlock; b != nullptr; b = b->NextBlock) {
    if (!IsSelectable(b))
      continue;
    for (int32_t i = 0; i + 1 < b->Size; i += 2) {
      if (endsOnly && !IsRunEnd(b, i))
        continue;
      const double dx = static_cast<float>(Sub32(b->Block[i], x));
      const double dy = static_cast<float>(Sub32(b->Block[i + 1], y));
      const double d = dx * dx + dy * dy;
      if (nearest != nullptr && !(d < best))
        continue;
      best = d;
      nearest = b->Block + i;
    }
  }
  if (nearest == nullptr)
    return false;
  x = nearest[0];
  y = nearest[1];
  return true;
}

int32_t VECTOR_LAYER::NUMBER_OF_OPEN_CONTOURS() {
  int32_t ends = 0;
  for (const VECTOR_BLOK* b = FirstBlock; b != nullptr; b = b->NextBlock) {
    if (!IsSelectable(b))
      continue;
    for (int32_t i = 0; i + 1 < b->Size; i += 2) {
      if (IsRunEnd(b, i))
        ++ends;
    }
  }
  return ends / 2;
}

MMPoint2d<long>* VECTOR_LAYER::GET_OPEN_POLYLINES_IN_BOX(int32_t& count, BOX& box) {
  count = 0;
  NormaliseBox(box);
  if (!HasCoordinates(*this))
    return nullptr;
  int32_t total = 0;
  for (const VECTOR_BLOK* b = FirstBlock; b != nullptr; b = b->NextBlock) {
    ForEachRun(b, [&](int32_t first, int32_t last) {
      if (RunInBox(b, first, last, box))
        total += 2 * (last - first + 1);
    });
  }
  auto* result = static_cast<MMPoint2d<long>*>(malloc(sizeof(MMPoint2d<long>) * (total > 0 ? total : 1)));
  for (const VECTOR_BLOK* b = FirstBlock; b != nullptr; b = b->NextBlock) {
    ForEachRun(b, [&](int32_t first, int32_t last) {
      if (!RunInBox(b, first, last, box))
        return;
      for (int32_t i = first; i <= last; ++i)
        AppendVector(result, count, b->Block + 4 * i);
    });
  }
  return result;
}

bool VECTOR_LAYER::REMOVE_OPEN_POLYLINES_IN_BOX(BOX& box) {
  NormaliseBox(box);
  bool removed = false;
  std::vector<char> keep;
  for (VECTOR_BLOK* b = FirstBlock; b != nullptr; b = b->NextBlock) {
    keep.assign(b->Size > 0 ? static_cast<size_t>(b->Size / 4) : 0, 1);
    ForEachRun(b, [&](int32_t first, int32_t last) {
      if (!RunInBox(b, first, last, box))
        return;
      removed = true;
      for (int32_t i = first; i <= last; ++i)
        keep[static_cast<size_t>(i)] = 0;
    });
    KeepVectors(b, [&](const int32_t*, int32_t i) { return keep[static_cast<size_t>(i)] != 0; });
  }
  RemoveEmptyBlocks(*this);
  BEPAAL_EXTREMA();
  return removed;
}

bool LAYER::GET_CLOSEST_POINT(int32_t& x, int32_t& y, bool endsOnly) {
  return Vectors.GET_CLOSEST_POINT(x, y, endsOnly);
}
