// SPDX-License-Identifier: MIT
/// \file
/// ImageRecorder: writes the images of a channel as numbered files.
///
///   ImageRecorder   writes the files
///   Recording       passes a channel's images to a recorder
#pragma once

#include "ImageKeeper.h"

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <string>
#include <thread>

namespace ovra::frontend {

/// Writes image-000001.png and so on into a folder, and images.csv with a line for each: file, number since
/// the acquisition's start, time stamp of the board in nanoseconds, arrival in UTC. A thread of its own
/// writes, so that the channel does not wait for the disk.
class ImageRecorder
{
public:
    struct Progress
    {
        std::int64_t recorded = 0; ///< written
        std::int64_t missed = 0;   ///< dropped because too many waited to be written
        bool complete = false;     ///< all requested images have been added, or a file could not be written
        bool settled = true;       ///< no added image waits to be written
    };

    /// Creates the folder. Throws RequestError if that fails, or if the folder contains a recording.
    ImageRecorder(const std::filesystem::path& folder, std::int64_t count);
    /// Drops images that are not written yet.
    ~ImageRecorder();
    ImageRecorder(const ImageRecorder&) = delete;
    ImageRecorder& operator=(const ImageRecorder&) = delete;

    /// Any thread. Queues a copy; does not wait for the disk. Images beyond the count are ignored.
    void add(const display::Image& image);

    /// Any thread.
    Progress progress() const;

    /// Waits until all queued images are written. Throws RequestError if one could not be written.
    Progress finish();

private:
    void writeAll();
    void write(const StoredImage& image, std::int64_t index);
    bool nextImage(StoredImage& image);

    const std::filesystem::path m_folder;
    const std::int64_t m_count;
    std::ofstream m_list;
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<StoredImage> m_waiting;
    std::size_t m_waitingBytes = 0;
    std::int64_t m_taken = 0;
    Progress m_progress;
    std::string m_failure; ///< the first one
    bool m_ends = false;   ///< no more images will be added
    std::thread m_writer;  ///< the last member: it uses the others
};

/// Passes the images of \p tap to \p recorder while it exists. Both must outlive it.
class Recording
{
public:
    Recording(ImageTap& tap, ImageRecorder& recorder);
    ~Recording();
    Recording(const Recording&) = delete;
    Recording& operator=(const Recording&) = delete;

private:
    ImageTap& m_tap;
};

} // namespace ovra::frontend
