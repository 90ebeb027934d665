// SPDX-License-Identifier: MIT
// The cost of reading a configuration file, compared with a reader of INI files from Debian's packages: from
// a path to the three values that name the applet. The other reader gets the same content without the closing
// ";".

#include "Ratios.h"

#include "mcf/Mcf.h"

#include <ini.h>

#include <algorithm>
#include <compare>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <numeric>
#include <random>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

constexpr std::size_t KB = 1000;
constexpr std::size_t MB = 1000 * KB;
constexpr std::size_t KEYS_OF_A_SECTION = 30;

enum class Order
{
    Sorted,
    Unsorted
};

struct Shape
{
    std::size_t size;
    Order order;

    auto operator<=>(const Shape&) const = default;
};

struct Files
{
    std::string mcf;
    std::string ini;
};

/// A folder that is removed when the program ends.
class Folder
{
public:
    Folder() : m_path(std::filesystem::temp_directory_path() / ("ovra-bench-" + std::to_string(getpid())))
    {
        std::filesystem::create_directories(m_path);
    }
    ~Folder() { std::filesystem::remove_all(m_path); }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    std::filesystem::path operator/(const std::string& name) const { return m_path / name; }

private:
    const std::filesystem::path m_path;
};

std::string numbered(const char* name, std::size_t number)
{
    char text[40];
    std::snprintf(text, sizeof(text), "%s%07zu", name, number);
    return text;
}

/// A different order each time, but the same in each run.
std::vector<std::size_t> numbers(std::size_t count, Order order)
{
    static std::mt19937 random(1);
    std::vector<std::size_t> all(count);
    std::iota(all.begin(), all.end(), std::size_t{0});
    if (order == Order::Unsorted)
        std::shuffle(all.begin(), all.end(), random);
    return all;
}

/// Lines are about as long as in a file that a runtime has stored. The applet's name is in the middle.
void write(const Shape& shape, const Files& files)
{
    constexpr std::size_t LINE_BYTES = sizeof("KEY0000000=0000;"); // with its line feed
    const std::size_t sections = std::max<std::size_t>(shape.size / LINE_BYTES / KEYS_OF_A_SECTION, 1);
    std::ofstream mcf(files.mcf, std::ios::binary);
    std::ofstream ini(files.ini, std::ios::binary);
    const auto line = [&](const std::string& text, const char* ending) {
        mcf << text << ending << '\n';
        ini << text << '\n';
    };
    std::size_t written = 0;
    for (const std::size_t section : numbers(sections, shape.order)) {
        if (written++ == sections / 2) {
            line("[Kamerasektion]", "");
            line("Typ=DemoApplet", ";");
        }
        line(numbered("[Section", section) + ']', "");
        for (const std::size_t key : numbers(KEYS_OF_A_SECTION, shape.order))
            line(numbered("KEY", key) + '=' + std::to_string(1000 + key * 7919 % 9000), ";");
    }
}

/// Writes the files on the first call.
const Files& filesOf(const Shape& shape)
{
    static const Folder FOLDER;
    static std::map<Shape, Files> known;
    const std::string path = (FOLDER / std::to_string(known.size())).string();
    const auto [place, isNew] = known.try_emplace(shape, Files{path + ".mcf", path + ".ini"});
    if (isNew)
        write(shape, place->second);
    return place->second;
}

struct Names
{
    std::string hapName;
    std::string fileName;
    std::string typ;

    bool operator==(const Names&) const = default;
};

Names readOurs(const Files& files)
{
    using ovra::gui::mcf::mcfValue;
    const std::string text = ovra::gui::mcf::readMcf(files.mcf);
    return {std::string(mcfValue(text, "Kamerasektion", "HapName")),
            std::string(mcfValue(text, "fglib5", "FileName")),
            std::string(mcfValue(text, "Kamerasektion", "Typ"))};
}

/// Calls back for each key.
Names readWithInih(const Files& files)
{
    Names names;
    const auto take = [](void* user, const char* section, const char* key, const char* value) {
        auto& found = *static_cast<Names*>(user);
        if (std::strcmp(section, "Kamerasektion") == 0) {
            if (std::strcmp(key, "HapName") == 0)
                found.hapName = value;
            else if (std::strcmp(key, "Typ") == 0)
                found.typ = value;
        } else if (std::strcmp(section, "fglib5") == 0 && std::strcmp(key, "FileName") == 0) {
            found.fileName = value;
        }
        return 1;
    };
    ini_parse(files.ini.c_str(), take, &names);
    return names;
}

template <auto READ, Shape SHAPE>
void reading(benchmark::State& state)
{
    const Files& files = filesOf(SHAPE);
    for (auto _ : state)
        benchmark::DoNotOptimize(READ(files));
    state.SetBytesProcessed(static_cast<std::int64_t>(SHAPE.size) * state.iterations());
}

constexpr Shape SORTED_10_KB{10 * KB, Order::Sorted};
constexpr Shape SORTED_1_MB{1 * MB, Order::Sorted};
constexpr Shape UNSORTED_1_MB{1 * MB, Order::Unsorted};

RATIO("10 KB, sorted / inih", (reading<readOurs, SORTED_10_KB>), (reading<readWithInih, SORTED_10_KB>), 1);
RATIO("1 MB, sorted / inih", (reading<readOurs, SORTED_1_MB>), (reading<readWithInih, SORTED_1_MB>), 1);
RATIO("1 MB, unsorted / inih", (reading<readOurs, UNSORTED_1_MB>), (reading<readWithInih, UNSORTED_1_MB>), 1);

} // namespace

int main(int argc, char** argv)
{
    for (const Shape& shape : {SORTED_10_KB, SORTED_1_MB, UNSORTED_1_MB}) {
        const Names ours = readOurs(filesOf(shape));
        if (ours == readWithInih(filesOf(shape)) && ours.typ == "DemoApplet")
            continue;
        std::fprintf(stderr, "inih does not read the same values\n");
        return EXIT_FAILURE;
    }
    return ovra::bench::runRatios(argc, argv);
}
