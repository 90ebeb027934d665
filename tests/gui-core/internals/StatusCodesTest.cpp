// SPDX-License-Identifier: MIT
// What the library takes for success: on a runtime some of whose answers the virtual one never gives.

#include "Product.h"
#include "fglib/EntryTable.h"

#include "fglib5/Fglib5.h"

namespace ovra::tests {

namespace {

using gui::fglib::entryTable;

struct StatusCodes : Product
{
    StatusCodes() { gui::fglib::bindFglib(OVRA_STAGE_DIR); }
    ~StatusCodes() override { entryTable.Fg_InitEx = nullptr; } // the table counts as unbound again
};

constexpr int ODD_CODE = 5;

int failOddly(Fg_Struct*, const char*)
{
    return ODD_CODE;
}

int failToCountChannels(Fg_Struct* handle, int parameter, void* value, unsigned int dma)
{
    static const auto RUNTIME =
        boost::dll::shared_library(std::filesystem::path(OVRA_STAGE_DIR) / "bin" /
                                   ("fglib5" + boost::dll::shared_library::suffix().string()));
    const int code = RUNTIME.get<decltype(Fg_getParameter)>("Fg_getParameter")(handle, parameter, value, dma);
    return parameter == FG_NR_OF_DMAS_OF_PROCESS ? ODD_CODE : code;
}

} // namespace

TEST_F(StatusCodes, OnlyZeroIsSuccessAndOnlyAnIdAboveZeroIsAParameter)
{
    const auto applet = installation.addAlphaApplet("single.hap", SINGLE);
    start();
    entryTable.Fg_getParameterIdByName = [](Fg_Struct*, const char*) { return 0; };
    entryTable.Fg_getParameter = &failToCountChannels;
    entryTable.Fg_getErrorDescription = [](Fg_Struct*, int) { return ""; };
    entryTable.Fg_loadConfig = &failOddly;
    entryTable.Fg_saveConfig = &failOddly;
    load(ALPHA_SERIAL, applet, "some.mcf");
    run(StoreMcfCommand::create(board(ALPHA_SERIAL), "other.mcf"));
    EXPECT_FALSE(dma(ALPHA_SERIAL, 0)) << "a count that cannot be read is none";
    EXPECT_FALSE(port(ALPHA_SERIAL, 0)->getGeneratorAvailable());
    EXPECT_EQ(told({"warning", "showErrorMessage"}),
              (Lines{"warning(...Error loading MCF: Unknown Error Code (5))",
                     "showErrorMessage(Board 0 - Storing MCF Configuration File|"
                     "ERROR: Unknown Error Code (5))"}));
    unload(ALPHA_SERIAL);
}

} // namespace ovra::tests
