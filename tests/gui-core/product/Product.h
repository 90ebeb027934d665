/// \file
/// Product: a fixture that runs the whole library on the reference host and a virtual installation.
#pragma once

#include "RecordingViews.h"
#include "VirtualInstallation.h"

#include "gui-core/Gui.h"

#include "ovra-core/Command.h"
#include "ovra-core/reference/Application.h"
#include "ovra-lib-environment/HlEnvironmentBoardNode.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace ovra::tests {

/// A number of images.
inline constexpr int ENDLESS = -1;

class Product : public testing::Test
{
protected:
    Product();
    ~Product() override;

    /// Starts the library and the application, and waits until it is ready.
    void start();
    /// Cleans the application up and ends the library; the destructor does it otherwise.
    void stop();

    void submit(const boost::shared_ptr<core::Command>& command);
    /// Submits and waits until nothing is under way.
    void run(const boost::shared_ptr<core::Command>& command);
    void load(int serial, const std::string& applet, const std::string& mcf = "");
    void unload(int serial);
    void settle();
    void pumpUntil(const std::function<bool()>& condition);

    boost::shared_ptr<core::models::HlEnvironmentBoardNode> board(int serial) const;
    boost::shared_ptr<core::models::HlEnvironmentDmaNode> dma(int serial, unsigned int index) const;
    boost::shared_ptr<core::models::HlEnvironmentLogicalPortNode> port(int serial, unsigned int index) const;
    /// All keys of the global resource model, with the type before each: "1 board-...".
    std::vector<std::string> resources() const;

    /// The board holds nothing, its keys are gone, and the runtime has no handle or memory of it.
    void expectEmptyBoard(int serial) const;

    VirtualInstallation installation;
    reference::Application application;
    boost::shared_ptr<RecordingViews> views = boost::make_shared<RecordingViews>();
    std::vector<std::string> failures; ///< "class phase: message" of phases that threw

private:
    bool m_started = false;
};

/// A life of an application from its first to its last step, for tests that see several.
class Session : public Product
{
public:
    using Product::application;
    using Product::dma;
    using Product::failures;
    using Product::installation;
    using Product::load;
    using Product::pumpUntil;
    using Product::run;
    using Product::start;
    using Product::stop;
    using Product::unload;
    using Product::views;

private:
    void TestBody() override {}
};

/// The journal's lines that begin with one of \p prefixes.
std::vector<std::string> journalOf(const std::vector<std::string>& prefixes);

} // namespace ovra::tests
