// SPDX-License-Identifier: MIT
#include "Recordings.h"

#include "front-ends/shared/Paths.h"
#include "front-ends/shared/RequestError.h"

#include "ovra-lib-display/DisplayScene.h"

#include <algorithm>

namespace ovra::viewer {

using nlohmann::json;

std::int64_t Recordings::begin(const std::filesystem::path& folder, std::int64_t count,
                               const boost::shared_ptr<display::DisplayScene>& scene,
                               const std::shared_ptr<ChannelVisualizer>& images)
{
    constexpr std::size_t MAX_ENTRIES = 20;
    for (const auto& entry : m_entries)
        if (entry.recorder && entry.images == images)
            throw frontend::RequestError("the channel is being recorded already, as " + entry.name);
    Entry entry{.id = ++m_count,
                .name = frontend::textOf(folder.filename()),
                .wanted = count,
                .scene = scene,
                .images = images,
                .recorder = std::make_unique<frontend::ImageRecorder>(folder, count),
                .recording = {},
                .progress = {},
                .started = scene->isGrabbing(),
                .failure = {}};
    entry.recording = std::make_unique<frontend::Recording>(images->tap(), *entry.recorder);
    m_entries.push_back(std::move(entry));
    const auto ended = std::ranges::find_if(m_entries, [](const Entry& each) { return !each.recorder; });
    if (m_entries.size() > MAX_ENTRIES && ended != m_entries.end())
        m_entries.erase(ended);
    return m_count;
}

void Recordings::beStarted(std::int64_t recording)
{
    if (Entry* const entry = findActive(recording))
        entry->started = true;
}

void Recordings::cancel(std::int64_t recording)
{
    Entry* const entry = findActive(recording);
    if (!entry)
        throw frontend::RequestError("the recording has ended already");
    entry->recording.reset();
    entry->progress = entry->recorder->progress();
    entry->recorder.reset(); // drops what waits to be written
    entry->images.reset();
    entry->cancelled = true;
}

void Recordings::update()
{
    for (auto& entry : m_entries)
        if (entry.recorder)
            update(entry);
}

json Recordings::describe() const
{
    json list = json::array();
    for (const auto& entry : m_entries)
        list.push_back({{"id", entry.id},
                        {"name", entry.name},
                        {"wanted", entry.wanted},
                        {"recorded", entry.progress.recorded},
                        {"missed", entry.progress.missed},
                        {"ended", !entry.recorder},
                        {"cancelled", entry.cancelled},
                        {"failure", entry.failure}});
    return list;
}

Recordings::Entry* Recordings::findActive(std::int64_t recording)
{
    for (auto& entry : m_entries)
        if (entry.id == recording && entry.recorder)
            return &entry;
    return nullptr;
}

void Recordings::update(Entry& entry)
{
    const auto scene = entry.scene.lock();
    // Read before the progress: images that arrive in between still count.
    const bool stopped = entry.started && (!scene || !scene->isGrabbing());
    entry.progress = entry.recorder->progress();
    if (entry.progress.complete || stopped)
        entry.recording.reset();
    if (!entry.recording && entry.recorder->progress().settled)
        end(entry);
}

void Recordings::end(Entry& entry)
{
    try {
        entry.progress = entry.recorder->finish();
        if (entry.progress.recorded < entry.wanted)
            entry.failure = "the acquisition ended before all images had come";
    } catch (const frontend::RequestError& error) {
        entry.failure = error.what();
    }
    entry.recorder.reset();
    entry.images.reset();
}

} // namespace ovra::viewer
