#include "sibling/boolean/graph.h"

#include <algorithm>
#include <cstddef>
#include <new>
#include <type_traits>

using kelvor2d_detail::ExactCoordinates;
using kelvor2d_detail::UInt128;

static_assert(std::is_trivially_destructible<M2dGraphPoint>::value,
              "point blocks are released without destructors");
static_assert(sizeof(M2dGraphPoint) == 48 && sizeof(M2dGraphLineNode) == 88, "records stay compact");

namespace {

constexpr uint32_t kFirstSlotCount = 1024;
constexpr uint32_t kPointsPerBlock = 4096;
constexpr uint32_t kFractionsPerBlock = 1024;
constexpr uint32_t kLinesPerBlock = 4096;

uint64_t PackWholeParts(int32_t x, int32_t y) {
  return (static_cast<uint64_t>(static_cast<uint32_t>(x)) << 32) | static_cast<uint32_t>(y);
}

uint64_t MixBits(uint64_t h) {
  h ^= h >> 33;
  h *= 0xff51afd7ed558ccdULL;
  h ^= h >> 33;
  h *= 0xc4ceb3fa0c7fda5bULL;
  h ^= h >> 33;
  return h;
}

// The 32-bit fraction words of the point record: exact when the denominator
// fits, else the nearest fraction over 2^31 (halves up), read off the 62-bit
// keys: with key = floor(2^62 f), round(2^31 f) = floor(key / 2^31) + bit 30.
void StoreRecordFractions(M2dGraphPoint* p, const M2dGraphFraction& f) {
  const ExactCoordinates& e = f.exact;
  if (e.denominator <= 0xffffffffu) {
    p->xNumerator = static_cast<uint32_t>(e.xFraction);
    p->yNumerator = static_cast<uint32_t>(e.yFraction);
    p->denominator = static_cast<uint32_t>(e.denominator);
    return;
  }
  static constexpr uint64_t kLargest = (static_cast<uint64_t>(1) << 31) - 1;
  const auto nearest = [](uint64_t key) { return std::min(kLargest, (key >> 31) + ((key >> 30) & 1)); };
  p->xNumerator = static_cast<uint32_t>(nearest(f.xKey));
  p->yNumerator = static_cast<uint32_t>(nearest(f.yKey));
  p->denominator = static_cast<uint32_t>(kLargest + 1);
}

// floor(2^62 * fraction / denominator): monotone in the fraction. Fractions
// stay below 2^66, so the product fits 128 bits.
uint64_t FractionKey(UInt128 fraction, UInt128 denominator) {
  if (fraction == 0)
    return 0;
  return static_cast<uint64_t>(kelvor2d_detail::FloorQuotient(fraction << 62, denominator));
}

}  // namespace

M2dGraphFraction kelvor2d_detail::FractionOf(const ExactCoordinates& position) {
  return M2dGraphFraction{position, FractionKey(position.xFraction, position.denominator),
                          FractionKey(position.yFraction, position.denominator)};
}

M2dGraph::M2dGraph() : lines(new DLIST<M2dGraphLine>()) {}

M2dGraph::~M2dGraph() {
  ClearGraph();
  delete lines;
}

DLIST_ELEMENT<M2dGraphLine>* M2dGraph::AddLine(M2dGraphPoint* from, M2dGraphPoint* to, bool flag) {
  M2dGraphLineNode* node = NewLineNode();
  M2dGraphLine& line = node->line;
  line.from = from;
  line.to = to;
  line.directionX = static_cast<int64_t>(to->x) - from->x;
  line.directionY = static_cast<int64_t>(to->y) - from->y;
  line.flag = flag ? 1 : 0;
  line.nextOut = from->firstOut;
  from->firstOut = node;
  line.nextIn = to->firstIn;
  to->firstIn = node;
  return lines->Append(node);
}

M2dGraphLineNode* M2dGraph::AddOpenLine(M2dGraphPoint* from, M2dGraphPoint* to, int64_t directionX,
                                        int64_t directionY) {
  M2dGraphLineNode* node = NewLineNode();
  M2dGraphLine& line = node->line;
  line.from = from;
  line.to = to;
  line.directionX = directionX;
  line.directionY = directionY;
  if (from != nullptr) {
    line.nextOut = from->firstOut;
    from->firstOut = node;
  }
  if (to != nullptr) {
    line.nextIn = to->firstIn;
    to->firstIn = node;
  }
  return lines->Append(node);
}

