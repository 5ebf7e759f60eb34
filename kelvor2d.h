// Kelvor.2D: the two-dimensional side of build preparation for additive
// manufacturing. Including this header gives the whole public interface.
#pragma once

// Layer model
#include "layer/values.h"
#include "layer/contour.h"
#include "layer/contour_layer.h"
#include "layer/vector_layer.h"
#include "layer/layer.h"
#include "layer/number_lists.h"

// Geometry toolkit
#include "geometry/plane_geometry.h"
#include "geometry/space_geometry.h"
#include "geometry/space_geometry_helpers.h"

// Contour processing
#include "contour_processing/orientation.h"
#include "contour_processing/selection.h"

// Scan tables
#include "scan/slice_file_parameters.h"
#include "scan/tabel.h"
#include "scan/scan_conversion.h"
#include "scan/table_algebra.h"
#include "scan/perforation.h"
#include "scan/nearest_point_search.h"

// Hatch and support generation
#include "hatch/mhatcher.h"

// Vector-layer operations
#include "vectors/editing.h"
#include "vectors/splitting.h"
#include "vectors/conversion.h"
#include "vectors/closest.h"

// Boolean and slice bridges
#include "bridges/slice_conversions.h"
#include "bridges/border_conversion.h"
#include "bridges/boolean_front_ends.h"
#include "bridges/graph_extraction.h"

// Bitmap rendering
#include "bitmap/part.h"
#include "bitmap/sweep.h"
#include "bitmap/convertor.h"

// Persistence
#include "persistence/sax_contour.h"
#include "persistence/sax_contour_layer.h"

// Internal helpers the sources share, in namespaces of their own
// (kelvor2d_detail, hatch_internal, kelvor_boolean); not part of the interface.
#include "geometry/grid_arithmetic.h"
#include "geometry/grid_transforms.h"
#include "geometry/segment_crossing.h"
#include "scan/grid_step.h"
#include "hatch/hatch_common.h"
#include "sibling/boolean/pairing.h"
#include "sibling/boolean/sweep.h"
#include "sibling/boolean/sweep_status.h"
#include "sibling/math/owned_chain.h"
#include "sibling/sax/sax_utf8.h"

// Sibling layers
#include "sibling/sax/sax_persist.h"
#include "sibling/sax/sax_text_stream.h"
#include "sibling/sax/sax_binary_stream.h"
#include "sibling/sax/sax_writer.h"
#include "sibling/sax/sax_reader.h"
#include "sibling/units/internal_units.h"
#include "sibling/math/math_core.h"
#include "sibling/math/border.h"
#include "sibling/boolean/exact_arithmetic.h"
#include "sibling/boolean/graph.h"
#include "sibling/boolean/boolean.h"
#include "sibling/boolean/offsetter.h"
#include "sibling/boolean/border_functions.h"
#include "sibling/slice/slice_vector_types.h"
#include "sibling/slice/slice_layers.h"
#include "sibling/slice/slice.h"
#include "sibling/hatch_sweep/hatch_sweep.h"
