// SPDX-License-Identifier: MIT
/// \file
/// Console: the objects that the commands of a session use.
#pragma once

#include <boost/shared_ptr.hpp>

#include <chrono>
#include <filesystem>
#include <functional>
#include <string>

namespace ovra::core {
class Command;
}

namespace ovra::frontend {
class ImageCollection;
struct SessionOptions;
} // namespace ovra::frontend

namespace ovra::reference {
class Application;
}

namespace ovra::console {

class ChoiceDialog;
class ConsoleViews;
class Interrupts;
class Printer;

/// GUI thread. The referenced objects must outlive it.
struct Console
{
    reference::Application& application;
    Printer& printer;
    ConsoleViews& views;
    ChoiceDialog& dialog;
    frontend::ImageCollection& images;
    Interrupts& interrupts;
    const frontend::SessionOptions& options;
    bool ended = false; ///< set to end the session after the current line

    /// Submits \p command and runs the event loop until the application is idle.
    /// \throws RequestError  while an earlier command is running: then there is no effect; or if the user
    ///     interrupts the wait or it takes longer than a minute: then the command continues
    void run(const boost::shared_ptr<core::Command>& command);

    /// Throws RequestError while a command is running.
    void requireIdle() const;

    /// A file to write, below the output folder unless \p name is absolute. Creates missing folders, with a
    /// message.
    std::filesystem::path outputFile(const std::string& name) const;

    /// A file to read; a file of that name in the output folder takes precedence. Throws RequestError if
    /// there is none.
    std::filesystem::path inputFile(const std::string& name) const;

    /// Runs the event loop until \p condition holds; false if \p limit expires first. Throws RequestError if
    /// the user interrupts the command.
    bool waitUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit);
};

} // namespace ovra::console
