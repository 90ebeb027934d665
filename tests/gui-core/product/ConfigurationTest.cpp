// SPDX-License-Identifier: MIT
#include "Product.h"

#include "fglib5/Fglib5.h"

namespace ovra::tests {

namespace {

const std::string LIBRARY = boost::dll::shared_library::suffix().string();

constexpr const char* ADJUSTABLE = R"("processes": [{"dmas": [0], "ports": [0]}],
    "dmas": [{"index": 0, "width": 64, "height": 48, "maxWidth": 128, "formats": ["Mono8", "Mono12"]}],
    "parameters": [
        {"name": "GAIN", "id": 10010, "type": "double", "min": 0, "max": 16, "default": 1, "scope": "dma"},
        {"name": "LABEL", "id": 10110, "type": "string", "default": "factory"}])";
constexpr int GAIN = 10010;
constexpr int LABEL = 10110;

std::string replaced(std::string text, const std::string& what, const std::string& with)
{
    for (auto at = text.find(what); at != std::string::npos; at = text.find(what, at + with.size()))
        text.replace(at, what.size(), with);
    return text;
}

class Configuration : public Product
{
protected:
    /// In texts of tables, "%" stands for the installation's folder.
    std::string resolved(const std::string& text) const { return replaced(text, "%", installation.folder()); }

    void loadMcf(const std::string& file) { run(LoadMcfCommand::create(board(ALPHA_SERIAL), file)); }
    void storeMcf(const std::string& file) { run(StoreMcfCommand::create(board(ALPHA_SERIAL), file)); }

    /// The front end's lines during \p commands, without those at the beginning and end of every load.
    Lines toldBy(const std::function<void()>& commands)
    {
        views->clear();
        Journal::start();
        commands();
        return told({"showErrorMessage", "warning", "error", "status(Loading Configuration"});
    }

    std::string loadedApplet() const
    {
        const auto applet = board(ALPHA_SERIAL)->getLoadedAppletEntry();
        return applet ? applet->getFilePath() : "";
    }

    /// The path that the environment was searched for since the last toldBy().
    static std::string askedFor()
    {
        const std::string question = "HlEnvironmentFileCollectionNode::existsAllFilesEntry ";
        const auto asked = journalOf({question});
        return asked.empty() ? "" : asked.back().substr(question.size());
    }

    void set(int parameter, const void* value)
    {
        auto& write = installation.entry<decltype(Fg_setParameter)>("Fg_setParameter");
        ASSERT_EQ(write(board(ALPHA_SERIAL)->getBoardHandle(), parameter, value, 0), FG_OK);
    }

    std::string values() const
    {
        auto& read = installation.entry<decltype(Fg_getParameter)>("Fg_getParameter");
        Fg_Struct* handle = board(ALPHA_SERIAL)->getBoardHandle();
        std::int32_t width = 0;
        double gain = 0;
        char* text = nullptr;
        EXPECT_EQ(read(handle, FG_WIDTH, &width, 0), FG_OK);
        EXPECT_EQ(read(handle, GAIN, &gain, 0), FG_OK);
        EXPECT_EQ(read(handle, LABEL, &text, 0), FG_OK);
        const std::string label = text ? text : "";
        installation.entry<decltype(Fg_freeParameterStringWithType)>("Fg_freeParameterStringWithType")(
            handle, LABEL, &text, 0, FG_TYPE_STRING);
        return std::to_string(width) + ' ' + std::to_string(gain) + ' ' + label;
    }
};

const std::string ILLEGAL = "showErrorMessage(Board 0 - Loading File|ERROR: Illegal MCF Configuration File)";
const std::string ABSENT = "showErrorMessage(Board 0 - Loading File|"
                           "ERROR: Applet File Referenced In MCF Configuration File Does Not Exist!)";
const Lines APPLIED = {"status(Loading Configuration from MCF.)",
                       "status(Loading Configuration from MCF succeeded.)"};

} // namespace

