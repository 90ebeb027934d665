// SPDX-License-Identifier: MIT
#include "Viewer.h"

#include "RequestTable.h"

#include "front-ends/shared/OutputFile.h"
#include "front-ends/shared/Parameters.h"
#include "front-ends/shared/Paths.h"
#include "front-ends/shared/RequestError.h"
#include "front-ends/shared/TimeText.h"

#include "gui-core/Version.h"
#include "ovra-core/Command.h"
#include "ovra-core/CommandProcessor.h"
#include "ovra-core/HarloApplication.h"
#include "ovra-core/reference/Application.h"
#include "ovra-lib-display/reference/AcquisitionObserver.h"
#include "ovra-lib-environment/HlEnvironmentBoardNode.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <chrono>
#include <utility>

namespace ovra::viewer {

using nlohmann::json;

namespace {

constexpr std::size_t MAX_NOTICES = 200;
constexpr std::size_t MAX_LOG_LINES = 1000;
constexpr std::size_t MAX_REPORTED_ERRORS = 50;
constexpr std::size_t MAX_SPLASH_LINES = 200;

const char* nameOf(Severity level)
{
    switch (level) {
    case Severity::Error:
        return "error";
    case Severity::Warning:
        return "warning";
    case Severity::Information:
        break;
    }
    return "information";
}

json idleLoad()
{
    return {{"active", false}, {"board", ""}, {"applet", ""}, {"lines", json::array()}};
}

/// Calls back when all earlier commands have ended.
class Completion final : public core::Command
{
public:
    explicit Completion(std::function<void()> completed)
        : core::Command(core::Command::Asynchronous),
          m_completed(std::move(completed))
    {}

