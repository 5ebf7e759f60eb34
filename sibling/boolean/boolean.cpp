#include "sibling/boolean/boolean.h"

#include "sibling/boolean/pairing.h"
#include "sibling/boolean/sweep.h"

using kelvor_boolean::Carrier;
using kelvor_boolean::Edge;

namespace {

constexpr int16_t kNoUpperBound = 32767;

// The fed lines with a length, as carriers.
std::vector<Carrier> CollectCarriers(const DLIST<M2dGraphLine>& lines) {
  std::vector<Carrier> carriers;
  carriers.reserve(lines.count);
  for (const M2dGraphLineNode* n = lines.first; n != nullptr; n = n->next) {
    if (n->line.from != n->line.to)
      carriers.push_back(Carrier{n->line.from, n->line.to});
  }
  return carriers;
}

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
  const std::vector<Carrier> carriers = CollectCarriers(*lines);
  const std::vector<Edge> edges = kelvor_boolean::SweepArrangement(*this, carriers);
  ClearLines();
  for (const Edge& e : edges) {
    const bool right = inside(e.windingRight);
    if (right == inside(e.windingLeft))
      continue;
    // The material goes on the right of the surviving line.
    M2dGraphLineNode* node = right ? AddLine(e.start, e.end, false) : AddLine(e.end, e.start, false);
    node->line.directionX = right ? e.directionX : -e.directionX;
    node->line.directionY = right ? e.directionY : -e.directionY;
  }
  kelvor_boolean::PairIntoSimpleRings(*lines, GetNumPoints());
  m_shellStart = lines->count;
}

void M2dBoolean::SplitClassifyAndFilter(int16_t first, int16_t second) {
  SplitAndKeep([first, second](int32_t w) { return w > first && (second == kNoUpperBound || w <= second); });
}

void M2dBoolean::RemoveIntegerSelfIntersections() {
  SplitAndKeep([](int32_t w) { return w != 0; });
}
