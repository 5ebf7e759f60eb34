// Vector blocks (straight segments of one type) and the chain of all blocks of
// a layer.
#pragma once

#include <cstdint>

#include "kelvor2d_export.h"
#include "layer/values.h"

// Vector type codes the library itself names.
constexpr uint16_t kVectorTypeFromContour = 1;  // vectors that were contours
constexpr uint16_t kVectorTypeSupportX = 38;    // support in x when the caller asks for '*'
constexpr uint16_t kVectorTypeSupportY = 41;    // support in y when the caller asks for '*'
constexpr char kVectorTypeSupportDefault = 42;  // '*': argument only, never stored
constexpr unsigned char kVectorTypeAll = 255;   // argument selecting every type, never stored

// A block of vectors of one type. Block holds x1, y1, x2, y2 per vector; a
// polyline is a run of vectors each starting where the one before ended. The
// destructor releases nothing.
class KELVOR2D_API VECTOR_BLOK {
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

  // ---- support hatching, joining (hatch/support.cpp) ----
  // Joins neighbouring vectors whose gap is strictly shorter than `distance`
  // with a connecting vector, leaving the given vectors as they are. A block
  // of less than one vector, or a failed allocation, leaves it unchanged.
  void CONNECT_VECTORS(int32_t distance);
};

// The chain of all blocks of a layer. Owns its blocks; no destructor of its
// own: Clear or LEEG_LAAG ends a layer. A by-value copy owns nothing.
class KELVOR2D_API VECTOR_LAYER {
 public:
  // Extents; a cache, exact after BEPAAL_EXTREMA. Empty: maxima INT32_MIN,
  // minima INT32_MAX.
  int32_t MaxX = kEmptyExtentMax;
  int32_t MaxY = kEmptyExtentMax;
  int32_t MinX = kEmptyExtentMin;
  int32_t MinY = kEmptyExtentMin;
  int32_t NumBlocks = 0;              // length of the chain
  VECTOR_BLOK* FirstBlock = nullptr;  // head of the chain, null when empty

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
  // Appends `block` (its own NextBlock is cleared), takes ownership, and grows
  // the extents by its Size / 2 points: how every generator hands over a block.
  void ADD_VECTOR_BLOK(VECTOR_BLOK* block);
  // Appends deep copies of the source's blocks and merges the extents; true.
  bool COPIEER_VECTOR_LAYER(const VECTOR_LAYER& source);
  // Exact extents over both ends of every vector.
  void BEPAAL_EXTREMA();

  // ---- vector editing and transforms (vectors/editing.cpp) ----
  // Appends one block of the n coordinates (copied; n counts coordinates) and
  // grows the extents by its points; nothing when n < 4.
  void VOEG_COORD_TOE_AAN_VECTOR_LAYER(int32_t* coordinates, int32_t n, char type);
  // As VOEG_COORD_TOE_AAN_VECTOR_LAYER with 2n coordinates: consecutive point
  // pairs are vectors (no polyline is made); nothing when n < 2.
  void VOEG_PTN_TOE_AAN_VECTOR_LAYER(MMPoint2d<long>* points, int32_t n, char type);
  // Appends a circle as one closed run of 360/degrees vectors and recomputes the
  // extents. Nothing when radius is 0 or degrees is outside (0, 45]: a step of
  // exactly 0 is refused too, as is one giving more than 16777216 vectors.
  void ZET_CIRKEL_IN_VECTOR_LAYER(int32_t radius, int32_t x, int32_t y, float degrees, char type);
  // Rotates every point about centre (float, truncated) and recomputes the
  // extents; degrees exactly 0 changes nothing, not even stale extents.
  void ROTEER_LAAG(MMPoint2d<long> centre, float degrees);
  // Moves every point and the extents; nothing on a layer without blocks.
  void TRANSLEER_LAAG(int32_t dx, int32_t dy);
  // Mirrors in the horizontal line y = centre.y (centre.x unused); the extents
  // follow; nothing on a layer without blocks.
  void SPIEGEL_LAAG(MMPoint2d<long> centre);
  // Scales about centre (float, truncated); the extents go through the same
  // formulas without exchange, so a negative scale leaves MinX > MaxX until
  // BEPAAL_EXTREMA. Nothing on a layer without blocks.
  void HERSCHAAL_LAAG(MMPoint2d<long> centre, float scaleX, float scaleY);
  // Drops every vector whose start equals its end; emptied blocks stay with
  // Size 0 and a null Block. Always recomputes the extents.
  void VERWIJDER_PUNT_VECTOREN();
  // Drops point vectors, then every vector hitting the box (SegmentHitsBox),
  // then every block of Size 0; recomputes the extents. True when a vector hit.
  bool VERWIJDER_VECTOREN_DOOR_BOX(BOX box);
  // Moves all of other's blocks to the end of this chain and merges the
  // extents; other ends empty. Always true.
  bool VOEG_TOE(VECTOR_LAYER& other);
  // Moves other's blocks of the type (widened with its sign) to the front of
  // this chain, in reverse order; no extents change. True when a block moved.
  bool VOEG_TOE_VOLGENS_VECTOR_TYPE(VECTOR_LAYER& other, char type);
  // Reverses the chain in place.
  void VERANDER_VECTOR_BLOK_VOLGORDE();

