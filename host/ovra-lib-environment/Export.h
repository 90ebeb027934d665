// SPDX-License-Identifier: MIT
/// \file
/// OVRA_ENVIRONMENT_API: marks what ovra-lib-environment exports, or for a client what it imports.
#pragma once

#if defined(_WIN32)
#if defined(OVRA_ENVIRONMENT_API_BUILD)
#define OVRA_ENVIRONMENT_API __declspec(dllexport)
#else
#define OVRA_ENVIRONMENT_API __declspec(dllimport)
#endif
#else
#define OVRA_ENVIRONMENT_API __attribute__((visibility("default")))
#endif
