// SPDX-License-Identifier: MIT
/// \file
/// OVRA_DISPLAY_API: marks what ovra-lib-display exports, or for a client what it imports.
#pragma once

#if defined(_WIN32)
#if defined(OVRA_DISPLAY_API_BUILD)
#define OVRA_DISPLAY_API __declspec(dllexport)
#else
#define OVRA_DISPLAY_API __declspec(dllimport)
#endif
#else
#define OVRA_DISPLAY_API __attribute__((visibility("default")))
#endif
