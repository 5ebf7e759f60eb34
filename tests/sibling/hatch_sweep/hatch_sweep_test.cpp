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
    if (e == nullptr)
      return;
    MTempListElement<M2dTempElement>* below = m_SweepList.High;
    while (below != nullptr && below->Key > e->Key)
      below = below->Lower;
    e->Lower = below;
    e->Higher = below != nullptr ? below->Higher : m_SweepList.Low;
    (e->Higher != nullptr ? e->Higher->Lower : m_SweepList.High) = e;
    (below != nullptr ? below->Higher : m_SweepList.Low) = e;
    ++m_SweepList.Count;
  }
};

std::vector<MHatchVector> Vectors(MHatchLayer& layer) {
  std::vector<MHatchVector> v;
  for (auto* e = layer.FirstVector; e != nullptr; e = e->Next)
    v.push_back(e->Data);
  return v;
}

}  // namespace

TEST(HatchSweep, VertexRuleCountsPassThroughOnceAndTurningPointsNever) {
  const struct {
    const char* what;
    std::vector<std::pair<int32_t, int32_t>> ring;
    int32_t shift, distance;
    std::vector<std::vector<int32_t>> expected;  // position, start, end of each run
  } cases[] = {
      {"square: lines at 0 and 100 lie along its sides",
       {{0, 0}, {0, 100}, {100, 100}, {100, 0}},
       0,
       50,
       {{50, 0, 100}}},
      // tips on the lines x = 0 and x = 20, a pass-through vertex (10, 15) on the line x = 10
      {"diamond", {{0, 0}, {10, 15}, {20, 0}, {10, -10}}, 0, 10, {{10, -10, 15}}},
      {"shifted grid", {{0, 0}, {0, 10}, {30, 10}, {30, 0}}, 5, 10, {{5, 0, 10}, {15, 0, 10}, {25, 0, 10}}},
  };
  for (const auto& c : cases) {
    Sweeper s;
    s.SetShift(c.shift);
    s.AddRing(c.ring);
    s.Sweep(c.distance);
    s.Sweep(c.distance);  // the list is emptied by the first sweep: nothing more
    std::vector<std::vector<int32_t>> runs;
    for (const MHatchVector& v : Vectors(s.GetHatchLayer()))
      runs.push_back({v.Position, v.Start, v.End});
    EXPECT_EQ(runs, c.expected) << c.what;
  }
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
  EXPECT_TRUE(x == -3 && y == 10) << x << ", " << y;
  d.InverseTransform(x, y);
  EXPECT_TRUE(x == 10 && y == 3) << x << ", " << y;
  MHatchDirection a(37.0);
  int32_t px = 123456, py = -65432;
  a.InverseTransform(px, py);
  a.Transform(px, py);
  EXPECT_NEAR(px, 123456, 1);
  EXPECT_NEAR(py, -65432, 1);
}

TEST(HatchLayer, AddVectorAppendsOrInsertsAfter) {
  MHatchLayer layer;
  MHatchVector v[] = {{1, 0, 1}, {2, 0, 1}, {3, 0, 1}, {4, 0, 1}};
  layer.AddVector(v[0], nullptr);
  layer.AddVector(v[2], nullptr);
  layer.AddVector(v[1], layer.FirstVector);
  layer.AddVector(v[3], nullptr);  // still appends at the true end
  std::vector<int32_t> positions;
  for (const MHatchVector& v : Vectors(layer))
    positions.push_back(v.Position);
  EXPECT_EQ(positions, (std::vector<int32_t>{1, 2, 3, 4}));
  layer.Clear();
  EXPECT_TRUE(layer.VectorCount == 0 && layer.FirstVector == nullptr);
}
