// Helpers shared by the table hatching generators (straight, support, meander,
// no-switch meander, smart): reading columns and pairs of a scan table, making
// blocks, and the growing coordinate arrays of the meanders. Internal to the
// hatch component; not part of the public interface.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <new>
#include <type_traits>

#include "geometry/grid_arithmetic.h"
#include "layer/number_lists.h"
#include "layer/vector_layer.h"
#include "scan/slice_file_parameters.h"
#include "scan/tabel.h"

namespace kelvor2d_detail {

// Which coordinate a column's Position is: x in an X table, y in a Y table.
enum class Axis { kX, kY };

// Differences and products "in 32 bits": wrapped, never undefined.
using kelvor2d_detail::Mul32;
using kelvor2d_detail::Sub32;
// |a - b| of the wrapped difference, as an unsigned value so that it never
// overflows.
inline uint32_t AbsoluteDifference(int32_t a, int32_t b) {
  const int32_t d = Sub32(a, b);
  return d < 0 ? 0u - static_cast<uint32_t>(d) : static_cast<uint32_t>(d);
}

// A vector is shortened when its length is strictly greater than the 32-bit
// product HatchShorteningFactor * HatchShortening.
inline int32_t ShorteningLimit(const MSliceFileParameters& parameters) {
  return Mul32(parameters.HatchShorteningFactor, parameters.HatchShortening);
}
inline bool IsLongerThan(int32_t a, int32_t b, int32_t limit) {
  return limit < 0 || AbsoluteDifference(b, a) > static_cast<uint32_t>(limit);
}

// True when the column's list holds at least one crossing (a null List holds none).
inline bool HasFirstCrossing(const TABEL* column) {
  return column->List != nullptr && column->List->Next != nullptr;
}

// Number of whole pairs that can be read from a column's list: half its count
// (0 for a null list or a count below 2), but never more pairs than the chain
// really holds.
int32_t PairsInList(const L_LIST* list);

// 4 * PairsInList over all real columns: the coordinate values of one vector
// per run of the table.
int32_t CountTableCoordinates(const TABEL& root);

// The list counts of all real columns added up (null lists and negative
// counts add nothing).
int32_t CountTableCrossings(const TABEL& root);

// False when the chain of some real column's list ends inside a pair.
bool ListsArePaired(const TABEL& root);

// The tail sentinel of a table with columns.
TABEL* FindTailSentinel(const TABEL& root);

// From `column` on (inclusive), the first column with a crossing, walking up
// (towards the tail) or down (towards the head); null when the walk passes the
// sentinel.
TABEL* FindColumnWithCrossing(TABEL* column, bool upwards);

// A fresh block of the sign-extended type with a malloc'ed buffer of `values`
// coordinates and Size 0; null, with nothing allocated, when either fails.
VECTOR_BLOK* AllocateHatchBlock(int32_t values, char type);
void ReleaseHatchBlock(VECTOR_BLOK* block);

// Writes the vector (ax, ay)-(bx, by) of a column into out[0..3]: the column
// position is x in an X table and y in a Y table.
inline void WriteColumnVector(int32_t* out, Axis axis, int32_t position, int32_t from, int32_t to) {
  if (axis == Axis::kX) {
    out[0] = position;
    out[1] = from;
    out[2] = position;
    out[3] = to;
  } else {
    out[0] = from;
    out[1] = position;
    out[2] = to;
    out[3] = position;
  }
}

// Outcome of taking a drawn pair out of its column's list.
enum class UnlinkResult {
  kRemoved,         // both elements unlinked and freed; the count is left as it was
  kNotFound,        // the list ended at a pair boundary without meeting the pair
  kEndsInsidePair,  // the list ended inside a pair before the pair was met
};
// Searches the list from its head in steps of two elements for `pair`.
UnlinkResult UnlinkPair(L_LIST* list, L_LIST* pair);

// A malloc'ed array of plain values that grows on request. Growing that fails
// throws std::bad_alloc and leaves the array as it was; the destructor frees
// it, so a throw releases everything built so far.
template <class T>
class GrowingArray {
  static_assert(std::is_trivially_copyable<T>::value, "values are moved by realloc");

