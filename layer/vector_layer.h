// Vector blocks (straight segments of one type) and the chain of all blocks of
// a layer.
#pragma once

#include <cstdint>

#include "layer/values.h"

// Vector type codes the library itself names.
constexpr uint16_t kVectorTypeFromContour = 1;  // vectors that were contours
constexpr uint16_t kVectorTypeSupportX = 38;     // support in x when the caller asks for '*'
constexpr uint16_t kVectorTypeSupportY = 41;     // support in y when the caller asks for '*'
constexpr char kVectorTypeSupportDefault = 42;   // '*': argument only, never stored
constexpr unsigned char kVectorTypeAll = 255;    // argument selecting every type, never stored

// A block of vectors of one type. Block holds x1, y1, x2, y2 per vector; a
// polyline is a run of vectors each starting where the one before ended. The
// destructor releases nothing.
class VECTOR_BLOK {
 public:
  uint16_t Type = 0;                 // vector type of every vector in the block
  int32_t Size = 0;                  // number of 32-bit coordinates in Block (4 per vector)
  int32_t* Block = nullptr;          // owned, malloc'ed coordinates
  VECTOR_BLOK* NextBlock = nullptr;  // next block of the chain, null at the end

  VECTOR_BLOK() = default;
  ~VECTOR_BLOK() {}

  // Releases the coordinates; Type and NextBlock stay.
  void Clear();
  // Resizes to n coordinates, keeping the first min(n, Size).
  void AllocateCoordinates(int32_t n);
  void AllocateVectors(int32_t v) { AllocateCoordinates(4 * v); }
  // Copies n coordinates; the array is reused when the size is unchanged.
  void SetCoordinates(int32_t* source, int32_t n);
  int32_t GetSize() const { return Size; }
  int32_t* GetBlock() const { return Block; }
  VECTOR_BLOK* GetNextBlock() const { return NextBlock; }
  // Store the value and nothing else; _SetBlock does not release the old block.
  void _SetSize(int32_t n) { Size = n; }
  void _SetBlock(int32_t* p) { Block = p; }
  void _SetNextBlock(VECTOR_BLOK* b) { NextBlock = b; }
};

// The chain of all blocks of a layer. Owns its blocks; no destructor of its
// own: Clear or LEEG_LAAG ends a layer. A by-value copy owns nothing.
class VECTOR_LAYER {
 public:
  // Extents; a cache, exact after BEPAAL_EXTREMA. Empty: maxima INT32_MIN,
  // minima INT32_MAX.
  int32_t MaxX = kEmptyExtentMax;
  int32_t MaxY = kEmptyExtentMax;
  int32_t MinX = kEmptyExtentMin;
  int32_t MinY = kEmptyExtentMin;
  int32_t NumBlocks = 0;               // length of the chain
  VECTOR_BLOK* FirstBlock = nullptr;   // head of the chain, null when empty

  VECTOR_LAYER() = default;

  // ---- container ----
  VECTOR_BLOK* GetFirstBlock() const { return FirstBlock; }
  // Walks the chain; null on an empty layer.
  VECTOR_BLOK* GetLastBlock() const;
  int32_t GetNumBlocks() const { return NumBlocks; }
  void _SetFirstBlock(VECTOR_BLOK* b) { FirstBlock = b; }
  void _SetNumBlocks(int32_t n) { NumBlocks = n; }
  // Releases every block and empties the extents, always.
  void LEEG_LAAG();
  void Clear() { LEEG_LAAG(); }
  void SwapWith(VECTOR_LAYER& other);
  // Empties this layer, then takes the content of `other`, which is left empty.
  void MoveTo(VECTOR_LAYER& other);
  void AddBlockAtEnd(VECTOR_BLOK* b);
  void AddBlockAtFront(VECTOR_BLOK* b);
  // With after null, AddBlockAtFront.
  void AddBlockAfter(VECTOR_BLOK* b, VECTOR_BLOK* after);
  // Unlinks *b and returns its successor; null when *b is not in this layer.
  // With destroy, releases it and nulls the caller's pointer.
  VECTOR_BLOK* RemoveBlock(VECTOR_BLOK*& b, bool destroy);
  // Appends deep copies of the source's blocks and merges the extents; true.
  bool COPIEER_VECTOR_LAYER(const VECTOR_LAYER& source);
  // Exact extents over both ends of every vector.
  void BEPAAL_EXTREMA();

  // ---- vector editing and transforms (vectors/editing.cpp) ----

  // ---- straight hatching (hatch/straight.cpp) ----

  // ---- support hatching (hatch/support.cpp) ----

  // ---- meander hatching (hatch/meander.cpp) ----

  // ---- no-switch meander (hatch/meander_no_switch.cpp) ----

  // ---- smart hatching (hatch/smart.cpp) ----

  // ---- contour and vector conversion (vectors/conversion.cpp) ----

  // ---- cutting with a line (vectors/line_cut.cpp) ----

  // ---- closest search (vectors/closest.cpp) ----
};
