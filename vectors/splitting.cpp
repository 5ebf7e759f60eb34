// Division of a vector layer along a vertical or a free line.
#include "vectors/splitting.h"

#include <cmath>
#include <cstdlib>
#include <cstring>

#include "geometry/grid_arithmetic.h"
#include "geometry/plane_geometry.h"
#include "vectors/editing.h"

using namespace kelvor2d_detail;  // the internal grid helpers

namespace {

// Sorts one vector a-b into the low and high lists, cutting it at the
// crossing with the dividing line p-q when its ends lie on different sides.
template <class IsLow>
void SortVector(const int32_t* v, MMPoint2d<long> p, MMPoint2d<long> q, IsLow isLow, VectorList& low,
                VectorList& high) {
  const MMPoint2d<long> a = {v[0], v[1]};
  const MMPoint2d<long> b = {v[2], v[3]};
  const bool aLow = isLow(a), bLow = isLow(b);
  if (aLow == bLow) {
    (aLow ? low : high).Add(a, b);
    return;
  }
  const MMPoint2d<long> s = SNIJPUNT_TWEE_RECHTEN(p, q, a, b);
  low.Add(aLow ? a : b, s);
  high.Add(aLow ? b : a, s);
}

// Replaces the coordinates of a result block by an exact copy of the list.
void StoreList(VECTOR_BLOK* block, const VectorList& list, uint16_t type) {
  free(block->Block);
  block->Block = nullptr;
  if (list.size > 0) {
    block->Block = static_cast<int32_t*>(malloc(sizeof(int32_t) * static_cast<size_t>(list.size)));
    memcpy(block->Block, list.values, sizeof(int32_t) * static_cast<size_t>(list.size));
  }
  block->Size = list.size;
  block->Type = type;
}

// The steps common to both divisions: clean, copy, then sort block by block.
template <class IsLow>
void DivideLayer(VECTOR_LAYER& source, VECTOR_LAYER& lowLayer, VECTOR_LAYER& highLayer, MMPoint2d<long> p,
                 MMPoint2d<long> q, IsLow isLow) {
  source.VERWIJDER_PUNT_VECTOREN();
  lowLayer.COPIEER_VECTOR_LAYER(source);
  highLayer.COPIEER_VECTOR_LAYER(source);
  VECTOR_BLOK* lowBlock = lowLayer.FirstBlock;
  VECTOR_BLOK* highBlock = highLayer.FirstBlock;
  for (const VECTOR_BLOK* b = source.FirstBlock; b != nullptr; b = b->NextBlock) {
    const size_t room = b->Size > 0 ? 2 * static_cast<size_t>(b->Size) : 0;
    VectorList low = MakeVectorList(room);
    VectorList high = MakeVectorList(room);
    for (int32_t i = 0; i + 3 < b->Size; i += 4)
      SortVector(b->Block + i, p, q, isLow, low, high);
    StoreList(lowBlock, low, b->Type);
    StoreList(highBlock, high, b->Type);
    free(low.values);
    free(high.values);
    lowBlock = lowBlock->NextBlock;
    highBlock = highBlock->NextBlock;
  }
}

// The line's direction: in the rotated frame it stands vertical.
struct RotatedFrame {
  double cosine;
  double sine;
  double cx;
  double cy;
  double RotatedX(MMPoint2d<long> point) const {
    return (point.x - cx) * cosine - (point.y - cy) * sine + cx;
  }
};

}  // namespace

void DIVIDE_VECTORS_X(VECTOR_LAYER& source, VECTOR_LAYER& below, VECTOR_LAYER& rest, int32_t x) {
  constexpr int32_t kLineHeight = 100000;
  DivideLayer(source, below, rest, {x, 0}, {x, kLineHeight},
              [x](MMPoint2d<long> point) { return point.x < x; });
}

void SNIJ_VECTOREN(VECTOR_LAYER& source, VECTOR_LAYER& first, VECTOR_LAYER& second, int32_t x1, int32_t y1,
                   int32_t x2, int32_t y2) {
  if (x1 == x2 && y1 == y2)
    return;
  const double quotient = static_cast<double>(Sub32(y2, y1)) / static_cast<double>(Sub32(x2, x1));
  const double angle = kPi / 2.0 - atan(quotient);
  const RotatedFrame frame = {cos(angle), sin(angle), Add32(x1, x2) * 0.5, Add32(y1, y2) * 0.5};
  const double split = static_cast<double>(Round(frame.RotatedX({x1, y1})));
  DivideLayer(source, second, first, {x1, y1}, {x2, y2},
              [&frame, split](MMPoint2d<long> point) { return frame.RotatedX(point) < split; });
}
