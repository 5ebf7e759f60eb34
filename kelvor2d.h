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

// Contour processing

// Scan tables

// Hatch and support generation

// Vector-layer operations

// Boolean and slice bridges

// Bitmap rendering

// Persistence

// Sibling layers
#include "sibling/units/internal_units.h"
