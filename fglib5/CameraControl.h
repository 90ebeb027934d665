/// \file
/// Camera control: entries that a runtime may export beside those of Fglib5Entries.inc.
///
/// A camera is found by the board and the physical port it is plugged into. The host's camera models
/// use these entries; a runtime without them has no controllable cameras. They are looked up by name
/// in the opened runtime, so this header declares function types only.
///
///   FgCam_getCount        number of cameras plugged into a board
///   FgCam_getPort         physical port of the n-th camera of a board
///   FgCam_getString       a text about a camera
///   FgCam_getInteger      width, height, acquiring
///   FgCam_setInteger      width, height
///   FgCam_start           lets the camera stream; a camera that streams is started anew
///   FgCam_stop            ends the stream
///
/// All calls are safe from any thread, do not block on images and need no board handle. Results are FG_OK or
/// a negative status code of Fglib5Types.h; FgCam_getCount and FgCam_getPort return the number or a negative
/// code.
#pragma once

#include <cstddef>

/// What FgCam_getInteger and FgCam_setInteger act on. Sizes are in pixels.
enum FgCamInteger : int
{
    FGCAM_WIDTH = 1,
    FGCAM_HEIGHT = 2,
    FGCAM_SENSOR_WIDTH = 3,  ///< read only; FGCAM_WIDTH is 1 to this
    FGCAM_SENSOR_HEIGHT = 4, ///< read only
    FGCAM_ACQUIRING = 5,     ///< read only, 0 or 1
};

/// What FgCam_getString asks for. Texts are UTF-8.
enum FgCamString : int
{
    FGCAM_MODEL = 1,
    FGCAM_SERIAL = 2,
    FGCAM_INTERFACE = 3, ///< "gige", "coaxpress", "cameralink"
};

extern "C" {

using FgCam_getCount_t = int(unsigned int board);
using FgCam_getPort_t = int(unsigned int board, unsigned int position);
/// Copies at most \p textBytes bytes, the closing zero included.
using FgCam_getString_t = int(unsigned int board, unsigned int port, int selector, char* text,
                              std::size_t textBytes);
using FgCam_getInteger_t = int(unsigned int board, unsigned int port, int selector, int* value);
using FgCam_setInteger_t = int(unsigned int board, unsigned int port, int selector, int value);
using FgCam_start_t = int(unsigned int board, unsigned int port);
using FgCam_stop_t = int(unsigned int board, unsigned int port);

} // extern "C"
