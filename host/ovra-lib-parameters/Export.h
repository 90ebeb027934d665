// SPDX-License-Identifier: MIT
/// \file
/// OVRA_PARAMETERS_API: marks what ovra-lib-parameters exports, or for a client what it imports.
#pragma once

#if defined(_WIN32)
#if defined(OVRA_PARAMETERS_API_BUILD)
#define OVRA_PARAMETERS_API __declspec(dllexport)
#else
#define OVRA_PARAMETERS_API __declspec(dllimport)
#endif
#else
#define OVRA_PARAMETERS_API __attribute__((visibility("default")))
#endif
