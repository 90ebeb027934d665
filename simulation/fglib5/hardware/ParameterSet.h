// SPDX-License-Identifier: MIT
/// \file
/// The parameters of one DMA channel, or those of the whole applet.
#pragma once

#include "descriptions/Applet.h"

#include <deque>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace simulation {

/// Reads a value of one of the interface's types. Throws FG_INVALID_TYPE, and FG_VALUE_OUT_OF_RANGE for a
/// number that ParameterValue cannot hold.
ParameterValue readValue(const void* value, FgValueType type);
void writeValue(const ParameterValue& value, void* target, FgValueType type);

/// Throws FG_INVALID_TYPE for a text.
double numberOf(const ParameterValue& value);

/// Conversion to the texts in configuration files, and back. The latter throws FG_INVALID_TYPE.
std::string textOf(const ParameterValue& value);
ParameterValue valueOf(const std::string& text, FgValueType type);

/// The parameters that the runtime gives every DMA channel.
std::vector<ParameterDescription> channelParameters(const DmaDescription& dma);

/// Not thread-safe; its owner's lock guards it.
class ParameterSet
{
public:
    explicit ParameterSet(std::vector<ParameterDescription> descriptions);
    // Not copyable: members point into m_descriptions.
    ParameterSet(const ParameterSet&) = delete;
    ParameterSet& operator=(const ParameterSet&) = delete;
    ~ParameterSet() = default;

    const std::vector<ParameterDescription>& descriptions() const { return m_specs; }
    /// Null if there is none.
    const ParameterDescription* find(int id) const;
    const ParameterDescription* find(std::string_view name) const;

    const ParameterValue& get(int id) const;
    /// Converts \p value to the parameter's type. Throws FG_NOT_WRITABLE, FG_INVALID_TYPE,
    /// FG_VALUE_OUT_OF_RANGE.
    ParameterValue checked(const ParameterDescription& description, const ParameterValue& value) const;
    void set(const ParameterDescription& description, const ParameterValue& value);

    /// The value of an integer parameter, which must exist.
    int integer(int id) const;

private:
    std::size_t indexOf(int id) const;

    std::vector<ParameterDescription> m_specs;
    std::vector<ParameterValue> m_values;
};

/// The descriptions of some sets in the interface's form. The sets must outlive it.
struct RegisterList
{
    RegisterList() = default;
    explicit RegisterList(std::initializer_list<const ParameterSet*> sets);
    RegisterList(const RegisterList&) = delete;
    RegisterList& operator=(const RegisterList&) = delete;
    RegisterList(RegisterList&&) noexcept = default;
    RegisterList& operator=(RegisterList&&) noexcept = default;
    ~RegisterList() = default;

    std::deque<std::string> choices;
    std::vector<FgRegisterDescription> descriptions;
    FgRegisterInfo info{};
};

} // namespace simulation
