// The handler of one contour in a persisted layer; lives only while that
// contour is written or read. Used by MSaxContourLayer.
#pragma once

#include <cstdint>
#include <string>

#include "kelvor2d_export.h"
#include "layer/contour.h"
#include "sibling/sax/sax_persist.h"

// Most points a contour read from a document may announce in "Count" (256 MiB
// of points, more than a reader's default element limit can deliver); a larger
// or negative "Count" is refused before anything is allocated.
constexpr int32_t kMaxPersistedPoints = int32_t{1} << 25;

// Writes or fills one CONTOUR: "Contour" with "Type", "Closed", "Outer",
// "RightHanded" and "Points" ("Dim", "DataType", "Count", "Data").
class KELVOR2D_API MSaxContour : public ISAXPersistHelper {
 public:
  CONTOUR* contour;        // the contour written or filled; not owned
  char const* streamName;  // name for the binary stream, null for the default; not owned

  // Both stay the caller's and must outlive the handler.
  MSaxContour(CONTOUR* contour, char const* streamName) : contour(contour), streamName(streamName) {}
  ~MSaxContour() override {}

  // Flags 7, Type 0, no points (the array is released).
  void SetDefaults() override;
  // False for a tag unknown at its place, a missing or non-numeric value, a
  // "Dim" other than 2, a "DataType" other than "long", a "Count" below 0 or
  // above kMaxPersistedPoints or that cannot be allocated, and a "Data" that is
  // not base64 or whose number of values is not exactly 2 x "Count". A second
  // "Count" releases the array of the first.
  bool HandleTag(std::wstring const& tag, MSAXReader& reader) override;
  // Always true; a contour with a null Points array is written with 0 points.
  bool Write(MSAXWriter& writer) const override;

 private:
  bool _HandleTagPoints(std::wstring const& tag, MSAXReader& reader);
  bool _HandleCount(MSAXReader& reader);
  bool _HandleData(MSAXReader& reader);
  bool _WritePoints(MSAXWriter& writer) const;
};
