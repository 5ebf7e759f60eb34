// The whole road of a layer through the library, step by step.
#pragma once