  // ---- straight hatching (hatch/straight.cpp) ----
  // One block of the runs of an X table, a serpentine from the last column
  // down (LINKS) or from the first up (RECHTS); long vectors are shortened at
  // their start. True also when there is nothing to draw; false when the
  // block or its buffer cannot be allocated (layer and table as they were).
  // A column with a null List, also the first, is passed over without
  // turning the direction; the unpaired last crossing of an odd list is left
  // out. The table is not changed.
  bool ADD_X_ARCERING_LINKS(class TABEL& table, struct MSliceFileParameters& parameters, char type);
  bool ADD_X_ARCERING_RECHTS(class TABEL& table, struct MSliceFileParameters& parameters, char type);
  // The same on a Y table: ONDER from the last column down, BOVEN upwards.
  bool ADD_Y_ARCERING_ONDER(class TABEL& table, struct MSliceFileParameters& parameters, char type);
  bool ADD_Y_ARCERING_BOVEN(class TABEL& table, struct MSliceFileParameters& parameters, char type);

  // ---- support hatching (hatch/support.cpp) ----
  // Straight hatching of both tables in an order that, with CycleHatchOrder,
  // steps through eight orders with a process-wide 16-bit counter (its own,
  // not that of ADD_HATCHINGS). Type '*' (42) gives 38 in x and 41 in y.
  // Always true; the tables are not changed.
  bool ADD_SUPPORT(struct MSliceFileParameters& parameters, class TABEL& xTable, class TABEL& yTable,
                   char type);
  // Walls of an X table: one block per run followed from column to column while
  // the crossing count stays the same, joined by CONNECT_VECTORS with
  // SupportConnectDistance. Always true, also when a wall's block cannot be
  // allocated (that wall is left out). A null List counts as a column of count
  // 0. The table is not changed.
  bool ADD_SUPPORT_SINGLE_DIRECTION(class TABEL& table, struct MSliceFileParameters& parameters, char type);

  // ---- meander hatching (hatch/meander.cpp) ----
  // One block of an X table drawn as one path: each run is followed by the
  // nearest run of the next column with runs (entered at its near end), and
  // joined to it when strictly closer than MeanderConnectDistance. backwards 0
  // starts at the low end, otherwise at the high end. Consumes the table (fit
  // only for LEEG_TABEL afterwards). A null table, a table without runs, or a
  // table with a list ending inside a pair adds nothing and is left as it was.
  // A column with a null List counts as empty. Throws std::bad_alloc when the
  // path cannot grow; nothing is added then.
  void BEWAAR_X_TABEL_MEANDER(class TABEL* table, struct MSliceFileParameters& parameters,
                              unsigned short backwards, char type);
  // As BEWAAR_X_TABEL_MEANDER, but a connection crossing a run of checkTable
  // (only read) is not made. A null checkTable, or one without columns,
  // blocks nothing.
  void ADD_X_TABEL_MEANDER_CROSS_CHECKED(class TABEL* table, class TABEL* checkTable,
                                         struct MSliceFileParameters& parameters, unsigned short backwards,
                                         char type);

  // ---- no-switch meander (hatch/meander_no_switch.cpp) ----
  // One path through an X table from its highest column down, each run drawn
  // in the direction its column's parity fixes, joined as the cross-checked
  // meander joins. backwards is not looked at. Consumes the table. Adds
  // nothing, leaving the table as it was, when XHatchDistance is 0, when a
  // list ends inside a pair, or when the table has no runs; a null or empty
  // checkTable blocks nothing. Throws std::bad_alloc when the path cannot grow.
  void ADD_X_TABEL_MEANDER_NO_SWITCH_CROSS_CHECKED(class TABEL* table, class TABEL* checkTable,
                                                   struct MSliceFileParameters& parameters,
                                                   unsigned short backwards, char type);
  // Sweeps the columns once from low to high, extending many paths at once by
  // one run per column, entered high and low in turn; one block per path. The
  // table is not changed. Nothing when MeanderConnectDistance is not greater
  // than XHatchDistance or the table is null or empty; a null List counts as
  // an empty column, an unpaired last crossing is ignored, and a null or empty
  // checkTable blocks nothing. Throws std::bad_alloc (nothing added) when
  // memory runs out.
  void ADD_X_TABEL_MEANDER_NO_SWITCH_CROSS_CHECKED_TYK(class TABEL* table, class TABEL* checkTable,
                                                       struct MSliceFileParameters& parameters, char type);

