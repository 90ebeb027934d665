// SPDX-License-Identifier: MIT
/// \file
/// OVRA_OUT_OF_LINE: before a function that is rarely called and may not become part of its callers.
#pragma once

#include "native/OutOfLineImpl.h"
