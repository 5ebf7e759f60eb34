#include "bridges/slice_conversions.h"

#include <cstdint>
#include <new>

#include "sibling/slice/slice_vector_types.h"

namespace M2DSliceConversions {

namespace {

constexpr unsigned char kUnknown = kNotDetermined;
constexpr int32_t kCoordinatesPerVector = 4;

// Copies the points of a ring that has a first point into a fresh CONTOUR.
void CopyRingIntoContour(const M2DSliceContour& source, CONTOUR& contour) {
  contour.AllocPoints(static_cast<int32_t>(source.GetNumPoints()));
  const M2DSliceContourPoint* first = source.GetFirstPoint();
  const M2DSliceContourPoint* point = first;
  int32_t i = 0;
  do {
    contour.Points[i].x = point->x;
    contour.Points[i].y = point->y;
    point = point->next;
    ++i;
  } while (point != first && i < contour.NumPoints);
}

// Appends a CONTOUR for each slice contour that has points, adopted by the layer.
void AppendSliceContours(const M2DSliceContourLayer& source, CONTOUR_LAYER& target) {
  for (const M2DSliceContour& sliceContour : source) {
    if (sliceContour.GetFirstPoint() == nullptr)
      continue;
    auto* contour = new CONTOUR;
    target.AddContourAtEnd(contour);
    CopyRingIntoContour(sliceContour, *contour);
    contour->Closed = sliceContour.GetIsClosed() ? 1 : 0;
    contour->Outer = sliceContour.GetIsOuterContour() ? 1 : 0;
    const unsigned short code = M2DSliceVectorTypes::ConvertToSliType(sliceContour.GetTypeInfoHolder());
    contour->Type = static_cast<char>(code & 0xFF);
  }
}

// An outer contour goes to the slice clockwise and a hole counter-clockwise, as
// far as Outer and RightHanded (neither 7) tell.
bool NeedsInversion(const CONTOUR& contour) {
  if (contour.Outer == kUnknown || contour.RightHanded == kUnknown)
    return false;
  return (contour.Outer != 0 && contour.RightHanded == 0) || (contour.Outer == 0 && contour.RightHanded != 0);
}

// The type code of a CONTOUR: its byte as a signed char, widened to 16 bits.
unsigned short ContourTypeCode(const CONTOUR& contour) {
  return static_cast<unsigned short>(static_cast<int16_t>(static_cast<signed char>(contour.Type)));
}

void FillSliceContour(const CONTOUR& contour, M2DSliceContour& sliceContour) {
  for (int32_t i = 0; i < contour.NumPoints; ++i) {
    sliceContour.InsertAtEnd(contour.Points[i].x, contour.Points[i].y, nullptr);
  }
  sliceContour.SetIsClosed(contour.Closed != 0);
  sliceContour.SetIsOuterContour(contour.Outer != 0);
  if (sliceContour.GetIsClosed() && NeedsInversion(contour))
    sliceContour.Invert();
  sliceContour.GetTypeInfoHolder().SetTypeInfo(
      M2DSliceVectorTypes::ConvertFromSliType(ContourTypeCode(contour)));
}

// A new VECTOR_BLOK holding the block's vectors as x1, y1, x2, y2; std::bad_alloc
// when its coordinates cannot be had.
VECTOR_BLOK* NewVectorBlok(const M2DSliceVectorBlock& block) {
  auto* blok = new VECTOR_BLOK;
  blok->AllocateCoordinates(kCoordinatesPerVector * static_cast<int32_t>(block.Vectors.size()));
  if (blok->Block == nullptr) {
    delete blok;
    throw std::bad_alloc();
  }
  int32_t* out = blok->Block;
  for (const M2DSliceVector& v : block.Vectors) {
    out[0] = v.StartX;
    out[1] = v.StartY;
    out[2] = v.EndX;
    out[3] = v.EndY;
    out += kCoordinatesPerVector;
  }
  blok->Type = M2DSliceVectorTypes::ConvertToSliType(block.GetTypeInfoHolder());
  return blok;
}

void FillSliceBlock(const VECTOR_BLOK& blok, M2DSliceVectorBlock& block) {
  block.Vectors.resize(static_cast<size_t>(blok.Size / kCoordinatesPerVector));
  const int32_t* in = blok.Block;
  for (M2DSliceVector& v : block.Vectors) {
    v.StartX = in[0];
    v.EndX = in[2];
    v.StartY = in[1];
    v.EndY = in[3];
    in += kCoordinatesPerVector;
  }
  block.GetTypeInfoHolder().SetTypeInfo(M2DSliceVectorTypes::ConvertFromSliType(blok.Type));
}

}  // namespace

void Convert(const M2DSliceContourLayer& source, CONTOUR_LAYER& target) {
  target.LEEG_LAAG();
  AppendSliceContours(source, target);
}

void Convert(const CONTOUR_LAYER& source, M2DSliceContourLayer& target) {
  target.MakeEmpty();
  for (const CONTOUR* contour = source.FirstContour; contour != nullptr; contour = contour->NextContour) {
    M2DSliceContour* sliceContour = target.AddContourAtEnd();
    if (contour->NumPoints <= 0)
      continue;
    FillSliceContour(*contour, *sliceContour);
  }
}

void Convert(const M2DSliceVectorLayer& source, VECTOR_LAYER& target) {
  target.LEEG_LAAG();
  VECTOR_BLOK* last = nullptr;
  for (const M2DSliceVectorBlock& block : source) {
    if (block.Vectors.empty())
      continue;
    VECTOR_BLOK* blok = NewVectorBlok(block);
    if (last == nullptr) {
      target.FirstBlock = blok;
    } else {
      last->NextBlock = blok;
    }
    last = blok;
    ++target.NumBlocks;
  }
}

void Convert(const VECTOR_LAYER& source, M2DSliceVectorLayer& target) {
  target.MakeEmpty();
  for (const VECTOR_BLOK* blok = source.FirstBlock; blok != nullptr; blok = blok->NextBlock) {
    if (blok->Size <= 0)
      continue;
    FillSliceBlock(*blok, *target.AddVectorBlockAtEnd());
  }
}

void Convert(const M2DSlice& source, LAYER& target) {
  target.LEEG_LAAG();
  // The border's contours go straight behind the areas', so that the layer
  // adopts them all (Owner) and no temporary layer is left to release.
  AppendSliceContours(*source.GetAreas(), target.Contours);
  AppendSliceContours(*source.GetSliceBorder(), target.Contours);
  Convert(*source.GetVectors(), target.Vectors);
}

void Convert(const LAYER& source, M2DSlice& target) {
  target.Clear();
  {
    M2DSliceComponentContoursUpdate update = target.GetSliceBorderUpdate();
    Convert(source.Contours, *update);
  }
  {
    M2DSliceComponentVectorsUpdate update = target.GetVectorsUpdate();
    Convert(source.Vectors, *update);
  }
}

void QuerySlice(const M2DSlice& slice, LAYER& layer) {
  Convert(slice, layer);
  layer.Z = slice.Z;
}

void QuerySlice(const M2DSlice& slice, CONTOUR_LAYER& layer) {
  Convert(*slice.GetSliceBorder(), layer);
}

void QuerySlice(const M2DSlice& slice, VECTOR_LAYER& layer) {
  Convert(*slice.GetVectors(), layer);
}

void SetSlice(M2DSlice& slice, const LAYER& layer) {
  Convert(layer, slice);
  if (!slice.GetZArea().IsValid())
    slice.SetZ(layer.Z);
}

void SetSlice(M2DSlice& slice, const CONTOUR_LAYER& layer) {
  M2DSliceComponentContoursUpdate update = slice.GetSliceBorderUpdate();
  Convert(layer, *update);
}

void SetSlice(M2DSlice& slice, const VECTOR_LAYER& layer) {
  M2DSliceComponentVectorsUpdate update = slice.GetVectorsUpdate();
  Convert(layer, *update);
}

void SetSlice(M2DSlice& slice, LAYER& layer, bool empty) {
  SetSlice(slice, static_cast<const LAYER&>(layer));
  if (empty)
    layer.LEEG_LAAG();
}

void SetSlice(M2DSlice& slice, CONTOUR_LAYER& layer, bool empty) {
  SetSlice(slice, static_cast<const CONTOUR_LAYER&>(layer));
  if (empty)
    layer.LEEG_LAAG();
}

void SetSlice(M2DSlice& slice, VECTOR_LAYER& layer, bool empty) {
  SetSlice(slice, static_cast<const VECTOR_LAYER&>(layer));
  if (empty)
    layer.LEEG_LAAG();
}

}  // namespace M2DSliceConversions
