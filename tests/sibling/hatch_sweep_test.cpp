#include "sibling/hatch_sweep/hatch_sweep.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

// Exposes the sweep of the base for direct tests.
class Sweeper : public MHatcherBase {
 public:
  // Adds a closed ring of hatch-frame points as one chain, appending to the
  // list in key order by a plain sorted insert.
  void AddRing(const std::vector<std::pair<int32_t, int32_t>>& ring) {
    _BeginChain();
    auto previous = ring.back();
    for (const auto& p : ring) {
      Insert(NEW_TEMP_ELEMENT(previous.first, previous.second, p.first, p.second));
      previous = p;
    }
  }
  void Sweep(int32_t distance) { _DoLineSweep(distance); }

 private:
  void Insert(MTempListElement<M2dTempElement>* e) {
    if (e == nullptr) return;
    MTempListElement<M2dTempElement>* below = m_SweepList.High;
    while (below != nullptr && below->Key > e->Key) below = below->Lower;
    e->Lower = below;
    e->Higher = below != nullptr ? below->Higher : m_SweepList.Low;
    (e->Higher != nullptr ? e->Higher->Lower : m_SweepList.High) = e;
    (below != nullptr ? below->Higher : m_SweepList.Low) = e;
    ++m_SweepList.Count;
  }
};

std::vector<MHatchVector> Vectors(MHatchLayer& layer) {
  std::vector<MHatchVector> v;
  for (auto* e = layer.FirstVector; e != nullptr; e = e->Next) v.push_back(e->Data);
  return v;
}

}  // namespace

TEST(HatchSweep, SquareGivesOneRunPerInnerLineAndNoneOnItsSides) {
  Sweeper s;
  s.AddRing({{0, 0}, {0, 100}, {100, 100}, {100, 0}});
  s.Sweep(50);
  auto v = Vectors(s.GetHatchLayer());
  ASSERT_EQ(v.size(), 1u);  // lines at 0 and 100 lie along edges
  EXPECT_EQ(v[0].Position, 50);
  EXPECT_EQ(v[0].Start, 0);
  EXPECT_EQ(v[0].End, 100);
}

TEST(HatchSweep, VertexRuleCountsPassThroughOnceAndTurningPointsNever) {
  Sweeper s;
  // Diamond with tips on the lines x = 0 and x = 20, a pass-through vertex
  // (10, 15) on the line x = 10 on its upper side.
  s.AddRing({{0, 0}, {10, 15}, {20, 0}, {10, -10}});
  s.Sweep(10);
  auto v = Vectors(s.GetHatchLayer());
  ASSERT_EQ(v.size(), 1u);
  EXPECT_EQ(v[0].Position, 10);
  EXPECT_EQ(v[0].Start, -10);
  EXPECT_EQ(v[0].End, 15);
}

TEST(HatchSweep, ShiftMovesTheGridAndTheListIsEmptiedAfterwards) {
  Sweeper s;
  s.SetShift(5);
  s.AddRing({{0, 0}, {0, 10}, {30, 10}, {30, 0}});
  s.Sweep(10);
  auto v = Vectors(s.GetHatchLayer());
  ASSERT_EQ(v.size(), 3u);
  EXPECT_EQ(v[0].Position, 5);
  EXPECT_EQ(v[2].Position, 25);
  s.Sweep(10);  // nothing left to sweep
  EXPECT_EQ(s.GetHatchLayer().VectorCount, 3);
}

TEST(HatchSweep, FirstHatchPositionIsTheLeastMultipleNotBelow) {
  EXPECT_EQ(MHatcherBase::_GetFirstHatchPosition(10, 0), 0);
  EXPECT_EQ(MHatcherBase::_GetFirstHatchPosition(10, 1), 10);
  EXPECT_EQ(MHatcherBase::_GetFirstHatchPosition(10, -15), -10);
  EXPECT_EQ(MHatcherBase::_GetFirstHatchPosition(10, -20), -20);
}

TEST(HatchSweep, DirectionRoundTripsAndQuarterTurnIsExact) {
  MHatchDirection d(90.0);
  int32_t x = 10, y = 3;
  d.Transform(x, y);
  EXPECT_EQ(x, -3);
  EXPECT_EQ(y, 10);
  d.InverseTransform(x, y);
  EXPECT_EQ(x, 10);
  EXPECT_EQ(y, 3);
  MHatchDirection a(37.0);
  int32_t px = 123456, py = -65432;
  a.InverseTransform(px, py);
  a.Transform(px, py);
  EXPECT_NEAR(px, 123456, 1);
  EXPECT_NEAR(py, -65432, 1);
}

TEST(HatchLayer, AddVectorAppendsOrInsertsAfter) {
  MHatchLayer layer;
  MHatchVector a{1, 0, 1}, b{2, 0, 1}, c{3, 0, 1};
  layer.AddVector(a, nullptr);
  layer.AddVector(c, nullptr);
  layer.AddVector(b, layer.FirstVector);
  auto v = Vectors(layer);
  ASSERT_EQ(v.size(), 3u);
  EXPECT_EQ(v[1].Position, 2);
  layer.AddVector(a, nullptr);  // still appends at the true end
  EXPECT_EQ(Vectors(layer).back().Position, 1);
  layer.Clear();
  EXPECT_EQ(layer.VectorCount, 0);
  EXPECT_EQ(layer.FirstVector, nullptr);
}
