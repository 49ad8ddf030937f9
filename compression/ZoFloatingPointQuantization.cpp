#include "compression/ZoFloatingPointQuantization.h"

ZoFloatingPointQuantization::~ZoFloatingPointQuantization() = default;
