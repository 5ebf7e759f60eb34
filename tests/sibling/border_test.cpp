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

const std::vector<XY> kClockwiseSquare = {{0, 0}, {0, 10}, {10, 10}, {10, 0}};
const std::vector<XY> kCounterClockwiseSquare = {{0, 0}, {10, 0}, {10, 10}, {0, 10}};

TEST(BorderPoint, LiesAsTwo32BitCoordinatesThenDataThenNext) {
  static_assert(std::is_same_v<Point::Coordinate, int32_t>, "long maps to int32_t");
  static_assert(std::is_same_v<M3dCoordinateTraits<double>::Type, double>, "other types stay");
  Contour contour;
  int payload = 0;
  Point* p = contour.InsertAtEnd(-7, 9, &payload);
  const int32_t* raw = reinterpret_cast<const int32_t*>(p);
  EXPECT_EQ(raw[0], -7);
  EXPECT_EQ(raw[1], 9);
  EXPECT_EQ(p->data, &payload);
  EXPECT_EQ(p->GetNextPoint(), p);  // a ring of one
}

TEST(BorderContour, InsertionsKeepTheRingWhole) {
  Contour contour;
  EXPECT_TRUE(RingIsWhole(contour));
  EXPECT_EQ(contour.GetFirstPoint(), nullptr);
  Point* b = contour.InsertAtEnd(2, 0, nullptr);
  contour.InsertAtEnd(4, 0, nullptr);
  contour.InsertAtFront(1, 0, nullptr);
  contour.InsertAfter(b, 3, 0, nullptr);
  contour.InsertAfter(contour.GetLastPoint(), 5, 0, nullptr);
  contour.InsertAfter(nullptr, 6, 0, nullptr);
  EXPECT_TRUE(RingIsWhole(contour));
  EXPECT_EQ(RingOf(contour), (std::vector<XY>{{1, 0}, {2, 0}, {3, 0}, {4, 0}, {5, 0}, {6, 0}}));
}

TEST(BorderContour, RemovePointAfterFollowsFirstAndLast) {
  Contour contour;
  FillRing(contour, {{1, 0}, {2, 0}, {3, 0}, {4, 0}});
  EXPECT_TRUE(contour.RemovePointAfter(contour.GetLastPoint()));  // the first
  EXPECT_EQ(RingOf(contour), (std::vector<XY>{{2, 0}, {3, 0}, {4, 0}}));
  EXPECT_TRUE(contour.RemovePointAfter(contour.GetFirstPoint()->next));  // the last
  EXPECT_EQ(RingOf(contour), (std::vector<XY>{{2, 0}, {3, 0}}));
  EXPECT_TRUE(RingIsWhole(contour));
  EXPECT_FALSE(contour.RemovePointAfter(nullptr));
  contour.RemovePointAfter(contour.GetFirstPoint());
  contour.RemovePointAfter(contour.GetFirstPoint());  // the only point, its own next
  EXPECT_EQ(contour.GetNumPoints(), 0u);
  EXPECT_TRUE(RingIsWhole(contour));
}

TEST(BorderContour, SetFirstPointAtTurnsTheRingWithoutReordering) {
  Contour contour;
  FillRing(contour, {{5, 5}, {0, 9}, {3, 1}, {8, 1}});
  Point* third = contour.GetFirstPoint()->next->next;
  contour.SetFirstPointAt(third);
  EXPECT_TRUE(RingIsWhole(contour));
  EXPECT_EQ(RingOf(contour), (std::vector<XY>{{3, 1}, {8, 1}, {5, 5}, {0, 9}}));

  Contour other;
  FillRing(other, {{1, 1}});
  const std::vector<XY> before = RingOf(contour);
  contour.SetFirstPointAt(other.GetFirstPoint());  // not in this ring
  contour.SetFirstPointAt(nullptr);
  EXPECT_EQ(RingOf(contour), before);
  EXPECT_TRUE(RingIsWhole(contour));
}

TEST(BorderContour, LowestLeftmostPointFirstFoundWinsAtTies) {
  Contour contour;
  EXPECT_EQ(contour.LowestLeftmostPoint(), nullptr);
  FillRing(contour, {{5, 5}, {4, 1}, {9, 1}, {4, 1}, {2, 3}});
  const Point* lowest = contour.LowestLeftmostPoint();
  EXPECT_EQ(lowest, contour.GetFirstPoint()->next);
  const Contour& constant = contour;
  EXPECT_EQ(constant.LowestLeftmostPoint(), lowest);
  contour.SetFirstPointAt(contour.LowestLeftmostPoint());
  EXPECT_EQ(RingOf(contour).front(), (XY{4, 1}));
}

