// SPDX-License-Identifier: MIT
/// \file
/// OVRA_CORE_API: marks what ovra-core exports, or for a client what it imports.
#pragma once

#if defined(_WIN32)
#if defined(OVRA_CORE_API_BUILD)
#define OVRA_CORE_API __declspec(dllexport)
#else
#define OVRA_CORE_API __declspec(dllimport)
#endif
#else
#define OVRA_CORE_API __attribute__((visibility("default")))
#endif
