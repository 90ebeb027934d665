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
    constexpr std::size_t MAX_JOBS = 20;
    for (const auto& job : m_jobs)
        if (job.recorder && job.images == images)
            throw frontend::RequestError("the channel is being recorded already, as " + job.name);
    Job job{.id = ++m_count,
            .name = frontend::textOf(folder.filename()),
            .wanted = count,
            .scene = scene,
            .images = images,
            .recorder = std::make_unique<frontend::ImageRecorder>(folder, count),
            .recording = {},
            .progress = {},
            .started = scene->isGrabbing(),
            .failure = {}};
    job.recording = std::make_unique<frontend::Recording>(images->tap(), *job.recorder);
    m_jobs.push_back(std::move(job));
    const auto ended = std::ranges::find_if(m_jobs, [](const Job& each) { return !each.recorder; });
    if (m_jobs.size() > MAX_JOBS && ended != m_jobs.end())
        m_jobs.erase(ended);
    return m_count;
}

void Recordings::beStarted(std::int64_t recording)
{
    if (Job* const job = findActive(recording))
        job->started = true;
}

void Recordings::cancel(std::int64_t recording)
{
    Job* const job = findActive(recording);
    if (!job)
        throw frontend::RequestError("the recording has ended already");
    job->recording.reset();
    job->progress = job->recorder->progress();
    job->recorder.reset(); // drops what waits to be written
    job->images.reset();
    job->cancelled = true;
}

void Recordings::update()
{
    for (auto& job : m_jobs)
        if (job.recorder)
            update(job);
}

json Recordings::describe() const
{
    json list = json::array();
    for (const auto& job : m_jobs)
        list.push_back({{"id", job.id},
                        {"name", job.name},
                        {"wanted", job.wanted},
                        {"recorded", job.progress.recorded},
                        {"missed", job.progress.missed},
                        {"ended", !job.recorder},
                        {"cancelled", job.cancelled},
                        {"failure", job.failure}});
    return list;
}

Recordings::Job* Recordings::findActive(std::int64_t recording)
{
    for (auto& job : m_jobs)
        if (job.id == recording && job.recorder)
            return &job;
    return nullptr;
}

void Recordings::update(Job& job)
{
    const auto scene = job.scene.lock();
    // Read before the progress: images that arrive in between still count.
    const bool stopped = job.started && (!scene || !scene->isGrabbing());
    job.progress = job.recorder->progress();
    if (job.progress.complete || stopped)
        job.recording.reset();
    if (!job.recording && job.recorder->progress().settled)
        end(job);
}

void Recordings::end(Job& job)
{
    try {
        job.progress = job.recorder->finish();
        if (job.progress.recorded < job.wanted)
            job.failure = "the acquisition ended before all images had come";
    } catch (const frontend::RequestError& error) {
        job.failure = error.what();
    }
    job.recorder.reset();
    job.images.reset();
}

} // namespace ovra::viewer
