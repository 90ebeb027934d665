// SPDX-License-Identifier: MIT
// Every step of a load, an unload and what ends a load early, in its order: what changes in the host, what
// the runtime is called for, what the front end is told. The files in steps/ say how it has to be. A change
// that is meant is put into them by running these tests with OVRA_RENEW_STEPS=1 in the environment, and shows
// in review.

#include "Product.h"

#include "fglib5/Fglib5Types.h"

#include <cstdlib>
#include <fstream>

namespace ovra::tests {

namespace {

class Steps : public Product
{
protected:
    Steps()
    {
        views->onLine = [](const std::string& line) { Journal::note("views " + line); };
        installation.entry<FgSim_setListener_t>("FgSim_setListener")(
            [](const char* line) { Journal::note(std::string("runtime ") + line); });
    }
    ~Steps() override { installation.entry<FgSim_setListener_t>("FgSim_setListener")(nullptr); }

    /// All phases on this thread, one after the other, so that the order of what they do is one order.
    static void load(const std::string& applet, const std::string& mcf = "")
    {
        LoadAppletCommand command(ALPHA_SERIAL, applet, mcf);
        Journal::note("-- synchronous phase");
        command.executeSync();
        Journal::note("-- asynchronous phase");
        try {
            command.executeAsync();
        } catch (const reference::ReferenceFault& fault) {
            Journal::note(std::string("-- ") + fault.what());
        }
        Journal::note("-- post-asynchronous phase");
        command.executePostAsync();
    }

    /// What \p act does, from the line on that contains \p first, is what steps/\p name.txt says.
    void expectSteps(const std::string& name, const std::function<void()>& act, const std::string& first = "")
    {
        Journal::start();
        act();
        const std::string steps = inShort(Journal::lines(), first);
        Journal::stop();
        settle();
        const auto file = std::filesystem::path(OVRA_STEPS) / (name + ".txt");
        if (std::getenv("OVRA_RENEW_STEPS")) {
            std::ofstream(file, std::ios::binary) << steps;
            GTEST_SKIP() << "renewed: " << file;
        }
        EXPECT_EQ(steps, contentOf(file)) << file;
    }

private:
    /// The journal without what only looks, what another test sees, and what differs from one run to the
    /// next.
    static std::string inShort(const Lines& journal, const std::string& first)
    {
        const Lines passedBy = {"::get",
                                "::root",
                                "::model",
                                "Parent::",
                                "globalResourceModel",
                                "CommandProcessor",
                                "HarloApplication",
                                "Node::create",
                                "HlEnvironmentGlobalResourceNode::"};
        std::string steps;
        bool begun = false;
        for (const auto& line : journal) {
            begun = begun || line.find(first) != std::string::npos;
            const std::string operation = line.substr(0, line.find(' '));
            const auto contains = [&](const auto& part) { return operation.find(part) != std::string::npos; };
            if (!begun || std::ranges::any_of(passedBy, contains))
                continue;
            steps += plain(line) + '\n';
            if (line == "views setRescanInProgress(true)")
                break; // the search runs on the worker
        }
        return steps;
    }

    static std::string plain(std::string line)
    {
        using Pair = std::pair<std::string, std::string>;
        for (const auto& [part, sign] : {Pair(boost::dll::shared_library::suffix().string(), ".dll"),
                                         Pair(" serial=a1b2c3", ""), Pair("HlEnvironment", "")})
            for (auto at = line.find(part); at != std::string::npos; at = line.find(part, at + sign.size()))
                line.replace(at, part.size(), sign);
        return line;
    }
};

} // namespace

TEST_F(Steps, OfALoadOfEachKindOfAnUnloadAndOfALoadThatUnloadsBefore)
{
    const std::string two = R"("tags": ["interface=cl-medium"], "nrOfProcessesInFile": false,
        "processes": [{"dmas": [3, 1], "ports": [1]}, {"ports": [2, 0]}],
        "dmas": [{"index": 1, "width": 64, "height": 48}, {"index": 3, "width": 64, "height": 48}])";
    const auto hap = installation.addAlphaApplet("two.hap", two);
    const auto mcf = installation.write("two.mcf", "[Kamerasektion]\nHapName=two;\n[DMA1]\nFG_WIDTH=32;\n");
    const auto wrapped = installation.addWrappedApplet();
    const auto legacy = installation.addInstalledLegacyApplet();
    start();
    expectSteps("load-hap-with-mcf", [&] { load(hap, mcf); });
    expectSteps("unload-hap", [] { UnloadAppletCommand(ALPHA_SERIAL).executeSync(); });
    expectSteps("load-dll", [&] { load(wrapped); });
    expectSteps("load-legacy-over-dll", [&] { load(legacy); });
}

TEST_F(Steps, OfALoadThatEndsEarly)
{
    const auto good = installation.addAlphaApplet("good.hap", DOUBLE);
    const auto bad = installation.addAlphaApplet(
        "bad.hap", R"("processes": [{"dmas": [0], "ports": [0]}, {"dmas": [1], "dmaPortFails": 0}],
                      "dmas": [{"index": 0, "width": 8, "height": 8}, {"index": 1, "width": 8, "height": 8}])");
    start();
    expectSteps("load-unknown-file", [&] { load("nowhere.hap"); });
    installation.failCall("Fg_Init", 1, FG_INIT_ERROR);
    expectSteps("load-without-handle", [&] { load(good); });
    expectSteps(
        "load-and-reset", [&] { load(bad); }, "-- asynchronous");
    const std::string late = "HlEnvironmentGlobalResourceRootNode::addChild board-a1b2c3-process-1-dma-2";
    const auto abandoned = [&] {
        Journal::throwAt(1, late);
        load(good);
    };
    expectSteps("load-abandoned", abandoned, late);
    expectNothingLeftOf(ALPHA_SERIAL);
}

} // namespace ovra::tests
