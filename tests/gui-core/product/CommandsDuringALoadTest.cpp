// SPDX-License-Identifier: MIT
// Effects of commands that a front end submits while a load runs: see the table in docs/front-end-guide.md.
// An unload is not tested, because a front end must not submit it.

#include "Product.h"

#include <atomic>
#include <thread>

namespace ovra::tests {

namespace {

// Of the builds in which everything takes longer each examines a sample.
#if defined(OVRA_ADDRESS_SANITIZER) || defined(OVRA_THREAD_SANITIZER) || defined(_WIN32)
constexpr int STRIDE = 7;
#else
constexpr int STRIDE = 1;
#endif

/// Holds the worker at its n-th call of the host. Its atomics are relaxed on purpose: stronger ones would
/// order the two threads and hide data races from the thread sanitizer.
class Hold
{
public:
    explicit Hold(int nth) : m_callsLeft(nth)
    {
        Journal::start();
        Journal::watch([this](const std::string&) {
            if (std::this_thread::get_id() == m_guiThread ||
                m_callsLeft.fetch_sub(1, std::memory_order_relaxed) != 1)
                return;
            m_reached.store(true, std::memory_order_relaxed);
            while (!m_released.load(std::memory_order_relaxed))
                std::this_thread::yield();
        });
    }
    ~Hold() { Journal::stop(); }
    bool isReached() const { return m_reached.load(std::memory_order_relaxed); }
    void release() { m_released.store(true, std::memory_order_relaxed); }

private:
    const std::thread::id m_guiThread = std::this_thread::get_id();
    std::atomic<int> m_callsLeft;
    std::atomic<bool> m_reached{false}, m_released{false};
};

class CommandsDuringALoad : public Product
{
protected:
    using Make = std::function<boost::shared_ptr<core::Command>()>;

    CommandsDuringALoad()
        : applet(installation.addAlphaApplet("single.hap", R"("processes": [{"dmas": [0], "ports": [0]}],
              "dmas": [{"index": 0, "width": 8, "height": 8,
                        "generator": {"pattern": "ramp", "frameRate": 500, "enabled": true}}])")),
          mcf(installation.write("single.mcf", "[Kamerasektion]\nHapName=single;\n"))
    {
        start();
        load(ALPHA_SERIAL, applet);
        old = dma(ALPHA_SERIAL, 0);
        views->clear();
        commands = {
            [this] { return StartAcquisitionCommand::create(channel(), ENDLESS); },
            [this] { return StopAcquisitionCommand::create(channel()); },
            [this] { return AcquisitionBufferCountChangeCommand::create(channel(), 3); },
            [] { return RescanAppletsCommand::create(); },
            [this] { return StoreMcfCommand::create(board(ALPHA_SERIAL), mcf + ".stored"); },
            [this] { return LoadAppletCommand::create(BETA_SERIAL, applet, ""); },
            [this] { return LoadMcfCommand::create(board(ALPHA_SERIAL), mcf); },
        };
    }

    /// The channel that a front end would name: the current one, else that of the previous applet.
    boost::shared_ptr<core::models::HlEnvironmentDmaNode> channel() const
    {
        const auto present = dma(ALPHA_SERIAL, 0);
        return present ? present : old;
    }

    void expectGoodEnd()
    {
        settle();
        ASSERT_TRUE(isLoaded(ALPHA_SERIAL));
        EXPECT_FALSE(isLoaded(BETA_SERIAL)) << "a second load is ignored";
        EXPECT_EQ(told({"error"}), Lines{});
        EXPECT_EQ(failures, Lines{});
        run(StopAcquisitionCommand::create(dma(ALPHA_SERIAL, 0)));
        EXPECT_EQ(installation.live(FGSIM_ACQUIRING_CHANNELS), 0);
        views->clear();
    }

    const std::string applet, mcf;
    boost::shared_ptr<core::models::HlEnvironmentDmaNode> old;
    std::vector<Make> commands;
};

} // namespace

TEST_F(CommandsDuringALoad, DoNoHarmAtAnyCallOfItsWorkerPhase)
{
    for (std::size_t kind = 0; kind < commands.size(); ++kind) {
        int held = 0;
        for (int nth = 1; !HasFailure(); nth += STRIDE) {
            SCOPED_TRACE("command " + std::to_string(kind) + " at call " + std::to_string(nth));
            Hold hold(nth);
            submit(LoadAppletCommand::create(ALPHA_SERIAL, applet, ""));
            pumpUntil([&] { return hold.isReached() || application.idle(); });
            if (!hold.isReached() || !told({"onLoadAppletFinished"}).empty()) {
                hold.release();
                expectGoodEnd();
                break; // the load has no further call; the search after it may have
            }
            ++held;
            submit(commands[kind]());
            hold.release();
            expectGoodEnd();
        }
        EXPECT_GT(held * STRIDE, 60);
    }
}

TEST_F(CommandsDuringALoad, DoNoHarmAtWhateverMomentTheyCome)
{
    for (unsigned int round = 0; round < 120 && !HasFailure(); ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        submit(LoadAppletCommand::create(ALPHA_SERIAL, applet, ""));
        for (unsigned int i = 0; i < round * 7 % 60; ++i) {
            application.processEvents();
            std::this_thread::yield();
        }
        submit(commands[round % 5]()); // a load would not be ignored once this one has ended
        expectGoodEnd();
    }
}

} // namespace ovra::tests
