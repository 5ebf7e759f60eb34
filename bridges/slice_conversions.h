// The bridge between the layer model (LAYER, CONTOUR_LAYER, VECTOR_LAYER) and
// the slice model (M2DSlice and its contour and vector layers).
#pragma once

#include "kelvor2d_export.h"
#include "layer/contour_layer.h"
#include "layer/layer.h"
#include "layer/vector_layer.h"
#include "sibling/slice/slice.h"

// Field mapping: Closed and Outer as 0/1 and bool; RightHanded is not carried
// (7 on the way in; on the way out it decides whether a closed contour is
// inverted); Type via the slice type codes; vectors change coordinate order
// (x1, y1, x2, y2 in a VECTOR_BLOK, StartX, EndX, StartY, EndY in the slice).
// No function computes extents: they keep what LEEG_LAAG left.
namespace M2DSliceConversions {

// Replaces the layer by the slice contours; a slice contour without points gives no CONTOUR.
KELVOR2D_API void Convert(const M2DSliceContourLayer& source, CONTOUR_LAYER& target);
// Replaces the slice contours by the layer; a CONTOUR without points gives an empty slice contour.
KELVOR2D_API void Convert(const CONTOUR_LAYER& source, M2DSliceContourLayer& target);
// Replaces the layer by the slice blocks; blocks without vectors are left out.
KELVOR2D_API void Convert(const M2DSliceVectorLayer& source, VECTOR_LAYER& target);
// Replaces the slice blocks; a VECTOR_BLOK of Size 0 (or less) is left out, Size 1..3 gives an empty block.
KELVOR2D_API void Convert(const VECTOR_LAYER& source, M2DSliceVectorLayer& target);
// Replaces Contours (areas first, then the border) and Vectors, and sets Z to 0.
KELVOR2D_API void Convert(const M2DSlice& source, LAYER& target);
// Clears the slice (z and z area stay), then writes all contours to its border, and the vectors.
KELVOR2D_API void Convert(const LAYER& source, M2DSlice& target);

// Convert, then Z from the slice.
KELVOR2D_API void QuerySlice(const M2DSlice& slice, LAYER& layer);
// The slice border alone; the areas are not read.
KELVOR2D_API void QuerySlice(const M2DSlice& slice, CONTOUR_LAYER& layer);
// The slice vectors.
KELVOR2D_API void QuerySlice(const M2DSlice& slice, VECTOR_LAYER& layer);

// Convert, then SetZ(Z) unless the slice's z area is valid.
KELVOR2D_API void SetSlice(M2DSlice& slice, const LAYER& layer);
// Replaces the slice border only; the slice is not cleared.
KELVOR2D_API void SetSlice(M2DSlice& slice, const CONTOUR_LAYER& layer);
// Replaces the slice vectors only; the slice is not cleared.
KELVOR2D_API void SetSlice(M2DSlice& slice, const VECTOR_LAYER& layer);
// As the const form; with empty true the LAYER is then emptied (LEEG_LAAG, Z 0).
KELVOR2D_API void SetSlice(M2DSlice& slice, LAYER& layer, bool empty);
// As the const form; with empty true the layer is then emptied by LEEG_LAAG.
KELVOR2D_API void SetSlice(M2DSlice& slice, CONTOUR_LAYER& layer, bool empty);
// As the const form; with empty true the layer is then emptied by LEEG_LAAG.
KELVOR2D_API void SetSlice(M2DSlice& slice, VECTOR_LAYER& layer, bool empty);

}  // namespace M2DSliceConversions
