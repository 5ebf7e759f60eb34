// Shared block helpers of vector editing, which the splitting, cutting and
// searching of vectors use as well.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "layer/values.h"
#include "layer/vector_layer.h"

// Largest number of vectors ZET_CIRKEL_IN_VECTOR_LAYER makes for one circle.
constexpr double kMaxCircleVectors = 16777216.0;

// Unlinks and releases every block of Size 0, lowering NumBlocks; extents stay.
void RemoveEmptyBlocks(VECTOR_LAYER& layer);

// The type code of a char argument: the char widened with its sign to 16 bits.
inline uint16_t WidenVectorType(char type) {
  return static_cast<uint16_t>(static_cast<int16_t>(static_cast<signed char>(type)));
}

// Keeps, in order, the vectors of the block for which keep(vector, index) is
// true (vector points at its four coordinates), in a new array of exact size;
// a block left with none gets Size 0 and a null Block.
template <class Keep>
void KeepVectors(VECTOR_BLOK* b, Keep keep) {
  const int32_t vectors = b->Size > 0 ? b->Size / 4 : 0;
  int32_t* kept = nullptr;
  int32_t size = 0;
  for (int32_t i = 0; i < vectors; ++i) {
    const int32_t* v = b->Block + 4 * i;
    if (!keep(v, i))
      continue;
    if (kept == nullptr)
      kept = static_cast<int32_t*>(malloc(sizeof(int32_t) * 4 * static_cast<size_t>(vectors - i)));
    memcpy(kept + size, v, sizeof(int32_t) * 4);
    size += 4;
  }
  free(b->Block);
  b->Block = nullptr;
  b->Size = size;
  if (size > 0)
    b->Block = static_cast<int32_t*>(realloc(kept, sizeof(int32_t) * static_cast<size_t>(size)));
}

// A list of vectors in a caller-made array with room fixed up front: the
// working lists of splitting and cutting.
struct VectorList {
  int32_t* values;  // malloc'ed by the maker, released by it
  int32_t size;     // coordinates in use
  void Add(MMPoint2d<long> from, MMPoint2d<long> to) {
    values[size++] = from.x;
    values[size++] = from.y;
    values[size++] = to.x;
    values[size++] = to.y;
  }
  void Append(const VectorList& other) {
    memcpy(values + size, other.values, sizeof(int32_t) * static_cast<size_t>(other.size));
    size += other.size;
  }
};

// A VectorList with room for `room` coordinates (at least one).
inline VectorList MakeVectorList(size_t room) {
  return {static_cast<int32_t*>(malloc(sizeof(int32_t) * (room > 0 ? room : 1))), 0};
}

// Calls run(first, last) for each run of the block (a stretch of vectors each
// starting where the one before ended), with the indices of its first and last
// vector, in order. A block without whole vectors has no runs.
template <class Run>
void ForEachRun(const VECTOR_BLOK* b, Run run) {
  const int32_t vectors = b->Size > 0 ? b->Size / 4 : 0;
  int32_t first = 0;
  for (int32_t i = 0; i < vectors; ++i) {
    const int32_t* v = b->Block + 4 * i;
    const bool ends = i + 1 == vectors || v[2] != v[4] || v[3] != v[5];
    if (!ends)
      continue;
    run(first, i);
    first = i + 1;
  }
}
