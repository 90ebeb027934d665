// SPDX-License-Identifier: MIT
/// \file
/// OVRA_DISPLAY_FGLIB_API: marks what ovra-lib-display-fglib exports, or for a client what it imports.
#pragma once

#if defined(_WIN32)
#if defined(OVRA_DISPLAY_FGLIB_API_BUILD)
#define OVRA_DISPLAY_FGLIB_API __declspec(dllexport)
#else
#define OVRA_DISPLAY_FGLIB_API __declspec(dllimport)
#endif
#else
#define OVRA_DISPLAY_FGLIB_API __attribute__((visibility("default")))
#endif
