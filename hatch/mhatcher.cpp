#include "hatch/mhatcher.h"

#include <cstdlib>

#include "geometry/grid_arithmetic.h"
#include "sibling/math/math_core.h"

void MHatcher::_AddContourToLineSweep(CONTOUR* contour) {
  if (contour->NumPoints < 1)
    return;
  _BeginChain();
  MMPoint2d<long> previous = contour->Points[contour->NumPoints - 1];
  m_HatchLayer->InverseTransform(previous.x, previous.y);
  for (int32_t i = 0; i < contour->NumPoints; ++i) {
    MMPoint2d<long> p = contour->Points[i];
    m_HatchLayer->InverseTransform(p.x, p.y);
    _InsertIntoSweepList(NEW_TEMP_ELEMENT(previous.x, previous.y, p.x, p.y));
    if (p.x < m_MinX)
      m_MinX = p.x;
    if (p.y < m_MinY)
      m_MinY = p.y;
    if (p.x > m_MaxX)
      m_MaxX = p.x;
    if (p.y > m_MaxY)
      m_MaxY = p.y;
    previous = p;
  }
}

namespace {

using SweepElement = MTempListElement<M2dTempElement>;

// Puts `e` directly above `below` (or as the new low end when `below` is null).
void LinkAbove(MTempList& list, SweepElement* e, SweepElement* below) {
  e->Lower = below;
  e->Higher = below != nullptr ? below->Higher : list.Low;
  if (e->Higher != nullptr) {
    e->Higher->Lower = e;
  } else {
    list.High = e;
  }
  if (below != nullptr) {
    below->Higher = e;
  } else {
    list.Low = e;
  }
}

}  // namespace

// The cursor (last inserted) starts each walk, so the near keys of successive
// edges of a contour make the walk short. Equal keys: the new one goes below.
void MHatcher::_InsertIntoSweepList(SweepElement* element) {
  if (element == nullptr)
    return;
  MTempList& list = m_SweepList;
  if (list.Low == nullptr) {
    list.Low = list.High = list.Cursor = element;
    list.Count = 1;
    return;
  }
  SweepElement* walk = list.Cursor != nullptr ? list.Cursor : list.Low;
  if (element->Key <= walk->Key) {
    while (walk != nullptr && !(walk->Key < element->Key))
      walk = walk->Lower;
    LinkAbove(list, element, walk);
  } else {
    while (walk != nullptr && walk->Key < element->Key)
      walk = walk->Higher;
    LinkAbove(list, element, walk != nullptr ? walk->Lower : list.High);
  }
  ++list.Count;
  list.Cursor = element;
}

void MHatcher::_AddAllContours(CONTOUR_LAYER& layer) {
  for (CONTOUR* c = layer.FirstContour; c != nullptr; c = c->NextContour)
    _AddContourToLineSweep(c);
}

void MHatcher::_GiveExtremesToHatchLayer() {
  m_HatchLayer->SetExtremes(m_MinX, m_MaxX, m_MinY, m_MaxY);
}

void MHatcher::Hatch(CONTOUR_LAYER& layer, int32_t distance) {
  Hatch(layer, distance, m_Shift);
}

void MHatcher::Hatch(CONTOUR_LAYER& layer, int32_t distance, int32_t shift) {
  m_Shift = shift;
  m_HatchLayer->Clear();
  m_HatchLayer->HatchDistance = distance;
  m_HatchLayer->HatchShift = shift;
  if (distance == 0)
    return;
  ResetExtremes();
  _AddAllContours(layer);
  _DoLineSweep(distance);
  _GiveExtremesToHatchLayer();
}

void MHatcher::HatchWithAutoShift(CONTOUR_LAYER& layer, int32_t distance) {
  m_HatchLayer->Clear();
  if (distance == 0)
    return;
  ResetExtremes();
  _AddAllContours(layer);
  m_Shift = GetOptimalShift(*m_HatchLayer, layer, distance);
  m_HatchLayer->HatchDistance = distance;
  m_HatchLayer->HatchShift = m_Shift;
  _DoLineSweep(distance);
  _GiveExtremesToHatchLayer();
}

namespace {
// Contours of these types are not hatched by the concept-laser route.
bool IsSkippedByConceptLaser(const CONTOUR& c) {
  const unsigned char type = static_cast<unsigned char>(c.Type);
  return (type >= 103 && type <= 106) || type == 100;
}
}  // namespace

void MHatcher::HatchConceptLaser(CONTOUR_LAYER& layer, int32_t distance) {
  ResetExtremes();
  CONTOUR* c = layer.FirstContour;
  while (c != nullptr) {
    if (IsSkippedByConceptLaser(*c)) {
      c = c->NextContour;
      continue;
    }
    _AddContourToLineSweep(c);
    for (c = c->NextContour; c != nullptr && c->Outer == 0; c = c->NextContour)
      _AddContourToLineSweep(c);
    _DoLineSweep(distance);
  }
  _GiveExtremesToHatchLayer();
}

