// SPDX-License-Identifier: MIT
#include "ProblemReport.h"

#include "Lookup.h"
#include "Parameters.h"
#include "Paths.h"
#include "Process.h"
#include "TimeText.h"
#include "Titles.h"

#include "gui-core/Gui.h"
#include "gui-core/Version.h"
#include "gui-core/keys/Keys.h"
#include "ovra-core/HarloApplication.h"
#include "ovra-lib-display/DisplayScene.h"
#include "ovra-lib-environment/HlEnvironmentBoardNode.h"
#include "ovra-lib-environment/HlEnvironmentFileNode.h"
#include "ovra-lib-environment/HlEnvironmentHardwareNodes.h"

#include <boost/version.hpp>

#include <chrono>
#include <fstream>
#include <regex>
#include <sstream>

namespace ovra::frontend {

namespace {

void replaceAll(std::string& text, const std::string& from, const std::string& to)
{
    if (from.empty())
        return;
    for (std::size_t place = 0; (place = text.find(from, place)) != std::string::npos; place += to.size())
        text.replace(place, from.size(), to);
}

/// Replaces whole words only, since a short name may be part of many words.
void replaceWord(std::string& text, const std::string& word, const std::string& to)
{
    const auto isPart = [&](std::size_t place) {
        const unsigned char character = place < text.size() ? static_cast<unsigned char>(text[place]) : ' ';
        return character == '_' || (character >= '0' && character <= '9') ||
               (character >= 'A' && character <= 'Z') || (character >= 'a' && character <= 'z') ||
               character >= 0x80;
    };
    std::size_t place = 0;
    while (!word.empty() && (place = text.find(word, place)) != std::string::npos) {
        const bool whole = (place == 0 || !isPart(place - 1)) && !isPart(place + word.size());
        if (whole)
            text.replace(place, word.size(), to);
        place += whole ? to.size() : word.size();
    }
}

std::string slashed(std::string path)
{
    replaceAll(path, "\\", "/");
    return path;
}

void heading(std::ostream& report, const std::string& title)
{
    report << "\n== " << title << '\n';
}

void addLines(std::ostream& report, const std::string& title, const std::vector<std::string>& lines)
{
    heading(report, title);
    for (const auto& line : lines)
        report << line << '\n';
    if (lines.empty())
        report << "none\n";
}

void addFile(std::ostream& report, const std::string& title, const std::string& file)
{
    heading(report, title);
    std::ifstream stream(pathOf(file));
    std::ostringstream content; // the insertion of an empty file fails, and must not end the report
    content << stream.rdbuf();
    report << (stream.is_open() ? content.str() : "cannot be read") << '\n';
}

void addVersions(std::ostream& report, const ReportContents& contents)
{
    heading(report, "versions");
    report << contents.program << '\n'
           << "ovra-lib-gui-core " << OvraGuiCoreVersion() << ", " << OvraGuiCoreAbi() << '\n'
           << "Boost " << BOOST_LIB_VERSION << '\n'
           << systemDescription() << '\n';
}

void addParameters(std::ostream& report, const core::models::HlEnvironmentBoardNode& board)
{
    for (const auto& owner : parameterOwners(board))
        for (const auto& parameter : owner.all())
            report << "  " << owner.title << ": " << parameter.name << " = "
                   << parameters::toText(parameter.value)
                   << (parameter.unit.empty() ? "" : " " + parameter.unit) << '\n';
}

void addStructure(std::ostream& report, const core::models::HlEnvironmentBoardNode& board)
{
    for (const auto& process : listOf(board.getProcesses())) {
        report << "  process " << process->getIndex() << '\n';
        for (const auto& dma : listOf(process->getDmas())) {
            const auto scene = dma->getDisplayScene();
            const auto group = dma->getFrameBufferGroup();
            report << "    DMA " << dma->getIndex() << ": "
                   << (scene ? sizeText(scene->width(), scene->height()) : "no display")
                   << ", buffers: " << (group ? group->bufferCount() : 0)
                   << (scene && scene->isGrabbing() ? ", acquires" : "") << '\n';
        }
        for (const auto& port : listOf(process->getLogicalPorts())) {
            const auto camera = cameraNodeOf(*port);
            report << "    port " << port->getIndex() << ' ' << port->getPortType() << ": "
                   << (camera ? camera->getName() : "no camera") << '\n';
        }
    }
}

void addBoards(std::ostream& report)
{
    heading(report, "boards");
    for (const auto& board : allBoards()) {
        const auto applet = board->getLoadedAppletEntry();
        report << boardTitle(*board) << ", serial " << serialText(*board) << ", "
               << (applet ? applet->getFileName() : "no applet") << '\n';
        if (!applet)
            continue;
        addStructure(report, *board);
        addParameters(report, *board);
    }
}

void addApplets(std::ostream& report)
{
    heading(report, "applet files");
    for (const auto& file : allApplets()) {
        const std::string reason = file->getBrokenReason();
        report << file->getFilePath() << (reason.empty() ? "" : " (broken: " + reason + ")") << '\n';
    }
}

void addEntries(std::ostream& report)
{
    heading(report, "configuration entries in effect");
    for (const auto& key : {gui::keys::DMA_MEMORY_LIMIT_MIB, gui::keys::DEFAULT_TIMEOUT_SECONDS,
                            gui::keys::DEFAULT_BUFFERS, gui::keys::COMPARE_IMAGE_SIZES})
        report << key.name << " = " << core::HarloApplication::getConfigIntEntry(key.name, key.defaultValue)
               << '\n';
    report << "sync mode " << gui::Gui::getSyncMode() << ", DMA memory " << gui::Gui::getUsedDmaMemory()
           << " of " << gui::Gui::getTotalDmaMemory() << " bytes\n";
}

} // namespace

std::string withoutPrivateNames(const std::string& text, const PrivateNames& names)
{
    std::string clean = text;
    for (const auto& folder : {names.installation, slashed(names.installation)})
        replaceAll(clean, folder, "<installation>");
    for (const auto& folder : {names.home, slashed(names.home)})
        replaceAll(clean, folder, "/home");
    // Matches from the root or a drive on; the last part stays, to show which file it is.
    static const std::regex WHOLE_PATH(
        R"((^|[\s"'(=:,])(?:[A-Za-z]:)?[/\\](?:[^\s"'(),;:/\\]+[/\\]+)*([^\s"'(),;:/\\]+)[/\\]?)");
    clean = std::regex_replace(clean, WHOLE_PATH, "$1<path>/$2");
    replaceWord(clean, names.user, "<user>");
    return clean;
}

std::string problemReport(const ReportContents& contents, bool withPrivateNames)
{
    std::ostringstream report;
    report << "Problem report of " << utcText(std::chrono::system_clock::now()) << '\n';
    addVersions(report, contents);
    addBoards(report);
    addApplets(report);
    addEntries(report);
    if (!contents.options.configurationFile.empty())
        addFile(report, "configuration file", contents.options.configurationFile);
    if (!contents.options.machine.empty())
        addFile(report, "machine", contents.options.machine);
    addLines(report, "errors", contents.errors);
    addLines(report, "log", contents.log);
    if (withPrivateNames)
        return report.str();

    const PrivateNames names{core::HarloApplication::getRuntimeDirectory(), homeFolder(), userName()};
    std::istringstream lines(report.str());
    std::string clean;
    for (std::string line; std::getline(lines, line);)
        clean += withoutPrivateNames(line, names) + '\n';
    return clean;
}

} // namespace ovra::frontend
