#include "layer/vector_layer.h"

#include <cstdlib>
#include <cstring>
#include <utility>

#include "layer/chain.h"

using namespace kelvor2d_detail;  // the chain helpers

namespace {

void ReleaseBlock(VECTOR_BLOK* b) {
  free(b->Block);
  delete b;
}

VECTOR_BLOK*& BlockLink(VECTOR_BLOK* b) {
  return b->NextBlock;
}

}  // namespace

void VECTOR_BLOK::Clear() {
  free(Block);
  Block = nullptr;
  Size = 0;
}

void VECTOR_BLOK::AllocateCoordinates(int32_t n) {
  auto* fresh = static_cast<int32_t*>(malloc(sizeof(int32_t) * (n > 0 ? n : 0)));
  const int32_t kept = n < Size ? n : Size;
  if (kept > 0)
    memcpy(fresh, Block, sizeof(int32_t) * kept);
  free(Block);
  Block = fresh;
  Size = n;
}

void VECTOR_BLOK::SetCoordinates(int32_t* source, int32_t n) {
  if (Size != n)
    AllocateCoordinates(n);
  if (n > 0)
    memcpy(Block, source, sizeof(int32_t) * n);
}

VECTOR_BLOK* VECTOR_LAYER::GetLastBlock() const {
  VECTOR_BLOK* b = FirstBlock;
  if (b == nullptr)
    return nullptr;
  while (b->NextBlock != nullptr)
    b = b->NextBlock;
  return b;
}

void VECTOR_LAYER::LEEG_LAAG() {
  VECTOR_BLOK* b = FirstBlock;
  while (b != nullptr) {
    VECTOR_BLOK* next = b->NextBlock;
    ReleaseBlock(b);
    b = next;
  }
  FirstBlock = nullptr;
  NumBlocks = 0;
  ResetExtents(*this);
}

void VECTOR_LAYER::SwapWith(VECTOR_LAYER& other) {
  SwapExtents(*this, other);
  std::swap(NumBlocks, other.NumBlocks);
  std::swap(FirstBlock, other.FirstBlock);
}

void VECTOR_LAYER::MoveTo(VECTOR_LAYER& other) {
  LEEG_LAAG();
  SwapWith(other);
}

void VECTOR_LAYER::AddBlockAtEnd(VECTOR_BLOK* b) {
  b->NextBlock = nullptr;
  VECTOR_BLOK* last = GetLastBlock();
  if (last == nullptr) {
    FirstBlock = b;
  } else {
    last->NextBlock = b;
  }
  ++NumBlocks;
}

void VECTOR_LAYER::AddBlockAtFront(VECTOR_BLOK* b) {
  b->NextBlock = FirstBlock;
  FirstBlock = b;
  ++NumBlocks;
}

void VECTOR_LAYER::AddBlockAfter(VECTOR_BLOK* b, VECTOR_BLOK* after) {
  if (after == nullptr) {
    AddBlockAtFront(b);
    return;
  }
  b->NextBlock = after->NextBlock;
  after->NextBlock = b;
  ++NumBlocks;
}

void VECTOR_LAYER::ADD_VECTOR_BLOK(VECTOR_BLOK* block) {
  AddBlockAtEnd(block);
  for (int32_t i = 0; i + 1 < block->Size; i += 2)
    GrowExtents(*this, block->Block[i], block->Block[i + 1]);
}

VECTOR_BLOK* VECTOR_LAYER::RemoveBlock(VECTOR_BLOK*& b, bool destroy) {
  VECTOR_BLOK* target = b;
  const Unlinked<VECTOR_BLOK> unlinked = UnlinkFromChain(FirstBlock, target, BlockLink);
  if (!unlinked.found)
    return nullptr;
  --NumBlocks;
  if (destroy) {
    ReleaseBlock(target);
    b = nullptr;
  }
  return unlinked.successor;
}

bool VECTOR_LAYER::COPIEER_VECTOR_LAYER(const VECTOR_LAYER& source) {
  VECTOR_BLOK* last = GetLastBlock();
  for (const VECTOR_BLOK* from = source.FirstBlock; from != nullptr; from = from->NextBlock) {
    auto* copy = new VECTOR_BLOK;
    copy->Type = from->Type;
    copy->Size = from->Size;
    const size_t n = from->Size > 0 ? static_cast<size_t>(from->Size) : 0;
    copy->Block = static_cast<int32_t*>(calloc(n > 0 ? n : 1, sizeof(int32_t)));
    if (n > 0)
      memcpy(copy->Block, from->Block, sizeof(int32_t) * n);
    if (last == nullptr) {
      FirstBlock = copy;
    } else {
      last->NextBlock = copy;
    }
    last = copy;
    ++NumBlocks;
  }
  MergeExtents(*this, source);
  return true;
}

void VECTOR_LAYER::BEPAAL_EXTREMA() {
  ResetExtents(*this);
  for (const VECTOR_BLOK* b = FirstBlock; b != nullptr; b = b->NextBlock) {
    for (int32_t i = 0; i + 1 < b->Size; i += 2)
      GrowExtents(*this, b->Block[i], b->Block[i + 1]);
  }
}