void M2dGraph::CloseLine(M2dGraphLineNode* node, M2dGraphPoint* end) {
  M2dGraphLine& line = node->line;
  if (line.from == nullptr) {
    line.from = end;
    line.nextOut = end->firstOut;
    end->firstOut = node;
  } else {
    line.to = end;
    line.nextIn = end->firstIn;
    end->firstIn = node;
  }
}

M2dGraphLineNode* M2dGraph::NewLineNode() {
  if (m_lineBlock < m_lineBlocks.size() && m_lineBlockUsed == kLinesPerBlock) {
    ++m_lineBlock;
    m_lineBlockUsed = 0;
  }
  if (m_lineBlock == m_lineBlocks.size())
    m_lineBlocks.push_back(
        static_cast<M2dGraphLineNode*>(::operator new(sizeof(M2dGraphLineNode) * kLinesPerBlock)));
  return new (m_lineBlocks[m_lineBlock] + m_lineBlockUsed++) M2dGraphLineNode();
}

void M2dGraph::PrefetchGridPoint(int32_t x, int32_t y) const {
  if (!m_slots.empty())
    __builtin_prefetch(&m_slots[MixBits(PackWholeParts(x, y)) & (m_slots.size() - 1)]);
}

void M2dGraph::ReservePoints(uint32_t count) {
  size_t size = m_slots.empty() ? kFirstSlotCount : m_slots.size();
  while (static_cast<size_t>(count) * 4 > size * 3)
    size *= 2;
  if (size > m_slots.size())
    GrowSlots(size);
}

M2dGraphPoint* M2dGraph::PointNumber(uint32_t index) const {
  return m_blocks[index / kPointsPerBlock] + index % kPointsPerBlock;
}

template <class Same>
M2dGraph::Slot& M2dGraph::FindSlot(int32_t x, int32_t y, Same same) {
  if (m_slots.empty())
    m_slots.assign(kFirstSlotCount, Slot{0, 0});
  const uint64_t hash = MixBits(PackWholeParts(x, y));
  const uint32_t tag = static_cast<uint32_t>(hash >> 32);
  const size_t mask = m_slots.size() - 1;
  size_t i = hash & mask;
  for (; m_slots[i].number != 0; i = (i + 1) & mask) {
    if (m_slots[i].tag != tag)
      continue;
    const M2dGraphPoint* p = PointNumber(m_slots[i].number - 1);
    if (p->x == x && p->y == y && same(*p))
      break;
  }
  m_slots[i].tag = tag;
  return m_slots[i];
}

M2dGraphPoint* M2dGraph::Enter(Slot& slot, M2dGraphPoint* p) {
  slot.number = p->index + 1;
  if (static_cast<size_t>(m_numPoints) * 4 > m_slots.size() * 3)
    GrowSlots(m_slots.size() * 2);
  return p;
}

M2dGraphPoint* M2dGraph::GetGridPoint(int32_t x, int32_t y) {
  Slot& slot = FindSlot(x, y, [](const M2dGraphPoint& p) { return p.IsInteger(); });
  return slot.number != 0 ? PointNumber(slot.number - 1) : Enter(slot, NewPoint(x, y));
}

M2dGraphPoint* M2dGraph::GetExactPoint(const ExactCoordinates& position) {
  if (position.xFraction == 0 && position.yFraction == 0)
    return GetGridPoint(position.x, position.y);  // a crossing on the grid is a grid point
  Slot& slot = FindSlot(position.x, position.y, [&position](const M2dGraphPoint& p) {
    return !p.IsInteger() && kelvor2d_detail::SameExactPosition(p.fraction->exact, position);
  });
  return slot.number != 0 ? PointNumber(slot.number - 1) : Enter(slot, MakeExactPoint(position));
}

M2dGraphPoint* M2dGraph::MakeExactPoint(const ExactCoordinates& position) {
  M2dGraphPoint* p = NewPoint(position.x, position.y);
  p->fraction = NewFraction(position);
  StoreRecordFractions(p, *p->fraction);
  return p;
}

