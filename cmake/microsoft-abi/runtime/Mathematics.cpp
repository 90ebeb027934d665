// SPDX-License-Identifier: MIT
// What mingw-w64's <math.h> defines in optimised code and only declares otherwise.
extern "C" {
__declspec(dllimport) float __cdecl _hypotf(float, float);
float __cdecl hypotf(float x, float y)
{
    return _hypotf(x, y);
}
}
