#pragma once

#include "strings/FormatField.h"

namespace kora {

/// Prints a number with one of the conversions f, e, g and a, in either letter case: exact, and rounded to the nearest
/// number of the precision asked for, to the even one of two that are equally near.
bool formatFloat(FormatSink& sink, const FormatRequest& request, double value);
bool formatFloat(FormatSink& sink, const FormatRequest& request, long double value);

}  // namespace kora
