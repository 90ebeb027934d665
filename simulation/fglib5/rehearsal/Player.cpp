// SPDX-License-Identifier: MIT
#include "rehearsal/Player.h"

#include "Failure.h"
#include "hardware/ImageWatch.h"
#include "rehearsal/Rehearsal.h"

#include <thread>
#include <utility>

namespace simulation {

namespace {

// Number of steps that report() lists; a scenario without end has more.
constexpr std::size_t MAX_TOLD = 200;

} // namespace

Player& Player::instance()
{
    static auto* player = new Player;
    return *player;
}

void Player::play(Scenario scenario)
{
    const std::lock_guard control(m_control);
    endThread();
    const std::lock_guard lock(m_mutex);
    m_scenario = std::move(scenario);
    m_position = 0;
    m_round = 1;
    m_stopping = false;
    m_start = m_last = Clock::now();
    m_done.clear();
    ImageWatch::s_arrived = imageArrived;
    m_playing = true;
    std::thread([this] { run(); }).detach(); // the process may end before the scenario
}

void Player::stop()
{
    const std::lock_guard control(m_control);
    endThread();
}

void Player::endThread()
{
    std::unique_lock lock(m_mutex);
    m_stopping = true;
    m_changed.notify_all();
    ImageWatch::s_arrived = nullptr;
    m_changed.wait(lock, [this] { return !m_playing; });
}

void Player::run()
{
    std::unique_lock lock(m_mutex);
    while (!m_stopping) {
        if (atEnd() && m_round == m_scenario.rounds)
            break;
        if (atEnd()) {
            ++m_round;
            m_position = 0;
            m_start = m_last;
        } else if (next().moment == TimedStep::Moment::Image) {
            m_changed.wait(lock); // the channel's thread performs the step
        } else if (timeHasCome(lock)) {
            performNext();
        }
    }
    ImageWatch::s_arrived = nullptr;
    m_playing = false;
    m_changed.notify_all();
}

// False if something changed in the meantime.
bool Player::timeHasCome(std::unique_lock<std::mutex>& lock)
{
    const bool sinceStart = next().moment == TimedStep::Moment::SinceStart;
    const auto due = (sinceStart ? m_start : m_last) + next().time;
    if (Clock::now() >= due)
        return true;
    m_changed.wait_until(lock, due);
    return false;
}

// Under the lock, which is safe because steps that take time do not call the player.
void Player::performNext()
{
    std::string line = next().text;
    try {
        Rehearsal::instance().perform(next().step);
    } catch (const std::exception& failure) {
        line += std::string(" - failed: ") + failure.what();
    }
    if (m_done.size() == MAX_TOLD)
        m_done.erase(m_done.begin());
    m_done.push_back(std::move(line));
    ++m_position;
    m_last = Clock::now();
    m_changed.notify_all();
}

void Player::imageArrived(unsigned int board, int dma, FgFrameIndex frame)
{
    instance().takeImage(board, dma, frame);
}

// On the channel's thread, between this image and the next, so that the number of images before the step does
// not depend on scheduling.
void Player::takeImage(unsigned int board, int dma, FgFrameIndex frame)
{
    const std::lock_guard lock(m_mutex);
    while (!m_stopping && !atEnd() && next().moment == TimedStep::Moment::Image && next().board == board &&
           next().dma == dma && next().image <= frame)
        performNext();
}

std::string Player::report() const
{
    const std::lock_guard lock(m_mutex);
    std::string text;
    for (const auto& line : m_done)
        text += line + '\n';
    if (m_round == 0)
        return "no scenario\n";
    if (atEnd() && m_round == m_scenario.rounds)
        return text + "the scenario is over\n";
    if (m_stopping)
        return text + "stopped\n";
    return text + "waits: " + (atEnd() ? m_scenario.steps.front() : next()).text + '\n';
}

} // namespace simulation
