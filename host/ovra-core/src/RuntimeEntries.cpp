// SPDX-License-Identifier: MIT
#include "ovra-core/reference/RuntimeEntries.h"

#include "ApplicationState.h"
#include "ovra_log/reference/Log.h"

#include <boost/dll/shared_library.hpp>
#include <boost/make_shared.hpp>

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <utility>
#include <vector>

namespace ovra::reference {

namespace {

using boost::dll::shared_library;
namespace load_mode = boost::dll::load_mode;

[[noreturn]] void fail(const std::filesystem::path& file, const std::string& reason)
{
    throw std::runtime_error("Frame-grabber runtime " + file.string() + ": " + reason);
}

template <class Function>
void bind(const shared_library& library, const char* symbol, Function*& entry)
{
    if (library.has(symbol))
        entry = &library.get<Function>(symbol);
}

boost::shared_ptr<RuntimeEntries> bindAll(const shared_library& library)
{
    const auto bound = boost::make_shared<RuntimeEntries>();
#define FGLIB5_ENTRY(result, name, symbol, parameters, arguments, missing) bind(library, symbol, bound->name);
#include "fglib5/Fglib5Entries.inc"
    bound->hasCameraControl = true;
#define FGCAM_ENTRY(result, name, parameters, arguments) \
    bind(library, #name, bound->name);                   \
    bound->hasCameraControl = bound->hasCameraControl && bound->name;
#include "fglib5/CameraControl.inc"
    bind(library, "FgSim_perform", bound->FgSim_perform);
    return bound;
}

// The entries that the host libraries call, in the order in which a missing one is reported.
// clang-format off
#define OVRA_USED_ENTRIES(X) \
    X(Fg_InitLibraries) X(Fg_getSystemInformation) X(Fg_getBoardType) \
    X(Fg_getBoardNameByType) X(Fg_getErrorDescription) X(Fg_getLastErrorDescription) \
    X(Fg_getAppletIterator) X(Fg_addAppletIteratorItem) X(Fg_freeAppletIterator) \
    X(Fg_getAppletIntProperty) X(Fg_getAppletStringProperty) X(Fg_getParameter) \
    X(Fg_getParameterWithType) X(Fg_setParameterWithType) X(Fg_freeParameterStringWithType) \
    X(Fg_AllocMemEx) X(Fg_FreeMemEx) X(Fg_AcquireEx) \
    X(Fg_stopAcquireEx) X(Fg_getLastPicNumberBlockingEx) X(Fg_getLastPicNumberEx) \
    X(Fg_getImagePtrEx) X(Fg_getEventCount) X(Fg_getEventName) \
    X(Fg_activateEvents) X(Fg_registerEventCallback)
// clang-format on

void checkEntries(const RuntimeEntries& bound, const std::filesystem::path& file)
{
#define OVRA_REQUIRE(name) \
    if (!bound.name)       \
        fail(file, "has no entry " #name);
    OVRA_USED_ENTRIES(OVRA_REQUIRE)
#undef OVRA_REQUIRE
}

boost::shared_ptr<const RuntimeEntries> open(const std::filesystem::path& file)
{
    std::error_code error;
    if (!std::filesystem::is_regular_file(file, error))
        fail(file, "no such file");
    // Never closed: the runtime's own threads would run in unmapped memory. Each library is kept once,
    // however many applications open it.
    static auto* opened = new std::vector<std::unique_ptr<shared_library>>;
    auto library = std::make_unique<shared_library>();
    try {
        library->load(file,
                      load_mode::load_with_altered_search_path | load_mode::rtld_now | load_mode::rtld_local);
    } catch (const std::exception& reason) {
        fail(file, reason.what());
    }
    const auto bound = bindAll(*library);
    if (std::ranges::none_of(*opened, [&](const auto& kept) { return kept->native() == library->native(); }))
        opened->push_back(std::move(library));
    checkEntries(*bound, file);
    return bound;
}

} // namespace

boost::shared_ptr<const RuntimeEntries> requireRuntime()
{
    const auto application = currentApplication();
    if (!application)
        throw std::runtime_error("There is no application, so there is no frame-grabber runtime");
    // Under the lock, so that it is opened once. Safe, because loading a library calls none of our code.
    const std::lock_guard lock(application->runtimeMutex);
    if (!application->runtime)
        application->runtime = open(application->runtimeLibrary);
    return application->runtime;
}

boost::shared_ptr<const RuntimeEntries> runtime()
{
    try {
        return requireRuntime();
    } catch (const std::runtime_error& reason) {
        log(LogLevel::Debug, reason.what());
        return {};
    }
}

std::string failureText(const RuntimeEntries& runtime, const std::string& what, int code)
{
    const char* const description = runtime.Fg_getErrorDescription(nullptr, code);
    return what + ": " + (description ? description : "unknown error") + " (" + std::to_string(code) + ')';
}

std::string lastFailureText(const RuntimeEntries& runtime)
{
    const char* const description = runtime.Fg_getLastErrorDescription(nullptr);
    return description && *description ? description : "unknown error";
}

} // namespace ovra::reference