M2dGraphPoint* M2dGraph::NewPoint(int32_t x, int32_t y) {
  if (m_blocks.empty() || m_blockUsed == kPointsPerBlock) {
    m_blocks.push_back(static_cast<M2dGraphPoint*>(::operator new(sizeof(M2dGraphPoint) * kPointsPerBlock)));
    m_blockUsed = 0;
  }
  M2dGraphPoint* p = new (m_blocks.back() + m_blockUsed++) M2dGraphPoint();
  p->x = x;
  p->y = y;
  p->index = m_numPoints++;
  return p;
}

const M2dGraphFraction* M2dGraph::NewFraction(const ExactCoordinates& position) {
  if (m_fractionBlocks.empty() || m_fractionBlockUsed == kFractionsPerBlock) {
    m_fractionBlocks.push_back(new M2dGraphFraction[kFractionsPerBlock]);
    m_fractionBlockUsed = 0;
  }
  M2dGraphFraction* f = m_fractionBlocks.back() + m_fractionBlockUsed++;
  *f = kelvor2d_detail::FractionOf(position);
  return f;
}

void M2dGraph::GrowSlots(size_t size) {
  std::vector<Slot> old;
  old.swap(m_slots);
  m_slots.assign(size, Slot{0, 0});
  const size_t mask = m_slots.size() - 1;
  for (const Slot& slot : old) {
    if (slot.number == 0)
      continue;
    const M2dGraphPoint* p = PointNumber(slot.number - 1);
    size_t i = MixBits(PackWholeParts(p->x, p->y)) & mask;
    while (m_slots[i].number != 0)
      i = (i + 1) & mask;
    m_slots[i] = slot;
  }
}

void M2dGraph::ClearLines() {
  lines->Clear();
  m_lineBlock = 0;
  m_lineBlockUsed = 0;
  for (size_t b = 0; b < m_blocks.size(); ++b) {
    const uint32_t used = b + 1 < m_blocks.size() ? kPointsPerBlock : m_blockUsed;
    for (M2dGraphPoint* p = m_blocks[b]; p != m_blocks[b] + used; ++p) {
      p->firstOut = nullptr;
      p->firstIn = nullptr;
    }
  }
}

void M2dGraph::ClearGraph() {
  lines->Clear();
  for (M2dGraphLineNode* block : m_lineBlocks)
    ::operator delete(block);  // line nodes are trivially destructible
  m_lineBlocks.clear();
  m_lineBlock = 0;
  m_lineBlockUsed = 0;
  for (M2dGraphPoint* block : m_blocks)
    ::operator delete(block);  // points are trivially destructible
  m_blocks.clear();
  m_blockUsed = 0;
  for (M2dGraphFraction* block : m_fractionBlocks)
    delete[] block;
  m_fractionBlocks.clear();
  m_fractionBlockUsed = 0;
  m_numPoints = 0;
  m_slots.clear();
}

M2dGraphLineNode* M2dGraphLine::FindNextSegment(bool) const {
  return successor != nullptr ? successor : TurnToNextSegment();
}

M2dGraphLineNode* M2dGraphLine::FindPreviousSegment(bool) const {
  return predecessor != nullptr ? predecessor : TurnToPreviousSegment();
}

M2dGraphLineNode* M2dGraphLine::TurnToNextSegment() const {
  // Turning counter-clockwise from the way back along this line, the first
  // line leaving `to` bounds the same wedge of material.
  const int64_t backX = -directionX, backY = -directionY;
  M2dGraphLineNode* best = nullptr;
  for (M2dGraphLineNode* n = to->firstOut; n != nullptr; n = n->line.nextOut) {
    const M2dGraphLine& c = n->line;
    if (best == nullptr ||
        kelvor2d_detail::TurnsBeforeCounterClockwise(backX, backY, c.directionX, c.directionY,
                                                     best->line.directionX, best->line.directionY)) {
      best = n;
    }
  }
  return best;
}

M2dGraphLineNode* M2dGraphLine::TurnToPreviousSegment() const {
  // The mirror image of FindNextSegment: turning clockwise from this line's
  // direction, the first way back along a line entering `from`.
  M2dGraphLineNode* best = nullptr;
  for (M2dGraphLineNode* n = from->firstIn; n != nullptr; n = n->line.nextIn) {
    const M2dGraphLine& c = n->line;
    if (best == nullptr ||
        kelvor2d_detail::TurnsBeforeCounterClockwise(directionX, -directionY, -c.directionX, c.directionY,
                                                     -best->line.directionX, best->line.directionY)) {
      best = n;
    }
  }
  return best;
}