TEST_F(Configuration, AnMcfLeadsToItsApplet)
{
    struct Row
    {
        int line;
        std::string mcf;
        std::string applet; ///< path that the environment is searched for; empty: none
        Lines told = APPLIED;
    };
    const std::string hap = "%/Hardware Applets/ovra-quad-cl/";
    const std::string dll = "%/dll/ovra-quad-cl/";
    const std::string wrapped = "wrapped" + LIBRARY;
    const std::string all = "[fglib5]\nFileName='" + wrapped + "';\n[Kamerasektion]\nTyp=one.v2.hap;\n";
    const Row rows[] = {
        // one entry after the other
        {__LINE__, all + "HapName=one;\n", hap + "one.hap"},
        {__LINE__, all + "HapName=;\n", dll + wrapped},
        {__LINE__, all + "[fglib5]\nFileName=;\n", hap + "one.v2.hap"},
        // names
        {__LINE__, "[Kamerasektion]\r\nHapName='one.hap';\r\n", hap + "one.hap"},
        {__LINE__, "[Kamerasektion]\nHapName=one.v2;", hap + "one.v2.hap"},
        {__LINE__, "[Kamerasektion]\nHapName=one.HAP;\n", hap + "one.HAP.hap", {ABSENT}},
        {__LINE__, "[Kamerasektion]\nHapName=one.hap.old;\n", hap + "one.hap.old.hap", {ABSENT}},
        {__LINE__, "[fglib5]\nFileName='one.hap';\n", hap + "one.hap"},
        {__LINE__, "[fglib5]\nFileName=absent;\n", dll + "absent.dll", {ABSENT}},
        {__LINE__, "[Kamerasektion]\nTyp=one.v2;\n", dll + "one.v2", {ABSENT}},
        // paths
        {__LINE__, "[Kamerasektion]\nHapName=%/elsewhere/far;\n", "%/elsewhere/far.hap"},
        {__LINE__, "[fglib5]\nFileName=%\\elsewhere\\far.hap;\n", "%/elsewhere/far.hap"},
        {__LINE__, "[Kamerasektion]\nTyp=elsewhere\\far;\n", "elsewhere/far", {ABSENT}},
        {__LINE__, "[Kamerasektion]\nTyp=%/\xE4.hap;\n", "%/\xE4.hap", {ABSENT}}, // no UTF-8
        // nothing
        {__LINE__, "", "", {ILLEGAL}},
        {__LINE__, "[Kamerasektion]\nHapName=one\n", "", {ILLEGAL}},
        {__LINE__, "[ Kamerasektion ]\nHapName=one;\n", "", {ILLEGAL}},
        {__LINE__, "[fglib5]\nHapName=one;\nTyp=one;\n[Kamerasektion]\nFileName=one;\n", "", {ILLEGAL}},
    };
    installation.addAlphaApplet("one.hap", ADJUSTABLE);
    installation.addAlphaApplet("one.v2.hap", ADJUSTABLE);
    installation.addAlphaApplet("../../dll/ovra-quad-cl/" + wrapped, ADJUSTABLE);
    installation.addAlphaApplet("../../elsewhere/far.hap", ADJUSTABLE);
    start();
    for (const Row& row : rows) {
        SCOPED_TRACE("row of line " + std::to_string(row.line));
        const auto mcf = installation.write("row.mcf", resolved(row.mcf));
        EXPECT_EQ(toldBy([&] { loadMcf(mcf); }), row.told);
        EXPECT_EQ(askedFor(), resolved(row.applet));
        EXPECT_EQ(loadedApplet(), row.told == APPLIED ? resolved(row.applet) : "");
        unload(ALPHA_SERIAL);
    }
    EXPECT_EQ(failures, Lines{});
}

TEST_F(Configuration, OnlyTheEndingTellsAnAppletFromAnMcf)
{
    const auto applet = installation.addAlphaApplet("one.hap", ADJUSTABLE);
    start();
    EXPECT_EQ(toldBy([&] { loadMcf(replaced(applet, "/", "\\")); }), Lines{});
    EXPECT_EQ(loadedApplet(), applet);
    unload(ALPHA_SERIAL);

    const auto capitals = installation.write("mcf/one.HAP", "[Kamerasektion]\nHapName=one;\n");
    EXPECT_EQ(toldBy([&] { loadMcf(capitals); }), APPLIED);
    EXPECT_EQ(loadedApplet(), applet);
    for (const char* unreadable : {"/absent.mcf", "/mcf"})
        EXPECT_EQ(toldBy([&] { loadMcf(installation.folder() + unreadable); }), Lines{ILLEGAL});
    EXPECT_EQ(toldBy([&] { loadMcf(installation.folder() + "/absent.hap"); }), Lines{ABSENT});
    EXPECT_EQ(loadedApplet(), applet) << "what cannot be loaded leaves the board as it is";
}

