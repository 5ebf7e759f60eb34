// Contours to vectors and back, the merging of blocks by type, the direction
// of a block's hatching, and the filling of a contour from a number list.
#include "vectors/conversion.h"

#include <cstdlib>
#include <cstring>

#include "geometry/segment_tests.h"
#include "layer/contour_chain.h"
#include "vectors/editing.h"

using namespace kelvor2d_detail;  // the contour chain helpers

namespace {

// Largest Size of a block made by merging blocks of one type.
constexpr int32_t kMaxMergedCoordinates = 60000;

// Puts a contour in front of the layer's chain without adopting it (Owner
// stays as it is) and without counting it.
void LinkContourAtFront(CONTOUR_LAYER& layer, CONTOUR* c) {
  c->NextContour = layer.FirstContour;
  layer.FirstContour = c;
  if (layer.LastContour == nullptr)
    layer.LastContour = c;
}

// A contour of Type 1 from the vectors first..last of the block: every
// coordinate pair in order; closed when its last point equals its first.
CONTOUR* MakeContourOfRun(const VECTOR_BLOK* b, int32_t first, int32_t last) {
  auto* c = new CONTOUR;
  const int32_t points = 2 * (last - first + 1);
  c->NumPoints = points;
  c->Points = static_cast<MMPoint2d<long>*>(malloc(sizeof(MMPoint2d<long>) * static_cast<size_t>(points)));
  memcpy(c->Points, b->Block + 4 * first, sizeof(MMPoint2d<long>) * static_cast<size_t>(points));
  c->Closed = c->Points[points - 1] == c->Points[0] ? 1 : 0;
  c->Type = kVectorTypeFromContour;
  return c;
}

// Whether the end of vector i equals the start of vector j.
bool Joins(const int32_t* coordinates, int32_t i, int32_t j) {
  return coordinates[4 * i + 2] == coordinates[4 * j] && coordinates[4 * i + 3] == coordinates[4 * j + 1];
}

// Sends the vectors first..last to Contours when `closed`, else to Vectors as
// one block; false only when the contour could not be made.
bool StoreStretch(LAYER& layer, int32_t* coordinates, int32_t first, int32_t last, bool closed, char type) {
  const int32_t size = 4 * (last - first + 1);
  if (closed)
    return layer.Contours.COPIEER_VECTORS_TO_CONTOUR(coordinates + 4 * first, size);
  layer.Vectors.VOEG_COORD_TOE_AAN_VECTOR_LAYER(coordinates + 4 * first, size, type);
  return true;
}

// The merge rule: the whole Type of `other` equals the low byte of `b`'s Type
// taken as a signed value.
bool SameMergeType(const VECTOR_BLOK* b, const VECTOR_BLOK* other) {
  return static_cast<int32_t>(other->Type) == static_cast<int32_t>(static_cast<signed char>(b->Type & 0xFF));
}

// Size of b together with the blocks behind it of its type, up to the first
// that would pass the limit, which is stored in `stop` (null when none).
int32_t SumMergeSize(const VECTOR_BLOK* b, const VECTOR_BLOK*& stop) {
  int32_t sum = b->Size;
  stop = nullptr;
  for (const VECTOR_BLOK* o = b->NextBlock; o != nullptr; o = o->NextBlock) {
    if (!SameMergeType(b, o))
      continue;
    if (sum + o->Size > kMaxMergedCoordinates) {
      stop = o;
      break;
    }
    sum += o->Size;
  }
  return sum;
}

// Makes the merged block of b: b's coordinates, then those of the blocks
// behind it of its type up to the limit, which are released and unlinked.
VECTOR_BLOK* MergeBlocksInto(VECTOR_BLOK* b) {
  const VECTOR_BLOK* stop = nullptr;
  const int32_t size = SumMergeSize(b, stop);
  auto* merged = new VECTOR_BLOK;
  merged->Type = WidenVectorType(static_cast<char>(b->Type & 0xFF));
  merged->AllocateCoordinates(size);
  int32_t filled = b->Size > 0 ? b->Size : 0;
  if (filled > 0)
    memcpy(merged->Block, b->Block, sizeof(int32_t) * static_cast<size_t>(filled));
  VECTOR_BLOK** link = &b->NextBlock;
  while (*link != nullptr && *link != stop) {
    VECTOR_BLOK* o = *link;
    if (!SameMergeType(b, o)) {
      link = &o->NextBlock;
      continue;
    }
    if (o->Size > 0)
      memcpy(merged->Block + filled, o->Block, sizeof(int32_t) * static_cast<size_t>(o->Size));
    filled += o->Size > 0 ? o->Size : 0;
    *link = o->NextBlock;
    free(o->Block);
    delete o;
  }
  return merged;
}

bool AllVectorsKeep(const VECTOR_BLOK* b, int32_t axis) {
  for (int32_t i = 0; i + 3 < b->Size; i += 4) {
    if (b->Block[i + axis] != b->Block[i + 2 + axis])
      return false;
  }
  return true;
}

// The frame of the spike filter: inclusive bounds, in 64 bits so that the
// margin cannot overflow.
struct SpikeFrame {
  int64_t minX, minY, maxX, maxY;
  bool Holds(int64_t x, int64_t y) const { return minX <= x && x <= maxX && minY <= y && y <= maxY; }
};

int64_t Magnitude(int64_t v) {
  return v < 0 ? -v : v;
}

SpikeFrame MakeSpikeFrame(const CONTOUR_LAYER& reference, int32_t distance) {
  const int64_t m = 7 * Magnitude(distance) + distance;
  return {reference.MinX - m, reference.MinY - m, reference.MaxX + m, reference.MaxY + m};
}

// Index of the first point inside the frame, or -1.
int32_t FindPointInFrame(const CONTOUR& c, const SpikeFrame& frame) {
  for (int32_t i = 0; i < c.NumPoints; ++i) {
    if (frame.Holds(c.Points[i].x, c.Points[i].y))
      return i;
  }
  return -1;
}

// Walks the ring once from the point after `start`; a point outside the frame
// that the contour leaves at once toward the last good point is set onto it.
void FlattenSpikes(CONTOUR& c, int32_t start, const SpikeFrame& frame, int64_t reach) {
  const int32_t n = c.NumPoints;
  MMPoint2d<long> good = c.Points[start];
  for (int32_t k = (start + 1) % n; k != start; k = (k + 1) % n) {
    MMPoint2d<long>& point = c.Points[k];
    const MMPoint2d<long>& next = c.Points[(k + 1) % n];
    const bool near = Magnitude(static_cast<int64_t>(good.x) - next.x) < reach &&
                      Magnitude(static_cast<int64_t>(good.y) - next.y) < reach;
    if (!frame.Holds(point.x, point.y) && near) {
      point = good;
    } else {
      good = point;
    }
  }
}

}  // namespace

