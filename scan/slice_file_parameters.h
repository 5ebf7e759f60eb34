// The parameter record that every hatching and support operation reads. The
// library never constructs or changes one of its own: callers fill it in.
#pragma once

#include <cstdint>

#include "kelvor2d_export.h"

// Plain record with public fields; a default-constructed record has every
// field zero or false. Distances and lengths are in internal units.
struct KELVOR2D_API MSliceFileParameters {
  int32_t XHatchDistance = 0;  // distance between X-table columns, >= 0; 0 means no X table
  int32_t YHatchDistance = 0;  // distance between Y-table columns, >= 0; 0 means no Y table
  int32_t XHatchShift = 0;     // first X-table column when the grid does not alternate
  int32_t YHatchShift = 0;     // first Y-table column when the grid does not alternate
  // True: successive scan conversions along one axis start their grid
  // alternately at the distance and at the shift (process-wide flip per axis).
  bool AlternateHatchShift = false;
  // True: ADD_HATCHINGS and ADD_SUPPORT step through their eight-step order of
  // directions; false: one fixed order.
  bool CycleHatchOrder = false;
  bool ShortenSmartHatch = false;      // true: smart hatching shortens long vectors
  int32_t HatchShortening = 0;         // length cut from one end of a long vector
  int32_t HatchShorteningFactor = 0;   // shorten only vectors longer than this times HatchShortening
  int32_t SupportConnectDistance = 0;  // support vectors closer than this are joined
  int32_t MeanderConnectDistance = 0;  // meander runs closer than this are connected
};
