// Adding vectors, the transforms of a vector layer, removal of point vectors
// and of vectors through a box, circles, and moving blocks between layers.
#include "vectors/editing.h"

#include <cmath>
#include <cstdlib>
#include <cstring>

#include "geometry/grid_arithmetic.h"
#include "geometry/segment_tests.h"

using namespace kelvor2d_detail;  // the internal grid helpers

namespace {

// Number of whole points (coordinate pairs) of a block.
int32_t CountPoints(const VECTOR_BLOK* b) {
  return b->Size > 0 ? b->Size / 2 : 0;
}

// Makes a block holding a copy of n coordinates.
VECTOR_BLOK* MakeBlock(const int32_t* coordinates, int32_t n, uint16_t type) {
  auto* block = new VECTOR_BLOK;
  block->Type = type;
  block->Size = n;
  block->Block = static_cast<int32_t*>(malloc(sizeof(int32_t) * static_cast<size_t>(n)));
  memcpy(block->Block, coordinates, sizeof(int32_t) * static_cast<size_t>(n));
  return block;
}

// The circle's points: the first at (x + radius, y), then one per angle step,
// the float angle built up by repeated addition.
void FillCirclePoints(int32_t* points, int32_t vectors, int32_t radius, int32_t x, int32_t y, float degrees) {
  points[0] = Add32(x, radius);
  points[1] = y;
  const float r = static_cast<float>(radius);
  float angle = 0.0f;
  for (int32_t i = 1; i < vectors; ++i) {
    angle += degrees * kDegreesToRadians;
    points[2 * i] = Add32(Truncate(cosf(angle) * r), x);
    points[2 * i + 1] = Add32(Truncate(sinf(angle) * r), y);
  }
}

}  // namespace

void RemoveEmptyBlocks(VECTOR_LAYER& layer) {
  VECTOR_BLOK** link = &layer.FirstBlock;
  while (*link != nullptr) {
    VECTOR_BLOK* b = *link;
    if (b->Size != 0) {
      link = &b->NextBlock;
      continue;
    }
    *link = b->NextBlock;
    free(b->Block);
    delete b;
    --layer.NumBlocks;
  }
}

void VECTOR_LAYER::VOEG_COORD_TOE_AAN_VECTOR_LAYER(int32_t* coordinates, int32_t n, char type) {
  if (n < 4)
    return;
  ADD_VECTOR_BLOK(MakeBlock(coordinates, n, WidenVectorType(type)));
}

void VECTOR_LAYER::VOEG_PTN_TOE_AAN_VECTOR_LAYER(MMPoint2d<long>* points, int32_t n, char type) {
  VOEG_COORD_TOE_AAN_VECTOR_LAYER(reinterpret_cast<int32_t*>(points), 2 * n, type);
}

void VECTOR_LAYER::ZET_CIRKEL_IN_VECTOR_LAYER(int32_t radius, int32_t x, int32_t y, float degrees,
                                              char type) {
  if (radius == 0 || !(degrees > 0.0f) || degrees > 45.0f)
    return;
  const double count = 360.0 / static_cast<double>(degrees);
  if (count > kMaxCircleVectors)
    return;
  const int32_t vectors = Truncate(count);
  auto* points = static_cast<int32_t*>(malloc(sizeof(int32_t) * 2 * static_cast<size_t>(vectors)));
  FillCirclePoints(points, vectors, radius, x, y, degrees);
  auto* block = new VECTOR_BLOK;
  block->Type = WidenVectorType(type);
  block->AllocateVectors(vectors);
  for (int32_t i = 0; i < vectors; ++i) {
    const int32_t next = (i + 1) % vectors;
    block->Block[4 * i] = points[2 * i];
    block->Block[4 * i + 1] = points[2 * i + 1];
    block->Block[4 * i + 2] = points[2 * next];
    block->Block[4 * i + 3] = points[2 * next + 1];
  }
  free(points);
  AddBlockAtEnd(block);
  BEPAAL_EXTREMA();
}

void VECTOR_LAYER::ROTEER_LAAG(MMPoint2d<long> centre, float degrees) {
  if (degrees == 0.0f)
    return;
  const float angle = degrees * kDegreesToRadians;
  const float cosine = cosf(angle);
  const float sine = sinf(angle);
  const float cx = static_cast<float>(centre.x), cy = static_cast<float>(centre.y);
  for (VECTOR_BLOK* b = FirstBlock; b != nullptr; b = b->NextBlock) {
    for (int32_t i = 0; i < CountPoints(b); ++i) {
      int32_t* p = b->Block + 2 * i;
      const float dx = static_cast<float>(Sub32(p[0], centre.x));
      const float dy = static_cast<float>(Sub32(p[1], centre.y));
      p[0] = Truncate(dx * cosine - dy * sine + cx);
      p[1] = Truncate(dy * cosine + dx * sine + cy);
    }
  }
  BEPAAL_EXTREMA();
}

