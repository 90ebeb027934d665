// SPDX-License-Identifier: MIT
// Tests of the runtime's binding and of the forwarders, with a loader that records its calls instead of the
// platform's.

#include "NewProcess.h"

#include "fglib/EntryTable.h"
#include "fglib/InstallationDirectory.h"
#include "platform/Module.h"
#include "platform/Paths.h"
#include "platform/ProcessEnvironment.h"

#include "fglib5/Fglib5.h"
#include "gui-core/RuntimeBinding.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <set>
#include <string>
#include <type_traits>
#include <vector>

using namespace ovra::gui::fglib;
using ovra::templates::platform::runtimeLibraryPath;
using Lines = std::vector<std::string>;

namespace {

constexpr std::array NAMES = {
#define FGLIB5_ENTRY(result, name, symbol, parameters, arguments, missing) #name,
#include "fglib5/Fglib5Entries.inc"
};

enum Position : std::size_t
{
#define FGLIB5_ENTRY(result, name, symbol, parameters, arguments, missing) AT_##name,
#include "fglib5/Fglib5Entries.inc"
};

Lines journal;

/// An entry of the runtime that records its call.
template <class Function>
struct Recorded;

template <class Result, class... Arguments>
struct Recorded<Result(Arguments...)>
{
    template <Position POSITION>
    static Result entry(Arguments...)
    {
        journal.push_back(std::string("call ") + NAMES[POSITION]);
        return Result();
    }
};

template <class Result, class... Arguments>
void callWithNothing(Result (*function)(Arguments...))
{
    function(Arguments()...);
}

/// True if a function whose entry is missing returns the code for that.
template <class Result, class... Arguments>
bool answersWithCode(Result (*function)(Arguments...))
{
    if constexpr (std::is_void_v<Result>) {
        function(Arguments()...);
        return false;
    } else {
        const Result result = function(Arguments()...);
        if constexpr (std::is_integral_v<Result>)
            if (result == static_cast<Result>(-2130))
                return true;
        EXPECT_EQ(result, Result());
        return false;
    }
}

int addParameterAndDma(Fg_Struct*, int parameter, void* value, unsigned int dma)
{
    *static_cast<int*>(value) = parameter + static_cast<int>(dma);
    return 4711;
}

/// The symbols that the loader finds. The runtime exports every entry under its own name, including
/// Fg_setStatus.
struct Found
{
    bool runtime = true;
    std::set<std::string> missing;
    void* getParameter = nullptr; ///< replaces the recording entry
    std::string ownFile = runtimeLibraryPath("own", "library");
    std::size_t ownLength = ownFile.size();
};
Found found;

void* exported(const std::string& symbol)
{
    if (found.missing.contains(symbol))
        return nullptr;
    if (symbol == "Fg_getParameter" && found.getParameter)
        return found.getParameter;
#define FGLIB5_ENTRY(result, name, tabbed, parameters, arguments, missing) \
    if (symbol == #name)                                                   \
        return reinterpret_cast<void*>(&Recorded<decltype(name)>::entry<AT_##name>);
#include "fglib5/Fglib5Entries.inc"
    return nullptr;
}

} // namespace

namespace ovra::templates::platform {

void* openModule(const std::string& path, ModuleError& error)
{
    journal.push_back("open " + path);
    if (!found.runtime)
        error = {2, "no such file"};
    return found.runtime ? &found : nullptr;
}

void closeModule(void*)
{
    journal.emplace_back("close");
}

void* locateSymbol(void*, const char* name)
{
    journal.push_back(std::string("locate ") + name);
    return exported(name);
}

std::size_t moduleFileName(const void*, char* buffer, std::size_t size)
{
    buffer[found.ownFile.copy(buffer, size - 1)] = '\0';
    return found.ownLength;
}

} // namespace ovra::templates::platform

namespace {

class RuntimeBinding : public testing::Test
{
protected:
    ~RuntimeBinding() override
    {
        found = {};
        loseAllBut("");
        bindFglib("own"); // to nothing
        found = {};
        journal.clear();
    }

    static void loseAllBut(const std::string& entry)
    {
        found.missing.insert(NAMES.begin(), NAMES.end());
        found.missing.erase(entry);
    }
    /// Number of journal lines that begin with \p start.
    static auto count(const std::string& start)
    {
        return std::ranges::count_if(journal,
                                     [&](const std::string& line) { return line.starts_with(start); });
    }

    inline static const std::string RUNTIME_OPENED = "open " + runtimeLibraryPath("own", "fglib5");
};

} // namespace

TEST_F(RuntimeBinding, TheFirstCallLoadsOnceAndEachForwarderReachesItsOwnEntry)
{
    Lines calls;
#define FGLIB5_ENTRY(result, name, symbol, parameters, arguments, missing) \
    if (AT_##name != AT_Fg_setStatus) {                                    \
        callWithNothing(&name);                                            \
        calls.emplace_back("call " #name);                                 \
    }
#include "fglib5/Fglib5Entries.inc"

    ASSERT_EQ(journal.size(), 1U + 107U + 105U);
    EXPECT_EQ(journal[0], RUNTIME_OPENED);
    EXPECT_EQ(journal[1], "locate Fg_InitLibraries");
    EXPECT_EQ(journal[1 + 8], "locate Fg_InitEx");
    EXPECT_EQ(journal[1 + 34], "locate Fg_findApplet");
    EXPECT_EQ(journal[1 + 70], "locate Fg_setStatus\t");
    EXPECT_EQ(journal[1 + 98], "locate getLastErrorNumber");
    EXPECT_EQ(journal[1 + 99], "locate Fg_findApplet");
    EXPECT_EQ(journal[1 + 106], "locate Fg_getAppletStringProperty");
    EXPECT_EQ(std::set<std::string>(journal.begin() + 1, journal.begin() + 108).size(), 106U);
    EXPECT_EQ(Lines(journal.begin() + 108, journal.end()), calls);
}

TEST_F(RuntimeBinding, WhatFailsToLoadOrLacksInitExIsTriedAgainByEachCallUntilItSucceeds)
{
    found.runtime = false;
    EXPECT_EQ(Fg_InitLibraries(nullptr), -2130);
    EXPECT_EQ(bindFglib(nullptr), -2130);
    EXPECT_EQ(journal, (Lines{RUNTIME_OPENED, RUNTIME_OPENED}));
    found.runtime = true;
    found.missing = {"Fg_InitEx"};
    for (int round = 1; round <= 3; ++round) {
        EXPECT_EQ(Fg_InitLibraries(nullptr), 0);
        EXPECT_EQ(count(RUNTIME_OPENED), 2 + round);
        EXPECT_EQ(count("locate "), round * 107);
    }
    found.missing.clear();
    for (int round = 0; round < 3; ++round)
        EXPECT_EQ(Fg_InitLibraries(nullptr), 0);
    EXPECT_EQ(count(RUNTIME_OPENED), 6);
    EXPECT_EQ(count("locate "), 4 * 107);
    EXPECT_EQ(journal.back(), "call Fg_InitLibraries");
}

TEST_F(RuntimeBinding, TheRuntimeStaysLoadedAndBoundWhateverDirectoryIsTriedNext)
{
    ensureFglibBound("elsewhere");
    ensureFglibBound("elsewhere");
    EXPECT_EQ(journal.front(), "open " + runtimeLibraryPath("elsewhere", "fglib5"));
    EXPECT_EQ(bindFglib("elsewhere"), 0);
    EXPECT_EQ(bindFglibFromDirectory("elsewhere"), 0);
    EXPECT_EQ(count("locate "), 3 * 107) << "bound anew where it is asked for, never by ensureFglibBound";
    EXPECT_EQ(count("close"), 0);
    found.runtime = false;
    EXPECT_EQ(bindFglib("nowhere"), -2130);
    EXPECT_EQ(bindFglibFromDirectory("nowhere"), -2130);
    journal.clear();
    EXPECT_EQ(bindFglibFromDirectory(nullptr), -5);
    EXPECT_EQ(Fg_InitLibraries(nullptr), 0) << "the table is as it was";
    EXPECT_EQ(journal, Lines{"call Fg_InitLibraries"});
}

TEST_F(RuntimeBinding, ForwardsArgumentsAndResultUnchanged)
{
    found.getParameter = reinterpret_cast<void*>(&addParameterAndDma);
    int value = 0;
    EXPECT_EQ(Fg_getParameter(nullptr, 100, &value, 3), 4711);
    EXPECT_EQ(value, 103);
}

TEST_F(RuntimeBinding, NeverFindsSetStatusAndOverwritesWithNothingWhatTheNextRuntimeLacks)
{
    bindFglib(nullptr);
    EXPECT_EQ(entryTable.Fg_setStatus.load(), nullptr);
    EXPECT_NE(entryTable.Fg_setStatusEx.load(), nullptr);
    EXPECT_NE(entryTable.Fg_sendImage.load(), nullptr);
    found.missing = {"Fg_sendImage"};
    bindFglib(nullptr);
    EXPECT_EQ(entryTable.Fg_sendImage.load(), nullptr);
}

TEST_F(RuntimeBinding, GuardedEntriesAnswerForAMissingOneWithACodeOrWithNothing)
{
    loseAllBut("Fg_InitEx");
    using Names = std::set<std::string>;
    Names withCode;
    Names withNothing;
#define FGLIB5_ENTRY(result, name, symbol, parameters, arguments, missing) \
    if (std::string("UNGUARDED") != #missing)                              \
        (answersWithCode(&name) ? withCode : withNothing).insert(#name);
#include "fglib5/Fglib5Entries.inc"

    EXPECT_EQ(withCode,
              (Names{"Fg_InitLibraries", "Fg_InitLibrariesEx", "Fg_freeParameterStringWithType",
                     "Fg_getParameterPropertyEx", "Fg_getEventPayload", "Fg_NumaFreeDmaBuffer",
                     "Fg_NumaPinThread", "Fg_registerAsyncNotifyCallback", "Fg_unregisterAsyncNotifyCallback",
                     "Fg_readUserDataArea", "Fg_writeUserDataArea", "Fg_findApplet", "Fg_getAppletIterator",
                     "Fg_freeAppletIterator", "Fg_getAppletIntProperty"}));
    EXPECT_EQ(withNothing,
              (Names{"Fg_InitLibrariesStartNextSlave", "Fg_AbortInitLibraries", "Fg_FreeLibraries",
                     "Fg_InitConfigEx", "Fg_getParameterNameById", "Fg_InitTrampoline",
                     "Fg_NumaAllocDmaBuffer", "Fg_getAppletIteratorItem", "Fg_findAppletIteratorItem",
                     "Fg_addAppletIteratorItem", "Fg_getAppletStringProperty"}));
}

using RuntimeBindingDeathTest = RuntimeBinding;

TEST_F(RuntimeBindingDeathTest, AnUnguardedEntryThatIsMissingEndsTheProcess)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    loseAllBut("Fg_InitEx");
    EXPECT_DEATH(Fg_getLastErrorNumber(nullptr), "");
    EXPECT_DEATH(Fg_setStatus(nullptr, 0, 0, 0), "");
}

TEST_F(RuntimeBindingDeathTest, IsTriedAgainWhereNoDirectoryWasKnownYet)
{
    IN_A_NEW_PROCESS([] {
        using ovra::templates::platform::setEnvironmentVariable;
        // Not found, truncated, or too long: in each case the buffer's content is ignored.
        for (const std::size_t length : {0U, 1024U, 4000U}) {
            found.ownLength = length;
            EXPECT_EQ(getInstallationDirectory(), nullptr) << length;
            EXPECT_EQ(Fg_InitLibraries(nullptr), -2130);
        }
        found.ownFile = "no product folder above";
        found.ownLength = found.ownFile.size();
        EXPECT_EQ(getInstallationDirectory(), nullptr);
        EXPECT_EQ(bindFglib(nullptr), -2130);
        EXPECT_EQ(journal, Lines{}) << "nothing can be opened";
        setEnvironmentVariable("OVRADIR5", "set later");
        EXPECT_EQ(Fg_InitLibraries(nullptr), 0);
        EXPECT_EQ(journal.front(), "open " + runtimeLibraryPath("set later", "fglib5"));
        // Determined once: neither a better place nor another variable has an effect later.
        found.ownFile = runtimeLibraryPath("own", "library");
        setEnvironmentVariable("OVRADIR5_64", "set last");
        EXPECT_STREQ(getInstallationDirectory(), "set later");
    });
}
