// The reader of configuration files, against readers of INI files from Debian's packages: from a path to all
// values, ordered by section and key. What the others read is the same content without the closing ";".

#include "Ratios.h"

#include "mcf/McfFile.h"

#define SI_NO_CONVERSION // bytes stay what they are
#include <SimpleIni.h>
#include <boost/property_tree/ini_parser.hpp>
#include <ini.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <numeric>
#include <random>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

using ovra::gui::commands::McfFile;

namespace {

constexpr std::size_t KB = 1000;
constexpr std::size_t MB = 1000 * KB;

enum class Order
{
    Sorted,
    Unsorted
};

enum class Sections
{
    OfThirtyKeys,
    One
};

struct Shape
{
    std::size_t size;
    Order order;
    Sections sections;
};

struct Files
{
    std::string mcf;
    std::string ini;
};

/// A folder that goes with the program.
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

/// Lines are about as long as in a file that a runtime has stored.
void write(const Shape& shape, const Files& files)
{
    constexpr std::size_t LINE_BYTES = sizeof("KEY0000000=0000;"); // with its line feed
    const std::size_t lines = shape.size / LINE_BYTES;
    const std::size_t keys = shape.sections == Sections::One ? lines : 30;
    std::ofstream mcf(files.mcf, std::ios::binary);
    std::ofstream ini(files.ini, std::ios::binary);
    const auto line = [&](const std::string& text, const char* ending) {
        mcf << text << ending << '\n';
        ini << text << '\n';
    };
    for (const std::size_t section : numbers(std::max<std::size_t>(lines / keys, 1), shape.order)) {
        line(numbered("[Section", section) + ']', "");
        for (const std::size_t key : numbers(keys, shape.order))
            line(numbered("KEY", key) + '=' + std::to_string(1000 + key * 7919 % 9000), ";");
    }
}

/// Written when first asked for.
const Files& filesOf(const Shape& shape)
{
    static const Folder folder;
    static std::map<std::string, Files> known;
    const std::string name = std::to_string(shape.size) + (shape.order == Order::Sorted ? "s" : "u") +
                             (shape.sections == Sections::One ? "1" : "30");
    const auto [place, isNew] = known.try_emplace(
        name, Files{(folder / (name + ".mcf")).string(), (folder / (name + ".ini")).string()});
    if (isNew)
        write(shape, place->second);
    return place->second;
}

using Map = std::map<std::string, std::map<std::string, std::string>>;

struct Ours
{
    static McfFile read(const Files& files) { return McfFile::read(files.mcf); }

    static Map content(const McfFile& file)
    {
        Map all;
        for (const auto& section : file.sections())
            for (const auto& entry : section.entries)
                all[std::string(section.name)].emplace(entry.key(), entry.value());
        return all;
    }
};

/// Calls back for each key; the map is made there, with a hint for keys that come in order.
struct Inih
{
    struct Building
    {
        Map all;
        Map::iterator current;
    };

    static int take(void* user, const char* section, const char* key, const char* value)
    {
        auto& building = *static_cast<Building*>(user);
        if (building.all.empty() || building.current->first != section)
            building.current = building.all.try_emplace(building.all.end(), section);
        auto& keys = building.current->second;
        keys.emplace_hint(keys.end(), key, value);
        return 1;
    }

    static Map read(const Files& files)
    {
        Building building;
        ini_parse(files.ini.c_str(), take, &building);
        return std::move(building.all);
    }

    static Map content(const Map& all) { return all; }
};

/// Keeps the text in one buffer, and its own two levels of maps with pointers into it.
struct SimpleIni
{
    static std::unique_ptr<CSimpleIniCaseA> read(const Files& files)
    {
        auto ini = std::make_unique<CSimpleIniCaseA>();
        ini->LoadFile(files.ini.c_str());
        return ini;
    }

    static Map content(const std::unique_ptr<CSimpleIniCaseA>& ini)
    {
        Map all;
        CSimpleIniCaseA::TNamesDepend sections;
        ini->GetAllSections(sections);
        for (const auto& section : sections)
            for (const auto& [key, value] : *ini->GetSection(section.pItem))
                all[section.pItem].emplace(key.pItem, value);
        return all;
    }
};

struct PropertyTree
{
    static boost::property_tree::ptree read(const Files& files)
    {
        boost::property_tree::ptree tree;
        read_ini(files.ini, tree);
        return tree;
    }

