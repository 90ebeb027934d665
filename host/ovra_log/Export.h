// SPDX-License-Identifier: MIT
/// \file
/// OVRA_LOG_API: marks what ovra_log exports, or for a client what it imports.
#pragma once

#if defined(_WIN32)
#if defined(OVRA_LOG_API_BUILD)
#define OVRA_LOG_API __declspec(dllexport)
#else
#define OVRA_LOG_API __declspec(dllimport)
#endif
#else
#define OVRA_LOG_API __attribute__((visibility("default")))
#endif
