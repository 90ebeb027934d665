// SPDX-License-Identifier: MIT
/// \file
/// OVRA_GENICAM_MODEL_API: marks what ovra-lib-genicam-model exports, or for a client what it imports.
#pragma once

#if defined(_WIN32)
#if defined(OVRA_GENICAM_MODEL_API_BUILD)
#define OVRA_GENICAM_MODEL_API __declspec(dllexport)
#else
#define OVRA_GENICAM_MODEL_API __declspec(dllimport)
#endif
#else
#define OVRA_GENICAM_MODEL_API __attribute__((visibility("default")))
#endif
