#include "layer/contour.h"

#include <cmath>
#include <cstdlib>
#include <cstring>

#include "layer/contour_layer.h"
#include "layer/wrapping_words.h"

void CONTOUR::Clear() {
  Outer = kNotDetermined;
  RightHanded = kNotDetermined;
  Closed = kNotDetermined;
  Type = 0;
  NumPoints = 0;
  free(Points);
  Points = nullptr;
}

void CONTOUR::AllocPoints(int32_t n) {
  auto* fresh = static_cast<MMPoint2d<long>*>(malloc(sizeof(MMPoint2d<long>) * (n > 0 ? n : 0)));
  const int32_t kept = n < NumPoints ? n : NumPoints;
  if (kept > 0)
    memcpy(fresh, Points, sizeof(MMPoint2d<long>) * kept);
  free(Points);
  Points = fresh;
  NumPoints = n;
}

void CONTOUR::SetPoints(const MMPoint2d<long>* p, int32_t n) {
  if (NumPoints != n) {
    free(Points);
    Points = static_cast<MMPoint2d<long>*>(malloc(sizeof(MMPoint2d<long>) * (n > 0 ? n : 0)));
    NumPoints = n;
  }
  if (n > 0)
    memcpy(Points, p, sizeof(MMPoint2d<long>) * n);
}

void CONTOUR::_SetNextContour(CONTOUR* next) {
  NextContour = next;
  if (Owner == nullptr || Owner->LastContour != this || next == nullptr)
    return;
  CONTOUR* end = next;
  while (end->NextContour != nullptr)
    end = end->NextContour;
  Owner->LastContour = end;
}

int32_t CONTOUR::LowestLeftmostPoint() const {
  if (NumPoints == 0)
    return 0;
  int32_t best = 0;
  for (int32_t i = 1; i < NumPoints; ++i) {
    const MMPoint2d<long>& p = Points[i];
    if (p.y < Points[best].y || (p.y == Points[best].y && p.x < Points[best].x))
      best = i;
  }
  if (best != 0)
    return best;
  if (Points[NumPoints - 1] != Points[0])
    return 0;
  // The contour closes on its lowest-leftmost point: answer with the start of
  // the closing run at the end, so that NextPoint leads on past the wrap.
  int32_t i = NumPoints - 1;
  while (i > 0 && Points[i - 1] == Points[i])
    --i;
  return i;
}

int32_t CONTOUR::NextPoint(const int32_t& i) const {
  if (NumPoints == 0)
    return 0;
  const int32_t start = i;
  int32_t k = start + 1 >= NumPoints ? 0 : start + 1;
  while (k != start && Points[k] == Points[start])
    k = k + 1 >= NumPoints ? 0 : k + 1;
  return k;
}

bool CONTOUR::RECHTS_DRAAIEND() const {
  if (NumPoints < 3)
    return true;
  double sum = 0.0;
  for (int32_t i = 0; i < NumPoints; ++i) {
    const MMPoint2d<long>& a = Points[i];
    const MMPoint2d<long>& b = Points[i + 1 < NumPoints ? i + 1 : 0];
    const int32_t dx = kelvor2d_detail::Sub32(b.x, a.x);  // both formed in 32 bits, wrapping
    const int32_t sy = kelvor2d_detail::Add32(b.y, a.y);
    sum += static_cast<double>(dx) * static_cast<double>(sy) * 0.5;
  }
  return sum >= 0.0;
}

namespace {
double EdgeLength(const MMPoint2d<long>& a, const MMPoint2d<long>& b) {
  const float dx = static_cast<float>(b.x) - static_cast<float>(a.x);
  const float dy = static_cast<float>(b.y) - static_cast<float>(a.y);
  return static_cast<double>(sqrtf(dx * dx + dy * dy));
}
}  // namespace

uint32_t CONTOUR::BEREKEN_LENGTE() {
  double sum = 0.0;
  for (int32_t i = 1; i < NumPoints; ++i)
    sum += EdgeLength(Points[i - 1], Points[i]);
  if (Closed != 0 && NumPoints > 0)
    sum += EdgeLength(Points[NumPoints - 1], Points[0]);
  // Keep the low 32 bits of a sum beyond the unsigned range.
  return static_cast<uint32_t>(static_cast<uint64_t>(sum));
}

void CONTOUR::KEER_DRAAIZIN_OM() {
  RightHanded = RightHanded == 0 ? 1 : 0;
  for (int32_t i = 0; i < NumPoints / 2; ++i) {
    const MMPoint2d<long> t = Points[i];
    Points[i] = Points[NumPoints - 1 - i];
    Points[NumPoints - 1 - i] = t;
  }
}
