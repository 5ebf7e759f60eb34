#include "contour_processing/orientation.h"

#include <gtest/gtest.h>

#include <iterator>
#include <vector>

#include "layer/contour_layer.h"
#include "layer/number_lists.h"
#include "support/contour_processing_points.h"
#include "support/layer_builders.h"
#include "support/vector_blocks.h"

namespace {

using P = MMPoint2d<long>;
using V = std::vector<int>;
using testing_support::PointsOf;
using testing_support::Rectangle;

// A layer owning its contours, with the attributes read back in chain order.
struct TestLayer : testing_support::OwningLayer {
  using OwningLayer::OwningLayer;
  V Outer() const {
    return Read([](const CONTOUR& c) { return int(c.Outer); });
  }
  V RightHanded() const {
    return Read([](const CONTOUR& c) { return int(c.RightHanded); });
  }
  template <class F>
  V Read(F f) const {
    V v;
    for (const CONTOUR* c = layer.FirstContour; c != nullptr; c = c->NextContour)
      v.push_back(f(*c));
    return v;
  }
};

struct Shape {
  std::vector<P> points;
  unsigned char closed;
};

TEST(Orientation, NestingAndTurningOfEachSorter) {
  CONTOUR_LAYER empty;
  empty.SORTEER_CONTOUREN_NIEUW();
  EXPECT_EQ(empty.NumContours, 0);

  using Sorter = void (CONTOUR_LAYER::*)();
  const Sorter oldSort = &CONTOUR_LAYER::SORTEER_CONTOUREN, newSort = &CONTOUR_LAYER::SORTEER_CONTOUREN_NIEUW,
               check = &CONTOUR_LAYER::CONTROLEER_SORTEER_CONTOUREN;
  const Shape cwPlate{Rectangle(0, 0, 30, 30, true), 1}, ccwHole{Rectangle(10, 10, 20, 20, false), 1};
  const struct Case {
    const char* name;
    std::vector<Shape> shapes;
    std::vector<Sorter> sorters;
    V outer, right;  // right empty: not checked
  } cases[] = {
      // clang-format off
      {"one clockwise", {{{{0, 0}, {0, 10}, {10, 10}, {10, 0}}, 1}}, {oldSort}, {1}, {1}},
      {"one clockwise, y pass", {{{{0, 0}, {0, 10}, {10, 10}, {10, 0}}, 1}}, {newSort}, {1}, {0}},
      {"hole", {cwPlate, ccwHole}, {oldSort}, {1, 0}, {0, 1}},
      {"hole, y pass", {cwPlate, ccwHole}, {newSort}, {1, 0}, {1, 0}},
      {"mirrored hole", {{Rectangle(0, 0, 30, 30, false), 1}, {Rectangle(10, 10, 20, 20, true), 1}},
       {newSort}, {1, 0}, {0, 1}},
      {"island", {{Rectangle(0, 0, 50, 50, true), 1}, {Rectangle(10, 10, 40, 40, false), 1},
                  {Rectangle(20, 20, 30, 30, true), 1}}, {oldSort, check}, {1, 0, 1}, {}},
      {"side by side", {{Rectangle(0, 0, 10, 10, true), 1}, {Rectangle(20, 0, 30, 10, false), 1}},
       {newSort}, {1, 1}, {}},
      {"open alone", {{{{0, 0}, {10, 0}, {10, 10}}, 0}}, {oldSort}, {1}, {7}},
      {"open and undetermined passed over", {cwPlate, {{{5, 5}, {25, 5}, {25, 25}}, 0}, {ccwHole.points, 7},
       {Rectangle(12, 12, 18, 18, true), 1}}, {newSort}, {1, 7, 7, 0}, {1, 7, 7, 1}},
      // 2 wide in x: no column of its own, but the plate's column at x 15 meets its last edge.
      {"narrow hole", {cwPlate, {Rectangle(14, 5, 16, 25, false), 1}}, {oldSort}, {1, 0}, {0, 1}},
      // Off the plate's column, 2 wide is seen by no column and counts as outer; 3 wide has its own.
      {"unseen hole", {cwPlate, {Rectangle(4, 5, 6, 25, false), 1}}, {oldSort}, {1, 1}, {}},
      {"hole of 3", {cwPlate, {Rectangle(4, 5, 7, 25, false), 1}}, {oldSort}, {1, 0}, {}},
      // The column at x 10 and the row at y 30 touch turning vertices of the inner one.
      {"diamonds", {{{{0, 20}, {20, 40}, {40, 20}, {20, 0}}, 1}, {{{20, 10}, {30, 20}, {20, 30}, {10, 20}}, 1}},
       {newSort}, {1, 0}, {1, 0}},
      // The plate's column at x 20 passes through the hole's vertex (20,12).
      {"column through a vertex", {{Rectangle(0, 0, 40, 40, true), 1},
       {{{10, 10}, {20, 12}, {30, 10}, {30, 30}, {10, 30}}, 1}, {Rectangle(18, 20, 22, 24, true), 1}},
       {oldSort, newSort}, {1, 0, 1}, {1, 0, 1}},
      // clang-format on
  };
  for (const Case& k : cases) {
    SCOPED_TRACE(k.name);
    TestLayer t;
    for (const Shape& s : k.shapes)
      t.Add(s.points, s.closed);
    for (Sorter sort : k.sorters)
      (t.layer.*sort)();
    EXPECT_EQ(t.Outer(), k.outer);
    if (!k.right.empty()) {
      EXPECT_EQ(t.RightHanded(), k.right);
    }
  }
}

TEST(Orientation, ColumnScannerSetUpRoundingAndParallelEdges) {
  TABEL_2 table;
  VOEG_KOLOM_IN_TABEL_2(&table, 5);
  VOEG_KOLOM_IN_TABEL_2(&table, 15);
  EXPECT_EQ(TEST_LIJNSTUK(3, 0, 3, 9, -1, table), 1);  // vertical: nothing set up
  EXPECT_EQ(TEST_LIJNSTUK(0, 0, 20, 0, -1, table), 0);
  EXPECT_EQ(TEST_LIJNSTUK(3, 0, 3, 9, 0, table), 0);  // parallel to the columns
  EXPECT_EQ(TEST_LIJNSTUK(0, 0, 20, 10, 0, table), 1);
  const TABEL_2* first = table.Next;
  ASSERT_EQ(first->List->Value, 1);
  EXPECT_EQ(first->List->Next->Value, 3);  // 2.5 rounded away from zero
  EXPECT_EQ(first->List->Next->Second, 0);
  EXPECT_EQ(first->Next->List->Next->Value, 8);  // 7.5
  // Falling from x 15 after a rising edge: the column at its start counts,
  // the one at its end does not.
  EXPECT_EQ(TEST_LIJNSTUK(15, 10, 5, 0, 1, table), 1);
  EXPECT_EQ(first->List->Value, 1);
  EXPECT_EQ(first->Next->List->Value, 2);
  EXPECT_EQ(first->Next->List->Next->Next->Value, 10);
  EXPECT_EQ(first->Next->List->Next->Next->Second, 1);
  LEEG_TABEL_2(&table);
}

// The protected Y scanner, reached through a subclass.
struct YScanner : CONTOUR_LAYER {
  using CONTOUR_LAYER::TEST_LIJNSTUK_IN_Y;
};

TEST(Orientation, RowScanner) {
  TABEL_2 table;
  VOEG_KOLOM_IN_TABEL_2(&table, 5);
  YScanner scanner;
  EXPECT_EQ(scanner.TEST_LIJNSTUK_IN_Y(0, 0, 10, 10, -1, table), 0);
  EXPECT_EQ(scanner.TEST_LIJNSTUK_IN_Y(0, 3, 9, 3, 0, table), 0);  // level: parallel to the rows
  EXPECT_EQ(scanner.TEST_LIJNSTUK_IN_Y(7, 0, 7, 10, 0, table), 1);
  EXPECT_EQ(scanner.TEST_LIJNSTUK_IN_Y(7, 10, 27, 0, 0, table), 1);  // x at y 5: 17
  L_LIST_2* e = table.Next->List->Next;
  ASSERT_TRUE(e != nullptr && e->Next != nullptr);
  EXPECT_EQ(e->Value, 7);
  EXPECT_EQ(e->Next->Value, 17);
  LEEG_TABEL_2(&table);
}

TEST(Orientation, NestingFromACallersTableReversesItsLists) {
  TestLayer t({Rectangle(0, 0, 30, 30, true), Rectangle(10, 10, 20, 20, false)});
  TABEL_2 table;
  VOEG_KOLOM_IN_TABEL_2(&table, 15);
  // Chosen: foreign tags (9, -3) are passed over (they still take their places).
  const int32_t entries[][2] = {{0, 0}, {10, 1}, {20, 1}, {30, 0}, {40, 9}, {50, -3}};
  for (const auto& e : entries)
    VOEG_IN_GESORTEERDE_L_LIJST_2(table.Next->List, e[0], e[1]);
  t.layer.BEPAAL_BINNEN_EN_BUITEN_CONTOUREN(table);
  EXPECT_EQ(t.Outer(), (V{1, 0}));
  EXPECT_EQ(table.Next->List->Value, 6);
  EXPECT_EQ(table.Next->List->Next->Value, 50);
  LEEG_TABEL_2(&table);
}

TEST(Orientation, AreaBasedForms) {
  TestLayer t({Rectangle(0, 0, 10, 10, true), Rectangle(0, 0, 10, 10, false), {{0, 0}, {5, 5}}});
  t.Add(Rectangle(0, 0, 10, 10, false), 0);
  t.layer.CONTROLEER_RECHTS_DRAAIEND();
  EXPECT_EQ(t.RightHanded(), (V{1, 0, 1, 7}));

  const std::vector<P> cw = PointsOf(*t.At(0)), ccw = PointsOf(*t.At(1));
  t.layer.MAAK_ALLE_CONTOUREN_RECHTSDRAAIEND();  // only the second turns
  EXPECT_EQ(PointsOf(*t.At(0)), cw);
  EXPECT_TRUE(t.At(1)->RECHTS_DRAAIEND());
  EXPECT_EQ(t.RightHanded(), (V{1, 1, 1, 7}));
  EXPECT_FALSE(t.layer.LastContour->RECHTS_DRAAIEND());  // open: untouched

  t.layer.MAAK_ALLE_CONTOUREN_LINKSDRAAIEND();  // also the 2-point contour
  EXPECT_EQ(PointsOf(*t.At(1)), ccw);
  EXPECT_EQ(PointsOf(*t.At(2)), (std::vector<P>{{5, 5}, {0, 0}}));
}

TEST(Orientation, CopiesByClass) {
  TestLayer source;
  const unsigned char outer[] = {1, 0, 7, 0}, right[] = {0, 0, 7, 1};
  for (int i = 0; i < 4; ++i) {
    source.Add(Rectangle(i * 20, 0, i * 20 + 10, 10, true));
    source.At(i)->Outer = outer[i];
    source.At(i)->RightHanded = right[i];
    source.At(i)->Type = static_cast<char>(i);
  }
  const auto type = [](const CONTOUR& c) { return int(c.Type); };
  TestLayer inner, outerCopies;
  inner.layer.COPIEER_BINNEN_CONT(source.layer);
  EXPECT_EQ(inner.Read(type), (V{2, 0}));  // reverse order
  EXPECT_EQ(testing_support::ExtentsOf(inner.layer), "0 0 50 10");
  outerCopies.layer.COPIEER_BUITEN_CONT(source.layer);
  EXPECT_EQ(outerCopies.Read(type), (V{2, 1}));
  EXPECT_EQ(outerCopies.Outer(), (V{7, 0}));
  EXPECT_NE(outerCopies.layer.FirstContour->Points, source.At(2)->Points);
}

}  // namespace