TEST_F(Configuration, TheFolderIsThatOfTheBoardsModelAndTheEnvironmentIsMadeToAddWhatItDoesNotKnow)
{
    installation.write("simulation/machine.json", R"({"name": "x", "boards": [
        {"model": "novel", "boardType": 1, "serial": "a1b2c3", "ports": 1},
        {"model": "ovra-dual-cxp", "boardType": 2898, "serial": "beef", "ports": 1}]})");
    const auto mcf = installation.write("one.mcf", "[Kamerasektion]\nHapName=one;\n");
    const auto loadBeta = [&] { run(LoadMcfCommand::create(board(BETA_SERIAL), mcf)); };
    start();
    Gui::environment()->stopMonitor();
    EXPECT_EQ(toldBy([&] { loadMcf(mcf); }), Lines{ABSENT});
    EXPECT_EQ(askedFor(), installation.folder() + "/Hardware Applets/unknown/one.hap");
    EXPECT_EQ(toldBy(loadBeta), Lines{replaced(ABSENT, "Board 0", "Board 1")});
    const auto late = installation.addBetaApplet("one.hap", ADJUSTABLE);
    EXPECT_EQ(askedFor(), late);
    const Lines forced = {"Environment::forceSingleFileAddition " + late};
    for (const Lines& additions : {forced, Lines{}}) {
        EXPECT_EQ(toldBy(loadBeta), APPLIED);
        EXPECT_EQ(journalOf({"Environment::forceSingleFileAddition"}), additions);
    }
    EXPECT_EQ(board(BETA_SERIAL)->getLoadedAppletEntry()->getFilePath(), late);
}

TEST_F(Configuration, WhatWasStoredComesBackToTheByteAndTheDisplaysFollow)
{
    const auto first = installation.folder() + "/first.mcf";
    const auto second = installation.folder() + "/second.mcf";
    // The last two are not found by name, so their paths are stored.
    for (const std::string& name :
         {std::string("one.hap"), std::string("one.v2.hap"), std::string("one.hap.hap"),
          "../../dll/ovra-quad-cl/wrapped" + LIBRARY, std::string("../../dll/ovra-quad-cl/strayed.hap"),
          std::string("../../elsewhere/far.hap")})
        installation.addAlphaApplet(name, ADJUSTABLE);
    start();
    const auto files = Gui::environment()->model()->root()->getFilesEntryNode();
    EXPECT_EQ(files->getAllFilesEntryChildCount(), 5U);
    Gui::environment()->forceSingleFileAddition(installation.folder() + "/elsewhere/far.hap");
    for (const auto all = files->getAllFiles(); all->hasNext(); all->advance()) {
        const std::string applet = all->current()->getFilePath();
        SCOPED_TRACE(applet);
        load(ALPHA_SERIAL, applet);
        const std::int32_t width = 100;
        const std::int32_t format = FG_PIXELFORMAT_MONO12;
        const double gain = 1.0 / 3;
        set(FG_WIDTH, &width);
        set(FG_PIXELFORMAT, &format);
        set(GAIN, &gain);
        set(LABEL, "it's = mine;");
        const auto changed = values();
        EXPECT_EQ(toldBy([&] { storeMcf(first); }), Lines{});
        unload(ALPHA_SERIAL);

        load(ALPHA_SERIAL, applet);
        EXPECT_NE(values(), changed);
        EXPECT_EQ(dma(ALPHA_SERIAL, 0)->getDisplayScene()->width(), 64);
        unload(ALPHA_SERIAL);

        EXPECT_EQ(toldBy([&] { loadMcf(first); }), APPLIED);
        ASSERT_EQ(loadedApplet(), applet);
        EXPECT_EQ(values(), changed);
        EXPECT_EQ(dma(ALPHA_SERIAL, 0)->getDisplayScene()->width(), 100);
        EXPECT_EQ(Gui::getUsedDmaMemory(), 16ULL * 100 * 48 * 2) << "two bytes a pixel";
        storeMcf(second);
        EXPECT_EQ(contentOf(second), contentOf(first));
    }
    EXPECT_EQ(failures, Lines{});
}

