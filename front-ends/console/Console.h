/// \file
/// Console: what the commands of a session work with.
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

/// GUI thread. What it refers to outlives it.
struct Console
{
    reference::Application& application;
    Printer& printer;
    ConsoleViews& views;
    ChoiceDialog& dialog;
    frontend::ImageCollection& images;
    Interrupts& interrupts;
    const frontend::SessionOptions& options;
    bool ended = false; ///< set to end the session after the present line

    /// Has the application run \p command, and lets the loop run until nothing is left to do for it. Throws
    /// RequestError, before it does anything, while an earlier command is still under way, and when the user
    /// interrupts the command or it takes longer than a minute: then it goes on.
    void run(const boost::shared_ptr<core::Command>& command);

    /// Throws RequestError while a command is under way.
    void requireIdle() const;

    /// A file to write, below the output folder unless \p name is a whole path. Folders that are missing are
    /// made and told.
    std::filesystem::path outputFile(const std::string& name) const;

    /// A file to read that a user names: where there is one of that name in the output folder, it is meant.
    /// Throws RequestError when there is none.
    std::filesystem::path inputFile(const std::string& name) const;

    /// Lets the loop run until \p condition holds; false when \p limit passed first. Throws RequestError when
    /// the user interrupts the command.
    bool waitUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit);
};

} // namespace ovra::console
