// SPDX-License-Identifier: MIT
// Repeats operations of an application and a scenario, and checks that the process's resources do not grow.
//
// 300 rounds of each kind, or OVRA_SOAK_ROUNDS (environment variable); scripts/soak runs 10,000. The scenario
// unplugs a board twenty times a second for two seconds, or every ten seconds for OVRA_SOAK_SECONDS;
// scripts/soak runs it for an hour.

#include "ProcessResources.h"
#include "Product.h"

#include "ovra-lib-display/reference/AcquisitionObserver.h"
#include "ovra_log/reference/LiveObjects.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <future>
#include <map>
#include <thread>
#include <utility>

namespace ovra::tests {

namespace {

#if defined(OVRA_ADDRESS_SANITIZER) || defined(OVRA_THREAD_SANITIZER)
// Sanitizers keep freed memory for a while, and detect leaks themselves.
constexpr bool MEMORY_COUNTS = false;
constexpr int ROUNDS = 60;
#else
constexpr bool MEMORY_COUNTS = true;
constexpr int ROUNDS = 300;
#endif
constexpr long long RESTLESSNESS = 256LL << 10; ///< variation by the allocator, in bytes
/// The same where threads come and go: some allocators take a mebibyte at a time for each.
constexpr long long RESTLESSNESS_OF_THREADS = 2LL << 20;

using Round = std::function<void()>;

struct Kind
{
    const char* name;
    Round (*begin)(); ///< what the rounds have in common

