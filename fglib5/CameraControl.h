// SPDX-License-Identifier: MIT
/// \file
/// Camera control: entries that a runtime may export beside those of Fglib5Entries.inc.
///
/// A board index and a physical port identify a camera. The host's camera models use these entries; without
/// them, cameras cannot be controlled. The host looks the entries up by name in the opened runtime, so this
/// header declares function types only. CameraControl.inc lists the entries and documents each.
///
/// All entries may be called from any thread, do not wait for images, and need no board handle. They return
/// FG_OK or a negative status code of Fglib5Types.h; FgCam_getCount and FgCam_getPort return a number or a
/// negative code.
#pragma once

#include "fglib5/Fglib5Types.h"

#include <cstddef>

/// Parameters of cameras; a camera may lack some. Sizes are in pixels.
enum FgCamParameter : int
{
    FGCAM_WIDTH = 1,         ///< of the region that the camera sends; read only during an acquisition
    FGCAM_HEIGHT = 2,        ///< as FGCAM_WIDTH
    FGCAM_SENSOR_WIDTH = 3,  ///< read only; FGCAM_OFFSET_X + FGCAM_WIDTH is at most this
    FGCAM_SENSOR_HEIGHT = 4, ///< read only
    FGCAM_ACQUIRING = 5,     ///< read only, 0 or 1
    FGCAM_OFFSET_X = 6,      ///< first column of the region on the sensor
    FGCAM_OFFSET_Y = 7,
    FGCAM_REVERSE_X = 8, ///< 0 or 1
    FGCAM_REVERSE_Y = 9,
    FGCAM_TEST_PATTERN = 10, ///< one of the parameter's choices, 0 is off
    FGCAM_FRAME_RATE = 11,   ///< double, images per second, 0 = as fast as possible
    FGCAM_LINE_RATE = 12,    ///< double, lines per second, instead of the frame rate
    FGCAM_EXPOSURE = 13,     ///< double, microseconds
    FGCAM_GAIN = 14,         ///< double, factor
};

/// Selectors of FgCam_getString. Texts are UTF-8.
enum FgCamString : int
{
    FGCAM_MODEL = 1,
    FGCAM_SERIAL = 2,
    FGCAM_INTERFACE = 3, ///< "gige", "coaxpress", "cameralink"
};

extern "C" {

// FgCam_getCount_t and so on: the types of the entries.
#define FGCAM_ENTRY(result, name, parameters, arguments) using name##_t = result parameters;
#include "fglib5/CameraControl.inc"

} // extern "C"
