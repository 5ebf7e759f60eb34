#include "sibling/boolean/boolean.h"

#include <algorithm>

#include "sibling/boolean/pairing.h"
#include "sibling/boolean/sweep.h"

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
  // The fed lines give way to the kept pieces as the sweep makes them, each
  // directed with the material on its right.
  class Keeper : public kelvor2d_detail::PieceSink {
   public:
    Keeper(M2dBoolean& engine, Inside& inside) : m_engine(engine), m_inside(inside) {}
    void LinesTaken() override { m_engine.ClearLines(); }
    bool Keeps(int32_t windingRight, int32_t windingLeft) override {
      m_engine.m_leastWinding = std::min({m_engine.m_leastWinding, windingRight, windingLeft});
      return m_inside(windingRight) != m_inside(windingLeft);
    }
    M2dGraphLineNode* Begin(M2dGraphPoint* start, int64_t dx, int64_t dy, int32_t windingRight,
                            int32_t) override {
      return m_inside(windingRight) ? m_engine.AddOpenLine(start, nullptr, dx, dy)
                                    : m_engine.AddOpenLine(nullptr, start, -dx, -dy);
    }
    void End(M2dGraphLineNode* line, M2dGraphPoint* end) override { m_engine.CloseLine(line, end); }

   private:
    M2dBoolean& m_engine;
    Inside& m_inside;
  };
  m_leastWinding = 0;
  Keeper keeper(*this, inside);
  kelvor2d_detail::SweepArrangement(*this, keeper);
  kelvor2d_detail::SplitIntoSimpleRings(*lines, GetNumPoints());
  m_shellStart = lines->count;
}

void M2dBoolean::SplitClassifyAndFilter(int16_t first, int16_t second) {
  SplitAndKeep([first, second](int32_t w) { return w > first && (second == kNoUpperBound || w <= second); });
}

void M2dBoolean::RemoveIntegerSelfIntersections() {
  SplitAndKeep([](int32_t w) { return w != 0; });
}
