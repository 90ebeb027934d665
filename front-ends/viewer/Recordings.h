// SPDX-License-Identifier: MIT
/// \file
/// Recordings: the series of images that pages record.
#pragma once

#include "ChannelImages.h"

#include "front-ends/shared/ImageRecorder.h"

#include <nlohmann/json.hpp>

#include <deque>
#include <filesystem>
#include <memory>
#include <string>

namespace ovra::viewer {

/// GUI thread.
class Recordings
{
public:
    /// Records the next \p count images of a channel into \p folder, which is created. Ends when all have
    /// arrived, or when a started acquisition stops. Returns the recording's number. Throws RequestError if
    /// the channel is already being recorded or the folder cannot be created.
    std::int64_t begin(const std::filesystem::path& folder, std::int64_t count,
                       const boost::shared_ptr<display::DisplayScene>& scene,
                       const std::shared_ptr<ChannelVisualizer>& images);
    /// The recording's own start of the acquisition has succeeded or failed.
    void beStarted(std::int64_t recording);
    /// Keeps the files written so far. Throws RequestError if the recording has ended.
    void cancel(std::int64_t recording);
    /// Ends recordings that are complete. Call it a few times a second.
    void update();

    /// The newest recordings, oldest first.
    nlohmann::json describe() const;

private:
    struct Job
    {
        std::int64_t id;
        std::string name; ///< of the folder
        std::int64_t wanted;
        boost::weak_ptr<display::DisplayScene> scene;
        std::shared_ptr<ChannelVisualizer> images;
        std::unique_ptr<frontend::ImageRecorder> recorder; ///< null after the end
        std::unique_ptr<frontend::Recording> recording;    ///< null when no more images are needed
        frontend::ImageRecorder::Progress progress;
        bool started = false;
        bool cancelled = false;
        std::string failure;
    };

    Job* findActive(std::int64_t recording);
    static void update(Job& job);
    static void end(Job& job);

    std::int64_t m_count = 0;
    std::deque<Job> m_jobs;
};

} // namespace ovra::viewer