    friend void PrintTo(const Kind& kind, std::ostream* stream) { *stream << kind.name; }
};

Round applicationLives()
{
    return [] {
        Session session;
        session.start();
        session.stop();
        EXPECT_EQ(session.failures, Lines{});
    };
}

Round loads()
{
    std::string dmas;
    for (int i = 0; i < 16; ++i)
        dmas += (i ? "," : "") + (R"({"index": )" + std::to_string(i)) + R"(, "width": 16, "height": 16})";
    const auto session = std::make_shared<Session>();
    const auto applet = session->installation.addAlphaApplet("largest.hap", R"("processes": [
        {"dmas": [0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15], "ports": [0, 1, 2, 3]}],
        "dmas": [)" + dmas + "]");
    session->start();
    return [=] {
        session->load(ALPHA_SERIAL, applet);
        ASSERT_TRUE(session->dma(ALPHA_SERIAL, 15));
        session->unload(ALPHA_SERIAL);
        ASSERT_EQ(session->installation.live(FGSIM_BOARD_HANDLES), 0);
        session->views->clear();
    };
}

Round acquisitions()
{
    struct Acquiring
    {
        std::array<ImageCounter, 2> shown; // outlives the scenes
        Session session;
    };
    const auto all = std::make_shared<Acquiring>();
    Session& session = all->session;
    const auto applet = session.installation.addAlphaApplet("two.hap", R"(
        "processes": [{"dmas": [0, 1], "ports": [0]}],
        "dmas": [{"index": 0, "width": 64, "height": 48, "port": 0},
                 {"index": 1, "width": 64, "height": 48,
                  "generator": {"pattern": "ramp", "frameRate": 500, "enabled": true}}])");
    session.start();
    session.load(ALPHA_SERIAL, applet);
    for (unsigned int i = 0; i < all->shown.size(); ++i)
        session.dma(ALPHA_SERIAL, i)->getDisplayScene()->setVisualizer(&all->shown[i]);
    Gui::setSyncMode(Gui::SyncBoard); // both channels and the camera
    return [all, &session] {
        for (auto& counter : all->shown)
            counter.images = 0;
        session.run(StartAcquisitionCommand::create(session.dma(ALPHA_SERIAL, 0), ENDLESS));
        session.pumpUntil([&] { return all->shown[0].images > 0 && all->shown[1].images > 0; });
        session.run(StopAcquisitionCommand::create(session.dma(ALPHA_SERIAL, 0)));
        ASSERT_EQ(session.installation.live(FGSIM_ACQUIRING_CHANNELS), 0);
        session.views->clear();
    };
}

Round unpluggings()
{
    const auto session = std::make_shared<Session>();
    const auto applet = session->installation.addAlphaApplet("single.hap", SINGLE);
    session->start();
    const auto perform = [=](const char* step) {
        EXPECT_EQ(session->installation.entry<FgSim_perform_t>("FgSim_perform")(step, nullptr, 0), 0) << step;
    };
    return [=] {
        const auto board = [&] { return session->board(ALPHA_SERIAL); };
        session->load(ALPHA_SERIAL, applet);
        session->run(StartAcquisitionCommand::create(session->dma(ALPHA_SERIAL, 0), ENDLESS));
        perform("unplug camera 0 0");
        perform("unplug board 0");
        const auto scene = session->dma(ALPHA_SERIAL, 0)->getDisplayScene();
        session->pumpUntil([&] { return !scene->isGrabbing(); });
        session->unload(ALPHA_SERIAL);
        session->pumpUntil([&] { return !board(); });
        perform("plug camera 0 0");
        perform("plug board 0");
        session->pumpUntil([&] { return board() != nullptr; });
        session->views->clear();
    };
}

/// The growth since \p before.
ProcessResources growth(const ProcessResources& before)
{
    const auto now = processResources();
    return {now.memory - before.memory, now.handles - before.handles, now.threads - before.threads};
}

using Objects = std::map<std::string, long long>;

Objects liveObjects()
{
    Objects counts;
    for (const auto& [name, count] : reference::allLiveObjects())
        counts[name] += count;
    return counts;
}

/// What there are more of than before. Fewer are no fault: the count before may have caught some that were about to go.
Objects newObjects(const Objects& before)
{
    Objects grown;
    for (const auto& [name, count] : liveObjects()) {
        const auto earlier = before.find(name);
        const auto more = count - (earlier == before.end() ? 0 : earlier->second);
        if (more > 0)
            grown[name] = more;
    }
    return grown;
}

/// Waits a little, since the system may still count a thread that has ended.
ProcessResources settledGrowth(const ProcessResources& before)
{
    auto grown = growth(before);
    for (const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
         grown.threads > 0 && std::chrono::steady_clock::now() < end; grown = growth(before))
        std::this_thread::yield();
    return grown;
}

void expectFlat(const char* name, const std::string& length, const ProcessResources& before,
                const Objects& objectsBefore, long long restlessness = RESTLESSNESS)
{
    const auto grown = settledGrowth(before);
    const auto objects = newObjects(objectsBefore);
    std::printf("%-16s %s: memory %+lld KB, handles %+lld, threads %+lld, new kinds of host objects %zu\n",
                name, length.c_str(), grown.memory / 1024, grown.handles, grown.threads, objects.size());
    if (MEMORY_COUNTS) {
        EXPECT_LE(grown.memory, restlessness);
    }
    EXPECT_LE(grown.handles, LATE_HANDLES);
    EXPECT_LE(grown.threads, 0);
    EXPECT_EQ(objects, Objects{});
}

/// Uses two boards while a scenario unplugs and plugs one of them again and again.
class PatientUser
{
public:
    PatientUser()
        : m_applet(m_session.installation.addAlphaApplet("alpha.hap", SINGLE)),
          m_other(m_session.installation.addBetaApplet("beta.hap", SINGLE))
    {
        m_session.start();
        m_session.load(BETA_SERIAL, m_other);
        m_session.run(StartAcquisitionCommand::create(m_session.dma(BETA_SERIAL, 0), ENDLESS));
    }

    /// Returns how often the board was unplugged.
    int follow(std::chrono::milliseconds interval, std::chrono::milliseconds duration)
    {
        const auto half = std::to_string(interval.count() / 2) + " ms: ";
        perform("scenario " +
                m_session.installation.write("unplug.scenario", "after " + half + "unplug board 0; after " +
                                                                    half + "plug board 0\nrepeat\n"));
        const auto end = std::chrono::steady_clock::now() + duration;
        const auto over = [&] { return std::chrono::steady_clock::now() >= end; };
        const int before = m_unloads;
        while (!over()) {
            takeCare();
            m_session.application.pumpUntil([&] { return over() || !acquires(); }, duration);
        }
        perform("scenario stop");
        perform("plug board 0");
        const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        bool delivers = false;
        while (!(delivers = this->delivers()) && std::chrono::steady_clock::now() < limit)
            takeCare();
        EXPECT_TRUE(delivers) << testing::PrintToString(m_session.views->lines())
                              << testing::PrintToString(m_session.failures);
        m_session.views->clear();
        return m_unloads - before;
    }

private:
    void perform(const std::string& step) const
    {
        EXPECT_EQ(m_session.installation.entry<FgSim_perform_t>("FgSim_perform")(step.c_str(), nullptr, 0), 0)
            << step;
    }

