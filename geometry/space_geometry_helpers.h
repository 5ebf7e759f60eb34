// Helpers of the space geometry that are not part of the public interface;
// declared here for the library's own sources and tests.
#pragma once

// True when the lines ab and cd lie in one plane: |triple product| < 0.0001.
bool COPLANAR_3D(const float* a, const float* b, const float* c, const float* d);

// Cosine of the angle between b - a and d - c, in float.
float COS_ANGLE_3D(const float* a, const float* b, const float* c, const float* d);

// Length of v[3], scaled by its greatest component against overflow; 0.0 for
// the zero vector.
double VECTOR_LENGTH_3D(const float* v);
