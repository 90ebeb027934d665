// SPDX-License-Identifier: MIT
// Tests of rehearsals: steps, cables, shortages.

#include "Fixture.h"

#include <condition_variable>
#include <future>
#include <mutex>
#include <numeric>
#include <thread>

namespace simulation::tests {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

/// Two boards of equal model with a camera each.
const std::string TWINS = R"({"name": "Twins", "boards": [
    {"model": "quad", "boardType": 7, "serial": "1", "ports": 2},
    {"model": "quad", "boardType": 7, "serial": "2", "ports": 2}], "cameras": [
    {"board": 0, "port": 0, "model": "M", "serial": "1", "interface": "gige",
     "sensorWidth": 40, "sensorHeight": 30, "frameRate": 1000, "scene": "landscape"},
    {"board": 1, "port": 0, "model": "M", "serial": "2", "interface": "gige",
     "sensorWidth": 40, "sensorHeight": 30, "frameRate": 1000, "scene": "landscape"}]})";

constexpr const char* SINGLE = R"({"format": "virtual-applet-1", "name": "S", "boardType": 7,
    "processes": [{"dmas": [0], "ports": [0]}], "dmas": [{"index": 0, "width": 40, "height": 30, "port": 0}]})";

constexpr std::size_t IMAGE_BYTES = 40UL * 30UL;

} // namespace

class RehearsalTest : public SimulationTest
{
protected:
    RehearsalTest() { EXPECT_EQ(useMachine(TWINS), FG_OK) << lastLine(); }
    ~RehearsalTest() override
    {
        for (const char* const step : {"scenario stop", "image-memory free", "disk free", "busy 0", "forget"})
            perform(step);
        for (auto* grabber : m_open)
            runtime.Fg_FreeGrabber(grabber);
    }

    /// The answer, or "code: line".
    std::string perform(const std::string& step) const
    {
        std::array<char, 4096> answer{};
        const int code = runtime.FgSim_perform(step.c_str(), answer.data(), answer.size());
        return code == FG_OK ? answer.data() : std::to_string(code) + ": " + lastLine();
    }

    Fg_Struct* load(unsigned int board)
    {
        auto* grabber = runtime.Fg_Init(write("S.hap", SINGLE).c_str(), board);
        if (grabber != nullptr)
            m_open.push_back(grabber);
        return grabber;
    }

    /// A ring that the board acquires into from its camera.
    FgBufferRing* acquire(Fg_Struct* grabber, unsigned int board,
                          FgFrameIndex frames = FG_GRAB_INFINITE) const
    {
        auto* ring = runtime.Fg_AllocMemEx(grabber, 16 * IMAGE_BYTES, 16);
        EXPECT_EQ(runtime.Fg_AcquireEx(grabber, 0, frames, FG_ACQUIRE_STANDARD, ring), FG_OK) << lastLine();
        EXPECT_EQ(runtime.FgCam_start(board, 0), FG_OK) << lastLine();
        return ring;
    }

    FgFrameIndex wait(Fg_Struct* grabber, FgFrameIndex frame, FgBufferRing* ring) const
    {
        return runtime.Fg_getLastPicNumberBlockingEx(grabber, frame, 0, 20, ring);
    }

    std::vector<Fg_Struct*> m_open;
};

