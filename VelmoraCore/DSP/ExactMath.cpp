#include "VelmoraCore/DSP/ExactMath.h"

namespace velmora::exact {

float sin(float x) noexcept { return sinSingle(x); }
float tanh(float x) noexcept { return tanhSingle(x); }
float exp2(float x) noexcept { return exp2Single(x); }
double sin(double x) noexcept { return sinCos(x).sin; }
double cos(double x) noexcept { return sinCos(x).cos; }
double exp(double x) noexcept { return exp<double>(x); }

}  // namespace velmora::exact
