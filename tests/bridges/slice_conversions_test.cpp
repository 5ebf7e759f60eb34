#include "bridges/slice_conversions.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "support/border_builders.h"
#include "support/layer_builders.h"

namespace {

using testing_support::AddRing;
using testing_support::NewContour;
using testing_support::RingOf;
using testing_support::RingsOf;
using testing_support::XY;

using Ring = std::vector<XY>;
using Rings = std::vector<Ring>;
using Coordinates = std::vector<int32_t>;

const Ring kClockwise = {{0, 0}, {0, 10}, {10, 10}, {10, 0}};
const Ring kTriangleA = {{1, 1}, {1, 2}, {2, 2}}, kTriangleB = {{3, 3}, {3, 4}, {4, 4}};

unsigned short TypeCode(const M2DSliceVectorTypeInfoHolder& holder) {
  return M2DSliceVectorTypes::ConvertToSliType(holder);
}

void SetTypeCode(M2DSliceVectorTypeInfoHolder& holder, unsigned short code) {
  holder.SetTypeInfo(M2DSliceVectorTypes::ConvertFromSliType(code));
}

Rings RingsOfLayer(const CONTOUR_LAYER& layer) {
  Rings rings;
  for (const CONTOUR* c = layer.FirstContour; c != nullptr; c = c->NextContour) {
    rings.emplace_back();
    for (const MMPoint2d<long>& p : testing_support::PointsOf(*c))
      rings.back().emplace_back(p.x, p.y);
  }
  return rings;
}

// A CONTOUR with the kClockwise points and the given attributes.
CONTOUR* NewSquare(unsigned char closed, unsigned char outer, unsigned char rightHanded) {
  CONTOUR* c = NewContour({{0, 0}, {0, 10}, {10, 10}, {10, 0}}, closed);
  c->Outer = outer;
  c->RightHanded = rightHanded;
  return c;
}

Coordinates CoordinatesOf(const VECTOR_BLOK& blok) {
  return Coordinates(blok.Block, blok.Block + blok.Size);
}

VECTOR_BLOK* NewBlok(uint16_t type, Coordinates coordinates) {
  auto* blok = new VECTOR_BLOK;
  blok->Type = type;
  blok->SetCoordinates(coordinates.data(), static_cast<int32_t>(coordinates.size()));
  return blok;
}

// Two area triangles, a border of an empty contour and kClockwise, one vector
// block of type 7 and an empty block; z 250.
M2DSlice MakeSlice() {
  M2DSlice slice;
  {
    auto areas = slice.GetAreasUpdate();
    AddRing(*areas, kTriangleA);
    AddRing(*areas, kTriangleB);
    auto border = slice.GetSliceBorderUpdate();
    AddRing(*border, {});
    AddRing(*border, kClockwise);
    auto vectors = slice.GetVectorsUpdate();
    M2DSliceVectorBlock* block = vectors->AddVectorBlockAtEnd();
    block->Vectors.push_back({1, 2, 3, 4});
    SetTypeCode(block->GetTypeInfoHolder(), 7);
    vectors->AddVectorBlockAtEnd();
  }
  slice.SetZ(250);
  return slice;
}

TEST(SliceContoursToLayer, CopiesRingsFlagsAndLowTypeByteSkippingEmptyContoursAndComesBackAsItWas) {
  M2DSliceContourLayer source;
  M2DSliceContour* open = AddRing(source, {{5, 5}, {6, 5}, {6, 9}});
  open->SetIsClosed(false);
  SetTypeCode(open->GetTypeInfoHolder(), 0x1234);
  AddRing(source, {});
  M2DSliceContour* hole = AddRing(source, kClockwise);  // a hole running clockwise
  hole->SetIsOuterContour(false);
  hole->SetFirstPointAt(hole->GetFirstPoint()->next->next);
  CONTOUR_LAYER layer;
  layer.AddContourAtEnd(NewContour({{-50, -50}}));
  layer.BEPAAL_EXTREMA();

  M2DSliceConversions::Convert(source, layer);
  const Rings expected = {{{5, 5}, {6, 5}, {6, 9}}, {{10, 10}, {10, 0}, {0, 0}, {0, 10}}};
  ASSERT_EQ(RingsOfLayer(layer), expected);
  const CONTOUR* first = layer.FirstContour;
  EXPECT_EQ(first->Closed, 0);
  EXPECT_EQ(first->Outer, 1);
  EXPECT_EQ(first->RightHanded, kNotDetermined);
  EXPECT_EQ(first->Type, 0x34);
  EXPECT_EQ(first->Owner, &layer);
  EXPECT_EQ(layer.LastContour->Closed, 1);
  EXPECT_EQ(layer.LastContour->Outer, 0);
  EXPECT_EQ(layer.MaxX, kEmptyExtentMax);
  EXPECT_EQ(layer.MinY, kEmptyExtentMin);
  // Undetermined handedness: never inverted on the way back.
  M2DSliceContourLayer back;
  M2DSliceConversions::Convert(layer, back);
  EXPECT_EQ(RingsOf(back), expected);
  EXPECT_FALSE(back.GetLastContour()->GetIsOuterContour());
  EXPECT_EQ(TypeCode(back.GetFirstContour()->GetTypeInfoHolder()), 0x34);
  layer.LEEG_LAAG();
}

TEST(LayerContoursToSlice, EmptyContourStaysAndTypeIsSignExtended) {
  CONTOUR_LAYER layer;
  CONTOUR* empty = new CONTOUR;
  empty->Outer = 0;
  empty->Closed = 0;
  empty->Type = 100;
  layer.AddContourAtEnd(empty);
  layer.AddContourAtEnd(NewSquare(1, 1, 1));
  layer.LastContour->Type = static_cast<char>(200);
  layer.AddContourAtEnd(NewSquare(0, 0, 0));
  layer.LastContour->Type = 100;
  M2DSliceContourLayer slice;
  AddRing(slice, {{9, 9}});

  M2DSliceConversions::Convert(layer, slice);
  ASSERT_EQ(slice.GetNumContours(), 3u);
  const M2DSliceContour* c = slice.GetFirstContour();
  EXPECT_EQ(c->GetFirstPoint(), nullptr);  // default flags and type: nothing was set
  EXPECT_TRUE(c->GetIsClosed());
  EXPECT_TRUE(c->GetIsOuterContour());
  EXPECT_EQ(TypeCode(c->GetTypeInfoHolder()), 0);
  c = c->GetNextContour();
  EXPECT_EQ(RingOf(*c), kClockwise);
  EXPECT_EQ(TypeCode(c->GetTypeInfoHolder()), 0xFFC8) << "200 read as a signed char is -56";
  c = c->GetNextContour();
  EXPECT_FALSE(c->GetIsClosed());
  EXPECT_FALSE(c->GetIsOuterContour());
  EXPECT_EQ(TypeCode(c->GetTypeInfoHolder()), 100);
  layer.LEEG_LAAG();
}

TEST(LayerContoursToSlice, InvertsClosedContoursWhoseAttributesDisagree) {
  struct Case {
    unsigned char closed, outer, rightHanded;
    bool inverted;
  };
  const Case cases[] = {
      {1, 1, 0, true},  {1, 1, 7, false}, {1, 0, 1, true},  {1, 0, 0, false},
      {1, 1, 1, false}, {1, 0, 5, true},  {1, 7, 0, false}, {1, 7, 1, false},
      {0, 1, 0, false}, {0, 0, 1, false}, {7, 1, 0, true},  {2, 0, 1, true},
  };
  const Ring inverted = {{10, 0}, {10, 10}, {0, 10}, {0, 0}};
  for (const Case& k : cases) {
    CONTOUR_LAYER layer;
    layer.AddContourAtEnd(NewSquare(k.closed, k.outer, k.rightHanded));
    M2DSliceContourLayer slice;
    M2DSliceConversions::Convert(layer, slice);
    EXPECT_EQ(RingOf(*slice.GetFirstContour()), k.inverted ? inverted : kClockwise)
        << "Closed " << int(k.closed) << " Outer " << int(k.outer) << " RightHanded " << int(k.rightHanded);
    EXPECT_EQ(slice.GetFirstContour()->GetIsClosed(), k.closed != 0);
    EXPECT_EQ(slice.GetFirstContour()->GetIsOuterContour(), k.outer != 0);
    layer.LEEG_LAAG();
  }
}

TEST(SliceVectorsToLayer, ExchangesMiddleCoordinatesAndSkipsEmptyBlocks) {
  M2DSliceVectorLayer source;
  source.AddVectorBlockAtEnd();
  M2DSliceVectorBlock* block = source.AddVectorBlockAtEnd();
  block->Vectors = {{1, 2, 3, 4}, {-5, 6, -7, 8}};
  SetTypeCode(block->GetTypeInfoHolder(), 40000);
  source.AddVectorBlockAtEnd()->Vectors = {{9, 10, 11, 12}};
  VECTOR_LAYER layer;
  layer.AddBlockAtEnd(NewBlok(1, {0, 0, 1, 1}));
  layer.BEPAAL_EXTREMA();

  M2DSliceConversions::Convert(source, layer);
  ASSERT_EQ(layer.NumBlocks, 2);
  const VECTOR_BLOK* first = layer.FirstBlock;
  EXPECT_EQ(CoordinatesOf(*first), (Coordinates{1, 3, 2, 4, -5, -7, 6, 8}));
  EXPECT_EQ(first->Type, 40000);
  EXPECT_EQ(CoordinatesOf(*first->NextBlock), (Coordinates{9, 11, 10, 12}));
  EXPECT_EQ(first->NextBlock->Type, 0);
  EXPECT_EQ(layer.MaxX, kEmptyExtentMax);
  EXPECT_EQ(layer.MinY, kEmptyExtentMin);
  layer.LEEG_LAAG();
}

TEST(LayerVectorsToSlice, WholeGroupsOfFourOnlyAndUnsignedType) {
  VECTOR_LAYER layer;
  layer.AddBlockAtEnd(NewBlok(0xFFC8, {1, 2, 3, 4, 5, 6}));  // Size 6: one vector
  layer.AddBlockAtEnd(NewBlok(9, {}));                       // Size 0: left out
  layer.AddBlockAtEnd(NewBlok(11, {1, 2, 3}));               // Size 3: an empty block with its type
  M2DSliceVectorLayer slice;
  slice.AddVectorBlockAtEnd()->Vectors.resize(5);

  M2DSliceConversions::Convert(layer, slice);
  ASSERT_EQ(slice.GetNumBlocks(), 2u);
  const M2DSliceVectorBlock* first = slice.GetFirstBlock();
  ASSERT_EQ(first->Vectors.size(), 1u);
  const M2DSliceVector& v = first->Vectors[0];
  EXPECT_EQ((Coordinates{v.StartX, v.EndX, v.StartY, v.EndY}), (Coordinates{1, 3, 2, 4}));
  EXPECT_EQ(TypeCode(first->GetTypeInfoHolder()), 0xFFC8);
  EXPECT_TRUE(first->GetNextBlock()->Vectors.empty());
  EXPECT_EQ(TypeCode(first->GetNextBlock()->GetTypeInfoHolder()), 11);
  layer.LEEG_LAAG();
}

TEST(SliceToLayerAndBack, AreasComeBeforeBorderZFollowsTheQueryAndAllGoesBackToTheBorder) {
  M2DSlice slice = MakeSlice();
  LAYER layer;
  layer.Z = 17;
  layer.MaxX = 1000;  // joint extents are never touched
  layer.Contours.AddContourAtEnd(NewContour({{0, 0}}));

  M2DSliceConversions::Convert(slice, layer);
  EXPECT_EQ(layer.Z, 0);
  EXPECT_EQ(layer.MaxX, 1000);
  EXPECT_EQ(RingsOfLayer(layer.Contours), (Rings{kTriangleA, kTriangleB, kClockwise}));
  EXPECT_EQ(layer.Contours.LastContour->Owner, &layer.Contours);
  ASSERT_EQ(layer.Vectors.NumBlocks, 1);
  EXPECT_EQ(CoordinatesOf(*layer.Vectors.FirstBlock), (Coordinates{1, 3, 2, 4}));
  EXPECT_EQ(layer.Vectors.FirstBlock->Type, 7);

  M2DSliceConversions::QuerySlice(slice, layer);
  EXPECT_EQ(layer.Z, 250);
  EXPECT_EQ(layer.Contours.NumContours, 3);
  // Into one member: that component only.
  CONTOUR_LAYER contours;
  M2DSliceConversions::QuerySlice(slice, contours);
  EXPECT_EQ(RingsOfLayer(contours), (Rings{kClockwise}));
  VECTOR_LAYER vectors;
  M2DSliceConversions::QuerySlice(slice, vectors);
  ASSERT_EQ(vectors.NumBlocks, 1);
  EXPECT_EQ(CoordinatesOf(*vectors.FirstBlock), (Coordinates{1, 3, 2, 4}));
  contours.LEEG_LAAG();
  vectors.LEEG_LAAG();
  // Back: the slice is cleared and every contour goes to its border; z is not written.
  layer.Z = 999;
  const uint32_t revision = slice.GetRevision();
  M2DSliceConversions::Convert(layer, slice);
  EXPECT_EQ(slice.GetAreas()->GetNumContours(), 0u);
  EXPECT_EQ(RingsOf(*slice.GetSliceBorder()), (Rings{kTriangleA, kTriangleB, kClockwise}));
  EXPECT_EQ(slice.GetVectors()->GetNumBlocks(), 1u);
  EXPECT_EQ(slice.Z, 250);
  EXPECT_EQ(slice.GetRevision(), revision + 2);
  EXPECT_EQ(slice.GetOpenUpdates(), 0u);
  layer.LEEG_LAAG();
}

TEST(SetSliceOfLayer, ZRuleAndEmptyingAfterwards) {
  LAYER layer;
  layer.Z = 40;
  layer.Contours.AddContourAtEnd(NewSquare(1, 1, 1));
  M2DSlice freeZ;
  M2DSliceConversions::SetSlice(freeZ, layer, false);
  EXPECT_EQ(freeZ.Z, 40);
  EXPECT_EQ(layer.Z, 40);
  EXPECT_EQ(RingsOfLayer(layer.Contours), (Rings{kClockwise}));

  M2DSlice fixedZ;
  fixedZ.SetZArea(M2DSliceZArea(100, 120));
  M2DSliceConversions::SetSlice(fixedZ, layer, true);
  EXPECT_EQ(fixedZ.Z, 120) << "a valid z area keeps the slice's z";
  EXPECT_EQ(RingsOf(*fixedZ.GetSliceBorder()), (Rings{kClockwise}));
  EXPECT_EQ(layer.Z, 0);
  EXPECT_EQ(layer.Contours.NumContours, 0);
  EXPECT_EQ(layer.Contours.FirstContour, nullptr);
}

TEST(SetSliceOfOneMember, ReplacesThatComponentOnly) {
  M2DSlice slice = MakeSlice();
  CONTOUR_LAYER contours;
  contours.AddContourAtEnd(NewContour({{7, 7}, {8, 8}}));
  M2DSliceConversions::SetSlice(slice, contours, false);
  EXPECT_EQ(RingsOf(*slice.GetSliceBorder()), (Rings{{{7, 7}, {8, 8}}}));
  EXPECT_EQ(contours.NumContours, 1);
  M2DSliceConversions::SetSlice(slice, contours, true);
  EXPECT_EQ(contours.NumContours, 0);

  VECTOR_LAYER vectors;
  vectors.AddBlockAtEnd(NewBlok(3, {1, 1, 2, 2}));
  M2DSliceConversions::SetSlice(slice, vectors, true);
  EXPECT_EQ(vectors.NumBlocks, 0);
  ASSERT_EQ(slice.GetVectors()->GetNumBlocks(), 1u);
  EXPECT_EQ(TypeCode(slice.GetVectors()->GetFirstBlock()->GetTypeInfoHolder()), 3);
  EXPECT_EQ(slice.GetSliceBorder()->GetNumContours(), 1u);
  EXPECT_EQ(slice.GetAreas()->GetNumContours(), 2u);
  EXPECT_EQ(slice.GetOpenUpdates(), 0u);
}

}  // namespace
