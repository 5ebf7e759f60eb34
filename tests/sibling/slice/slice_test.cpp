#include "sibling/slice/slice.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "sibling/slice/slice_layers.h"
#include "sibling/slice/slice_vector_types.h"
#include "support/border_builders.h"

namespace {

using testing_support::AddRing;
using testing_support::BorderIsWhole;
using testing_support::RingsOf;
using testing_support::XY;

uint16_t CodeOf(const M2DSliceVectorTypeInfoHolder& holder) {
  return M2DSliceVectorTypes::ConvertToSliType(holder);
}

TEST(SliceVectorTypes, MapEveryCodeToItselfBothWays) {
  EXPECT_EQ(CodeOf(M2DSliceVectorTypeInfoHolder()), 0);
  for (unsigned code : {0u, 1u, 127u, 128u, 255u, 256u, 0xFF9Cu, 65535u}) {
    const unsigned short c = static_cast<unsigned short>(code);
    const M2DSliceVectorTypeInfo& info = M2DSliceVectorTypes::ConvertFromSliType(c);
    EXPECT_EQ(info.GetCode(), c);
    EXPECT_EQ(M2DSliceVectorTypes::ConvertToSliType(info), c);
    EXPECT_EQ(&M2DSliceVectorTypes::ConvertFromSliType(c), &info) << "code " << code;
    M2DSliceVectorTypeInfoHolder holder;
    holder.SetTypeInfo(info);
    EXPECT_EQ(CodeOf(holder), c);
  }
}

TEST(SliceContourLayer, ContoursCarryTheirTypeThroughCopies) {
  M2DSliceContourLayer layer;
  AddRing(layer, {{0, 0}, {0, 5}, {5, 5}})->GetTypeInfoHolder().SetTypeInfo(M2DSliceVectorTypeInfo(42));
  AddRing(layer, {});
  M2DSliceContourLayer copy = layer;
  EXPECT_TRUE(BorderIsWhole(copy));
  EXPECT_EQ(RingsOf(copy), RingsOf(layer));
  EXPECT_EQ(CodeOf(copy.GetFirstContour()->GetTypeInfoHolder()), 42);
  copy.GetFirstContour()->GetTypeInfoHolder().SetTypeInfo(M2DSliceVectorTypeInfo(7));
  EXPECT_EQ(CodeOf(layer.GetFirstContour()->GetTypeInfoHolder()), 42);
}

TEST(SliceVectorLayer, BlocksChainInOrderWithValueSemantics) {
  static_assert(offsetof(M2DSliceVector, StartX) == 0 && offsetof(M2DSliceVector, EndX) == 4 &&
                    offsetof(M2DSliceVector, StartY) == 8 && offsetof(M2DSliceVector, EndY) == 12,
                "start x, end x, start y, end y");
  M2DSliceVectorLayer layer;
  M2DSliceVectorBlock* first = layer.AddVectorBlockAtEnd();
  first->Vectors.push_back({1, 2, 3, 4});
  first->GetTypeInfoHolder().SetTypeInfo(M2DSliceVectorTypeInfo(300));
  M2DSliceVectorBlock* second = layer.AddVectorBlockAtEnd();
  second->Vectors.resize(2);
  EXPECT_TRUE(layer.GetFirstBlock() == first && first->GetNextBlock() == second &&
              second->GetNextBlock() == nullptr);
  EXPECT_EQ(layer.GetNumBlocks(), 2u);
  EXPECT_EQ(layer.GetNumVectors(), 3u);

  M2DSliceVectorLayer copy(layer);
  copy.GetFirstBlock()->Vectors[0].EndY = 99;
  copy.AddVectorBlockAtEnd();
  EXPECT_EQ(layer.GetFirstBlock()->Vectors[0].EndY, 4);
  EXPECT_EQ(CodeOf(copy.GetFirstBlock()->GetTypeInfoHolder()), 300);
  EXPECT_EQ(layer.GetNumBlocks(), 2u);

  EXPECT_EQ(layer.RemoveVectorBlock(first), second);
  EXPECT_EQ(layer.GetFirstBlock(), second);
  layer = copy;
  EXPECT_EQ(layer.GetNumBlocks(), 3u);
  layer.MakeEmpty();
  EXPECT_TRUE(layer.GetNumBlocks() == 0 && layer.GetFirstBlock() == nullptr);
}

TEST(Slice, UpdatesWriteTheirComponentAndEndInOrder) {
  M2DSlice slice;
  EXPECT_FALSE(slice.GetZArea().IsValid());
  {
    auto border = slice.GetSliceBorderUpdate();
    EXPECT_EQ(slice.GetOpenUpdates(), 1u);
    const M2DSlice during = slice;
    EXPECT_EQ(during.GetOpenUpdates(), 0u) << "an update belongs to its own slice";
    AddRing(*border, {{1, 1}});
    border->AddContourAtEnd();
  }
  EXPECT_EQ(slice.GetOpenUpdates(), 0u);
  EXPECT_EQ(slice.GetRevision(), 1u);
  AddRing(*slice.GetAreasUpdate(), {{2, 2}});
  slice.GetVectorsUpdate()->AddVectorBlockAtEnd()->Vectors.push_back({1, 2, 3, 4});
  EXPECT_EQ(slice.GetRevision(), 3u);
  EXPECT_EQ(slice.GetSliceBorder()->GetNumContours(), 2u);
  EXPECT_EQ(RingsOf(*slice.GetAreas()), (std::vector<std::vector<XY>>{{{2, 2}}}));
  EXPECT_EQ(slice.GetVectors()->GetNumVectors(), 1u);

  M2DSlice copy = slice;
  slice.Clear();
  EXPECT_EQ(slice.GetSliceBorder()->GetNumContours() + slice.GetAreas()->GetNumContours() +
                slice.GetVectors()->GetNumBlocks(),
            0u);
  EXPECT_EQ(copy.GetSliceBorder()->GetNumContours(), 2u);
  EXPECT_EQ(copy.GetVectors()->GetNumVectors(), 1u);
}

TEST(Slice, ZAreaGivesZAndSurvivesClear) {
  M2DSlice slice;
  slice.SetZ(12);
  slice.SetZArea(M2DSliceZArea());  // not valid: z stays
  EXPECT_EQ(slice.Z, 12);
  slice.SetZArea(M2DSliceZArea(80, 50));
  EXPECT_EQ(slice.GetZArea().GetBottom(), 50);
  EXPECT_EQ(slice.Z, 80);
  slice.Clear();
  EXPECT_TRUE(slice.GetZArea().IsValid());
  EXPECT_EQ(slice.Z, 80);
  slice.SetZ(-3);  // SetZ always stores
  EXPECT_EQ(slice.Z, -3);
}

}  // namespace