  // ---- smart hatching (hatch/smart.cpp) ----
  // One block of the runs of an X table ordered by proximity, each run entered
  // at its near end; direction 0 walks from low positions up, any other value
  // down. Long vectors are shortened at their end when ShortenSmartHatch.
  // Consumes the table (fit only for LEEG_TABEL afterwards). True also when
  // there is nothing to draw. False, with nothing added, when the block or its
  // buffer cannot be allocated, when the walk meets a crossing without its
  // partner (the vectors drawn so far are dropped, the table stays partly
  // consumed), or when the lists hold more runs than their counts. A null
  // List counts as empty.
  bool ADD_X_SMART_HATCHING(class TABEL& table, struct MSliceFileParameters& parameters,
                            unsigned short direction, char type);
  // The same on a Y table.
  bool ADD_Y_SMART_HATCHING(class TABEL& table, struct MSliceFileParameters& parameters,
                            unsigned short direction, char type);
  // Smart hatching of both tables in an order that, with CycleHatchOrder,
  // steps through eight orders with a process-wide 16-bit counter (its own,
  // not that of ADD_SUPPORT). Always true; consumes both tables.
  bool ADD_HATCHINGS(struct MSliceFileParameters& parameters, class TABEL& xTable, class TABEL& yTable,
                     char type);

  // ---- contour and vector conversion (vectors/conversion.cpp) ----
  // Merges blocks whose Type's low byte equals `type` (255: every block) into
  // blocks of at most 60000 coordinates, in chain order; a merged block takes
  // the low byte, widened with its sign, as Type. With another type than 255,
  // blocks of other types stay where they stand in the chain. Extents stay.
  void VOEG_VECTOR_BLOKKEN_UIT_VECTOR_LAAG_SAMEN_VOLGENS_TYPE(char type);

  // ---- cutting with a line (vectors/line_cut.cpp) ----
  // Drops point vectors (extents recomputed), then splits every vector that
  // the segment (x1,y1)-(x2,y2) crosses in two at the crossing; with gap, the
  // piece leading up to it ends one unit short. True when a vector was cut.
  bool CUT_VECTORS_WITH_LINE(int32_t& x1, int32_t& y1, int32_t& x2, int32_t& y2, bool gap);

  // ---- closest search (vectors/closest.cpp) ----
  // The searches below look only at blocks of the selectable types 1, 33, 34,
  // 37, 38, 40, 41 (except the box selections, which take every type); at equal
  // distance the first in chain order wins.

  // Nearest stored point (with endsOnly, only the ends of runs) written to x,
  // y; false, and x, y unchanged, when no point was looked at.
  bool GET_CLOSEST_POINT(int32_t& x, int32_t& y, bool endsOnly);
  // Nearest vector: pointers into its Block, *block (when block is not null),
  // nearEnd (true when its end is nearer than its start) and the truncated
  // distance are stored when a vector was found, even beyond tolerance. True
  // when found and distance < tolerance. Nothing found: outputs untouched
  // but distance, which becomes INT32_MIN.
  bool SEARCH_CLOSEST_VECTOR(MMPoint2d<long> point, int32_t*& x1, int32_t*& y1, int32_t*& x2, int32_t*& y2,
                             bool& nearEnd, VECTOR_BLOK** block, int32_t& distance, int32_t tolerance);
  // Removes the nearest vector when its float distance is below tolerance,
  // drops blocks of Size 0 and recomputes the extents; false: nothing changed.
  bool REMOVE_CLOSEST_VECTOR(int32_t& x, int32_t& y, int32_t tolerance);
  // The run through the nearest vector as edge pairs (found vector, those
  // behind it, those before it nearest first); caller frees. Null, count 0,
  // when nothing lies within tolerance.
  MMPoint2d<long>* GET_CLOSEST_VECTOR_POLYLINE(int32_t& count, int32_t& x, int32_t& y, int32_t tolerance);
  // Removes that run and drops blocks of Size 0; the extents stay. False when
  // nothing lies within tolerance.
  bool REMOVE_CLOSEST_VECTOR_POLYLINE(int32_t& x, int32_t& y, int32_t tolerance);
  // Runs of any type lying wholly in the box (bounds included; box normalised
  // in place) as edge pairs; caller frees. Null when the layer holds no
  // coordinate; an empty allocation with count 0 when no run qualifies.
  MMPoint2d<long>* GET_OPEN_POLYLINES_IN_BOX(int32_t& count, BOX& box);
  // Removes those runs, drops blocks of Size 0, recomputes the extents; true
  // when a run was removed.
  bool REMOVE_OPEN_POLYLINES_IN_BOX(BOX& box);
  // Half the number of run ends in selectable blocks (a closed ring counts 1).
  int32_t NUMBER_OF_OPEN_CONTOURS();
};