 public:
  explicit GrowingArray(int32_t capacity) { Reserve(capacity); }
  ~GrowingArray() { free(m_values); }
  GrowingArray(const GrowingArray&) = delete;
  GrowingArray& operator=(const GrowingArray&) = delete;

  // Makes room for `capacity` values in all; never shrinks.
  void Reserve(int32_t capacity) {
    if (capacity <= m_capacity)
      return;
    void* grown = realloc(m_values, sizeof(T) * static_cast<size_t>(capacity));
    if (grown == nullptr)
      throw std::bad_alloc();
    m_values = static_cast<T*>(grown);
    m_capacity = capacity;
  }
  // Appends without a test: the caller keeps room.
  void Push(T value) { m_values[m_count++] = value; }
  T& operator[](int32_t i) { return m_values[i]; }
  const T& operator[](int32_t i) const { return m_values[i]; }
  T* Data() { return m_values; }
  int32_t Count() const { return m_count; }
  int32_t Capacity() const { return m_capacity; }
  int32_t Room() const { return m_capacity - m_count; }
  void Empty() { m_count = 0; }

 private:
  T* m_values = nullptr;
  int32_t m_count = 0;
  int32_t m_capacity = 0;
};

// Appends the vector (x1, y1)-(x2, y2) to a coordinate path with room for it.
inline void PushVector(GrowingArray<int32_t>& path, int32_t x1, int32_t y1, int32_t x2, int32_t y2) {
  path.Push(x1);
  path.Push(y1);
  path.Push(x2);
  path.Push(y2);
}

// The meander's connection test: the squared distance from the previous point
// to (x, y), from 32-bit differences summed in double, is strictly below the
// square of `connectDistance`.
bool WithinConnectDistance(int32_t previousX, int32_t previousY, int32_t x, int32_t y,
                           int32_t connectDistance);

// The meander's cross check of the connection from (xp, yp) to (x, y) against
// the runs of a second table, from `cursor` (a column of it), which is left
// where the check ended. True when no column strictly between xp and x (and
// none at an end the cursor came from) has a run holding the connecting
// line. A null cursor passes.
bool CrossCheckPasses(TABEL*& cursor, int32_t xp, int32_t yp, int32_t x, int32_t y);

// The path of a consuming meander: coordinates in steps of 60000 values and
// the end of the last run drawn (2147483647, 2147483647 before the first).
struct MeanderPath {
  static constexpr int32_t kGrowthStep = 60000;
  GrowingArray<int32_t> coordinates{kGrowthStep};
  int32_t previousX = INT32_MAX;
  int32_t previousY = INT32_MAX;
};

// One round of a consuming meander at column x: the connection from the
// previous point to (x, entryY) when close enough and, with a check cursor,
// not blocked, never in the first round; then the run (x, entryY)-(x, exitY), which becomes the previous
// point; then growth when the array cannot hold another round.
void DrawMeanderRound(MeanderPath& path, TABEL** checkCursor, int32_t connectDistance, int32_t x,
                      int32_t entryY, int32_t exitY);

// One call of ADD_HATCHINGS or ADD_SUPPORT: which table goes first, and
// whether each is walked from its high end down.
struct DirectionOrder {
  bool yFirst;
  bool xDownwards;
  bool yDownwards;
};

// The order of this call: with `cycle`, the entry of the step counter modulo
// 8, after which the counter rises by one (wrapping at 65536); otherwise
// `fixed`, and the counter stays.
inline DirectionOrder TakeDirectionOrder(uint16_t& counter, bool cycle, const DirectionOrder (&orders)[8],
                                         DirectionOrder fixed) {
  if (!cycle)
    return fixed;
  const DirectionOrder order = orders[counter % 8];
  counter = static_cast<uint16_t>(counter + 1);
  return order;
}

// Calls hatchX(downwards) and hatchY(downwards) in the given order.
template <class HatchX, class HatchY>
void HatchInOrder(const DirectionOrder& order, HatchX hatchX, HatchY hatchY) {
  if (order.yFirst) {
    hatchY(order.yDownwards);
    hatchX(order.xDownwards);
  } else {
    hatchX(order.xDownwards);
    hatchY(order.yDownwards);
  }
}

}  // namespace kelvor2d_detail
