// SPDX-License-Identifier: MIT
#include "messages/StatusText.h"

#include "fglib5/Fglib5.h"

namespace ovra::gui::messages {

namespace {

std::string orUnknown(const char* description)
{
    return description && *description ? description : "Unknown Error Code";
}

std::string codeAndDescription(int code, const std::string& description)
{
    return std::to_string(code) + " (" + description + ")";
}

std::string descriptionOf(Fg_Struct* handle, int code)
{
    return orUnknown(Fg_getErrorDescription(handle, code));
}

} // namespace

std::string codeWithDescription(Fg_Struct* handle, int code)
{
    return codeAndDescription(code, descriptionOf(handle, code));
}

std::string descriptionWithCode(int code)
{
    return descriptionOf(nullptr, code) + " (" + std::to_string(code) + ")";
}

std::string lastErrorWithDescription()
{
    const int code = Fg_getLastErrorNumber(nullptr);
    return codeAndDescription(code, orUnknown(Fg_getLastErrorDescription(nullptr)));
}

} // namespace ovra::gui::messages
