// SPDX-License-Identifier: MIT
/// \file
/// Selects the functions that the runtime exports.
///
/// FGSIM_LINKAGE(Fg_Init) is FGSIM_EXPORT, unless the build defines FGSIM_LACKS_Fg_Init as "0,FGSIM_INTERNAL"
/// (ovra_simulated_runtime does, for a runtime that lacks the entry): then the function is compiled, because
/// other entries call it, but is not exported.
#pragma once

#if defined(_WIN32)
#define FGSIM_EXPORT __declspec(dllexport)
#define FGSIM_INTERNAL
#else
#define FGSIM_EXPORT __attribute__((visibility("default")))
#define FGSIM_INTERNAL
#endif

#define FGSIM_LINKAGE(name) FGSIM_SECOND(FGSIM_LACKS_##name, FGSIM_EXPORT, )
#define FGSIM_SECOND(...) FGSIM_SECOND_OF(__VA_ARGS__)
#define FGSIM_SECOND_OF(first, second, ...) second
