#include "contour_processing/orientation.h"

#include <gtest/gtest.h>

#include <vector>

#include "layer/contour_layer.h"
#include "layer/number_lists.h"
#include "support/contour_processing_points.h"
#include "support/layer_builders.h"

namespace {

using P = MMPoint2d<long>;
using testing_support::PointsOf;
using testing_support::Rectangle;

// A layer owning its contours, with the attributes read back in chain order.
struct TestLayer : testing_support::OwningLayer {
  std::vector<int> Outer() const {
    return Read([](const CONTOUR& c) { return int(c.Outer); });
  }
  std::vector<int> RightHanded() const {
    return Read([](const CONTOUR& c) { return int(c.RightHanded); });
  }
  template <class F>
  std::vector<int> Read(F f) const {
    std::vector<int> v;
    for (const CONTOUR* c = layer.FirstContour; c != nullptr; c = c->NextContour)
      v.push_back(f(*c));
    return v;
  }
};

using V = std::vector<int>;

TEST(Orientation, EmptyLayerIsLeftAlone) {
  CONTOUR_LAYER layer;
  layer.SORTEER_CONTOUREN();
  layer.SORTEER_CONTOUREN_NIEUW();
  EXPECT_EQ(layer.NumContours, 0);
}

TEST(Orientation, OneClockwiseSquare) {
  TestLayer t;
  t.Add({{0, 0}, {0, 10}, {10, 10}, {10, 0}});
  t.layer.SORTEER_CONTOUREN();
  EXPECT_EQ(t.Outer(), V{1});
  EXPECT_EQ(t.RightHanded(), V{1});
  t.layer.SORTEER_CONTOUREN_NIEUW();
  EXPECT_EQ(t.Outer(), V{1});
  EXPECT_EQ(t.RightHanded(), V{0});
}

TEST(Orientation, SquareWithAHole) {
  TestLayer t;
  t.Add(Rectangle(0, 0, 30, 30, true));
  t.Add(Rectangle(10, 10, 20, 20, false));
  t.layer.SORTEER_CONTOUREN();
  EXPECT_EQ(t.Outer(), (V{1, 0}));
  EXPECT_EQ(t.RightHanded(), (V{0, 1}));
  t.layer.SORTEER_CONTOUREN_NIEUW();
  EXPECT_EQ(t.Outer(), (V{1, 0}));
  EXPECT_EQ(t.RightHanded(), (V{1, 0}));
  // Mirror pair: both turned the other way round.
  TestLayer m;
  m.Add(Rectangle(0, 0, 30, 30, false));
  m.Add(Rectangle(10, 10, 20, 20, true));
  m.layer.SORTEER_CONTOUREN_NIEUW();
  EXPECT_EQ(m.Outer(), (V{1, 0}));
  EXPECT_EQ(m.RightHanded(), (V{0, 1}));
}

TEST(Orientation, NestingByDepthAndSideBySide) {
  TestLayer nested;
  nested.Add(Rectangle(0, 0, 50, 50, true));
  nested.Add(Rectangle(10, 10, 40, 40, false));
  nested.Add(Rectangle(20, 20, 30, 30, true));
  nested.layer.SORTEER_CONTOUREN();
  EXPECT_EQ(nested.Outer(), (V{1, 0, 1}));
  nested.layer.CONTROLEER_SORTEER_CONTOUREN();
  EXPECT_EQ(nested.Outer(), (V{1, 0, 1}));

  TestLayer beside;
  beside.Add(Rectangle(0, 0, 10, 10, true));
  beside.Add(Rectangle(20, 0, 30, 10, false));
  beside.layer.SORTEER_CONTOUREN_NIEUW();
  EXPECT_EQ(beside.Outer(), (V{1, 1}));
}

TEST(Orientation, OpenAndUndeterminedContoursArePassedOver) {
  TestLayer alone;
  alone.Add({{0, 0}, {10, 0}, {10, 10}}, 0);
  alone.layer.SORTEER_CONTOUREN();
  EXPECT_EQ(alone.Outer(), V{1});  // the rule for a layer of one contour
  EXPECT_EQ(alone.RightHanded(), V{7});

  TestLayer mixed;
  mixed.Add(Rectangle(0, 0, 30, 30, true));
  mixed.Add({{5, 5}, {25, 5}, {25, 25}}, 0);
  mixed.Add(Rectangle(10, 10, 20, 20, false), 7);
  mixed.Add(Rectangle(12, 12, 18, 18, true));
  mixed.layer.SORTEER_CONTOUREN_NIEUW();
  EXPECT_EQ(mixed.Outer(), (V{1, 7, 7, 0}));
  EXPECT_EQ(mixed.RightHanded(), (V{1, 7, 7, 1}));
}

TEST(Orientation, NarrowContourAddsNoColumnButIsVotedOn) {
  TestLayer t;
  t.Add(Rectangle(0, 0, 30, 30, true));
  t.Add(Rectangle(14, 5, 16, 25, false));  // 2 wide in x: no column of its own
  t.layer.SORTEER_CONTOUREN();
  // The plate's column at x 15 runs through it: it is met inside the plate.
  EXPECT_EQ(t.Outer(), (V{1, 0}));
}

TEST(Orientation, ScanLinesThroughVerticesKeepParity) {
  // Diamonds: the column at x 10 and the row at y 30 touch turning vertices
  // of the inner one.
  TestLayer diamonds;
  diamonds.Add({{0, 20}, {20, 40}, {40, 20}, {20, 0}});
  diamonds.Add({{20, 10}, {30, 20}, {20, 30}, {10, 20}});
  diamonds.layer.SORTEER_CONTOUREN_NIEUW();
  EXPECT_EQ(diamonds.Outer(), (V{1, 0}));
  EXPECT_EQ(diamonds.RightHanded(), (V{1, 0}));
  // The plate's column at x 20 passes through the hole's vertex (20,12).
  TestLayer passing;
  passing.Add(Rectangle(0, 0, 40, 40, true));
  passing.Add({{10, 10}, {20, 12}, {30, 10}, {30, 30}, {10, 30}});
  passing.Add(Rectangle(18, 20, 22, 24, true));
  passing.layer.SORTEER_CONTOUREN();
  EXPECT_EQ(passing.Outer(), (V{1, 0, 1}));
  passing.layer.SORTEER_CONTOUREN_NIEUW();
  EXPECT_EQ(passing.Outer(), (V{1, 0, 1}));
  EXPECT_EQ(passing.RightHanded(), (V{1, 0, 1}));
}

TEST(Orientation, ScannerSetUpAndParallelEdges) {
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
  EXPECT_EQ(first->Next->List->Next->Value, 8);
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
  ASSERT_NE(e, nullptr);
  EXPECT_EQ(e->Value, 7);
  ASSERT_NE(e->Next, nullptr);
  EXPECT_EQ(e->Next->Value, 17);
  LEEG_TABEL_2(&table);
}

TEST(Orientation, NestingFromACallersTableReversesItsLists) {
  TestLayer t;
  t.Add(Rectangle(0, 0, 30, 30, true));
  t.Add(Rectangle(10, 10, 20, 20, false));
  TABEL_2 table;
  VOEG_KOLOM_IN_TABEL_2(&table, 15);
  VOEG_IN_GESORTEERDE_L_LIJST_2(table.Next->List, 0, 0);
  VOEG_IN_GESORTEERDE_L_LIJST_2(table.Next->List, 10, 1);
  VOEG_IN_GESORTEERDE_L_LIJST_2(table.Next->List, 20, 1);
  VOEG_IN_GESORTEERDE_L_LIJST_2(table.Next->List, 30, 0);
  // Chosen: foreign tags are passed over (they still take their places).
  VOEG_IN_GESORTEERDE_L_LIJST_2(table.Next->List, 40, 9);
  VOEG_IN_GESORTEERDE_L_LIJST_2(table.Next->List, 50, -3);
  t.layer.BEPAAL_BINNEN_EN_BUITEN_CONTOUREN(table);
  EXPECT_EQ(t.Outer(), (V{1, 0}));
  EXPECT_EQ(table.Next->List->Value, 6);
  EXPECT_EQ(table.Next->List->Next->Value, 50);
  LEEG_TABEL_2(&table);
}

TEST(Orientation, AreaBasedForms) {
  TestLayer t;
  t.Add(Rectangle(0, 0, 10, 10, true));
  t.Add(Rectangle(0, 0, 10, 10, false));
  t.Add({{0, 0}, {5, 5}});
  t.Add(Rectangle(0, 0, 10, 10, false), 0);
  t.layer.CONTROLEER_RECHTS_DRAAIEND();
  EXPECT_EQ(t.RightHanded(), (V{1, 0, 1, 7}));

  const std::vector<P> cw = PointsOf(*t.layer.FirstContour);
  const std::vector<P> ccw = PointsOf(*t.layer.FirstContour->NextContour);
  t.layer.MAAK_ALLE_CONTOUREN_RECHTSDRAAIEND();  // only the second turns
  EXPECT_EQ(PointsOf(*t.layer.FirstContour), cw);
  EXPECT_TRUE(t.layer.FirstContour->NextContour->RECHTS_DRAAIEND());
  EXPECT_EQ(t.RightHanded(), (V{1, 1, 1, 7}));
  EXPECT_FALSE(t.layer.LastContour->RECHTS_DRAAIEND());  // open: untouched

  t.layer.MAAK_ALLE_CONTOUREN_LINKSDRAAIEND();  // also the 2-point contour
  EXPECT_EQ(PointsOf(*t.layer.FirstContour->NextContour), ccw);
  EXPECT_EQ(PointsOf(*t.layer.FirstContour->NextContour->NextContour), (std::vector<P>{{5, 5}, {0, 0}}));
  t.layer.MAAK_ALLE_CONTOUREN_RECHTSDRAAIEND();
  EXPECT_EQ(PointsOf(*t.layer.FirstContour), cw);
}

TEST(Orientation, CopiesByClass) {
  TestLayer source;
  for (int i = 0; i < 4; ++i)
    source.Add(Rectangle(i * 20, 0, i * 20 + 10, 10, true));
  const unsigned char outer[] = {1, 0, 7, 0};
  const unsigned char right[] = {0, 0, 7, 1};
  int i = 0;
  for (CONTOUR* c = source.layer.FirstContour; c != nullptr; c = c->NextContour, ++i) {
    c->Outer = outer[i];
    c->RightHanded = right[i];
    c->Type = static_cast<char>(i);
  }
  TestLayer inner;
  inner.layer.COPIEER_BINNEN_CONT(source.layer);
  EXPECT_EQ(inner.Read([](const CONTOUR& c) { return int(c.Type); }), (V{2, 0}));  // reverse order
  EXPECT_EQ(inner.layer.MaxX, 50);
  EXPECT_EQ(inner.layer.MinX, 0);
  TestLayer outerCopies;
  outerCopies.layer.COPIEER_BUITEN_CONT(source.layer);
  EXPECT_EQ(outerCopies.Read([](const CONTOUR& c) { return int(c.Type); }), (V{2, 1}));
  EXPECT_EQ(outerCopies.Outer(), (V{7, 0}));
  EXPECT_NE(outerCopies.layer.FirstContour->Points,
            source.layer.FirstContour->NextContour->NextContour->Points);
}

}  // namespace
