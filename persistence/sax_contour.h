// The handler of one contour in a persisted layer; lives only while that
// contour is written or read. Used by MSaxContourLayer.
#pragma once

#include <cstdint>
#include <string>

#include "kelvor2d_export.h"
#include "layer/contour.h"
#include "sibling/sax/sax_persist.h"

// Most points of one contour in a document, on both sides: the writer refuses
// a larger contour, the reader a larger "Count", and the "Data" of this many
// points fits a reader's default element limit. The reader also refuses a
// "Count" that the rest of the document cannot hold where it knows how much
// is left (MSAXReader::MaxBinaryValuesAhead), all before anything is allocated.
constexpr int32_t kMaxPersistedPoints = int32_t{1} << 24;

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
  // False for a tag unknown at its place, an empty value, a "Dim" other than
  // 2, a "DataType" other than "long", a "Count" that is not a number, below 0,
  // above kMaxPersistedPoints, more than the rest of the document holds or
  // that cannot be allocated, and a "Data" that is not base64 or holds fewer
  // than 2 x "Count" numbers. "Type" and the flags take the number that
  // MStreamTextIn reads (0 from a text that is not one). "Data" fills exactly
  // the points of "Count" (none without one) and ignores numbers beyond them.
  // A second "Count" releases the array of the first.
  bool HandleTag(std::wstring const& tag, MSAXReader& reader) override;
  // A null Points array is written as 0 points. False, with the writer failed
  // before anything of the contour is written, for a NumPoints below 0 or
  // above kMaxPersistedPoints.
  bool Write(MSAXWriter& writer) const override;

 private:
  bool _HandleTagPoints(std::wstring const& tag, MSAXReader& reader);
  bool _HandleCount(MSAXReader& reader);
  bool _HandleData(MSAXReader& reader);
  bool _WritePoints(MSAXWriter& writer) const;
};
