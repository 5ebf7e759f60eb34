// Persistence of a CONTOUR_LAYER as the element "Contours" through the SAX
// layer:
//   MSaxContourLayer handler(&layer, nullptr);
//   bool stored = MSAXWriter("layer.xml").WriteDocument(handler);
//   MSAXReader reader; bool read = reader.ReadFile("layer.xml", handler);  // else reader.GetError()
// Contours come back in the reverse of their written order.
#pragma once

#include <string>

#include "kelvor2d_export.h"
#include "layer/contour_layer.h"
#include "sibling/sax/sax_persist.h"
#include "sibling/sax/sax_reader.h"
#include "sibling/sax/sax_writer.h"

// The handler of a whole layer. Reading replaces what the layer held; each
// contour is adopted at the front when its "Contour" closes, with the extents
// recomputed, so the layer always holds exactly the contours read completely.
class KELVOR2D_API MSaxContourLayer : public ISAXPersistHelper {
 public:
  char const* streamName;   // name for the binary streams, null for the default; not owned
  CONTOUR* currentContour;  // the contour being read, null when none is under construction
  CONTOUR_LAYER* layer;     // the layer written or filled; not owned

  // The layer and the name stay the caller's and must outlive the handler.
  MSaxContourLayer(CONTOUR_LAYER* const layer, char const* streamName)
      : streamName(streamName), currentContour(nullptr), layer(layer) {}
  // Copies the three fields; the copy shares the layer.
  MSaxContourLayer(MSaxContourLayer const& other) = default;
  MSaxContourLayer& operator=(MSaxContourLayer const& other) = default;
  ~MSaxContourLayer() override {}

  // Empties the layer (LEEG_LAAG).
  void SetDefaults() override;
  // Accepts "Contours" and, inside it, "Contour" (which pushes a contour handler); false otherwise.
  bool HandleTag(std::wstring const& tag, MSAXReader& reader) override;
  // On "Contour" adopts the contour under construction at the front; the
  // extents become what BEPAAL_EXTREMA gives, computed from the previous
  // extents and the new contour (so reading n contours costs O(n), not O(n^2)),
  // which relies on the reading having started with SetDefaults.
  void HandleEndTag(std::wstring const& tag) override;
  // Writes "Contours" with the contours in chain order; always true.
  bool Write(MSAXWriter& writer) const override;
  // Releases the contour under construction, which the layer never received.
  void AbortLoading() override;

 private:
  bool _HandleTagContours(std::wstring const& tag, MSAXReader& reader);
  bool _WriteContours(MSAXWriter& writer) const;
};
