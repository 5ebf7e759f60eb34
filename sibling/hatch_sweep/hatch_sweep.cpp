#include "sibling/hatch_sweep/hatch_sweep.h"

#include <algorithm>
#include <cmath>

#include "geometry/grid_arithmetic.h"
#include "layer/values.h"

using namespace kelvor2d_detail;  // the internal grid helpers

MHatchDirection::MHatchDirection(double angleDegrees) {
  SetAngle(angleDegrees);
}

void MHatchDirection::SetAngle(double angleDegrees) {
  m_AngleDegrees = angleDegrees;
  const double radians = angleDegrees * kPi / 180.0;
  m_Cos = std::cos(radians);
  m_Sin = std::sin(radians);
  // Keep the axis-parallel directions exact.
  if (std::fabs(m_Cos) < 1e-15)
    m_Cos = 0.0;
  if (std::fabs(m_Sin) < 1e-15)
    m_Sin = 0.0;
}

void MHatchDirection::Transform(int32_t& x, int32_t& y) const {
  const double fx = x, fy = y;
  x = RoundClamped(fx * m_Cos - fy * m_Sin);
  y = RoundClamped(fx * m_Sin + fy * m_Cos);
}

void MHatchDirection::Transform(float& x, float& y) const {
  const double fx = x, fy = y;
  x = static_cast<float>(fx * m_Cos - fy * m_Sin);
  y = static_cast<float>(fx * m_Sin + fy * m_Cos);
}

void MHatchDirection::InverseTransform(int32_t& x, int32_t& y) const {
  const double fx = x, fy = y;
  x = RoundClamped(fx * m_Cos + fy * m_Sin);
  y = RoundClamped(-fx * m_Sin + fy * m_Cos);
}

MHatchLayer::~MHatchLayer() {
  Clear();
}

void MHatchLayer::Clear() {
  MSListElement<MHatchVector>* e = FirstVector;
  while (e != nullptr) {
    MSListElement<MHatchVector>* next = e->Next;
    delete e;
    e = next;
  }
  FirstVector = nullptr;
  m_LastVector = nullptr;
  VectorCount = 0;
}

void MHatchLayer::AddVector(MHatchVector& v, MSListElement<MHatchVector>* after) {
  auto* e = new MSListElement<MHatchVector>{v, nullptr};
  if (after == nullptr)
    after = m_LastVector;
  if (after == nullptr) {
    FirstVector = e;
  } else {
    e->Next = after->Next;
    after->Next = e;
  }
  if (e->Next == nullptr)
    m_LastVector = e;
  ++VectorCount;
}

void MHatchLayer::SetExtremes(int32_t minX, int32_t maxX, int32_t minY, int32_t maxY) {
  m_MinX = minX;
  m_MaxX = maxX;
  m_MinY = minY;
  m_MaxY = maxY;
}

void MHatchLayer::GetExtremes(int32_t& minX, int32_t& maxX, int32_t& minY, int32_t& maxY) const {
  minX = m_MinX;
  maxX = m_MaxX;
  minY = m_MinY;
  maxY = m_MaxY;
}

MHatcherBase::MHatcherBase() : m_HatchLayer(new MHatchLayer) {
  ResetExtremes();
}

MHatcherBase::~MHatcherBase() {
  _EmptySweepList();
  delete m_HatchLayer;
}

void MHatcherBase::ResetExtremes() {
  m_MinX = kEmptyExtentMin;
  m_MinY = kEmptyExtentMin;
  m_MaxX = kEmptyExtentMax;
  m_MaxY = kEmptyExtentMax;
}

MTempListElement<M2dTempElement>* MHatcherBase::NEW_TEMP_ELEMENT(int32_t x0, int32_t y0, int32_t x1,
                                                                 int32_t y1) {
  if (x0 == x1)
    return nullptr;  // parallel to the lines: no crossing, direction unchanged
  auto* e = new MTempListElement<M2dTempElement>;
  const int8_t direction = x0 < x1 ? 1 : -1;
  e->Data = {x0, y0, x1, y1, direction, m_ChainDirection};
  e->Key = std::min(x0, x1);
  if (m_ChainDirection == 0)
    m_ChainPending = e;  // resolved when the chain closes
  m_ChainDirection = direction;
  return e;
}

