// A segment against a point (squared distance) and against a box.
#include "geometry/segment_tests.h"

#include <cmath>

#include "geometry/grid_arithmetic.h"

using namespace kelvor2d_detail;  // the internal grid helpers

namespace {

// Clamps v into the range spanned by a and b.
int32_t ClampBetween(int32_t v, int32_t a, int32_t b) {
  const int32_t low = a < b ? a : b;
  const int32_t high = a < b ? b : a;
  return v < low ? low : (v > high ? high : v);
}

float SquaredFloat(float dx, float dy) {
  return dx * dx + dy * dy;
}

// Foot of the perpendicular from p on the slanted line a-b, kept within the
// segment: beyond a it becomes a, then beyond b it becomes b.
void FindSlantedFoot(int32_t px, int32_t py, int32_t ax, int32_t ay, int32_t bx, int32_t by, float& fx,
                     float& fy) {
  const float m = static_cast<float>(Sub32(by, ay)) / static_cast<float>(Sub32(bx, ax));
  const float n = -1.0f / m;
  const float c = static_cast<float>(ay) - static_cast<float>(ax) * m;
  const float d = static_cast<float>(py) - static_cast<float>(px) * n;
  fx = (d - c) / (m - n);
  fy = (d * m - n * c) / (m - n);
  const float fax = static_cast<float>(ax), fay = static_cast<float>(ay);
  const float fbx = static_cast<float>(bx), fby = static_cast<float>(by);
  const bool rising = ax < bx;
  if (rising ? fx < fax : fx > fax) {
    fx = fax;
    fy = fay;
  }
  if (rising ? fx > fbx : fx < fbx) {
    fx = fbx;
    fy = fby;
  }
}

// Which side of the segment's line a corner lies on: +1, or -1 when negative.
// A side of 0, and the undefined side of a segment of zero length, count +1.
int CornerSide(bool alongX, float m, float c, float a, float b) {
  const float side = alongX ? (m * a + c) - b : (m * b + c) - a;
  return side < 0.0f ? -1 : 1;
}

}  // namespace

float KWADRAAT_AFSTAND_TOT_LIJNSTUK(int32_t px, int32_t py, int32_t ax, int32_t ay, int32_t bx, int32_t by,
                                    bool& nearEnd) {
  nearEnd = false;
  if (ax == bx && ay == by)
    return kNoDistance;
  float fx = 0.0f, fy = 0.0f;
  if (ay == by) {
    fx = static_cast<float>(ClampBetween(px, ax, bx));
    fy = static_cast<float>(ay);
  } else if (ax == bx) {
    fx = static_cast<float>(ax);
    fy = static_cast<float>(ClampBetween(py, ay, by));
  } else {
    FindSlantedFoot(px, py, ax, ay, bx, by, fx, fy);
  }
  const float toA = SquaredFloat(static_cast<float>(Sub32(ax, px)), static_cast<float>(Sub32(ay, py)));
  const float toB = SquaredFloat(static_cast<float>(Sub32(bx, px)), static_cast<float>(Sub32(by, py)));
  nearEnd = toA > toB;
  return SquaredFloat(fx - static_cast<float>(px), fy - static_cast<float>(py));
}

int32_t TruncatedDistance(float squared) {
  const float root = sqrtf(squared);
  if (!(root < 2147483648.0f))
    return INT32_MIN;
  return Truncate(root);
}

bool ContourHitsBox(const CONTOUR& contour, const BOX& box) {
  const MMPoint2d<long>* p = contour.Points;
  const int32_t n = contour.NumPoints;
  for (int32_t i = 0; i + 1 < n; ++i) {
    if (SegmentHitsBox(box, p[i].x, p[i].y, p[i + 1].x, p[i + 1].y))
      return true;
  }
  return n > 0 && contour.Closed != 0 && SegmentHitsBox(box, p[n - 1].x, p[n - 1].y, p[0].x, p[0].y);
}

bool SegmentHitsBox(const BOX& box, int32_t px, int32_t py, int32_t qx, int32_t qy) {
  const float dx = static_cast<float>(Sub32(qx, px));
  const float dy = static_cast<float>(Sub32(qy, py));
  const bool alongX = std::fabs(dx) > std::fabs(dy);
  const float m = alongX ? dy / dx : dx / dy;
  const float c = alongX ? static_cast<float>(py) - static_cast<float>(px) * m
                         : static_cast<float>(px) - static_cast<float>(py) * m;
  const float minX = static_cast<float>(box.MinX), maxX = static_cast<float>(box.MaxX);
  const float minY = static_cast<float>(box.MinY), maxY = static_cast<float>(box.MaxY);
  const int sum = CornerSide(alongX, m, c, minX, minY) + CornerSide(alongX, m, c, maxX, minY) +
                  CornerSide(alongX, m, c, maxX, maxY) + CornerSide(alongX, m, c, minX, maxY);
  if (sum == 4 || sum == -4)
    return false;
  return (box.MinX < px || box.MinX < qx) && (box.MaxX > px || box.MaxX > qx) &&
         (box.MinY < py || box.MinY < qy) && (box.MaxY > py || box.MaxY > qy);
}
