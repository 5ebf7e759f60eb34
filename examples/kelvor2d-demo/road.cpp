#include "road.h"
