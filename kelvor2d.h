// Kelvor.2D: the two-dimensional side of build preparation for additive
// manufacturing. Including this header gives the whole public interface.
#pragma once

// Layer model
#include "layer/contour.h"
#include "layer/contour_layer.h"
#include "layer/layer.h"
#include "layer/number_lists.h"
#include "layer/values.h"
#include "layer/vector_layer.h"

// Geometry toolkit
#include "geometry/plane_geometry.h"
#include "geometry/space_geometry.h"

// Contour processing
#include "contour_processing/orientation.h"

// Scan tables
#include "scan/nearest_point_search.h"
#include "scan/perforation.h"
#include "scan/scan_conversion.h"
#include "scan/slice_file_parameters.h"
#include "scan/tabel.h"
#include "scan/table_algebra.h"

// Hatch and support generation
#include "hatch/mhatcher.h"

// Vector-layer operations
#include "vectors/closest.h"
#include "vectors/conversion.h"
#include "vectors/editing.h"
#include "vectors/splitting.h"

// Boolean and slice bridges
#include "bridges/boolean_front_ends.h"
#include "bridges/border_conversion.h"
#include "bridges/graph_extraction.h"
#include "bridges/slice_conversions.h"

// Bitmap rendering
#include "bitmap/convertor.h"
#include "bitmap/part.h"
#include "bitmap/sweep.h"

// Persistence
#include "persistence/sax_contour.h"
#include "persistence/sax_contour_layer.h"

// Sibling layers
#include "sibling/boolean/boolean.h"
#include "sibling/boolean/border_functions.h"
#include "sibling/boolean/graph.h"
#include "sibling/boolean/offsetter.h"
#include "sibling/hatch_sweep/hatch_sweep.h"
#include "sibling/math/border.h"
#include "sibling/math/math_core.h"
#include "sibling/sax/sax_binary_stream.h"
#include "sibling/sax/sax_persist.h"
#include "sibling/sax/sax_reader.h"
#include "sibling/sax/sax_text_stream.h"
#include "sibling/sax/sax_writer.h"
#include "sibling/slice/slice.h"
#include "sibling/slice/slice_layers.h"
#include "sibling/slice/slice_vector_types.h"
#include "sibling/units/internal_units.h"
