/// \file
/// Linkage of what ovra-lib-genicam-model exports.
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