int32_t MHatcher::GetOptimalShift(MHatchDirection& direction, CONTOUR_LAYER& layer, int32_t distance) {
  int32_t least = INT32_MAX;
  int32_t greatest = INT32_MIN;
  for (const CONTOUR* c = layer.FirstContour; c != nullptr; c = c->NextContour) {
    for (int32_t i = 0; i < c->NumPoints; ++i) {
      MMPoint2d<long> p = c->Points[i];
      direction.InverseTransform(p.x, p.y);
      if (p.x < least)
        least = p.x;
      if (p.x > greatest)
        greatest = p.x;
    }
  }
  if (distance == 0 || least > greatest)
    return 0;
  // Widened to 64 bits, so that a layer near the ends of the 32-bit range gets
  // the true middle and extent; the result, a remainder, fits in 32 bits.
  const int64_t first = kelvor2d_detail::FirstMultipleNotBelow(distance, least);
  const int64_t middle = (static_cast<int64_t>(greatest) + least) / 2;
  const int64_t r = (middle - first) % distance;
  const int64_t h = distance / 2;
  if ((static_cast<int64_t>(greatest) - least) / 2 % distance >= h)
    return static_cast<int32_t>(r);
  return static_cast<int32_t>((h + r) % distance);
}

void AddHatchLayerToVectorLayer(MHatchLayer& hatchLayer, VECTOR_LAYER& layer, char type) {
  if (hatchLayer.VectorCount == 0)
    return;
  auto* block = new VECTOR_BLOK;
  block->Type = static_cast<uint16_t>(static_cast<int16_t>(type));
  block->Size = 4 * hatchLayer.VectorCount;
  block->Block = static_cast<int32_t*>(malloc(sizeof(int32_t) * block->Size));
  int32_t* out = block->Block;
  for (auto* e = hatchLayer.FirstVector; e != nullptr; e = e->Next) {
    int32_t x = e->Data.Position, y = e->Data.Start;
    hatchLayer.Transform(x, y);
    *out++ = x;
    *out++ = y;
    x = e->Data.Position;
    y = e->Data.End;
    hatchLayer.Transform(x, y);
    *out++ = x;
    *out++ = y;
  }
  layer.ADD_VECTOR_BLOK(block);
}

namespace MHatchLayerUtilities {

void ADD_TABEL(MHatchLayer* hatchLayer, TABEL& table) {
  if (table.Next == nullptr)
    return;
  bool upwards = true;
  for (TABEL* column = table.Next; column != nullptr && column->Next != nullptr; column = column->Next) {
    const L_LIST* e = column->List != nullptr ? column->List->Next : nullptr;
    for (; e != nullptr && e->Next != nullptr; e = e->Next->Next) {
      const int32_t a = e->Value, b = e->Next->Value;
      MHatchVector v{column->Position, upwards ? a : b, upwards ? b : a};
      hatchLayer->AddVector(v, nullptr);
    }
    upwards = !upwards;
  }
}

namespace {
// A corner of a fragment rectangle: hatch frame to layer frame in float, truncated.
MMPoint2d<long> MapCorner(const MHatchLayer& hatchLayer, int32_t x, int32_t y) {
  float fx = static_cast<float>(x), fy = static_cast<float>(y);
  hatchLayer.Transform(fx, fy);
  return {Truncate(fx), Truncate(fy)};
}
}  // namespace

void GetFragmentTemplate(MHatchLayer* hatchLayer, CONTOUR_LAYER* result, int32_t width, int32_t distance,
                         int32_t offset) {
  if (width <= 0 || distance <= 0)
    return;
  int32_t minX, maxX, minY, maxY;
  hatchLayer->GetExtremes(minX, maxX, minY, maxY);
  int32_t y = Kelvor::Math::Core::GetFirstMultipleGreaterThan(minY, distance, offset);
  if (y > maxY)
    return;
  const int32_t h = width / 2;
  constexpr int32_t kMargin = 10;
  y -= h;
  do {
    auto* c = new CONTOUR;
    c->NextContour = result->FirstContour;
    result->FirstContour = c;
    ++result->NumContours;
    if (result->LastContour == nullptr)
      result->LastContour = c;
    c->Outer = c->RightHanded = c->Closed = 1;
    c->NumPoints = 4;
    c->Points = static_cast<MMPoint2d<long>*>(malloc(sizeof(MMPoint2d<long>) * 4));
    c->Points[0] = MapCorner(*hatchLayer, minX - kMargin, y);
    c->Points[1] = MapCorner(*hatchLayer, minX - kMargin, y + 2 * h);
    c->Points[2] = MapCorner(*hatchLayer, maxX + kMargin, y + 2 * h);
    c->Points[3] = MapCorner(*hatchLayer, maxX + kMargin, y);
    y += distance;
  } while (y + h <= maxY);
}

}  // namespace MHatchLayerUtilities