void RemoveContoursBelow(CONTOUR_LAYER& layer, int32_t minPoints) {
  RemoveContoursWhere(layer, [minPoints](const CONTOUR& c) { return c.NumPoints < minPoints; });
}

void AddContourAsVectors(VECTOR_LAYER& vectors, const CONTOUR& contour, bool closing) {
  const int32_t n = contour.NumPoints;
  const int32_t segments = n > 0 ? (closing ? n : n - 1) : 0;
  auto* coordinates = static_cast<int32_t*>(malloc(sizeof(int32_t) * 4 * static_cast<size_t>(segments + 1)));
  for (int32_t i = 0; i < segments; ++i) {
    const MMPoint2d<long>& a = contour.Points[i];
    const MMPoint2d<long>& b = contour.Points[(i + 1) % n];
    coordinates[4 * i] = a.x;
    coordinates[4 * i + 1] = a.y;
    coordinates[4 * i + 2] = b.x;
    coordinates[4 * i + 3] = b.y;
  }
  vectors.VOEG_COORD_TOE_AAN_VECTOR_LAYER(coordinates, 4 * segments,
                                          static_cast<char>(kVectorTypeFromContour));
  vectors.VERWIJDER_PUNT_VECTOREN();
  free(coordinates);
}

void LAYER::ZET_LAAG_OM_NAAR_VECTOREN() {
  CONTOUR* c = Contours.FirstContour;
  Contours.FirstContour = nullptr;
  Contours.LastContour = nullptr;
  while (c != nullptr) {
    CONTOUR* next = c->NextContour;
    --Contours.NumContours;
    AddContourAsVectors(Vectors, *c, c->Closed != 0);
    ReleaseContour(c);
    c = next;
  }
}

void LAYER::ZET_CONTOUR_DOOR_BOX_OM_NAAR_VECTOREN(BOX& box) {
  NormaliseBox(box);
  TakeContoursReversingRest(Contours, [this, &box](CONTOUR* c) {
    if (!ContourHitsBox(*c, box))
      return false;
    AddContourAsVectors(Vectors, *c, true);
    ReleaseContour(c);
    return true;
  });
  Contours.BEPAAL_EXTREMA();
}

void VERPLAATS_VECTOR_LAAG_ALS_OPEN_CONTOUREN_NAAR_CONTOUR_LAAG(LAYER* layer) {
  if (layer == nullptr)
    return;
  for (const VECTOR_BLOK* b = layer->Vectors.FirstBlock; b != nullptr; b = b->NextBlock) {
    ForEachRun(b, [&](int32_t first, int32_t last) {
      LinkContourAtFront(layer->Contours, MakeContourOfRun(b, first, last));
      ++layer->Contours.NumContours;
    });
  }
  layer->Vectors.LEEG_LAAG();
  layer->Contours.BEPAAL_EXTREMA();
  layer->Vectors.BEPAAL_EXTREMA();
  layer->JoinExtents();
}

