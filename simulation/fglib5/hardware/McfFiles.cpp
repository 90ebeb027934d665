// SPDX-License-Identifier: MIT
#include "hardware/McfFiles.h"

#include "Failure.h"
#include "Platform.h"
#include "descriptions/JsonReader.h"
#include "hardware/Shortage.h"

#include "fglib5/PathText.h"

#include <algorithm>
#include <atomic>
#include <charconv>
#include <fstream>
#include <map>
#include <optional>
#include <sstream>

namespace simulation {

namespace {

struct Line
{
    int number;
    std::string section;
    std::string key;
    std::string value;
};

[[noreturn]] void refuse(const std::filesystem::path& file, int line, const std::string& reason,
                         int code = FG_INVALID_CONFIGURATION)
{
    const auto place = line > 0 ? "line " + std::to_string(line) + ": " : std::string();
    throw Failure(code, "configuration file " + file.string() + ": " + place + reason);
}

std::string unquoted(const std::string& value)
{
    if (value.size() < 2 || value.front() != '\'' || value.back() != '\'')
        return value == "'" ? std::string() : value;
    return value.substr(1, value.size() - 2);
}

std::vector<Line> readLines(const std::filesystem::path& file)
{
    std::string content;
    try {
        content = readFile(file);
    } catch (const std::ios_base::failure&) {
        refuse(file, 0, "expected a readable file, found none", FG_FILE_ERROR);
    }
    std::vector<Line> lines;
    std::istringstream stream(content);
    std::string section = "none";
    int number = 0;
    for (std::string text; std::getline(stream, text);) {
        ++number;
        if (!text.empty() && text.back() == '\r')
            text.pop_back();
        if (text.size() >= 2 && text.front() == '[' && text.back() == ']') {
            section = text.substr(1, text.size() - 2);
            continue;
        }
        const auto equals = text.find('=');
        if (equals == std::string::npos || text.back() != ';')
            continue;
        lines.push_back({number, section, text.substr(0, equals),
                         unquoted(text.substr(equals + 1, text.size() - equals - 2))});
    }
    return lines;
}

// If a key occurs several times, the last one counts, as for other values.
std::string entry(const std::vector<Line>& lines, const std::string& section, const std::string& key)
{
    std::string value;
    for (const auto& line : lines)
        if (line.section == section && line.key == key)
            value = line.value;
    return value;
}

std::string appletName(const std::filesystem::path& file, const std::vector<Line>& lines)
{
    auto name = entry(lines, "Kamerasektion", "HapName");
    if (!name.empty())
        return name.ends_with(".hap") ? name : name + ".hap";
    name = entry(lines, "fglib5", "FileName");
    if (name.empty())
        name = entry(lines, "Kamerasektion", "Typ");
    if (name.empty())
        refuse(file, 0, "expected the name of an applet (HapName, FileName or Typ), found none");
    const bool complete = name.find_first_of("./\\") != std::string::npos; // with a suffix, or a path
    return complete ? name : name + ".dll";
}

std::string lastPart(const std::string& path)
{
    return path.substr(path.find_last_of("/\\") + 1);
}

// "DMA12" -> 12.
std::optional<int> channelOfSection(const std::string& section)
{
    int channel = 0;
    const auto* end = section.data() + section.size();
    if (!section.starts_with("DMA") || section.size() == 3)
        return {};
    const auto [stop, error] = std::from_chars(section.data() + 3, end, channel);
    return stop == end && error == std::errc() && channel >= 0 ? std::optional(channel) : std::nullopt;
}

Setting settingOf(const Grabber& grabber, const std::filesystem::path& file, const Line& line)
{
    const auto dma = channelOfSection(line.section);
    if (!dma && line.section != "Applet")
        refuse(file, line.number, "unknown section [" + line.section + "]");
    const auto* description = grabber.findForSetting(dma, line.key);
    if (description == nullptr)
        refuse(file, line.number, "the applet has no parameter " + line.key + " in [" + line.section + "]");
    try {
        return {dma, description->id, valueOf(line.value, description->type)};
    } catch (const Failure& failure) {
        refuse(file, line.number, failure.what());
    }
}

// The folder of an applet that is given by its name only.
const char* folderFor(const std::string& name)
{
    return name.ends_with(".hap") ? "Hardware Applets" : "dll";
}

// The name of an installed applet; the path of any other, so that it can be found again.
std::string storedName(const Grabber& grabber)
{
    const auto& file = grabber.applet().file;
    const auto name = file.filename().string();
    const auto model = file.parent_path();
    const bool foundByName = name.find('.') != std::string::npos &&
                             model.filename() == grabber.boardModel() &&
                             model.parent_path().filename() == folderFor(name);
    return foundByName ? name : std::filesystem::absolute(file).generic_string();
}

std::string contentFor(const Grabber& grabber)
{
    const auto name = storedName(grabber);
    std::string text = name.ends_with(".hap") ? "[Kamerasektion]\nHapName=" + name + ";\n"
                                              : "[fglib5]\nFileName='" + name + "';\n";
    std::string section;
    for (const auto& setting : grabber.settings()) {
        const auto own = setting.dma ? "DMA" + std::to_string(*setting.dma) : std::string("Applet");
        if (own != section)
            text += "\n[" + own + "]\n";
        section = own;
        text += grabber.nameOf(setting) + "=" + textOf(setting.value) + ";\n";
    }
    return text;
}

// In the target's folder, so that renaming never crosses a file system.
std::filesystem::path temporaryFor(const std::filesystem::path& file)
{
    static std::atomic<unsigned int> count{0};
    auto name = file;
    name += "." + std::to_string(platform::processId()) + "-" + std::to_string(++count) + ".tmp";
    return name;
}

void writeWhole(const std::filesystem::path& file, const std::string& content)
{
    std::ofstream stream;
    stream.exceptions(std::ios::badbit | std::ios::failbit);
    stream.open(file, std::ios::binary | std::ios::trunc);
    stream << content;
    stream.close(); // may be the first call to report a full disk
}

} // namespace

void saveMcf(const Grabber& grabber, const std::filesystem::path& file)
{
    const auto content = contentFor(grabber);
    const auto temporary = temporaryFor(file);
    try {
        // A full disk accepts the beginning of a file before it refuses the rest.
        writeWhole(temporary, Shortage::s_diskFull ? content.substr(0, content.size() / 2) : content);
        if (Shortage::s_diskFull)
            throw std::ios_base::failure("the disk is full");
        std::filesystem::rename(temporary, file);
    } catch (const std::exception&) {
        std::error_code ignored;
        std::filesystem::remove(temporary, ignored);
        refuse(file, 0, "the file cannot be written", FG_FILE_ERROR);
    }
}

void loadMcf(Grabber& grabber, const std::filesystem::path& file)
{
    const auto lines = readLines(file);
    const auto wanted = lastPart(appletName(file, lines));
    const auto present = grabber.applet().file.filename().string();
    if (wanted != present)
        refuse(file, 0, "made for applet '" + wanted + "', the board carries '" + present + "'");
    std::vector<Setting> settings;
    std::vector<int> numbers;
    for (const auto& line : lines) {
        if (line.section == "Kamerasektion" || line.section == "fglib5")
            continue;
        settings.push_back(settingOf(grabber, file, line));
        numbers.push_back(line.number);
    }
    std::size_t failed = 0;
    try {
        grabber.check(settings, failed);
    } catch (const Failure& failure) {
        const bool running = failure.code() == FG_ACQUISITION_RUNNING;
        refuse(file, numbers[failed], failure.what(), running ? failure.code() : FG_INVALID_CONFIGURATION);
    }
    grabber.apply(settings);
}

std::filesystem::path appletOfMcf(const std::filesystem::path& file,
                                  const std::filesystem::path& installation, const std::string& boardModel)
{
    const auto name = appletName(file, readLines(file));
    if (name.find_first_of("/\\") != std::string::npos)
        return fglib5::pathOf(name);
    return installation / folderFor(name) / boardModel / fglib5::pathOf(name);
}

} // namespace simulation
