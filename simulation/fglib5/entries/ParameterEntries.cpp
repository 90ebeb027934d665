// SPDX-License-Identifier: MIT
#include "entries/Answers.h"
#include "entries/Entries.h"

#include <algorithm>

namespace simulation::entries {

namespace {

// The value's type, for entries without a type argument.
FgValueType typeOf(const Grabber& grabber, int parameter, unsigned int dma)
{
    return Grabber::isLayoutQuery(parameter) ? FG_TYPE_INT32 : grabber.description(parameter, dma).type;
}

const ParameterDescription& atPosition(const Grabber& grabber, int position)
{
    const auto& all = grabber.distinct();
    if (position < 0 || position >= static_cast<int>(all.size()))
        throw Failure(FG_INVALID_PARAMETER, "There is no parameter at position " + std::to_string(position));
    return *all[static_cast<std::size_t>(position)];
}

void copyPropertyOut(const ParameterDescription& description, int property, void* value, std::size_t* bytes)
{
    switch (property) {
    case FG_PROPERTY_MINIMUM:
        return copyOut(&description.minimum, sizeof(double), value, bytes);
    case FG_PROPERTY_MAXIMUM:
        return copyOut(&description.maximum, sizeof(double), value, bytes);
    case FG_PROPERTY_STEP:
        return copyOut(&description.step, sizeof(double), value, bytes);
    case FG_PROPERTY_UNIT:
        return copyTextOut(description.unit, static_cast<char*>(value), bytes);
    case FG_PROPERTY_NAME:
        return copyTextOut(description.name, static_cast<char*>(value), bytes);
    case FG_PROPERTY_CHOICES:
        return copyTextOut(textOf(description.choices), static_cast<char*>(value), bytes);
    default:
        throw Failure(FG_INVALID_ARGUMENT, "There is no property " + std::to_string(property));
    }
}

} // namespace

int Fg_getNrOfParameter(Fg_Struct* grabber)
{
    return static_cast<int>(grabberOf(grabber)->distinct().size());
}

int Fg_getParameterId(Fg_Struct* grabber, int position)
{
    return atPosition(*grabberOf(grabber), position).id;
}

const char* Fg_getParameterName(Fg_Struct* grabber, int position)
{
    return atPosition(*grabberOf(grabber), position).name.c_str();
}

int Fg_getParameterIdByName(Fg_Struct* grabber, const char* name)
{
    const auto owner = grabberOf(grabber);
    const auto& all = owner->distinct();
    const std::string wanted = checkedArgument(name, "name");
    const auto found = std::ranges::find(all, wanted, &ParameterDescription::name);
    if (found == all.end())
        throw Failure(FG_INVALID_PARAMETER, "The applet has no parameter " + wanted);
    return (*found)->id;
}

const char* Fg_getParameterNameById(Fg_Struct* grabber, int parameter, unsigned int dma)
{
    return grabberOf(grabber)->description(parameter, dma).name.c_str();
}

int Fg_getParameter(Fg_Struct* grabber, int parameter, void* value, unsigned int dma)
{
    const auto type = typeOf(*grabberOf(grabber), parameter, dma);
    return entries::Fg_getParameterWithType(grabber, parameter, value, dma, type);
}

int Fg_getParameterWithType(Fg_Struct* grabber, int parameter, void* value, unsigned int dma,
                            FgValueType type)
{
    const auto owner = grabberOf(grabber);
    checkedArgument(value, "value");
    if (!Grabber::isLayoutQuery(parameter)) {
        writeValue(owner->get(parameter, dma), value, type);
        return FG_OK;
    }
    const bool asksForPosition = parameter == FG_DMA_PORT || parameter == FG_CAM_PORT;
    std::int64_t position = 0;
    if (asksForPosition && type != FG_TYPE_STRING && type != FG_TYPE_DOUBLE)
        position = std::get<std::int64_t>(readValue(value, type));
    writeValue(std::int64_t{owner->layout(parameter, dma, static_cast<int>(position))}, value, type);
    return FG_OK;
}

int Fg_setParameter(Fg_Struct* grabber, int parameter, const void* value, unsigned int dma)
{
    const auto type = typeOf(*grabberOf(grabber), parameter, dma);
    return entries::Fg_setParameterWithType(grabber, parameter, value, dma, type);
}

int Fg_setParameterWithType(Fg_Struct* grabber, int parameter, const void* value, unsigned int dma,
                            FgValueType type)
{
    if (Grabber::isLayoutQuery(parameter))
        throw Failure(FG_NOT_WRITABLE, "The layout of an applet is fixed");
    grabberOf(grabber)->set(parameter, dma, readValue(checkedArgument(value, "value"), type));
    return FG_OK;
}

int Fg_freeParameterStringWithType(Fg_Struct*, int, void* value, unsigned int, FgValueType type)
{
    if (type != FG_TYPE_STRING)
        throw Failure(FG_INVALID_TYPE, "Only texts are freed");
    auto*& text = *static_cast<char**>(checkedArgument(value, "value"));
    delete[] text;
    text = nullptr;
    return FG_OK;
}

FgRegisterInfo* Fg_getParameterInfo(Fg_Struct* grabber, unsigned int dma)
{
    return grabberOf(grabber)->registerInfo(dma);
}

int Fg_getParameterProperty(Fg_Struct* grabber, int parameter, int property, void* value,
                            std::size_t* valueBytes)
{
    const auto owner = grabberOf(grabber);
    const auto& all = owner->distinct();
    const auto found = std::ranges::find(all, parameter, &ParameterDescription::id);
    if (found == all.end())
        throw Failure(FG_INVALID_PARAMETER, "The applet has no parameter " + std::to_string(parameter));
    copyPropertyOut(**found, property, value, valueBytes);
    return FG_OK;
}

int Fg_getParameterPropertyEx(Fg_Struct* grabber, int parameter, int property, unsigned int dma, void* value,
                              std::size_t* valueBytes)
{
    copyPropertyOut(grabberOf(grabber)->description(parameter, dma), property, value, valueBytes);
    return FG_OK;
}

} // namespace simulation::entries
