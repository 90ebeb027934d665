// SPDX-License-Identifier: MIT
#include "ImageRecorder.h"

#include "OutputFile.h"
#include "Paths.h"
#include "PngWriter.h"
#include "RequestError.h"
#include "TimeText.h"

#include <exception>
#include <iomanip>
#include <sstream>
#include <system_error>
#include <utility>

namespace ovra::frontend {

namespace {

constexpr std::size_t MAX_WAITING_BYTES = std::size_t{256} << 20;
constexpr const char* LIST_NAME = "images.csv";

std::string fileName(std::int64_t index)
{
    constexpr int DIGITS = 6;
    std::ostringstream name;
    name << "image-" << std::setw(DIGITS) << std::setfill('0') << index << ".png";
    return name.str();
}

std::filesystem::path preparedFolder(const std::filesystem::path& folder)
{
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error)
        throw RequestError("cannot make the folder " + textOf(folder) + ": " + error.message());
    if (std::filesystem::exists(folder / LIST_NAME, error))
        throw RequestError("the folder " + textOf(folder) + " holds a recording already");
    return folder;
}

} // namespace

ImageRecorder::ImageRecorder(const std::filesystem::path& folder, std::int64_t count)
    : m_folder(preparedFolder(folder)),
      m_count(count),
      m_list(m_folder / LIST_NAME, std::ios::binary)
{
    m_list << "file,number,timestamp_ns,arrival\n" << std::flush;
    if (!m_list)
        throw RequestError("cannot write " + textOf(m_folder / LIST_NAME));
    m_writer = std::thread([this] { writeAll(); });
}

ImageRecorder::~ImageRecorder()
{
    {
        const std::lock_guard lock(m_mutex);
        m_ends = true;
        m_waiting.clear();
        m_changed.notify_all();
    }
    if (m_writer.joinable())
        m_writer.join();
}

void ImageRecorder::add(const display::Image& image)
{
    const std::lock_guard lock(m_mutex);
    if (m_ends || m_taken == m_count || !m_failure.empty())
        return;
    if (m_waitingBytes + image.bytes() > MAX_WAITING_BYTES && !m_waiting.empty()) {
        ++m_progress.missed;
        return;
    }
    m_waiting.push_back({{image.pixels, image.pixels + image.bytes()}, image});
    m_waitingBytes += image.bytes();
    ++m_taken;
    m_progress.complete = m_taken == m_count;
    m_changed.notify_all();
}

ImageRecorder::Progress ImageRecorder::progress() const
{
    const std::lock_guard lock(m_mutex);
    Progress progress = m_progress;
    progress.settled = m_taken == m_progress.recorded || !m_failure.empty();
    return progress;
}

ImageRecorder::Progress ImageRecorder::finish()
{
    {
        const std::lock_guard lock(m_mutex);
        m_ends = true;
        m_changed.notify_all();
    }
    if (m_writer.joinable())
        m_writer.join();
    if (!m_failure.empty())
        throw RequestError(m_failure);
    return m_progress;
}

bool ImageRecorder::nextImage(StoredImage& image)
{
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_ends || !m_waiting.empty(); });
    if (m_waiting.empty() || !m_failure.empty())
        return false;
    image = std::move(m_waiting.front());
    m_waiting.pop_front();
    m_waitingBytes -= image.bytes.size();
    return true;
}

void ImageRecorder::writeAll()
{
    StoredImage image;
    for (std::int64_t index = 1; nextImage(image); ++index) {
        std::string failure;
        try {
            write(image, index);
        } catch (const std::exception& error) {
            failure = error.what();
        }
        const std::lock_guard lock(m_mutex);
        if (failure.empty()) {
            ++m_progress.recorded;
        } else {
            m_failure = failure;
            m_progress.complete = true;
        }
    }
}

void ImageRecorder::write(const StoredImage& image, std::int64_t index)
{
    writeFile(m_folder / fileName(index), encodePng(image.view()));
    m_list << fileName(index) << ',' << image.description.number << ',' << image.description.timestampNs
           << ',' << utcText(image.description.arrival) << '\n'
           << std::flush;
    if (!m_list)
        throw RequestError("cannot write " + textOf(m_folder / LIST_NAME));
}

Recording::Recording(ImageTap& tap, ImageRecorder& recorder) : m_tap(tap)
{
    m_tap.setListener([&recorder](const display::Image& image) { recorder.add(image); });
}

Recording::~Recording()
{
    m_tap.setListener({});
}

} // namespace ovra::frontend