TEST(BorderContour, AreaIsPositiveClockwiseAndInvertFlipsIt) {
  Contour clockwise;
  FillRing(clockwise, kClockwiseSquare);
  Contour counter;
  FillRing(counter, kCounterClockwiseSquare);
  EXPECT_DOUBLE_EQ(clockwise.SurfaceAreaWithSignXY(), 100.0);
  EXPECT_DOUBLE_EQ(counter.SurfaceAreaWithSignXY(), -100.0);
  counter.Invert();
  EXPECT_TRUE(RingIsWhole(counter));
  EXPECT_EQ(RingOf(counter), (std::vector<XY>{{0, 10}, {10, 10}, {10, 0}, {0, 0}}));  // last point first
  EXPECT_DOUBLE_EQ(counter.SurfaceAreaWithSignXY(), 100.0);
  counter.Invert();
  std::vector<XY> iterated;  // iteration visits the ring once from its first point
  for (const Point& p : static_cast<const Contour&>(counter)) iterated.emplace_back(p.x, p.y);
  EXPECT_EQ(iterated, kCounterClockwiseSquare);
}

TEST(BorderContour, AreaOfSmallAndHugeRings) {
  Contour empty;
  EXPECT_EQ(empty.SurfaceAreaWithSignXY(), 0.0);
  empty.Invert();
  EXPECT_TRUE(RingIsWhole(empty));
  Contour segment;
  FillRing(segment, {{0, 0}, {7, 3}});
  EXPECT_EQ(segment.SurfaceAreaWithSignXY(), 0.0);
  Contour huge;  // the full 32-bit square, clockwise: products beyond 64 bits
  FillRing(huge,
           {{INT32_MIN, INT32_MIN}, {INT32_MIN, INT32_MAX}, {INT32_MAX, INT32_MAX}, {INT32_MAX, INT32_MIN}});
  const double side = 4294967295.0;
  EXPECT_DOUBLE_EQ(huge.SurfaceAreaWithSignXY(), side * side);
}

struct DoublePointCase {
  std::vector<XY> ring;
  std::vector<XY> expected;
};

TEST(BorderContour, RemoveDoublePointsLeavesNoEqualNeighbours) {
  const XY a{0, 0}, b{5, 0}, c{5, 5};
  const DoublePointCase cases[] = {
      {{a, a, b, c}, {a, b, c}},
      {{a, b, b, b, c}, {a, b, c}},
      {{a, b, c, a}, {a, b, c}},
      {{a, b, c, a, a}, {a, b, c}},
      {{a, a, a}, {a}},
      {{a, b, a, a}, {a, b}},
      {{a, b, a, b}, {a, b, a, b}},
      {{a}, {a}},
      {{}, {}},
  };
  for (const DoublePointCase& c : cases) {
    for (bool closed : {true, false}) {
      Contour contour;
      contour.SetIsClosed(closed);
      FillRing(contour, c.ring);
      const uint32_t removed = contour.RemoveDoublePoints();
      EXPECT_TRUE(RingIsWhole(contour));
      EXPECT_EQ(RingOf(contour), c.expected) << "ring of " << c.ring.size() << " points, closed " << closed;
      EXPECT_EQ(removed, c.ring.size() - c.expected.size());
    }
  }
}

TEST(Border, AddAndRemoveContoursKeepTheChain) {
  Border border;
  EXPECT_EQ(border.GetFirstContour(), nullptr);
  EXPECT_EQ(border.GetNumContours(), 0u);
  Contour* second = AddRing(border, {{2, 2}});
  Contour* third = AddRing(border, {{3, 3}});
  Contour* first = border.AddContourAtFront();
  FillRing(*first, {{1, 1}});
  EXPECT_EQ(border.GetFirstContour(), first);
  EXPECT_EQ(first->GetNextContour(), second);
  EXPECT_EQ(border.GetLastContour(), third);
  EXPECT_EQ(third->GetNextContour(), nullptr);
  EXPECT_TRUE(BorderIsWhole(border));

  Border other;
  Contour* foreign = AddRing(other, {{9, 9}});
  EXPECT_EQ(border.RemoveContour(foreign), nullptr);
  EXPECT_EQ(border.RemoveContour(nullptr), nullptr);
  EXPECT_EQ(border.GetNumContours(), 3u);
  EXPECT_EQ(border.RemoveContour(third), nullptr);
  EXPECT_EQ(border.GetLastContour(), second);
  EXPECT_EQ(border.RemoveContour(first), second);
  EXPECT_EQ(border.GetFirstContour(), second);
  EXPECT_TRUE(BorderIsWhole(border));
  border.MakeEmpty();
  EXPECT_EQ(border.GetNumContours(), 0u);
  EXPECT_EQ(border.GetFirstContour(), nullptr);
  EXPECT_EQ(border.GetLastContour(), nullptr);
}

