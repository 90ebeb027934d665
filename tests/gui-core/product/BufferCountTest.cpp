#include "Product.h"

#include "gui-core/AcquisitionBufferCountChangeCommand.h"

#include "ovra-core/HarloApplication.h"
#include "ovra-lib-environment/HlEnvironmentAppletNodes.h"
#include "ovra_log/reference/Journal.h"

using ovra::gui::Gui;
using ovra::gui::commands::AcquisitionBufferCountChangeCommand;
using ovra::reference::Journal;
using Lines = std::vector<std::string>;

namespace ovra::tests {

class BufferCount : public Product
{
protected:
    ~BufferCount() override { Journal::stop(); }
};

TEST_F(BufferCount, IsChangedOnOneChannelAndTheModelAndTheUserLearnWhatCameOfIt)
{
    struct Row
    {
        int line;
        int asked;
        int requested;
        int current;
        std::size_t failures = 0;
    };
    const Row rows[] = {
        {__LINE__, 32, 32, 32},      {__LINE__, 32, 32, 32}, // the same again is a change as well
        {__LINE__, 400, 400, 325},                           // a mebibyte, less what the other channel has
        {__LINE__, 0, 400, 325, 1}, // refused by the group: the rest happens all the same
        {__LINE__, -1, 400, 325, 1}, {__LINE__, 1, 1, 1},
    };
    constexpr int imageBytes = 64 * 48;
    const auto applet = installation.addAlphaApplet("two.hap", R"("processes": [{"dmas": [0, 1]}],
        "dmas": [{"index": 0, "width": 64, "height": 48}, {"index": 1, "width": 64, "height": 48}])");
    start();
    core::HarloApplication::setConfigEntry("gui.preferences.max_dma_buffersize", 1);
    load(ALPHA_SERIAL, applet);
    Gui::setSyncMode(Gui::SyncAllBoards);
    views->onLine = [](const std::string& line) { Journal::note("views " + line); };
    for (const Row& row : rows) {
        SCOPED_TRACE("row of line " + std::to_string(row.line));
        Journal::start();
        run(AcquisitionBufferCountChangeCommand::create(dma(ALPHA_SERIAL, 1), row.asked));
        const Lines expected = {
            "FglibFrameBufferGroup::setBufferCount dma=1 buffers=" + std::to_string(row.asked),
            "HlEnvironmentDmaNode::setAcqBuffersRequested dma=1 " + std::to_string(row.requested),
            "HlEnvironmentDmaNode::setAcqBuffersCurrent dma=1 " + std::to_string(row.current),
            "views update_dma_memory",
            "views update_acquisition_state",
        };
        EXPECT_EQ(journalOf({"FglibFrameBufferGroup::set", "HlEnvironmentDmaNode::set", "views"}), expected);
        EXPECT_EQ(Gui::getUsedDmaMemory(), static_cast<unsigned>((16 + row.current) * imageBytes));
        EXPECT_EQ(failures.size(), row.failures);
        failures.clear();
    }

    const auto late = dma(ALPHA_SERIAL, 1);
    unload(ALPHA_SERIAL);
    Journal::start();
    run(AcquisitionBufferCountChangeCommand::create(late, 8));
    EXPECT_EQ(journalOf({"HlEnvironmentDmaNode::set", "views"}),
              (Lines{"views update_dma_memory", "views update_acquisition_state"}));
    EXPECT_EQ(failures, Lines{});
}

} // namespace ovra::tests
