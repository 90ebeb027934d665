// SPDX-License-Identifier: MIT
#include "hardware/Grabber.h"

#include "Failure.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <utility>

namespace simulation {

namespace {

constexpr std::size_t MAX_EVENTS = 64; // bits of a mask

std::vector<std::string> eventNames(const Applet& applet)
{
    std::vector<std::string> names = {"FG_CAMERA_STARTED", "FG_CAMERA_STOPPED"};
    for (const auto& dma : applet.dmas) {
        if (names.size() + 2 > MAX_EVENTS)
            break;
        names.push_back("FG_START_OF_FRAME_DMA" + std::to_string(dma.index));
        names.push_back("FG_IMAGES_LOST_DMA" + std::to_string(dma.index));
    }
    return names;
}

std::vector<ParameterDescription> appletWide(const Applet& applet)
{
    std::vector<ParameterDescription> descriptions;
    std::ranges::copy_if(applet.parameters, std::back_inserter(descriptions),
                         [](const auto& description) { return !description.perDma; });
    return descriptions;
}

std::vector<ParameterDescription> ofChannel(const Applet& applet, const DmaDescription& dma)
{
    auto descriptions = channelParameters(dma);
    std::ranges::copy_if(applet.parameters, std::back_inserter(descriptions), &ParameterDescription::perDma);
    return descriptions;
}

std::string channelName(unsigned int dma)
{
    return "DMA channel " + std::to_string(dma);
}

// Throws for a position that fails by description or does not exist.
int elementOf(const std::vector<int>& elements, int position, const std::optional<int>& failing)
{
    if (position < 0 || position >= static_cast<int>(elements.size()))
        throw Failure(FG_INVALID_PARAMETER, "There is nothing at position " + std::to_string(position));
    if (failing == position)
        throw Failure(FG_INVALID_PARAMETER,
                      "The applet does not answer for position " + std::to_string(position));
    return elements[static_cast<std::size_t>(position)];
}

int countOf(const std::vector<int>& elements, bool fails)
{
    if (fails)
        throw Failure(FG_INVALID_PARAMETER, "The applet does not answer how many there are");
    return static_cast<int>(elements.size());
}

} // namespace

Grabber::Grabber(Applet applet, std::string boardModel, std::uint32_t serial)
    : m_applet(std::move(applet)),
      m_boardModel(std::move(boardModel)),
      m_serial(serial),
      m_events(eventNames(m_applet)),
      m_appletParameters(appletWide(m_applet))
{
    for (const auto& dma : m_applet.dmas)
        m_channels.emplace(dma.index, std::make_unique<Channel>(dma, ofChannel(m_applet, dma), m_events));
    std::set<int> seen;
    const auto addDistinct = [&](const ParameterSet& set) {
        for (const auto& description : set.descriptions())
            if (seen.insert(description.id).second)
                m_distinct.push_back(&description);
    };
    for (auto& [index, channel] : m_channels) {
        addDistinct(channel->parameters);
        channel->registers = RegisterList{&channel->parameters, &m_appletParameters};
        takeUp(*channel);
    }
    addDistinct(m_appletParameters);
    m_appletRegisters = RegisterList{&m_appletParameters};
}

Grabber::~Grabber() = default;

void Grabber::close()
{
    const std::lock_guard closing(m_closing);
    for (auto& [index, channel] : m_channels)
        channel->dma.close();
    m_events.close();
    const std::lock_guard lock(m_mutex);
    m_closed = true;
    m_rings.clear();
}

void Grabber::lose()
{
    m_lost = true;
    for (auto& [index, channel] : m_channels)
        channel->dma.lose();
    m_events.lose();
}

void Grabber::requireThere() const
{
    if (m_lost)
        throw Failure(FG_DEVICE_LOST, descriptionOf(FG_DEVICE_LOST));
}

void Grabber::setBoard(unsigned int index)
{
    for (auto& [number, channel] : m_channels)
        channel->dma.setBoard(index);
}

// --- layout

bool Grabber::isLayoutQuery(int parameter)
{
    return parameter == FG_NR_OF_PROCESSES || parameter == FG_NR_OF_DMAS_OF_PROCESS ||
           parameter == FG_NR_OF_CAMS_OF_PROCESS || parameter == FG_DMA_PORT || parameter == FG_CAM_PORT;
}

int Grabber::layout(int query, unsigned int process, int value) const
{
    if (query == FG_NR_OF_PROCESSES) {
        if (m_applet.processCountFails)
            throw Failure(FG_INVALID_PARAMETER, "The applet does not answer for its number of processes");
        return static_cast<int>(m_applet.processes.size());
    }
    if (process >= m_applet.processes.size())
        throw Failure(FG_INVALID_DMA, "There is no process " + std::to_string(process));
    const auto& asked = m_applet.processes[process];
    switch (query) {
    case FG_NR_OF_DMAS_OF_PROCESS:
        return countOf(asked.dmas, asked.dmaCountFails);
    case FG_NR_OF_CAMS_OF_PROCESS:
        return countOf(asked.ports, asked.portCountFails);
    case FG_DMA_PORT:
        return elementOf(asked.dmas, value, asked.dmaPortFails);
    default:
        return elementOf(asked.ports, value, asked.camPortFails);
    }
}

// --- parameters

const Grabber::Channel& Grabber::channelOf(unsigned int dma) const
{
    const auto found = m_channels.find(static_cast<int>(dma));
    if (found == m_channels.end())
        throw Failure(FG_INVALID_DMA, "The applet has no " + channelName(dma));
    return *found->second;
}

Grabber::Channel& Grabber::channelOf(unsigned int dma)
{
    return const_cast<Channel&>(std::as_const(*this).channelOf(dma));
}

const ParameterSet& Grabber::setOf(int parameter, unsigned int dma) const
{
    if (m_appletParameters.find(parameter) != nullptr)
        return m_appletParameters;
    const bool known =
        std::ranges::find(m_distinct, parameter, &ParameterDescription::id) != m_distinct.end();
    if (!known && !m_channels.empty())
        throw Failure(FG_INVALID_PARAMETER, "The applet has no parameter " + std::to_string(parameter));
    const auto& set = channelOf(dma).parameters;
    if (set.find(parameter) == nullptr)
        throw Failure(FG_INVALID_PARAMETER,
                      channelName(dma) + " has no parameter " + std::to_string(parameter));
    return set;
}

ParameterSet& Grabber::setOf(int parameter, unsigned int dma)
{
    return const_cast<ParameterSet&>(std::as_const(*this).setOf(parameter, dma));
}

ParameterValue Grabber::get(int parameter, unsigned int dma) const
{
    const std::lock_guard lock(m_mutex);
    return setOf(parameter, dma).get(parameter);
}

const ParameterDescription& Grabber::description(int parameter, unsigned int dma) const
{
    return *setOf(parameter, dma).find(parameter);
}

void Grabber::requireSettable(int parameter, unsigned int dma, const ParameterValue& value) const
{
    const auto& set = setOf(parameter, dma);
    const auto checked = set.checked(*set.find(parameter), value);
    const bool size = parameter == FG_WIDTH || parameter == FG_HEIGHT || parameter == FG_PIXELFORMAT;
    if (size && checked != set.get(parameter) && channelOf(dma).dma.acquiring())
        throw Failure(FG_ACQUISITION_RUNNING,
                      "The size and format of images of " + channelName(dma) + " are in use");
}

void Grabber::set(int parameter, unsigned int dma, const ParameterValue& value)
{
    bool perDma = false;
    {
        const std::lock_guard lock(m_mutex);
        requireSettable(parameter, dma, value);
        auto& set = setOf(parameter, dma);
        const auto& description = *set.find(parameter);
        perDma = description.perDma;
        set.set(description, value);
    }
    for (auto& [index, channel] : m_channels)
        if (!perDma || index == static_cast<int>(dma))
            takeUp(*channel);
}

void Grabber::takeUp(Channel& channel)
{
    const std::lock_guard inOrder(channel.settings); // so that the latest values are applied last
    std::unique_lock lock(m_mutex);
    const auto processing = processingOf(channel);
    const auto trigger = triggerOf(channel);
    const auto& parameters = channel.parameters;
    const bool generator = parameters.find(FG_GEN_ENABLE) != nullptr;
    const bool on = generator && parameters.integer(FG_GEN_ENABLE) != 0;
    const auto pattern = generator && parameters.integer(FG_GEN_PATTERN) == FG_GEN_PATTERN_CHECKERBOARD
                             ? Pattern::Checkerboard
                             : Pattern::Ramp;
    const double rate = generator ? std::get<double>(parameters.get(FG_GEN_FRAMERATE)) : 0;
    lock.unlock();
    channel.dma.setProcessing(processing);
    channel.dma.setTrigger(trigger);
    channel.dma.setGenerator(on, pattern, rate);
}

// The parameters of the applet as a whole, and the channel's own.
template <class Use>
void Grabber::forEachEffect(const Channel& channel, Use use) const
{
    for (const auto* set : {&m_appletParameters, &channel.parameters})
        for (const auto& description : set->descriptions())
            if (description.effect != Effect::None)
                use(description.effect, numberOf(set->get(description.id)));
}

Processing Grabber::processingOf(const Channel& channel) const
{
    Processing processing{.format = pixelFormat(channel.parameters.integer(FG_PIXELFORMAT)),
                          .width = channel.parameters.integer(FG_WIDTH),
                          .height = channel.parameters.integer(FG_HEIGHT),
                          .origin = {}};
    const auto originOf = [&]() -> PixelPosition& {
        if (!processing.origin)
            processing.origin = PixelPosition{0, 0};
        return *processing.origin;
    };
    forEachEffect(channel, [&](Effect effect, double value) {
        switch (effect) {
        case Effect::Gain:
            processing.gain *= value;
            return;
        case Effect::Offset:
            processing.offset += value;
            return;
        case Effect::Gamma:
            processing.gamma *= value;
            return;
        case Effect::FlipHorizontal:
            processing.flipX = value != 0;
            return;
        case Effect::FlipVertical:
            processing.flipY = value != 0;
            return;
        case Effect::OriginX:
            originOf().x = static_cast<int>(value);
            return;
        case Effect::OriginY:
            originOf().y = static_cast<int>(value);
            return;
        default:
            return;
        }
    });
    return processing;
}

Trigger Grabber::triggerOf(const Channel& channel) const
{
    Trigger trigger;
    forEachEffect(channel, [&](Effect effect, double value) {
        if (effect == Effect::TriggerMode)
            trigger.mode = static_cast<TriggerMode>(static_cast<int>(value));
        else if (effect == Effect::TriggerRate)
            trigger.rate = value;
    });
    return trigger;
}

FgRegisterInfo* Grabber::registerInfo(unsigned int dma)
{
    if (m_channels.contains(static_cast<int>(dma)))
        return &channelOf(dma).registers.info;
    // Index 0 is always valid: clients use it for the parameters of an applet without channel 0.
    if (dma == 0)
        return &m_appletRegisters.info;
    throw Failure(FG_INVALID_DMA, "The applet has no " + channelName(dma));
}

std::vector<Setting> Grabber::settings() const
{
    const std::lock_guard lock(m_mutex);
    std::vector<Setting> all;
    const auto add = [&](std::optional<int> dma, const ParameterSet& set) {
        for (const auto& description : set.descriptions())
            if (description.writable)
                all.push_back({dma, description.id, set.get(description.id)});
    };
    add({}, m_appletParameters);
    for (const auto& [index, channel] : m_channels)
        add(index, channel->parameters);
    return all;
}

const std::string& Grabber::nameOf(const Setting& setting) const
{
    return description(setting.parameter, static_cast<unsigned int>(setting.dma.value_or(0))).name;
}

const ParameterDescription* Grabber::findForSetting(std::optional<int> dma, const std::string& name) const
{
    if (!dma)
        return m_appletParameters.find(name);
    const auto channel = m_channels.find(*dma);
    return channel == m_channels.end() ? nullptr : channel->second->parameters.find(name);
}

void Grabber::check(const std::vector<Setting>& settings, std::size_t& failed) const
{
    const std::lock_guard lock(m_mutex);
    for (failed = 0; failed < settings.size(); ++failed) {
        const auto& setting = settings[failed];
        requireSettable(setting.parameter, static_cast<unsigned int>(setting.dma.value_or(0)), setting.value);
    }
}

void Grabber::apply(const std::vector<Setting>& settings)
{
    for (const auto& setting : settings)
        set(setting.parameter, static_cast<unsigned int>(setting.dma.value_or(0)), setting.value);
}

// --- images

DmaChannel& Grabber::channel(unsigned int dma)
{
    return channelOf(dma).dma;
}

void Grabber::acquire(unsigned int dma, FgFrameIndex frames, FgBufferRing* given)
{
    if (frames != FG_GRAB_INFINITE && frames < 1)
        throw Failure(FG_INVALID_ARGUMENT, "Acquire 1 image or more, or images without end");
    auto& channel = channelOf(dma);
    auto* wanted = given == nullptr ? ownRing(dma) : given;
    if (wanted == nullptr)
        throw Failure(FG_INVALID_MEMORY, channelName(dma) + " has no buffers");
    auto buffers = ring(wanted);
    std::unique_lock lock(m_mutex);
    const auto processing = processingOf(channel);
    lock.unlock();
    channel.dma.acquire(std::move(buffers), frames, processing);
    takeUp(channel); // a value may have been written in between
}

void Grabber::sendSoftwareTrigger(unsigned int port, std::uint64_t count)
{
    bool found = false;
    for (auto& [index, channel] : m_channels) {
        if (channel->dma.description().port != static_cast<int>(port))
            continue;
        found = true;
        channel->dma.sendSoftwareTrigger(count);
    }
    if (!found)
        throw Failure(FG_INVALID_ARGUMENT,
                      "No DMA channel delivers the camera of port " + std::to_string(port));
}

void Grabber::setCameraStream(unsigned int port, const std::shared_ptr<const Stream>& stream, bool midway)
{
    for (auto& [index, channel] : m_channels)
        if (channel->dma.description().port == static_cast<int>(port))
            channel->dma.setCameraStream(stream, midway);
}

void Grabber::setLooseLink(unsigned int port, const std::shared_ptr<const LooseLink>& link)
{
    for (auto& [index, channel] : m_channels)
        if (channel->dma.description().port == static_cast<int>(port))
            channel->dma.setLooseLink(link);
}

FgBufferRing* Grabber::addRing(std::shared_ptr<BufferRing> ring)
{
    auto* key = reinterpret_cast<FgBufferRing*>(ring.get());
    const std::lock_guard lock(m_mutex);
    if (m_closed)
        throw Failure(FG_INVALID_HANDLE, "The board has been freed");
    m_rings.emplace(key, std::move(ring));
    return key;
}

std::shared_ptr<BufferRing> Grabber::ring(FgBufferRing* ring) const
{
    const std::lock_guard lock(m_mutex);
    const auto found = m_rings.find(ring);
    if (found == m_rings.end())
        throw Failure(FG_INVALID_MEMORY, "The board has no such ring");
    return found->second;
}

void Grabber::freeRing(FgBufferRing* ring)
{
    const std::lock_guard lock(m_mutex);
    const auto found = m_rings.find(ring);
    if (found == m_rings.end())
        throw Failure(FG_INVALID_MEMORY, "The board has no such ring");
    if (found->second->claimed())
        throw Failure(FG_ACQUISITION_RUNNING, "Images are being acquired into the ring");
    for (auto& [index, channel] : m_channels) {
        if (channel->ownRing == ring)
            channel->ownRing = nullptr;
        channel->dma.forgetRing(*found->second);
    }
    m_rings.erase(found);
}

FgBufferRing* Grabber::ownRing(unsigned int dma) const
{
    const std::lock_guard lock(m_mutex);
    return channelOf(dma).ownRing;
}

void Grabber::setOwnRing(unsigned int dma, FgBufferRing* ring)
{
    const std::lock_guard lock(m_mutex);
    channelOf(dma).ownRing = ring;
}

} // namespace simulation