TEST(Border, CopiesAreIndependent) {
  Border original;
  Contour* hole = AddRing(original, kCounterClockwiseSquare);
  hole->SetIsOuterContour(false);
  hole->SetStatus(103);
  hole->SetOrder(4);
  AddRing(original, {{1, 1}, {2, 2}});

  Border copy(original);
  EXPECT_TRUE(BorderIsWhole(copy));
  EXPECT_EQ(RingsOf(copy), RingsOf(original));
  EXPECT_FALSE(copy.GetFirstContour()->GetIsOuterContour());
  EXPECT_EQ(copy.GetFirstContour()->GetStatus(), 103);
  EXPECT_EQ(copy.GetFirstContour()->GetOrder(), 4);
  EXPECT_NE(copy.GetFirstContour()->GetFirstPoint(), original.GetFirstContour()->GetFirstPoint());

  copy.GetFirstContour()->Invert();
  copy.GetFirstContour()->GetFirstPoint()->x = 99;
  copy.AddContourAtEnd();
  EXPECT_EQ(RingOf(*original.GetFirstContour()), kCounterClockwiseSquare);
  EXPECT_EQ(original.GetNumContours(), 2u);
}

TEST(Border, AssignmentMoveAndSwap) {
  Border a;
  AddRing(a, kClockwiseSquare);
  Border b;
  AddRing(b, {{1, 1}});
  AddRing(b, {{2, 2}});
  b = a;
  EXPECT_EQ(RingsOf(b), RingsOf(a));
  EXPECT_TRUE(BorderIsWhole(b));
  const Border& alias = b;
  b = alias;  // self-assignment keeps the content
  EXPECT_EQ(RingsOf(b), RingsOf(a));

  Border moved(std::move(b));
  EXPECT_EQ(moved.GetNumContours(), 1u);
  Border target;
  AddRing(target, {{5, 5}});
  target = std::move(moved);
  EXPECT_EQ(RingsOf(target), RingsOf(a));

  Border empty;
  empty.Swap(target);
  EXPECT_EQ(target.GetNumContours(), 0u);
  EXPECT_EQ(RingsOf(empty), RingsOf(a));
}

TEST(Border, CopyOfOneContourAndContourAssignment) {
  Border border;
  Contour* source = AddRing(border, kClockwiseSquare);
  source->SetStatus(7);
  Contour* copy = border.AddContourAtEnd(*source);
  EXPECT_EQ(RingOf(*copy), kClockwiseSquare);
  EXPECT_EQ(copy->GetStatus(), 7);
  EXPECT_EQ(source->GetNextContour(), copy);

  Contour* third = AddRing(border, {{1, 1}});
  *source = *third;  // ring and properties replaced; the chain stays
  EXPECT_EQ(RingOf(*source), (std::vector<XY>{{1, 1}}));
  EXPECT_EQ(source->GetStatus(), 0);
  EXPECT_EQ(source->GetNextContour(), copy);
  EXPECT_TRUE(BorderIsWhole(border));
}

TEST(Border, RemoveDoublePointsOverAllContoursAndIteration) {
  Border border;
  AddRing(border, {{0, 0}, {0, 0}, {1, 0}});
  AddRing(border, {{0, 0}, {1, 0}, {1, 1}, {0, 0}});
  EXPECT_EQ(border.RemoveDoublePoints(), 2u);
  EXPECT_TRUE(BorderIsWhole(border));
  uint32_t points = 0;
  for (const Contour& contour : static_cast<const Border&>(border))
    points += contour.GetNumPoints();
  EXPECT_EQ(points, 5u);
  for (Contour& contour : border)
    contour.Invert();
  EXPECT_EQ(RingsOf(border)[1], (std::vector<XY>{{1, 1}, {1, 0}, {0, 0}}));
}

}  // namespace