void COPIEER_OPEN_CONTOUR_NAAR_VECTOR_LAAG(VECTOR_LAYER& layer, MMPoint2d<long>* points, int32_t count,
                                           char type) {
  if (count < 2)
    return;
  const size_t size = 4 * static_cast<size_t>(count - 1);
  auto* coordinates = static_cast<int32_t*>(malloc(sizeof(int32_t) * size));
  if (coordinates == nullptr)
    return;
  for (int32_t i = 0; i + 1 < count; ++i) {
    coordinates[4 * i] = points[i].x;
    coordinates[4 * i + 1] = points[i].y;
    coordinates[4 * i + 2] = points[i + 1].x;
    coordinates[4 * i + 3] = points[i + 1].y;
  }
  auto* block = new VECTOR_BLOK;
  block->Type = WidenVectorType(type);
  block->Size = static_cast<int32_t>(size);
  block->Block = coordinates;
  layer.AddBlockAtEnd(block);
  layer.BEPAAL_EXTREMA();
}

void LAYER::ADD_VECTORS_IN_CONTOURS_AND_VECTOR_BLOKS(int32_t* coordinates, int32_t size, char type) {
  const int32_t vectors = size / 4;
  if (vectors <= 0)
    return;
  int32_t start = 0;
  bool chain = false;
  for (int32_t i = 0; i + 1 < vectors; ++i) {
    const bool connected = Joins(coordinates, i, i + 1);
    if (connected && chain)
      continue;
    if (connected) {
      if (i > start)
        StoreStretch(*this, coordinates, start, i - 1, false, type);
      start = i;
      chain = true;
    } else if (chain) {
      if (!StoreStretch(*this, coordinates, start, i, Joins(coordinates, i, start), type))
        return;
      start = i + 1;
      chain = false;
    }
  }
  const int32_t last = vectors - 1;
  StoreStretch(*this, coordinates, start, last, vectors >= 2 && chain && Joins(coordinates, last, start),
               type);
}

void VECTOR_LAYER::VOEG_VECTOR_BLOKKEN_UIT_VECTOR_LAAG_SAMEN_VOLGENS_TYPE(char type) {
  const unsigned char wanted = static_cast<unsigned char>(type);
  VECTOR_BLOK* newFirst = nullptr;
  VECTOR_BLOK** newEnd = &newFirst;
  int32_t newCount = 0;
  VECTOR_BLOK* b = FirstBlock;
  while (b != nullptr) {
    VECTOR_BLOK* next = nullptr;
    VECTOR_BLOK* placed = b;
    if (wanted == kVectorTypeAll || (b->Type & 0xFF) == wanted) {
      placed = MergeBlocksInto(b);
      next = b->NextBlock;
      free(b->Block);
      delete b;
    } else {
      next = b->NextBlock;
    }
    placed->NextBlock = nullptr;
    *newEnd = placed;
    newEnd = &placed->NextBlock;
    ++newCount;
    b = next;
  }
  FirstBlock = newFirst;
  NumBlocks = newCount;
}

int32_t X_OF_Y_HATCH(VECTOR_BLOK* block) {
  if (block == nullptr || block->Size < 4)
    return 0;
  if (AllVectorsKeep(block, 0))
    return 1;
  if (AllVectorsKeep(block, 1))
    return 2;
  return 0;
}

void ZET_L_LIJST_IN_LAAG(L_LIST_2* list, CONTOUR* contour) {
  if (list == nullptr || contour == nullptr)
    return;
  const int32_t n = list->Value > 0 ? list->Value : 0;
  contour->NumPoints = n;
  contour->Points =
      n > 0 ? static_cast<MMPoint2d<long>*>(calloc(static_cast<size_t>(n), sizeof(MMPoint2d<long>)))
            : nullptr;
  int32_t i = 0;
  for (L_LIST_2* e = list->Next; e != nullptr; ++i) {
    L_LIST_2* next = e->Next;
    if (i < n)
      contour->Points[i] = {e->Value, e->Second};
    free(e);
    e = next;
  }
}

bool TEST_EN_FILTER_LAAG_OP_PIEKEN(CONTOUR_LAYER* layer, const CONTOUR_LAYER& reference, int32_t distance) {
  if (layer == nullptr)
    return false;
  const SpikeFrame frame = MakeSpikeFrame(reference, distance);
  if (frame.Holds(layer->MinX, layer->MinY) && frame.Holds(layer->MaxX, layer->MaxY))
    return false;
  layer->FILTER_LAAG(3, false);
  const int64_t reach = 50 * Magnitude(distance);
  for (CONTOUR* c = layer->FirstContour; c != nullptr; c = c->NextContour) {
    const int32_t start = FindPointInFrame(*c, frame);
    if (start < 0)
      return true;
    FlattenSpikes(*c, start, frame, reach);
  }
  layer->VERWIJDER_DUBBELE_PUNTEN(2);
  RemoveContoursBelow(*layer, 3);
  layer->BEPAAL_EXTREMA();
  return true;
}
