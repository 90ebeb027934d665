/// \file
/// ImageRecorder: writes the images of a channel as numbered files.
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

/// The folder gets image-000001.png and so on, and images.csv with a line for each: file, number since the
/// acquisition's start, time stamp of the board in nanoseconds, arrival in UTC. A thread of its own writes,
/// so that the channel goes on meanwhile.
class ImageRecorder
{
public:
    struct Progress
    {
        std::int64_t recorded = 0; ///< written
        std::int64_t missed = 0;   ///< came while too many waited to be written
        bool complete = false;     ///< all that are wanted are taken up, or a file could not be written
    };

    /// Makes the folder. Throws RequestError when it cannot, and when a recording lies there already.
    ImageRecorder(const std::filesystem::path& folder, std::int64_t count);
    /// Drops what is not written yet.
    ~ImageRecorder();
    ImageRecorder(const ImageRecorder&) = delete;
    ImageRecorder& operator=(const ImageRecorder&) = delete;

    /// Any thread. Takes a copy up; does not block for the disk. Images beyond the count are ignored.
    void add(const display::Image& image);

    /// Any thread.
    Progress progress() const;

    /// Waits until all that was taken up is written. Throws RequestError when something could not be written.
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
    bool m_ends = false;   ///< no more images come
    std::thread m_writer;  ///< the last member: it uses the others
};

} // namespace ovra::frontend
