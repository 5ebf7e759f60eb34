// Helpers for tests of borders: fill rings from point lists, read them back as
// printable pairs, and check the ring invariants.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <utility>
#include <vector>

#include "sibling/math/border.h"

namespace testing_support {

using XY = std::pair<int32_t, int32_t>;

// Appends the points to the contour, each with null data.
template <class Contour>
void FillRing(Contour& contour, const std::vector<XY>& points) {
  for (const XY& p : points)
    contour.InsertAtEnd(p.first, p.second, nullptr);
}

// A new contour at the end of the border, filled with the points.
template <class Border>
typename Border::ContourType* AddRing(Border& border, const std::vector<XY>& points) {
  auto* contour = border.AddContourAtEnd();
  FillRing(*contour, points);
  return contour;
}

// The points of the ring from its first point, following next GetNumPoints times.
template <class Contour>
std::vector<XY> RingOf(const Contour& contour) {
  std::vector<XY> points;
  const auto* p = contour.GetFirstPoint();
  for (uint32_t i = 0; i < contour.GetNumPoints(); ++i, p = p->next)
    points.emplace_back(p->x, p->y);
  return points;
}

// The points of every contour of a border, in order.
template <class Border>
std::vector<std::vector<XY>> RingsOf(const Border& border) {
  std::vector<std::vector<XY>> rings;
  for (const auto& contour : border)
    rings.push_back(RingOf(contour));
  return rings;
}

// First/last/count agree: the ring closes after exactly GetNumPoints steps, and
// the last point is the one before the first.
template <class Contour>
::testing::AssertionResult RingIsWhole(const Contour& contour) {
  const uint32_t n = contour.GetNumPoints();
  const auto* first = contour.GetFirstPoint();
  if (n == 0) {
    if (first == nullptr && contour.GetLastPoint() == nullptr)
      return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "empty ring with a first or last point";
  }
  if (first == nullptr)
    return ::testing::AssertionFailure() << n << " points but no first point";
  if (contour.GetLastPoint()->next != first)
    return ::testing::AssertionFailure() << "last point does not lead to first";
  const auto* p = first;
  for (uint32_t i = 1; i < n; ++i) {
    p = p->next;
    if (p == first)
      return ::testing::AssertionFailure() << "ring closes after " << i << " of " << n << " points";
  }
  if (p != contour.GetLastPoint())
    return ::testing::AssertionFailure() << "point " << n - 1 << " is not the last";
  return ::testing::AssertionSuccess();
}

// Every ring of the border is whole, and the count matches the chain.
template <class Border>
::testing::AssertionResult BorderIsWhole(const Border& border) {
  uint32_t count = 0;
  for (const auto& contour : border) {
    ::testing::AssertionResult ring = RingIsWhole(contour);
    if (!ring)
      return ring << " (contour " << count << ")";
    ++count;
  }
  if (count != border.GetNumContours())
    return ::testing::AssertionFailure()
           << count << " contours chained, " << border.GetNumContours() << " counted";
  return ::testing::AssertionSuccess();
}

}  // namespace testing_support