namespace {

// Mirror pairs: every contour given the other way round keeps its nesting and
// turns the other way, for each sorter, on nested polygons of random form.
TEST(Orientation, ReversedContoursTurnTheOtherWay) {
  using Sorter = void (CONTOUR_LAYER::*)();
  const Sorter sorters[] = {&CONTOUR_LAYER::SORTEER_CONTOUREN, &CONTOUR_LAYER::SORTEER_CONTOUREN_NIEUW,
                            &CONTOUR_LAYER::CONTROLEER_SORTEER_CONTOUREN};
  uint32_t state = 11;
  auto next = [&state](int32_t range) {
    state = state * 1664525u + 1013904223u;
    return static_cast<int32_t>((state >> 8) % static_cast<uint32_t>(range));
  };
  for (int round = 0; round < 30; ++round) {
    std::vector<std::vector<P>> rings;
    for (int level = 0; level < 1 + round % 3; ++level) {  // nested rings, each turned at random
      const double radius = 1000.0 / (level + 1) - next(100);
      auto ring =
          testing_support::Circle(5000 + next(50), 5000 + next(50), radius, 3 + next(9), next(2) == 0);
      rings.push_back(ring);
    }
    rings.push_back(Rectangle(20000 + next(100), next(100), 21000, 1000 + next(500), next(2) == 0));
    for (size_t s = 0; s < std::size(sorters); ++s) {
      TestLayer forward, backward;
      for (const auto& ring : rings) {
        forward.Add(ring);
        backward.Add(std::vector<P>(ring.rbegin(), ring.rend()));
      }
      (forward.layer.*sorters[s])();
      (backward.layer.*sorters[s])();
      SCOPED_TRACE(::testing::Message() << "round " << round << " sorter " << s);
      EXPECT_EQ(forward.Outer(), backward.Outer());
      V flipped = backward.RightHanded();
      for (int& r : flipped)
        r = r == 7 ? 7 : 1 - r;
      EXPECT_EQ(forward.RightHanded(), flipped);
    }
  }
}

}  // namespace
