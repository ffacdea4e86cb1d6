#include <Size.h>

#include "interface/geometry/Rounding.h"

int32 BSize::IntegerWidth() const { return BPrivate::ceil_to_int32(width); }

int32 BSize::IntegerHeight() const { return BPrivate::ceil_to_int32(height); }