    static Map content(const boost::property_tree::ptree& tree)
    {
        Map all;
        for (const auto& [section, keys] : tree)
            for (const auto& [key, value] : keys)
                all[section].emplace(key, value.data());
        return all;
    }
};

/// Into memory that is given back each time.
template <class Reader, Shape SHAPE, std::size_t TIMES = 1>
void reading(benchmark::State& state)
{
    const Files& files = filesOf(SHAPE);
    for (auto _ : state)
        for (std::size_t i = 0; i < TIMES; ++i)
            benchmark::DoNotOptimize(Reader::read(files));
    state.SetBytesProcessed(static_cast<std::int64_t>(SHAPE.size * TIMES) * state.iterations());
}

constexpr Shape SORTED_10_KB{10 * KB, Order::Sorted, Sections::OfThirtyKeys};
constexpr Shape UNSORTED_10_KB{10 * KB, Order::Unsorted, Sections::OfThirtyKeys};
constexpr Shape SORTED_1_MB{1 * MB, Order::Sorted, Sections::OfThirtyKeys};
constexpr Shape UNSORTED_1_MB{1 * MB, Order::Unsorted, Sections::OfThirtyKeys};
constexpr Shape SORTED_50_MB{50 * MB, Order::Sorted, Sections::OfThirtyKeys};
constexpr Shape UNSORTED_50_MB{50 * MB, Order::Unsorted, Sections::OfThirtyKeys};
constexpr Shape ONE_SORTED_1_MB{1 * MB, Order::Sorted, Sections::One};
constexpr Shape ONE_UNSORTED_1_MB{1 * MB, Order::Unsorted, Sections::One};
constexpr Shape ONE_SORTED_50_MB{50 * MB, Order::Sorted, Sections::One};
constexpr Shape ONE_UNSORTED_50_MB{50 * MB, Order::Unsorted, Sections::One};

template <Shape SHAPE>
bool addReaders(const std::string& what)
{
    using ovra::bench::addRatio;
    const double limit = SHAPE.sections == Sections::One ? 1 / 2.5 : 1 / 3.5;
    const auto ours = reading<Ours, SHAPE>;
    return addRatio((what + " / inih").c_str(), ours, reading<Inih, SHAPE>, limit) &&
           addRatio((what + " / SimpleIni").c_str(), ours, reading<SimpleIni, SHAPE>, limit) &&
           addRatio((what + " / PropertyTree").c_str(), ours, reading<PropertyTree, SHAPE>, limit);
}

[[maybe_unused]] const bool added =
    addReaders<SORTED_10_KB>("10 KB, sorted") && addReaders<UNSORTED_10_KB>("10 KB, unsorted") &&
    addReaders<SORTED_1_MB>("1 MB, sorted") && addReaders<UNSORTED_1_MB>("1 MB, unsorted") &&
    addReaders<SORTED_50_MB>("50 MB, sorted") && addReaders<UNSORTED_50_MB>("50 MB, unsorted") &&
    addReaders<ONE_SORTED_1_MB>("1 MB in one section, sorted") &&
    addReaders<ONE_UNSORTED_1_MB>("1 MB in one section, unsorted") &&
    addReaders<ONE_SORTED_50_MB>("50 MB in one section, sorted") &&
    addReaders<ONE_UNSORTED_50_MB>("50 MB in one section, unsorted");

/// As where one file comes after the other: the kernel need not find and clear memory for each.
template <Shape SHAPE, std::size_t TIMES = 1>
void readingIntoUsedMemory(benchmark::State& state)
{
    const Files& files = filesOf(SHAPE);
    McfFile file;
    for (auto _ : state)
        for (std::size_t i = 0; i < TIMES; ++i)
            file = McfFile::read(files.mcf, std::move(file));
    state.SetBytesProcessed(static_cast<std::int64_t>(SHAPE.size * TIMES) * state.iterations());
}

RATIO("50 MB / 50 times 1 MB, sorted", (readingIntoUsedMemory<SORTED_50_MB>),
      (readingIntoUsedMemory<SORTED_1_MB, 50>), 1 / 0.85);
RATIO("50 MB / 50 times 1 MB, unsorted", (readingIntoUsedMemory<UNSORTED_50_MB>),
      (readingIntoUsedMemory<UNSORTED_1_MB, 50>), 1 / 0.85);
RATIO("50 MB / 50 times 1 MB, sorted, new memory", (reading<Ours, SORTED_50_MB>),
      (reading<Ours, SORTED_1_MB, 50>), 0);

template <class Reader>
void requireSameContent(const Shape& shape, const char* name)
{
    const Files& files = filesOf(shape);
    const Map ours = Ours::content(Ours::read(files));
    if (!ours.empty() && Reader::content(Reader::read(files)) == ours)
        return;
    std::fprintf(stderr, "%s does not read the same content\n", name);
    std::exit(1);
}

/// A line of /proc/self/status, in bytes.
double memory(const std::string& what)
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with(what + ':'))
            return std::stod(line.substr(what.size() + 1)) * 1024;
    return 0;
}

/// By how much a process of its own grows at most while it reads.
void reportMemory(const char* name, const Shape& shape)
{
    const Files& files = filesOf(shape);
    std::fflush(stdout);
    const pid_t child = fork();
    if (child == 0) {
        const double before = memory("VmRSS");
        benchmark::DoNotOptimize(Ours::read(files));
        const double size = static_cast<double>(std::filesystem::file_size(files.mcf));
        const double ratio = (memory("VmHWM") - before) / size;
        std::printf("%-52s %8.3f   limit 3.00%s\n", name, ratio, ratio <= 3 ? "" : "  EXCEEDED");
        std::fflush(stdout);
        _exit(0);
    }
    waitpid(child, nullptr, 0);
}

} // namespace

int main(int argc, char** argv)
{
    // First, while there is no memory that was used before and would be used again.
    std::printf("%-52s %8s\n", "growth of a process at most / size of the file", "ratio");
    reportMemory("50 MB, sorted", SORTED_50_MB);
    reportMemory("50 MB, unsorted", UNSORTED_50_MB);
    reportMemory("50 MB in one section, sorted", ONE_SORTED_50_MB);
    reportMemory("50 MB in one section, unsorted", ONE_UNSORTED_50_MB);

    for (const Shape& shape : {SORTED_10_KB, UNSORTED_10_KB, ONE_UNSORTED_1_MB}) {
        requireSameContent<Inih>(shape, "inih");
        requireSameContent<SimpleIni>(shape, "SimpleIni");
        requireSameContent<PropertyTree>(shape, "Boost.PropertyTree");
    }
    return ovra::bench::runRatios(argc, argv);
}
