// Moving geometry between the contour and vector forms of a layer, merging of
// vector blocks by type, and the direction of a block's hatching.
#pragma once

#include <cstdint>

#include "kelvor2d_export.h"
#include "layer/contour.h"
#include "layer/contour_layer.h"
#include "layer/layer.h"
#include "layer/number_lists.h"
#include "layer/vector_layer.h"

// Adds the contour's segments, in order and the closing one last when
// `closing`, as one block of type 1 at the end of `vectors` (no block for
// fewer than one segment), then drops the point vectors of the whole layer.
// The contour itself is not changed.
void AddContourAsVectors(VECTOR_LAYER& vectors, const CONTOUR& contour, bool closing);

// Unlinks and releases every contour of fewer than minPoints points, keeping
// NumContours, FirstContour and LastContour right; extents stay.
void RemoveContoursBelow(CONTOUR_LAYER& layer, int32_t minPoints);

// Turns every run of vectors of every block into an open or closed contour of
// Type 1 (2 points per vector), in front of the contour chain, last run first;
// empties the vector layer and recomputes and joins the extents. Null: nothing.
KELVOR2D_API void VERPLAATS_VECTOR_LAAG_ALS_OPEN_CONTOUREN_NAAR_CONTOUR_LAAG(LAYER* layer);

// Appends the count points as one block of count - 1 chained vectors (no
// closing vector) and recomputes the extents; nothing when count < 2 or the
// coordinates cannot be allocated.
KELVOR2D_API void COPIEER_OPEN_CONTOUR_NAAR_VECTOR_LAAG(VECTOR_LAYER& layer, MMPoint2d<long>* points,
                                                        int32_t count, char type);

// 1 when every vector of the block runs along y (equal x), else 2 when every
// vector runs along x (equal y), else 0; 0 also for null or Size < 4.
KELVOR2D_API int32_t X_OF_Y_HATCH(VECTOR_BLOK* block);

// Moves the list's points (Value x, Second y) into the fresh contour: NumPoints
// becomes the head's count, every element is released, the head is left as it
// was and must be discarded. Elements beyond the count are released unused;
// missing ones leave zero points. Null list or contour: nothing.
KELVOR2D_API void ZET_L_LIJST_IN_LAAG(L_LIST_2* list, CONTOUR* contour);

// Removes spikes: when `layer`'s extents pass the frame of `reference`'s
// extents widened by 7|distance| + distance, drops contours of fewer than 3
// points, moves each point outside the frame that the contour leaves at once
// (next point within 50|distance| of the last good point on both axes) onto
// that good point, removes doubled points and short contours, and recomputes
// the extents. False, with nothing changed, when the extents lie inside the
// frame (or layer is null). True at once, with the rest unvisited, at a
// contour without a point inside the frame. Both extents must be up to date.
KELVOR2D_API bool TEST_EN_FILTER_LAAG_OP_PIEKEN(CONTOUR_LAYER* layer, const CONTOUR_LAYER& reference,
                                                int32_t distance);
