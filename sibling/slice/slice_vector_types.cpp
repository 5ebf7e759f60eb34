#include "sibling/slice/slice_vector_types.h"

#include <array>

namespace {
constexpr unsigned kTypeCodeCount = 65536;

using TypeTable = std::array<M2DSliceVectorTypeInfo, kTypeCodeCount>;

TypeTable MakeTypeTable() {
  TypeTable table;
  for (unsigned code = 0; code < kTypeCodeCount; ++code)
    table[code] = M2DSliceVectorTypeInfo(static_cast<uint16_t>(code));
  return table;
}
}  // namespace

unsigned short M2DSliceVectorTypes::ConvertToSliType(const M2DSliceVectorTypeInfo& info) {
  return info.GetCode();
}

const M2DSliceVectorTypeInfo& M2DSliceVectorTypes::ConvertFromSliType(unsigned short code) {
  static const TypeTable table = MakeTypeTable();
  return table[code];
}
