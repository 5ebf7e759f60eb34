// Vector and contour types of the slice model: a type info, the holder that a
// contour or a vector block carries, and the mapping to and from 16-bit codes.
#pragma once

#include <cstdint>

#include "kelvor2d_export.h"

// The type of a slice contour or vector block, identified by its 16-bit code.
class KELVOR2D_API M2DSliceVectorTypeInfo {
 public:
  constexpr M2DSliceVectorTypeInfo() = default;
  constexpr explicit M2DSliceVectorTypeInfo(uint16_t code) : m_code(code) {}
  constexpr uint16_t GetCode() const { return m_code; }
  constexpr bool operator==(const M2DSliceVectorTypeInfo& other) const { return m_code == other.m_code; }
  constexpr bool operator!=(const M2DSliceVectorTypeInfo& other) const { return m_code != other.m_code; }

 private:
  uint16_t m_code = 0;  // the type code, 0 for a fresh holder
};

// Holds the type of one contour or block; reads as its type info wherever a
// const M2DSliceVectorTypeInfo & is asked for.
class KELVOR2D_API M2DSliceVectorTypeInfoHolder {
 public:
  void SetTypeInfo(const M2DSliceVectorTypeInfo& info) { m_info = info; }
  const M2DSliceVectorTypeInfo& GetTypeInfo() const { return m_info; }
  operator const M2DSliceVectorTypeInfo&() const { return m_info; }  // NOLINT: read as the info itself

 private:
  M2DSliceVectorTypeInfo m_info;  // type code 0 until set
};

// Mapping between type infos and 16-bit codes. Every code 0..65535 is a known
// type, and the mapping is the identity on codes in both directions.
class KELVOR2D_API M2DSliceVectorTypes {
 public:
  // The code of a type.
  static unsigned short ConvertToSliType(const M2DSliceVectorTypeInfo& info);
  // The shared type info of a code; valid for the life of the process.
  static const M2DSliceVectorTypeInfo& ConvertFromSliType(unsigned short code);
};