    void executePostAsync() override { m_completed(); }

private:
    const std::function<void()> m_completed;
};

} // namespace

/// A request whose commands are running.
struct Viewer::Pending
{
    ClientId client;
    std::int64_t id;
    json result;
    std::int64_t errorsBefore;
    std::function<void()> afterwards;
};

Viewer::Viewer(Setup setup, ImageFeeds& channels)
    : m_setup(std::move(setup)),
      m_state(m_setup.publish),
      m_images(channels),
      m_question(m_setup.application, m_state, [this] { return m_setup.countClients() > 0; }),
      m_events(std::make_shared<frontend::EventCounter>()),
      m_recentErrors(MAX_REPORTED_ERRORS)
{
    m_state.set("program", {{"version", OVRA_GUI_CORE_VERSION},
                            {"ready", false},
                            {"quitting", false},
                            {"outputFolder", outputFolderText()}});
    for (const char* list : {"splash", "notices", "log", "boards", "applets", "events", "recordings"})
        m_state.set(list, json::array());
    for (const char* table : {"statistics", "parameterChanges"})
        m_state.set(table, json::object());
    m_state.set("load", idleLoad());
    m_state.set("rescanning", false);
    m_state.set("rehearsal", nullptr);
    refreshMemory();
}

Viewer::~Viewer() = default;

void Viewer::welcome(ClientId client)
{
    m_setup.subscribe(client, m_state.whole(presentTime()));
}

void Viewer::handle(ClientId client, const Request& request)
{
    try {
        perform(client, request);
    } catch (const std::exception& error) {
        if (const auto afterwards = std::exchange(m_afterwards, {}))
            afterwards();
        addNotice(Severity::Error, "Not done", error.what());
        fail(client, request.id, error.what());
    }
}

void Viewer::perform(ClientId client, const Request& request)
{
    const auto pending = std::make_shared<Pending>(Pending{client, request.id, nullptr, m_errorCount, {}});
    m_commandStarted = false;
    pending->result = performRequest(*this, request.name, request.arguments);
    pending->afterwards = std::exchange(m_afterwards, {});
    if (m_commandStarted)
        return finishLater(pending);
    finish(*pending);
}

// Commands may queue further commands; the completion is queued after them.
void Viewer::finishLater(const std::shared_ptr<Pending>& pending)
{
    m_setup.application.post([this, pending] {
        core::HarloApplication::commandprocessor()->executeCommand(
            boost::make_shared<Completion>([this, pending] { finish(*pending); }));
    });
}

void Viewer::finish(const Pending& pending)
{
    if (pending.afterwards)
        pending.afterwards();
    refreshMachine();
    if (pending.errorsBefore < m_errorCount)
        return fail(pending.client, pending.id, errorsSince(pending.errorsBefore));
    m_setup.send(pending.client,
                 jsonText({{"type", "done"}, {"id", pending.id}, {"result", pending.result}}));
}

void Viewer::fail(ClientId client, std::int64_t id, const std::string& text)
{
    m_setup.send(client, jsonText({{"type", "failed"}, {"id", id}, {"text", text}, {"noticed", true}}));
}

std::string Viewer::errorsSince(std::int64_t count) const
{
    const auto recent = std::min<std::int64_t>(m_errorCount - count, std::ssize(m_errors));
    std::string text;
    for (auto each = m_errors.end() - recent; each != m_errors.end(); ++each)
        text += (text.empty() ? "" : "\n") + *each;
    return text;
}

void Viewer::showSplash(const std::string& message)
{
    m_state.append("splash", json::array({message}), MAX_SPLASH_LINES);
}

void Viewer::beReady()
{
    refreshMachine();
    auto program = m_state.section("program");
    program["ready"] = true;
    m_state.set("program", program);
}

void Viewer::beginLoad()
{
    auto load = idleLoad();
    load["active"] = true;
    m_state.set("load", load);
}

void Viewer::setLoadedBoard(const std::string& caption)
{
    auto load = m_state.section("load");
    load["board"] = caption;
    m_state.set("load", load);
}

void Viewer::setLoadedApplet(const std::string& name)
{
    auto load = m_state.section("load");
    load["applet"] = name;
    m_state.set("load", load);
}

void Viewer::addLoadLine(Severity level, const std::string& text)
{
    auto load = m_state.section("load");
    load["lines"].push_back({{"level", nameOf(level)}, {"text", text}});
    m_state.set("load", load);
    if (level != Severity::Information)
        report(level, "Loading Applet", text);
}

void Viewer::endLoad()
{
    auto load = m_state.section("load");
    load["active"] = false;
    m_state.set("load", load);
}

void Viewer::attachBoard(unsigned int serial)
{
    if (const auto board = frontend::boardOfSerial(serial)) {
        m_images.attach(board);
        frontend::markGenerators(board);
        watchEnds(*board);
    }
    refreshMachine();
}

// A slot runs on the scene's thread, perhaps while it is being disconnected.
void Viewer::watchEnds(const core::models::HlEnvironmentBoardNode& board)
{
    auto& connections = m_ends[board.getSerial()];
    connections.clear();
    const auto slot = [&application = m_setup.application,
                       viewer = std::weak_ptr<Viewer>(m_self)](const reference::AcquisitionStatus& status) {
        if (status.state != reference::AcquisitionState::CountReached)
            application.post([viewer, reason = status.reason] {
                if (const auto there = viewer.lock())
                    there->report(Severity::Warning, "Acquisition", reason);
            });
    };
    for (const auto& dma : frontend::listOf(board.getDmas()))
        if (const auto scene = dma->getDisplayScene())
            connections.emplace_back(reference::AcquisitionObserver::connect(scene, slot));
}

void Viewer::dropUnloadedBoards()
{
    m_images.dropUnloaded();
    refreshMachine();
}

void Viewer::setRescanning(bool rescanning)
{
    m_state.set("rescanning", rescanning);
    if (!rescanning)
        refreshMachine();
}

void Viewer::refreshMachine()
{
    m_state.set("boards", describeBoards(m_images));
    m_state.set("applets", describeApplets());
    m_state.set("settings", describeSettings());
    m_state.set("statistics", describeStatistics(m_images));
    m_state.set("rehearsal", describeRehearsal());
    refreshMemory();
}

void Viewer::refreshMemory()
{
    m_state.set("memory", describeMemory());
}

void Viewer::report(Severity level, const std::string& title, const std::string& text)
{
    if (level == Severity::Error) {
        constexpr std::size_t MAX_ERRORS = 100;
        ++m_errorCount;
        m_errors.push_back(text);
        if (m_errors.size() > MAX_ERRORS)
            m_errors.pop_front();
        m_recentErrors.add(title + ": " + text);
    }
    addNotice(level, title, text);
}

void Viewer::addNotice(Severity level, const std::string& title, const std::string& text)
{
    m_state.append("notices",
                   json::array({{{"id", ++m_noticeCount},
                                 {"time", presentTime()},
                                 {"level", nameOf(level)},
                                 {"title", title},
                                 {"text", text}}}),
                   MAX_NOTICES);
}

void Viewer::tick()
{
    constexpr int TICKS_OF_A_SECOND = 4;
    m_state.append("log", m_log.take(), MAX_LOG_LINES);
    if (!m_state.section("program")["ready"])
        return;
    m_state.set("boards", describeBoards(m_images));
    m_state.set("statistics", describeStatistics(m_images));
    m_state.set("events", describeEvents(*m_events));
    m_recordings.update();
    m_state.set("recordings", m_recordings.describe());
    if (++m_ticks % TICKS_OF_A_SECOND == 0)
        refreshMachine();
}

void Viewer::run(const boost::shared_ptr<core::Command>& command)
{
    if (m_question.isOpen())
        throw frontend::RequestError("first answer the question that is open");
    core::HarloApplication::commandprocessor()->executeCommand(command);
    m_commandStarted = true; // set last: a question in the command's first phase lets other requests run
}

void Viewer::requireNoLoad() const
{
    if (m_state.section("load")["active"])
        throw frontend::RequestError("another applet is being loaded");
}

std::string Viewer::readyName(const std::string& beginning, const std::string& ending)
{
    std::string time = frontend::utcText(std::chrono::system_clock::now());
    std::erase_if(time, [](char character) { return character == '-' || character == ':'; });
    time.resize(time.find('.'));
    return beginning + "-" + time + "-" + std::to_string(++m_nameCount) + ending;
}

void Viewer::countParameterChange(const std::string& serial)
{
    auto changes = m_state.section("parameterChanges");
    changes[serial] = changes.value(serial, 0) + 1;
    m_state.set("parameterChanges", changes);
}

std::filesystem::path Viewer::storeUpload(const std::string& text, const std::string& ending)
{
    constexpr std::size_t MAX_UPLOAD_BYTES = std::size_t{1} << 20;
    if (text.size() > MAX_UPLOAD_BYTES)
        throw frontend::RequestError("a file has at most a mebibyte");
    if (!m_uploads)
        m_uploads = std::make_unique<const PrivateFolder>();
    const auto file = m_uploads->path() / readyName("upload", ending);
    frontend::writeFile(file, text);
    afterwards([file] {
        std::error_code ignored;
        std::filesystem::remove(file, ignored);
    });
    return file;
}

frontend::ReportContents Viewer::reportContents() const
{
    std::vector<std::string> log;
    for (const auto& line : m_state.section("log"))
        log.push_back(textOfLogLine(line));
    return {.program = "ovra-viewer " OVRA_GUI_CORE_VERSION,
            .options = m_setup.options,
            .errors = m_recentErrors.all(),
            .log = log};
}

std::filesystem::path Viewer::outputFolder() const
{
    return frontend::pathOf(m_setup.options.outputFolder);
}

std::string Viewer::outputFolderText() const
{
    std::error_code ignored;
    return frontend::textOf(std::filesystem::absolute(outputFolder() / ".", ignored).parent_path());
}

void Viewer::quit()
{
    auto program = m_state.section("program");
    program["quitting"] = true;
    m_state.set("program", program);
    m_question.giveUp();
    m_setup.application.quit();
}

} // namespace ovra::viewer
