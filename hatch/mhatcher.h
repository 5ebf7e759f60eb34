// Hatching in any direction: a contour layer is fed, in the frame of a hatch
// direction, to the hatch line sweep; results move between hatch layers,
// vector layers, tables and contour layers.
#pragma once

#include <cstdint>

#include "kelvor2d_export.h"
#include "layer/contour_layer.h"
#include "layer/vector_layer.h"
#include "scan/tabel.h"
#include "sibling/hatch_sweep/hatch_sweep.h"

// A hatcher with no data of its own: the hatch layer (result and direction),
// the shift and the sweep list live in the base.
class KELVOR2D_API MHatcher : public MHatcherBase {
 public:
  MHatcher() = default;
  ~MHatcher() override = default;

  // Hatch with the shift the object holds.
  void Hatch(CONTOUR_LAYER& layer, int32_t distance);
  // Clears the hatch layer, stores distance and shift in it and sweeps every
  // contour once. Distance 0 returns before the sweep; a negative distance
  // sweeps nothing (the hatch layer stays empty).
  void Hatch(CONTOUR_LAYER& layer, int32_t distance, int32_t shift);
  // As Hatch, with the shift that centres the grid on the layer. Distance 0
  // clears the hatch layer and leaves its fields.
  void HatchWithAutoShift(CONTOUR_LAYER& layer, int32_t distance);
  // Adds to the hatch layer: each outer contour is swept with the inner
  // contours that follow it; contours of type 100 and 103 to 106 are skipped.
  void HatchConceptLaser(CONTOUR_LAYER& layer, int32_t distance);
  // The shift that centres the hatch grid on the layer's extent across the
  // lines. Distance 0 or a layer without points gives 0. Middle and extent
  // are formed in 64 bits (a layer may reach both ends of the 32-bit range).
  static int32_t GetOptimalShift(MHatchDirection& direction, CONTOUR_LAYER& layer, int32_t distance);

 protected:
  // Adds every edge of the contour, closing edge included, in the hatch frame.
  void _AddContourToLineSweep(CONTOUR* contour);

 private:
  void _InsertIntoSweepList(MTempListElement<M2dTempElement>* element);
  void _AddAllContours(CONTOUR_LAYER& layer);
  void _GiveExtremesToHatchLayer();
};

// Appends one block of `type` (sign-extended) holding the hatch layer's
// vectors mapped back to the layer frame; nothing for an empty hatch layer.
KELVOR2D_API void AddHatchLayerToVectorLayer(MHatchLayer& hatchLayer, VECTOR_LAYER& layer, char type);

namespace MHatchLayerUtilities {

// Adds the runs of an X table as hatch vectors, alternating their direction
// column by column (empty columns count); a null List counts as empty.
KELVOR2D_API void ADD_TABEL(MHatchLayer* hatchLayer, TABEL& table);
// Puts rectangles of `width` across the hatch lines (every `distance` from
// `offset`) at the head of `result`. A width or distance not positive adds nothing.
KELVOR2D_API void GetFragmentTemplate(MHatchLayer* hatchLayer, CONTOUR_LAYER* result, int32_t width,
                                      int32_t distance, int32_t offset);

}  // namespace MHatchLayerUtilities