    /// Null for a board that is not known or has no applet. Looked up in one go: the monitor takes the board
    /// out of the model at any moment.
    boost::shared_ptr<core::models::HlEnvironmentDmaNode> channel() const
    {
        const auto board = m_session.board(ALPHA_SERIAL);
        const auto dmas = board ? board->getDmas() : nullptr;
        return dmas && dmas->hasNext() ? dmas->current() : nullptr;
    }

    bool acquires() const
    {
        const auto dma = channel();
        return dma && dma->getDisplayScene()->isGrabbing();
    }

    /// Also false while the loss of the board has not been noticed.
    bool delivers()
    {
        const auto dma = channel();
        const auto received = [&] {
            return reference::AcquisitionObserver::figures(*dma->getDisplayScene()).sinceBoardStart.received;
        };
        const auto before = dma ? received() : 0;
        return dma &&
               m_session.application.pumpUntil([&] { return received() > before; }, std::chrono::seconds(1));
    }

    /// Any command may meet a board that is gone.
    void takeCare()
    {
        m_session.views->clear();
        m_session.failures.clear();
        const auto known = [&] { return m_session.board(ALPHA_SERIAL) != nullptr; };
        if (!known()) {
            m_session.application.pumpUntil(known, std::chrono::seconds(1));
        } else if (const auto dma = channel(); !dma) {
            m_session.load(ALPHA_SERIAL, m_applet);
        } else if (!std::exchange(m_started, true)) {
            m_session.run(StartAcquisitionCommand::create(dma, ENDLESS));
        } else if (!acquires()) {
            unload();
        }
    }

    void unload()
    {
        m_session.unload(ALPHA_SERIAL);
        m_started = false;
        ++m_unloads;
    }

    Session m_session;
    const std::string m_applet, m_other;
    bool m_started = false;
    int m_unloads = 0;
};

class Soak : public testing::TestWithParam<Kind>
{};

} // namespace

TEST_P(Soak, LeavesNothingBehind)
{
    const char* const wanted = std::getenv("OVRA_SOAK_ROUNDS");
    const int rounds = wanted ? std::max(std::atoi(wanted), 1) : ROUNDS;
    const auto round = GetParam().begin();
    for (int i = 0; i < 30 + rounds / 10 && !HasFailure(); ++i)
        round(); // until caches are filled
    const auto objects = liveObjects();
    const auto before = processResources();
    int done = 0;
    for (; done < rounds && !HasFailure(); ++done)
        round();
    expectFlat(GetParam().name, std::to_string(done) + " rounds", before, objects);
}

INSTANTIATE_TEST_SUITE_P(Rounds, Soak,
                         testing::Values(Kind{"applicationLives", &applicationLives}, Kind{"loads", &loads},
                                         Kind{"acquisitions", &acquisitions},
                                         Kind{"unpluggings", &unpluggings}),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(ScenarioSoak, LeavesNothingBehind)
{
    constexpr std::chrono::milliseconds SHORT_INTERVAL{50};
    const char* const wanted = std::getenv("OVRA_SOAK_SECONDS");
    const std::chrono::seconds duration(wanted ? std::max(std::atoi(wanted), 1) : 2);
    const std::chrono::milliseconds interval(wanted ? 10'000 : SHORT_INTERVAL.count());
    PatientUser user;
    for (int i = 0; i < 2; ++i) // until caches are filled, also those that a second scenario finds
        user.follow(SHORT_INTERVAL, std::chrono::seconds(1) + duration / 10);
    const auto objects = liveObjects();
    const auto before = processResources();
    const int unplugged = user.follow(interval, duration);
    EXPECT_GT(unplugged, 0);
    expectFlat("scenario",
               std::to_string(unplugged) + " rounds in " + std::to_string(duration.count()) + " s", before,
               objects, RESTLESSNESS_OF_THREADS);
}

// If a count never changed, every soak would pass.
TEST(ProcessResources, GrowWithWhatTheProcessHolds)
{
    const auto before = processResources();
    const std::ifstream file(OVRA_LEGACY_APPLET);
    std::promise<void> end;
    const auto thread = std::async(std::launch::async, [&end] { end.get_future().wait(); });
    const std::vector<char> bytes(64U << 20, 'x');
    const auto grown = growth(before);
    end.set_value();
    EXPECT_GE(grown.memory, static_cast<long long>(bytes.size()));
    EXPECT_GE(grown.handles, 1);
    EXPECT_GE(grown.threads, 1); // a sanitizer starts one of its own with the first
}

} // namespace ovra::tests
