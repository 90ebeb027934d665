// SPDX-License-Identifier: MIT
#include "entries/Answers.h"
#include "entries/Entries.h"

#include <cmath>

namespace simulation::entries {

namespace {

std::shared_ptr<Board> boardOf(unsigned int board)
{
    return Runtime::instance().board(board);
}

std::string cameraText(const CameraDescription& camera, int selector)
{
    switch (selector) {
    case FGCAM_MODEL:
        return camera.model;
    case FGCAM_SERIAL:
        return camera.serial;
    case FGCAM_INTERFACE:
        return camera.interface;
    default:
        throw Failure(FG_INVALID_PARAMETER, "A camera has no text " + std::to_string(selector));
    }
}

} // namespace

int FgCam_getCount(unsigned int board)
{
    return boardOf(board)->cameras();
}

int FgCam_getPort(unsigned int board, unsigned int position)
{
    return boardOf(board)->portOf(position);
}

int FgCam_getString(unsigned int board, unsigned int port, int selector, char* text, std::size_t textBytes)
{
    copyTextOut(cameraText(boardOf(board)->camera(port), selector), checkedArgument(text, "text"),
                &textBytes);
    return FG_OK;
}

int FgCam_getInteger(unsigned int board, unsigned int port, int selector, int* value)
{
    const double number = boardOf(board)->cameraValue(port, selector);
    if (std::trunc(number) != number)
        throw Failure(FG_INVALID_TYPE,
                      "The camera's parameter " + std::to_string(selector) + " is no whole number");
    *checkedArgument(value, "value") = static_cast<int>(number);
    return FG_OK;
}

int FgCam_setInteger(unsigned int board, unsigned int port, int selector, int value)
{
    boardOf(board)->setCameraValue(port, selector, value);
    return FG_OK;
}

int FgCam_getValue(unsigned int board, unsigned int port, int parameter, double* value)
{
    *checkedArgument(value, "value") = boardOf(board)->cameraValue(port, parameter);
    return FG_OK;
}

int FgCam_setValue(unsigned int board, unsigned int port, int parameter, double value)
{
    boardOf(board)->setCameraValue(port, parameter, value);
    return FG_OK;
}

int FgCam_getParameterInfo(unsigned int board, unsigned int port, FgRegisterInfo** info)
{
    *checkedArgument(info, "info") = boardOf(board)->cameraRegisters(port);
    return FG_OK;
}

int FgCam_start(unsigned int board, unsigned int port)
{
    boardOf(board)->startCamera(port);
    return FG_OK;
}

int FgCam_stop(unsigned int board, unsigned int port)
{
    boardOf(board)->stopCamera(port);
    return FG_OK;
}

} // namespace simulation::entries