TEST_F(RehearsalTest, PlansFaultsAndDelaysOfAllBoardsOrOfOne)
{
    EXPECT_EQ(perform("fault Fg_getBoardType board 1 nth 2 code -17"), "");
    EXPECT_EQ(perform("fault FgCam_getCount always"), "");
    EXPECT_EQ(perform("delay Fg_Init 2 board 0"), "");
    EXPECT_EQ(perform("faults"), "fault Fg_getBoardType board 1 nth 2 code -17 once\n"
                                 "fault FgCam_getCount nth 1 code -1 always\ndelay Fg_Init 2 board 0\n");
    const auto types = [&](unsigned int first, unsigned int second) {
        return std::vector{runtime.Fg_getBoardType(static_cast<int>(first)),
                           runtime.Fg_getBoardType(static_cast<int>(second))};
    };
    EXPECT_THAT(types(0, 0), ElementsAre(7, 7));
    EXPECT_THAT(types(1, 0), ElementsAre(7, 7));
    EXPECT_THAT(types(1, 1), ElementsAre(-17, 7));
    EXPECT_EQ(runtime.FgCam_getCount(0), -1);
    EXPECT_EQ(runtime.FgCam_getCount(1), -1);
    EXPECT_EQ(perform("calls Fg_getBoardType"), "Fg_getBoardType 6\n");
    EXPECT_EQ(perform("calls Fg_getBoardType board 1"), "Fg_getBoardType 3\n");
    EXPECT_THAT(perform("calls"), HasSubstr("FgCam_getCount 2\n"));
    // A call with a handle concerns the handle's board.
    auto* first = load(0);
    auto* second = load(1);
    perform("fault Fg_getSerialNumber board 1 code -6");
    EXPECT_EQ(runtime.Fg_getSerialNumber(first), 1U);
    EXPECT_EQ(runtime.Fg_getSerialNumber(second), 0U);
    EXPECT_EQ(perform("calls board 0"),
              "Fg_Init 1\nFg_getBoardType 3\nFg_getSerialNumber 1\nFgCam_getCount 1\n");
    EXPECT_EQ(perform("forget"), "");
    EXPECT_EQ(perform("faults"), "");
    EXPECT_EQ(runtime.FgCam_getCount(1), 1);
}

TEST_F(RehearsalTest, RefusesWhatMakesNoSenseAndNamesTheWord)
{
    struct Row
    {
        const char* step;
        const char* refusal;
    };
    for (const auto& row : {
             Row{"", "Expected a step at the end of the line"},
             Row{"explode", "There is no step 'explode'"},
             Row{"fault Fg_nothing", "The runtime has no entry 'Fg_nothing'"},
             Row{"fault Fg_Init nth 0", "Expected a number of calls from 1, found '0'"},
             Row{"fault Fg_Init code 3", "Expected a code below 0, found '3'"},
             Row{"fault Fg_Init twice", "Expected board, nth, code, once or always, found 'twice'"},
             Row{"delay Fg_Init", "Expected milliseconds, an hour at most at the end of the line"},
             Row{"delay Fg_Init 3600001", "Expected milliseconds, an hour at most, found '3600001'"},
             Row{"calls Fg_Init on 1", "Nothing may follow here, but there is 'on'"},
             Row{"unplug mouse 0", "Expected board, camera or link, found 'mouse'"},
             Row{"unplug camera 0 x", "Expected a port, found 'x'"},
             Row{"unplug camera 0 1", "No camera is plugged into port 1"},
             Row{"plug link 0 2", "Board 0 has no port 2"},
             Row{"unplug board 0 now", "Nothing may follow here, but there is 'now'"},
             Row{"loosen 0 0 5 burnt", "Expected lost, torn or late, found 'burnt'"},
             Row{"busy 65", "Expected 0 to 64 threads, found '65'"},
             Row{"disk half", "Expected full or free, found 'half'"},
         })
        EXPECT_EQ(perform(row.step), "-5: " + std::string(row.refusal)) << row.step;
    EXPECT_EQ(perform("unplug board 2"), "-7: The machine has no board 2");
    EXPECT_EQ(perform("fault Fg_Init board 2"), "-7: The machine has no board 2");
    EXPECT_EQ(perform("calls board 2"), "-7: The machine has no board 2");
    EXPECT_EQ(perform("faults"), "");
}