TEST_F(Configuration, AnMcfThatDoesNotFitIsAWarningAndTheAppletStays)
{
    const std::string invalid =
        "warning(...Error loading MCF: The configuration file does not fit the applet (-19))";
    struct Row
    {
        int line;
        const char* entries;
        int fault;
        std::string warning;
    };
    const Row rows[] = {
        {__LINE__, "[DMA0]\nFG_WIDTH=32;\nFG_DEPTH=3;\n", 0, invalid},
        {__LINE__, "[DMA0]\nFG_WIDTH=32;\nGAIN=16.5;\n", 0, invalid},
        {__LINE__, "[DMA1]\nFG_WIDTH=32;\n", 0, invalid},
        {__LINE__, "", -77777, "warning(...Error loading MCF: Unknown Error Code (-77777))"},
        {__LINE__, "", FG_TIMEOUT, "warning(...Error loading MCF: Nothing arrived in time (-17))"},
    };
    const auto applet = installation.addAlphaApplet("one.hap", ADJUSTABLE);
    start();
    for (const Row& row : rows) {
        SCOPED_TRACE("row of line " + std::to_string(row.line));
        const auto mcf =
            installation.write("row.mcf", std::string("[Kamerasektion]\nHapName=one;\n") + row.entries);
        if (row.fault != 0)
            installation.failCall("Fg_loadConfig", 1, row.fault);
        EXPECT_EQ(toldBy([&] { loadMcf(mcf); }), (Lines{APPLIED[0], row.warning}));
        EXPECT_EQ(loadedApplet(), applet);
        EXPECT_EQ(values(), "64 1.000000 factory") << "all values or none";
        EXPECT_EQ(journalOf({"FglibFrameBufferGroup::notify"}), Lines{});
    }
    // Only a LoadAppletCommand can combine a configuration with another applet.
    const auto other = installation.write("other.mcf", "[Kamerasektion]\nHapName=two;\n");
    EXPECT_EQ(toldBy([&] { load(ALPHA_SERIAL, applet, other); }), (Lines{APPLIED[0], invalid}));
    EXPECT_EQ(loadedApplet(), applet);
}

TEST_F(Configuration, AStoreThatFailsIsToldAndKeepsTheFile)
{
    const auto message = [](const char* description, int code) {
        return Lines{std::string("showErrorMessage(Board 0 - Storing MCF Configuration File|ERROR: ") +
                     description + " (" + std::to_string(code) + "))"};
    };
    const auto applet = installation.addAlphaApplet("one.hap", ADJUSTABLE);
    const auto kept = installation.write("kept.mcf", "old");
    start();
    const auto calls = installation.calls("*");
    EXPECT_EQ(toldBy([&] {
                  run(StoreMcfCommand::create({}, kept));
                  run(LoadMcfCommand::create({}, kept));
              }),
              Lines{});
    EXPECT_EQ(installation.calls("*"), calls) << "without a board nothing is done";
    EXPECT_EQ(toldBy([&] { storeMcf(kept); }), message("This is not a board handle", FG_INVALID_HANDLE));

    load(ALPHA_SERIAL, applet);
    const auto unwritable = message("The file could not be read or written", FG_FILE_ERROR);
    EXPECT_EQ(toldBy([&] { storeMcf(installation.folder() + "/no/such/folder.mcf"); }), unwritable);
    EXPECT_EQ(toldBy([&] { storeMcf(installation.folder() + "/Hardware Applets"); }), unwritable);
    installation.failCall("Fg_saveConfig", 1, FG_FILE_ERROR); // as on a full disk
    EXPECT_EQ(toldBy([&] { storeMcf(kept); }), unwritable);
    installation.failCall("Fg_saveConfig", 1, -77777);
    EXPECT_EQ(toldBy([&] { storeMcf(kept); }), message("Unknown Error Code", -77777));
    EXPECT_EQ(contentOf(kept), "old");
    EXPECT_EQ(toldBy([&] { storeMcf(kept); }), Lines{});
    EXPECT_EQ(contentOf(kept).rfind("[Kamerasektion]\nHapName=one.hap;\n", 0), 0U);
    EXPECT_EQ(failures, Lines{});
}

} // namespace ovra::tests
