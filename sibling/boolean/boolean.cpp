#include "sibling/boolean/boolean.h"

#include "sibling/boolean/pairing.h"
#include "sibling/boolean/sweep.h"

namespace {

constexpr int16_t kNoUpperBound = 32767;

}  // namespace

M2dGraphPoint* M2dBoolean::AddPoint(int32_t x, int32_t y) {
  return GetGridPoint(x, y);
}

void M2dBoolean::AddShell(int32_t lowestY, int32_t highestY) {
  m_shellRanges.push_back(lowestY);
  m_shellRanges.push_back(highestY);
  m_shellStart = lines->count;
}

template <class Inside>
void M2dBoolean::SplitAndKeep(Inside inside) {
  // The fed lines give way to the survivors as the sweep makes them, each
  // directed with the material on its right.
  class Keeper : public kelvor_boolean::EdgeSink {
   public:
    Keeper(M2dBoolean& engine, Inside& inside) : m_engine(engine), m_inside(inside) {}
    void LinesTaken() override { m_engine.ClearLines(); }
    void Take(const kelvor_boolean::Edge& e) override {
      const bool right = m_inside(e.windingRight);
      if (right == m_inside(e.windingLeft))
        return;
      M2dGraphLineNode* node =
          right ? m_engine.AddLine(e.start, e.end, false) : m_engine.AddLine(e.end, e.start, false);
      node->line.directionX = right ? e.directionX : -e.directionX;
      node->line.directionY = right ? e.directionY : -e.directionY;
    }

   private:
    M2dBoolean& m_engine;
    Inside& m_inside;
  };
  Keeper keeper(*this, inside);
  kelvor_boolean::SweepArrangement(*this, keeper);
  kelvor_boolean::PairIntoSimpleRings(*lines, GetNumPoints());
  m_shellStart = lines->count;
}

void M2dBoolean::SplitClassifyAndFilter(int16_t first, int16_t second) {
  SplitAndKeep([first, second](int32_t w) { return w > first && (second == kNoUpperBound || w <= second); });
}

void M2dBoolean::RemoveIntegerSelfIntersections() {
  SplitAndKeep([](int32_t w) { return w != 0; });
}
