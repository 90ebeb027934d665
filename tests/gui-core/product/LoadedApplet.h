/// \file
/// LoadedApplet: a fixture for what loading puts on a board and unloading takes off again.
#pragma once

#include "Product.h"

#include <functional>
#include <string>
#include <vector>

namespace ovra::tests {

using Lines = std::vector<std::string>;

// Descriptions of applets, without name and board type.
inline constexpr const char* SINGLE = R"("processes": [{"dmas": [0], "ports": [0]}],
    "dmas": [{"index": 0, "width": 64, "height": 48}])";
inline constexpr const char* DOUBLE = R"("tags": ["interface=cl-medium", "interface=cl-base"],
    "processes": [{"dmas": [12, 1], "ports": [1]}, {"dmas": [2], "ports": [2, 0, 10]}],
    "dmas": [{"index": 1, "width": 64, "height": 48, "generator": {"pattern": "ramp"}},
             {"index": 2, "width": 64, "height": 48}, {"index": 12, "width": 32, "height": 16}])";
inline constexpr const char* NO_DMA = R"("processes": [{"ports": [0]}])";

class LoadedApplet : public Product
{
protected:
    ~LoadedApplet() override;

    /// Board 0 gets a copy of a library that the build made for tests, or of the installation's own.
    std::string addLegacyApplet(const std::string& module);
    std::string addInstalledLegacyApplet();
    /// A wrapped library with two processes, the second of them without DMA channels.
    std::string addWrappedApplet();

    /// The status lines, warnings and errors among what the front end was told.
    Lines toldAbout() const;
    bool isLoaded(int serial) const;
    /// No handle, image memory or subscription is left of any board.
    void expectNothingHeldByTheRuntime() const;
    /// Lets the 1st, 2nd, ... host call in \p act throw, until it passes untouched: before each time comes
    /// \p prepare, after it \p check, which is told whether it threw. Returns how often it threw.
    std::size_t sweep(const std::function<void()>& prepare, const std::function<void()>& act,
                      const std::function<void(bool)>& check) const;
    /// \p serial is empty, and with that board everything is gone.
    void expectNothingLeftOf(int serial) const;
};

/// A description with more fields.
std::string with(const std::string& description, const std::string& fields);

} // namespace ovra::tests
