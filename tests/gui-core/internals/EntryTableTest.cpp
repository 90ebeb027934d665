#include "fglib/EntryTable.h"

#include "fglib5/Fglib5.h"

#include <gtest/gtest.h>

#include <cstring>
#include <set>
#include <string>
#include <vector>

using namespace ovra::gui::fglib;

namespace {

/// A runtime whose entries are found, or not, by name. What it hands out is never called but for the two
/// below.
struct FakeRuntime
{
    std::vector<std::string> lookups;
    std::set<std::string> missing;
};

int fakeGetParameter(Fg_Struct*, int parameter, void* value, unsigned int dma)
{
    *static_cast<int*>(value) = parameter + static_cast<int>(dma);
    return 4711;
}

Fg_Struct* fakeInitEx(const char*, unsigned int, int)
{
    return nullptr;
}

void* locate(const void* context, const char* symbol)
{
    // The interface of the resolver is const; the fake keeps a record all the same.
    auto& fake = *static_cast<FakeRuntime*>(const_cast<void*>(context));
    fake.lookups.emplace_back(symbol);
    if (fake.missing.contains(symbol))
        return nullptr;
    if (std::strcmp(symbol, "Fg_getParameter") == 0)
        return reinterpret_cast<void*>(&fakeGetParameter);
    return reinterpret_cast<void*>(&fakeInitEx);
}

std::vector<std::string> listedSymbols()
{
    return {
#define FGLIB5_ENTRY(result, name, symbol, parameters, arguments, missing) symbol,
#include "fglib5/Fglib5Entries.inc"
    };
}

class RuntimeBinding : public testing::Test
{
protected:
    void bind() { resolveEntries(&locate, &fake); }
    void bindAllMissing()
    {
        for (const auto& symbol : listedSymbols())
            fake.missing.insert(symbol);
        fake.missing.erase("Fg_InitEx");
        bind();
    }
    ~RuntimeBinding() override
    {
        resolveEntries([](const void*, const char*) -> void* { return nullptr; }, nullptr);
    }

    FakeRuntime fake;
};

} // namespace

TEST_F(RuntimeBinding, LooksEveryEntryUpInOrderAndTheAppletSearchTwice)
{
    bind();
    ASSERT_EQ(fake.lookups.size(), 107U);
    EXPECT_EQ(fake.lookups.front(), "Fg_InitLibraries");
    EXPECT_EQ(fake.lookups[8], "Fg_InitEx");
    EXPECT_EQ(fake.lookups[34], "Fg_findApplet");
    EXPECT_EQ(fake.lookups[70], "Fg_setStatus\t");
    EXPECT_EQ(fake.lookups[98], "getLastErrorNumber");
    EXPECT_EQ(fake.lookups[99], "Fg_findApplet");
    EXPECT_EQ(fake.lookups.back(), "Fg_getAppletStringProperty");
    EXPECT_EQ(std::set<std::string>(fake.lookups.begin(), fake.lookups.end()).size(), 106U);
}

TEST_F(RuntimeBinding, NeverFindsSetStatusEvenWhenTheRuntimeExportsIt)
{
    fake.missing.insert("Fg_setStatus\t"); // as with every real runtime
    bind();
    EXPECT_EQ(entryTable.Fg_setStatus.load(), nullptr);
    EXPECT_NE(entryTable.Fg_setStatusEx.load(), nullptr);
}

TEST_F(RuntimeBinding, ForwardsArgumentsAndResultUnchanged)
{
    bind();
    int value = 0;
    EXPECT_EQ(Fg_getParameter(nullptr, 100, &value, 3), 4711);
    EXPECT_EQ(value, 103);
}

TEST_F(RuntimeBinding, OverwritesASlotWithNothingWhenTheNextRuntimeLacksIt)
{
    bind();
    fake.missing.insert("Fg_sendImage");
    bind();
    EXPECT_EQ(entryTable.Fg_sendImage.load(), nullptr);
}

TEST_F(RuntimeBinding, GuardedEntriesAnswerForAMissingOne)
{
    bindAllMissing();

    char buffer[1] = {};
    FgAppletIterator* applets = nullptr;
    const int codes[] = {
        Fg_InitLibraries(nullptr),
        Fg_InitLibrariesEx(nullptr, 0, nullptr, 0),
        Fg_freeParameterStringWithType(nullptr, 0, nullptr, 0, FG_TYPE_STRING),
        Fg_getParameterPropertyEx(nullptr, 0, 0, 0, nullptr, nullptr),
        Fg_getEventPayload(nullptr, 0, nullptr, nullptr),
        Fg_NumaFreeDmaBuffer(nullptr, nullptr),
        Fg_NumaPinThread(nullptr),
        Fg_registerAsyncNotifyCallback(nullptr, nullptr, nullptr),
        Fg_unregisterAsyncNotifyCallback(nullptr, nullptr, nullptr),
        Fg_readUserDataArea(nullptr, 0, 0, buffer, 0),
        Fg_writeUserDataArea(nullptr, 0, 0, buffer, 0),
        Fg_findApplet(0, buffer, 0),
        Fg_getAppletIterator(0, 0, &applets, 0),
        Fg_freeAppletIterator(nullptr),
        static_cast<int>(Fg_getAppletIntProperty(nullptr, 0)),
    };
    for (const int code : codes)
        EXPECT_EQ(code, -2130);

    Fg_InitLibrariesStartNextSlave();
    Fg_AbortInitLibraries();
    Fg_FreeLibraries();
    int added = 0;
    EXPECT_EQ(Fg_InitConfigEx(nullptr, 0, 0), nullptr);
    EXPECT_EQ(Fg_getParameterNameById(nullptr, 0, 0), nullptr);
    EXPECT_EQ(Fg_InitTrampoline(nullptr, 0, nullptr), nullptr);
    EXPECT_EQ(Fg_NumaAllocDmaBuffer(nullptr, 0), nullptr);
    EXPECT_EQ(Fg_getAppletIteratorItem(nullptr, 0), nullptr);
    EXPECT_EQ(Fg_findAppletIteratorItem(nullptr, nullptr), nullptr);
    EXPECT_EQ(Fg_addAppletIteratorItem(nullptr, nullptr, &added), nullptr);
    EXPECT_EQ(Fg_getAppletStringProperty(nullptr, 0), nullptr);
}

TEST_F(RuntimeBinding, ADirectoryWithoutARuntimeIsUnavailableAndNoneIsAnError)
{
    EXPECT_EQ(bindFglib("no such folder"), -2130);
    EXPECT_EQ(bindFglibFromDirectory("no such folder"), -2130);
    EXPECT_EQ(bindFglibFromDirectory(nullptr), -5);
    EXPECT_EQ(entryTable.Fg_InitEx.load(), nullptr);
}

TEST_F(RuntimeBinding, EnsureBoundBindsOnceAndLeavesABoundTableAlone)
{
    ensureFglibBound(OVRA_STAGE_DIR);
    const auto real = entryTable.Fg_getParameter.load();
    EXPECT_NE(real, nullptr);
    bind();
    ensureFglibBound(OVRA_STAGE_DIR);
    EXPECT_EQ(entryTable.Fg_getParameter.load(), &fakeGetParameter);
    EXPECT_NE(real, &fakeGetParameter);
}

using RuntimeBindingDeathTest = RuntimeBinding;

TEST_F(RuntimeBindingDeathTest, AnUnguardedEntryThatIsMissingEndsTheProcess)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    bindAllMissing();
    EXPECT_DEATH(Fg_getLastErrorNumber(nullptr), "");
    EXPECT_DEATH(Fg_setStatus(nullptr, 0, 0, 0), "");
}