void VECTOR_LAYER::TRANSLEER_LAAG(int32_t dx, int32_t dy) {
  if (NumBlocks == 0)
    return;
  for (VECTOR_BLOK* b = FirstBlock; b != nullptr; b = b->NextBlock) {
    for (int32_t i = 0; i < CountPoints(b); ++i) {
      b->Block[2 * i] = Add32(b->Block[2 * i], dx);
      b->Block[2 * i + 1] = Add32(b->Block[2 * i + 1], dy);
    }
  }
  MinX = Add32(MinX, dx);
  MaxX = Add32(MaxX, dx);
  MinY = Add32(MinY, dy);
  MaxY = Add32(MaxY, dy);
}

void VECTOR_LAYER::SPIEGEL_LAAG(MMPoint2d<long> centre) {
  if (NumBlocks == 0)
    return;
  const int32_t twice = Add32(centre.y, centre.y);
  for (VECTOR_BLOK* b = FirstBlock; b != nullptr; b = b->NextBlock) {
    for (int32_t i = 0; i < CountPoints(b); ++i)
      b->Block[2 * i + 1] = Sub32(twice, b->Block[2 * i + 1]);
  }
  const int32_t oldMinY = MinY;
  MinY = Sub32(twice, MaxY);
  MaxY = Sub32(twice, oldMinY);
}

void VECTOR_LAYER::HERSCHAAL_LAAG(MMPoint2d<long> centre, float scaleX, float scaleY) {
  if (NumBlocks == 0)
    return;
  const float fx = (1.0f - scaleX) * static_cast<float>(centre.x);
  const float fy = static_cast<float>(centre.y) * (1.0f - scaleY);
  auto scaleXOf = [&](int32_t v) { return Truncate(static_cast<float>(v) * scaleX + fx); };
  auto scaleYOf = [&](int32_t v) { return Truncate(static_cast<float>(v) * scaleY + fy); };
  for (VECTOR_BLOK* b = FirstBlock; b != nullptr; b = b->NextBlock) {
    for (int32_t i = 0; i < CountPoints(b); ++i) {
      b->Block[2 * i] = scaleXOf(b->Block[2 * i]);
      b->Block[2 * i + 1] = scaleYOf(b->Block[2 * i + 1]);
    }
  }
  MinX = scaleXOf(MinX);
  MaxX = scaleXOf(MaxX);
  MinY = scaleYOf(MinY);
  MaxY = scaleYOf(MaxY);
}

void VECTOR_LAYER::VERWIJDER_PUNT_VECTOREN() {
  for (VECTOR_BLOK* b = FirstBlock; b != nullptr; b = b->NextBlock) {
    KeepVectors(b, [](const int32_t* v, int32_t) { return v[0] != v[2] || v[1] != v[3]; });
  }
  BEPAAL_EXTREMA();
}

bool VECTOR_LAYER::VERWIJDER_VECTOREN_DOOR_BOX(BOX box) {
  NormaliseBox(box);
  VERWIJDER_PUNT_VECTOREN();
  bool hit = false;
  for (VECTOR_BLOK* b = FirstBlock; b != nullptr; b = b->NextBlock) {
    KeepVectors(b, [&](const int32_t* v, int32_t) {
      if (!SegmentHitsBox(box, v[0], v[1], v[2], v[3]))
        return true;
      hit = true;
      return false;
    });
  }
  RemoveEmptyBlocks(*this);
  BEPAAL_EXTREMA();
  return hit;
}

bool VECTOR_LAYER::VOEG_TOE(VECTOR_LAYER& other) {
  VECTOR_BLOK* last = GetLastBlock();
  if (last == nullptr) {
    FirstBlock = other.FirstBlock;
  } else {
    last->NextBlock = other.FirstBlock;
  }
  NumBlocks += other.NumBlocks;
  MergeExtents(*this, other);
  other.FirstBlock = nullptr;
  other.NumBlocks = 0;
  ResetExtents(other);
  return true;
}

bool VECTOR_LAYER::VOEG_TOE_VOLGENS_VECTOR_TYPE(VECTOR_LAYER& other, char type) {
  const uint16_t wanted = WidenVectorType(type);
  bool moved = false;
  VECTOR_BLOK** link = &other.FirstBlock;
  while (*link != nullptr) {
    VECTOR_BLOK* b = *link;
    if (b->Type != wanted) {
      link = &b->NextBlock;
      continue;
    }
    *link = b->NextBlock;
    --other.NumBlocks;
    AddBlockAtFront(b);
    moved = true;
  }
  return moved;
}

void VECTOR_LAYER::VERANDER_VECTOR_BLOK_VOLGORDE() {
  VECTOR_BLOK* reversed = nullptr;
  while (FirstBlock != nullptr) {
    VECTOR_BLOK* b = FirstBlock;
    FirstBlock = b->NextBlock;
    b->NextBlock = reversed;
    reversed = b;
  }
  FirstBlock = reversed;
}
