#include "sibling/math/border.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <utility>
#include <vector>

#include "support/border_builders.h"

namespace {

using testing_support::AddRing;
using testing_support::BorderIsWhole;
using testing_support::FillRing;
using testing_support::RingIsWhole;
using testing_support::RingOf;
using testing_support::RingsOf;
using testing_support::XY;

using Border = M3dBorder<long, void*, M3dBorderContour<long, void*, M3dBorderPoint<long, void*>>>;
using Contour = Border::ContourType;
using Point = Contour::PointType;
using Ring = std::vector<XY>;

const Ring kClockwiseSquare = {{0, 0}, {0, 10}, {10, 10}, {10, 0}};
const Ring kCounterClockwiseSquare = {{0, 0}, {10, 0}, {10, 10}, {0, 10}};

// The ring is whole and holds exactly `expected`, following next and iterating alike.
void ExpectRing(const Contour& contour, const Ring& expected, const char* after) {
  EXPECT_TRUE(RingIsWhole(contour)) << "after " << after;
  EXPECT_EQ(RingOf(contour), expected) << "after " << after;
  Ring iterated;
  for (const Point& p : contour)
    iterated.emplace_back(p.x, p.y);
  EXPECT_EQ(iterated, expected) << "iterating after " << after;
}

TEST(BorderContour, EveryEditKeepsTheRingWhole) {
  Contour contour;
  ExpectRing(contour, {}, "construction");
  Point* b = contour.InsertAtEnd(2, 0, nullptr);
  contour.InsertAtEnd(4, 0, nullptr);
  contour.InsertAtFront(1, 0, nullptr);
  contour.InsertAfter(b, 3, 0, nullptr);
  contour.InsertAfter(contour.GetLastPoint(), 5, 0, nullptr);
  contour.InsertAfter(nullptr, 6, 0, nullptr);
  ExpectRing(contour, {{1, 0}, {2, 0}, {3, 0}, {4, 0}, {5, 0}, {6, 0}}, "insertions");
  EXPECT_TRUE(contour.RemovePointAfter(contour.GetLastPoint()));                     // the first
  EXPECT_TRUE(contour.RemovePointAfter(contour.GetFirstPoint()->next->next->next));  // the last
  EXPECT_FALSE(contour.RemovePointAfter(nullptr));
  ExpectRing(contour, {{2, 0}, {3, 0}, {4, 0}, {5, 0}}, "removing first and last");

  contour.SetFirstPointAt(contour.GetFirstPoint()->next->next);
  ExpectRing(contour, {{4, 0}, {5, 0}, {2, 0}, {3, 0}}, "SetFirstPointAt");
  Contour other;
  FillRing(other, {{1, 1}});
  contour.SetFirstPointAt(other.GetFirstPoint());  // not in this ring
  contour.SetFirstPointAt(nullptr);
  ExpectRing(contour, {{4, 0}, {5, 0}, {2, 0}, {3, 0}}, "SetFirstPointAt a foreign point");

  while (contour.GetNumPoints() > 0)
    contour.RemovePointAfter(contour.GetFirstPoint());
  ExpectRing(contour, {}, "removing every point, the last one its own next");
}

TEST(BorderContour, LowestLeftmostPointFirstFoundWinsAtTies) {
  Contour contour;
  EXPECT_EQ(contour.LowestLeftmostPoint(), nullptr);
  FillRing(contour, {{5, 5}, {4, 1}, {9, 1}, {4, 1}, {2, 3}});
  EXPECT_EQ(contour.LowestLeftmostPoint(), contour.GetFirstPoint()->next);
  EXPECT_EQ(static_cast<const Contour&>(contour).LowestLeftmostPoint(), contour.GetFirstPoint()->next);
}

TEST(BorderContour, AreaIsPositiveClockwiseAndInvertFlipsIt) {
  const struct {
    Ring ring;
    double area;
  } cases[] = {
      {kClockwiseSquare, 100.0},
      {kCounterClockwiseSquare, -100.0},
      {{}, 0.0},
      {{{0, 0}, {7, 3}}, 0.0},
      // the full 32-bit square: products beyond 64 bits
      {{{INT32_MIN, INT32_MIN}, {INT32_MIN, INT32_MAX}, {INT32_MAX, INT32_MAX}, {INT32_MAX, INT32_MIN}},
       4294967295.0 * 4294967295.0}};
  for (const auto& c : cases) {
    Contour contour;
    FillRing(contour, c.ring);
    EXPECT_DOUBLE_EQ(contour.SurfaceAreaWithSignXY(), c.area) << c.ring.size() << " points";
    contour.Invert();
    ExpectRing(contour, Ring(c.ring.rbegin(), c.ring.rend()), "Invert");  // last point first
    EXPECT_DOUBLE_EQ(contour.SurfaceAreaWithSignXY(), -c.area) << c.ring.size() << " points";
  }
}

TEST(BorderContour, RemoveDoublePointsLeavesNoEqualNeighbours) {
  const XY a{0, 0}, b{5, 0}, c{5, 5};
  const struct {
    Ring ring, expected;
  } cases[] = {{{a, a, b, c}, {a, b, c}},
               {{a, b, b, b, c}, {a, b, c}},
               {{a, b, c, a}, {a, b, c}},
               {{a, b, c, a, a}, {a, b, c}},
               {{a, a, a}, {a}},
               {{a, b, a, a}, {a, b}},
               {{a, b, a, b}, {a, b, a, b}},
               {{a}, {a}},
               {{}, {}}};
  Border border;  // every case twice, closed and open: the border removes the sum
  uint32_t total = 0;
  for (const auto& c : cases) {
    for (bool closed : {true, false}) {
      Contour contour;
      contour.SetIsClosed(closed);
      FillRing(contour, c.ring);
      AddRing(border, c.ring)->SetIsClosed(closed);
      const uint32_t removed = contour.RemoveDoublePoints();
      EXPECT_TRUE(RingIsWhole(contour));
      EXPECT_EQ(RingOf(contour), c.expected) << "ring of " << c.ring.size() << " points, closed " << closed;
      EXPECT_EQ(removed, c.ring.size() - c.expected.size());
      total += removed;
    }
  }
  EXPECT_EQ(border.RemoveDoublePoints(), total);
  EXPECT_TRUE(BorderIsWhole(border));
}

TEST(Border, AddAndRemoveContoursKeepTheChain) {
  Border border;
  Contour* second = AddRing(border, {{2, 2}});
  Contour* third = AddRing(border, {{3, 3}});
  Contour* first = border.AddContourAtFront();
  EXPECT_EQ(border.GetFirstContour(), first);
  EXPECT_EQ(first->GetNextContour(), second);
  EXPECT_EQ(border.GetLastContour(), third);
  EXPECT_TRUE(BorderIsWhole(border));

  Border other;
  EXPECT_EQ(border.RemoveContour(AddRing(other, {{9, 9}})), nullptr);  // not in this border
  EXPECT_EQ(border.RemoveContour(nullptr), nullptr);
  EXPECT_EQ(border.GetNumContours(), 3u);
  EXPECT_EQ(border.RemoveContour(third), nullptr);
  EXPECT_EQ(border.GetLastContour(), second);
  EXPECT_EQ(border.RemoveContour(first), second);
  EXPECT_EQ(border.GetFirstContour(), second);
  EXPECT_TRUE(BorderIsWhole(border));
  border.MakeEmpty();
  EXPECT_TRUE(border.GetNumContours() == 0 && border.GetFirstContour() == nullptr &&
              border.GetLastContour() == nullptr);
}

TEST(Border, CopiesAssignmentsMovesAndSwapsAreIndependent) {
  Border original;
  Contour* hole = AddRing(original, kCounterClockwiseSquare);
  hole->SetIsOuterContour(false);
  hole->SetStatus(103);
  hole->SetOrder(4);
  AddRing(original, {{1, 1}, {2, 2}});
  const std::vector<Ring> rings = RingsOf(original);

  Border copy(original);
  EXPECT_TRUE(BorderIsWhole(copy));
  EXPECT_EQ(RingsOf(copy), rings);
  const Contour& copied = *copy.GetFirstContour();
  EXPECT_TRUE(!copied.GetIsOuterContour() && copied.GetStatus() == 103 && copied.GetOrder() == 4);
  copy.GetFirstContour()->Invert();
  copy.GetFirstContour()->GetFirstPoint()->x = 99;
  copy.AddContourAtEnd();
  EXPECT_EQ(RingsOf(original), rings);

  Border assigned;
  AddRing(assigned, {{5, 5}});
  assigned = original;
  const Border& alias = assigned;
  assigned = alias;  // self-assignment keeps the content
  EXPECT_TRUE(BorderIsWhole(assigned));
  EXPECT_EQ(RingsOf(assigned), rings);
  Border moved(std::move(assigned));
  copy = std::move(moved);
  EXPECT_EQ(RingsOf(copy), rings);
  Border empty;
  empty.Swap(copy);
  EXPECT_EQ(copy.GetNumContours(), 0u);
  EXPECT_EQ(RingsOf(empty), rings);

  // One contour copied into the chain, and a contour assigned: ring and properties, not the chain.
  Contour* added = original.AddContourAtEnd(*hole);
  EXPECT_EQ(RingOf(*added), kCounterClockwiseSquare);
  EXPECT_EQ(added->GetStatus(), 103);
  Contour* second = hole->GetNextContour();
  *hole = *second;
  EXPECT_EQ(RingOf(*hole), (Ring{{1, 1}, {2, 2}}));
  EXPECT_EQ(hole->GetStatus(), 0);
  EXPECT_EQ(hole->GetNextContour(), second);
  EXPECT_TRUE(BorderIsWhole(original));
}

}  // namespace
