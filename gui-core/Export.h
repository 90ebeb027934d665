// SPDX-License-Identifier: MIT
/// \file
/// What depends on compiler and platform:
///
///   | macro                      | meaning                                                               |
///   |----------------------------|-----------------------------------------------------------------------|
///   | OVRA_GUI_CORE_API          | marks what ovra-lib-gui-core exports, or for a client what it imports |
///   | OVRA_GUI_CORE_COMPILER_ABI | the compiler's rules for class layout and symbol names; the first     |
///   |                            | part of OVRA_GUI_CORE_ABI in Version.h                                |
#pragma once

#if defined(_WIN32)
#if defined(OVRA_GUI_CORE_API_BUILD)
#define OVRA_GUI_CORE_API __declspec(dllexport)
#else
#define OVRA_GUI_CORE_API __declspec(dllimport)
#endif
#if defined(_MSC_VER)
#define OVRA_GUI_CORE_COMPILER_ABI "msvc"
#else
#define OVRA_GUI_CORE_COMPILER_ABI "gcc-mingw"
#endif
#else
#define OVRA_GUI_CORE_COMPILER_ABI "itanium-linux"
#define OVRA_GUI_CORE_API __attribute__((visibility("default")))
#endif