void MHatcherBase::_BeginChain() {
  _CloseChain();
}

void MHatcherBase::_CloseChain() {
  // The first edge of a closed chain follows the chain's last edge.
  if (m_ChainPending != nullptr)
    m_ChainPending->Data.PreviousDirection = m_ChainDirection;
  m_ChainPending = nullptr;
  m_ChainDirection = 0;
}

void MHatcherBase::_EmptySweepList() {
  MTempListElement<M2dTempElement>* e = m_SweepList.Low;
  while (e != nullptr) {
    MTempListElement<M2dTempElement>* next = e->Higher;
    delete e;
    e = next;
  }
  m_SweepList = MTempList();
}

int32_t MHatcherBase::_GetFirstHatchPosition(int32_t distance, int32_t least) {
  return Clamp32(FirstMultipleNotBelow(distance, least));
}

namespace {

// An edge covers the half-open span from its start to its end; its start
// counts only when the edge continues the direction of the edge before it, so
// pass-through vertices give one crossing and turning points none.
bool CoversLine(const M2dTempElement& e, int64_t x) {
  if (x == e.X0)
    return e.Direction == e.PreviousDirection;
  return e.X0 < e.X1 ? (e.X0 < x && x < e.X1) : (e.X1 < x && x < e.X0);
}

// Crossing of the edge with the line, as scan conversion computes it.
int32_t CrossingAt(const M2dTempElement& e, int64_t x) {
  return EdgeCrossing(e.X0, e.Y0, e.X1, e.Y1).At(static_cast<int32_t>(x));
}

int32_t GreatestX(const MTempList& list) {
  int32_t greatest = INT32_MIN;
  for (auto* e = list.Low; e != nullptr; e = e->Higher)
    greatest = std::max({greatest, e->Data.X0, e->Data.X1});
  return greatest;
}

void DropPassedEdges(std::vector<const M2dTempElement*>& active, int64_t x) {
  auto passed = [x](const M2dTempElement* e) { return std::max(e->X0, e->X1) < x; };
  active.erase(std::remove_if(active.begin(), active.end(), passed), active.end());
}

}  // namespace

void MHatcherBase::_DoLineSweep(int32_t distance) {
  _CloseChain();
  if (distance <= 0 || m_SweepList.Low == nullptr) {
    _EmptySweepList();
    return;
  }
  const int64_t greatest = GreatestX(m_SweepList);
  auto firstLineFrom = [&](int64_t least) {
    const int64_t offset = least - m_Shift;
    int64_t q = offset / distance;
    if (q * distance < offset)
      ++q;
    return m_Shift + q * distance;
  };
  std::vector<const M2dTempElement*> active;
  std::vector<int32_t> crossings;
  MTempListElement<M2dTempElement>* next = m_SweepList.Low;
  for (int64_t x = firstLineFrom(next->Key); x <= greatest; x += distance) {
    if (active.empty() && next != nullptr && next->Key > x)
      x = firstLineFrom(next->Key);
    if (x > greatest)
      break;
    for (; next != nullptr && next->Key <= x; next = next->Higher)
      active.push_back(&next->Data);
    DropPassedEdges(active, x);
    crossings.clear();
    for (const M2dTempElement* e : active) {
      if (CoversLine(*e, x))
        crossings.push_back(CrossingAt(*e, x));
    }
    std::sort(crossings.begin(), crossings.end());
    for (size_t i = 0; i + 1 < crossings.size(); i += 2) {
      MHatchVector v{static_cast<int32_t>(x), crossings[i], crossings[i + 1]};
      m_HatchLayer->AddVector(v, nullptr);
    }
  }
  _EmptySweepList();
}