TEST_F(RehearsalTest, AnUnpluggedBoardAnswersAsALostDeviceAndReleasesWhatIsHeld)
{
    auto* grabber = load(0);
    auto* other = load(1);
    auto* ring = acquire(grabber, 0);
    auto* otherRing = acquire(other, 1);
    auto waiter = std::async(std::launch::async, [&] { return wait(grabber, 1'000'000'000, ring); });
    auto eventWaiter =
        std::async(std::launch::async, [&] { return runtime.Fg_eventWait(grabber, 1, 20'000, 0, nullptr); });
    EXPECT_GT(wait(grabber, 5, ring), 0);
    EXPECT_EQ(perform("unplug board 0"), "");
    EXPECT_EQ(perform("unplug board 0"), "");
    EXPECT_EQ(perform("faults"), "unplug board 0\n");
    EXPECT_EQ(waiter.get(), FG_DEVICE_LOST);
    EXPECT_EQ(eventWaiter.get(), 0U);
    std::int32_t width = 0;
    for (const auto code :
         {runtime.Fg_getParameter(grabber, FG_WIDTH, &width, 0),
          runtime.Fg_AcquireEx(grabber, 0, 1, FG_ACQUIRE_STANDARD, ring), runtime.Fg_getEventCount(grabber),
          runtime.Fg_getBoardType(0), runtime.FgCam_getCount(0), runtime.FgCam_stop(0, 0),
          runtime.Fg_activateEvents(grabber, 1, 0), static_cast<int>(wait(grabber, 1, ring)),
          runtime.Fg_stopAcquireEx(grabber, 0, ring, 0), runtime.Fg_FreeMemEx(grabber, ring)})
        EXPECT_EQ(code, FG_DEVICE_LOST);
    EXPECT_EQ(load(0), nullptr);
    EXPECT_EQ(runtime.Fg_getLastErrorNumber(nullptr), FG_DEVICE_LOST);
    EXPECT_EQ(runtime.FgSim_live(FGSIM_RINGS), 1);
    // The other board continues.
    EXPECT_GT(wait(other, runtime.Fg_getLastPicNumberEx(other, 0, otherRing) + 5, otherRing), 0);
    // After plugging, the board is empty, even before the old handle is freed.
    EXPECT_EQ(perform("plug board 0"), "");
    EXPECT_EQ(perform("faults"), "");
    auto* again = load(0);
    ASSERT_NE(again, nullptr) << lastLine();
    EXPECT_EQ(runtime.Fg_getParameter(grabber, FG_WIDTH, &width, 0), FG_DEVICE_LOST);
    EXPECT_EQ(runtime.Fg_FreeGrabber(grabber), FG_DEVICE_LOST);
    EXPECT_EQ(runtime.Fg_FreeGrabber(grabber), FG_INVALID_HANDLE);
    auto* ringAgain = acquire(again, 0);
    EXPECT_GT(wait(again, 3, ringAgain), 0);
    EXPECT_EQ(runtime.FgSim_live(FGSIM_BOARD_HANDLES), 2);
}

TEST_F(RehearsalTest, AnUnpluggedCameraIsGoneAndAnUnpluggedLinkOnlySilent)
{
    auto* grabber = load(0);
    auto* ring = acquire(grabber, 0);
    EXPECT_GT(wait(grabber, 2, ring), 0);
    const auto source = [&] { return runtime.Fg_getStatusEx(grabber, FG_STATUS_SOURCE, 0, 0, ring); };
    EXPECT_EQ(source(), FG_SOURCE_STREAMS);
    perform("unplug link 0 0");
    EXPECT_EQ(source(), FG_SOURCE_NONE);
    int acquires = 0;
    EXPECT_EQ(runtime.FgCam_getInteger(0, 0, FGCAM_ACQUIRING, &acquires), FG_OK);
    EXPECT_EQ(acquires, 1);
    const auto lost = runtime.Fg_getStatusEx(grabber, FG_STATUS_LOST_IMAGES, 0, 0, ring);
    const auto last = runtime.Fg_getLastPicNumberEx(grabber, 0, ring);
    EXPECT_EQ(runtime.Fg_getLastPicNumberBlockingEx(grabber, last + 2, 0, 0, ring), FG_TIMEOUT);
    EXPECT_EQ(runtime.Fg_getStatusEx(grabber, FG_STATUS_LOST_IMAGES, 0, 0, ring), lost);
    perform("plug link 0 0");
    EXPECT_GT(wait(grabber, last + 2, ring), 0); // the camera has gone on

    perform("unplug camera 0 0");
    EXPECT_EQ(source(), FG_SOURCE_NONE);
    EXPECT_EQ(runtime.FgCam_getCount(0), 0);
    EXPECT_EQ(runtime.FgCam_getInteger(0, 0, FGCAM_ACQUIRING, &acquires), FG_DEVICE_LOST);
    EXPECT_EQ(runtime.FgCam_start(0, 0), FG_DEVICE_LOST);
    perform("plug camera 0 0");
    EXPECT_EQ(runtime.FgCam_getCount(0), 1);
    EXPECT_EQ(runtime.FgCam_getInteger(0, 0, FGCAM_ACQUIRING, &acquires), FG_OK);
    EXPECT_EQ(acquires, 0);
    EXPECT_EQ(runtime.FgCam_start(0, 0), FG_OK);
    EXPECT_GT(wait(grabber, runtime.Fg_getLastPicNumberEx(grabber, 0, ring) + 2, ring), 0);
}

TEST_F(RehearsalTest, ALooseCableDamagesTheSameImagesEachTime)
{
    const auto run = [&](const std::string& cable, FgFrameIndex images) {
        perform("loosen 0 0 " + cable);
        auto* grabber = load(0);
        auto* ring = runtime.Fg_AllocMemEx(grabber, 256 * IMAGE_BYTES, 256);
        EXPECT_EQ(runtime.Fg_AcquireEx(grabber, 0, images, FG_ACQUIRE_STANDARD, ring), FG_OK);
        runtime.FgCam_start(0, 0);
        EXPECT_EQ(wait(grabber, images, ring), images);
        std::vector<std::uint64_t> prints;
        for (FgFrameIndex image = 1; image <= images; ++image) {
            const auto* pixels =
                static_cast<const std::uint8_t*>(runtime.Fg_getImagePtrEx(grabber, image, 0, ring));
            prints.push_back(
                std::accumulate(pixels, pixels + IMAGE_BYTES, std::uint64_t{0},
                                [](std::uint64_t hash, std::uint8_t byte) { return hash * 31 + byte; }));
        }
        prints.push_back(
            static_cast<std::uint64_t>(runtime.Fg_getStatusEx(grabber, FG_STATUS_LOST_IMAGES, 0, 0, ring)));
        runtime.Fg_stopAcquireEx(grabber, 0, ring, 0);
        EXPECT_EQ(runtime.Fg_AcquireEx(grabber, 0, 1, FG_ACQUIRE_STANDARD, ring), FG_OK);
        const auto lost = runtime.Fg_getStatusEx(grabber, FG_STATUS_LOST_IMAGES, 0, 0, ring);
        EXPECT_TRUE(prints.back() < 5 || lost < 5) << "each acquisition counts anew: " << lost;
        runtime.FgCam_stop(0, 0);
        runtime.Fg_FreeGrabber(grabber);
        m_open.clear();
        return prints;
    };
    const auto differences = [](const auto& left, const auto& right) {
        int count = 0;
        for (std::size_t i = 0; i + 1 < left.size(); ++i) // the last one is no image
            count += left[i] != right[i] ? 1 : 0;
        return count;
    };
    const auto whole = run("0", 100);
    const auto torn = run("10 torn seed 3", 100);
    EXPECT_EQ(run("10 torn seed 3", 100), torn);
    EXPECT_NEAR(differences(whole, torn), 10, 8);
    EXPECT_NE(run("10 torn seed 4", 100), torn);
    EXPECT_EQ(whole.back(), 0U);
    EXPECT_NEAR(static_cast<double>(run("10 lost", 100).back()), 11, 9);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(differences(run("1 late", 3), whole), 0);
    EXPECT_GE(std::chrono::steady_clock::now() - start, 300ms);
    EXPECT_EQ(perform("faults"), "loosen 0 0 1 late seed 1\n");
}

TEST_F(RehearsalTest, TellsItsClientsWhatComesAndGoes)
{
    struct Told
    {
        std::mutex mutex;
        std::condition_variable changed;
        std::vector<std::string> lines;
    } told;
    const FgNotifyCallback callback = [](int board, unsigned int what, std::uint64_t argument,
                                         void* userData) {
        auto& all = *static_cast<Told*>(userData);
        const std::lock_guard lock(all.mutex);
        all.lines.push_back(std::to_string(board) + ' ' + std::to_string(what) + ' ' +
                            std::to_string(argument));
        all.changed.notify_all();
        return 0;
    };
    EXPECT_EQ(runtime.Fg_registerAsyncNotifyCallback(nullptr, callback, &told), FG_OK);
    for (const char* const step : {"unplug camera 1 0", "unplug board 1", "plug board 1", "plug camera 1 0",
                                   "plug camera 1 0", "unplug link 0 1", "plug link 0 1"})
        perform(step);
    std::unique_lock lock(told.mutex);
    told.changed.wait_for(lock, 20s, [&] { return told.lines.size() >= 6; });
    EXPECT_THAT(told.lines, ElementsAre("1 3 0", "1 1 0", "1 2 0", "1 4 0", "0 5 1", "0 6 1"));
    lock.unlock();
    EXPECT_EQ(runtime.Fg_unregisterAsyncNotifyCallback(nullptr, callback, &told), FG_OK);
    EXPECT_EQ(runtime.Fg_unregisterAsyncNotifyCallback(nullptr, callback, &told), FG_INVALID_ARGUMENT);
    perform("unplug board 0");
    perform("plug board 0");
}

TEST_F(RehearsalTest, RunsShortOfMemoryAndDisk)
{
    auto* grabber = load(0);
    perform("image-memory 5000");
    EXPECT_EQ(runtime.Fg_AllocMemEx(grabber, 5001, 1), nullptr);
    EXPECT_EQ(runtime.Fg_getLastErrorNumber(nullptr), FG_NO_MEMORY);
    EXPECT_NE(runtime.Fg_AllocMemEx(grabber, 3000, 1), nullptr);
    EXPECT_EQ(runtime.Fg_AllocMemEx(grabber, 3000, 1), nullptr);
    perform("image-memory free");
    EXPECT_NE(runtime.Fg_AllocMemEx(grabber, 3000, 1), nullptr);

    const auto file = write("kept.mcf", "kept");
    perform("disk full");
    EXPECT_EQ(perform("faults"), "disk full\n");
    EXPECT_EQ(runtime.Fg_saveConfig(grabber, file.c_str()), FG_FILE_ERROR);
    EXPECT_EQ(read(file), "kept");
    perform("disk free");
    perform("busy 2");
    EXPECT_EQ(perform("faults"), "busy 2\n");
    EXPECT_EQ(runtime.Fg_saveConfig(grabber, file.c_str()), FG_OK);
    perform("busy 0");
    EXPECT_THAT(read(file), HasSubstr("FG_WIDTH=40"));
}

TEST_F(RehearsalTest, AScenarioPlaysItsStepsAtImagesAndTimesAndTellsHowFarItIs)
{
    const auto file = write(
        "a b.scenario", "# a camera goes and comes back\n\nat image 20 of board 0 DMA 0: unplug camera 0 0; "
                        "after 30 ms: plug camera 0 0\nat 0 s: unplug camera 1 1\r\nrepeat 2\n");
    EXPECT_EQ(perform("scenario " + file), "");
    EXPECT_EQ(perform("scenario"), "waits: at image 20 of board 0 DMA 0: unplug camera 0 0\n");
    const auto reports = [&](const std::string& expected) {
        auto text = perform("scenario");
        for (const auto limit = std::chrono::steady_clock::now() + 20s;
             text != expected && std::chrono::steady_clock::now() < limit; text = perform("scenario"))
            std::this_thread::yield();
        EXPECT_EQ(text, expected);
    };
    const std::string round =
        "at image 20 of board 0 DMA 0: unplug camera 0 0\nafter 30 ms: plug camera 0 0\n"
        "at 0 s: unplug camera 1 1 - failed: No camera is plugged into port 1\n";
    auto* grabber = load(0);
    auto* ring = acquire(grabber, 0);
    const std::string over = "the scenario is over\n";
    reports(round + "waits: at image 20 of board 0 DMA 0: unplug camera 0 0\n");
    // Not one image more than the scenario says.
    EXPECT_EQ(runtime.Fg_getLastPicNumberEx(grabber, 0, ring), 20);
    runtime.FgCam_start(0, 0);
    reports(round + round + over);
    EXPECT_EQ(runtime.Fg_getLastPicNumberEx(grabber, 0, ring), 21);
    // The board's own image triggers the step that unplugs it.
    perform("scenario " + write("self.scenario", "at image 5 of board 1 DMA 0: unplug board 1"));
    auto* other = load(1);
    auto* otherRing = acquire(other, 1);
    EXPECT_EQ(wait(other, 1000, otherRing), FG_DEVICE_LOST);
    reports("at image 5 of board 1 DMA 0: unplug board 1\n" + over);
    perform("scenario " + write("endless.scenario", "after 1 ms: forget\nrepeat"));
    perform("scenario stop");
    EXPECT_TRUE(perform("scenario").ends_with("stopped\n"));
}

TEST_F(RehearsalTest, AScenarioFileIsRefusedInOneLineThatNamesThePlace)
{
    struct Row
    {
        const char* content;
        const char* refusal;
    };
    for (const auto& row : {
             Row{"", "line 0: There is no step in it"},
             Row{"at 1 s: forget\nforget", "line 2: Expected a moment, ':' and a step, found 'forget'"},
             Row{"\n\nwhen 1 s: forget", "line 3: Expected at or after, found 'when'"},
             Row{"at 1 min: forget", "line 1: Expected s or ms, found 'min'"},
             Row{"\xEF\xBB\xBF# marked\nat 90000 s: forget",
                 "line 2: Expected a time, a day at most, found '90000 s'"},
             Row{"at 1 s: fault * once always",
                 "line 1: 'always' repeats or contradicts an option before it"},
             Row{"at image 0 of board 0 DMA 0: forget", "line 1: Expected an image from 1, found '0'"},
             Row{"at image 1 of camera 0 DMA 0: forget", "line 1: Expected 'board', found 'camera'"},
             Row{"at image 1: forget", "line 1: Expected 'of', found ''"},
             Row{"at 1 s: explode", "line 1: There is no step 'explode'"},
             Row{"at 1 s: fault Fg_\x01", "line 1: The runtime has no entry 'Fg_?'"},
             Row{"at 1 s: scenario x", "line 1: A scenario plays no other"},
             Row{"seed x\nat 1 s: forget", "line 1: Expected a seed, found 'x'"},
             Row{"at 1 s: forget\nrepeat",
                 "line 2: A scenario without end needs a step that waits with 'after'"},
             Row{"at 1 s: forget\nrepeat 2\nat 1 s: forget", "line 3: Nothing may follow the repetition"},
         }) {
        const auto file = write("broken.scenario", row.content);
        EXPECT_EQ(perform("scenario " + file), "-5: scenario " + file + ": " + row.refusal);
    }
    EXPECT_EQ(perform("scenario no-such"), "-18: scenario no-such: cannot be read");
    for (const char* const shipped : {"board-lost", "camera-unplugged", "loose-cable"})
        EXPECT_EQ(perform(std::string("scenario ") + shipped), "") << shipped;
}

} // namespace simulation::tests
