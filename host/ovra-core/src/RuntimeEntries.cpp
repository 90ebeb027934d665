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
    bind(library, "FgCam_getCount", bound->FgCam_getCount);
    bind(library, "FgCam_getPort", bound->FgCam_getPort);
    bind(library, "FgCam_getString", bound->FgCam_getString);
    bind(library, "FgCam_getInteger", bound->FgCam_getInteger);
    bind(library, "FgCam_setInteger", bound->FgCam_setInteger);
    bind(library, "FgCam_start", bound->FgCam_start);
    bind(library, "FgCam_stop", bound->FgCam_stop);
    bound->hasCameraControl = bound->FgCam_getCount && bound->FgCam_getPort && bound->FgCam_getString &&
                              bound->FgCam_getInteger && bound->FgCam_setInteger && bound->FgCam_start &&
                              bound->FgCam_stop;
    return bound;
}

// The entries that the host libraries call.
void checkEntries(const RuntimeEntries& bound, const std::filesystem::path& file)
{
    const std::pair<const char*, bool> used[] = {
        {"Fg_InitLibraries", bound.Fg_InitLibraries},
        {"Fg_getSystemInformation", bound.Fg_getSystemInformation},
        {"Fg_getBoardType", bound.Fg_getBoardType},
        {"Fg_getBoardNameByType", bound.Fg_getBoardNameByType},
        {"Fg_getErrorDescription", bound.Fg_getErrorDescription},
        {"Fg_getLastErrorDescription", bound.Fg_getLastErrorDescription},
        {"Fg_getAppletIterator", bound.Fg_getAppletIterator},
        {"Fg_addAppletIteratorItem", bound.Fg_addAppletIteratorItem},
        {"Fg_freeAppletIterator", bound.Fg_freeAppletIterator},
        {"Fg_getAppletIntProperty", bound.Fg_getAppletIntProperty},
        {"Fg_getAppletStringProperty", bound.Fg_getAppletStringProperty},
        {"Fg_getParameter", bound.Fg_getParameter},
        {"Fg_getParameterWithType", bound.Fg_getParameterWithType},
        {"Fg_setParameterWithType", bound.Fg_setParameterWithType},
        {"Fg_freeParameterStringWithType", bound.Fg_freeParameterStringWithType},
        {"Fg_AllocMemEx", bound.Fg_AllocMemEx},
        {"Fg_FreeMemEx", bound.Fg_FreeMemEx},
        {"Fg_AcquireEx", bound.Fg_AcquireEx},
        {"Fg_stopAcquireEx", bound.Fg_stopAcquireEx},
        {"Fg_getLastPicNumberBlockingEx", bound.Fg_getLastPicNumberBlockingEx},
        {"Fg_getLastPicNumberEx", bound.Fg_getLastPicNumberEx},
        {"Fg_getImagePtrEx", bound.Fg_getImagePtrEx},
        {"Fg_getEventCount", bound.Fg_getEventCount},
        {"Fg_getEventName", bound.Fg_getEventName},
        {"Fg_activateEvents", bound.Fg_activateEvents},
        {"Fg_registerEventCallback", bound.Fg_registerEventCallback},
    };
    for (const auto& [name, present] : used)
        if (!present)
            fail(file, std::string("has no entry ") + name);
}

boost::shared_ptr<const RuntimeEntries> open(const std::filesystem::path& file)
{
    std::error_code error;
    if (!std::filesystem::is_regular_file(file, error))
        fail(file, "no such file");
    // Never closed: the runtime has threads of its own, which would run on in memory that is gone. Each
    // library is kept once, however many applications open it.
    static auto* const opened = new std::vector<std::unique_ptr<shared_library>>;
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
    // Opened under the lock, so that it is opened once: loading a library calls nothing of ours.
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
