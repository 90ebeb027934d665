// SPDX-License-Identifier: MIT
/// \file
/// Grabber: the object behind a board handle: an applet on a board, with its parameters, DMA channels, rings
/// and events.
#pragma once

#include "descriptions/Applet.h"
#include "hardware/BufferRing.h"
#include "hardware/DmaChannel.h"
#include "hardware/EventHub.h"
#include "hardware/ParameterSet.h"

#include "fglib5/Fglib5Types.h"

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace simulation {

/// One value of a configuration file.
struct Setting
{
    std::optional<int> dma; ///< none: a parameter of the applet as a whole
    int parameter;
    ParameterValue value;
};

class Grabber
{
public:
    Grabber(Applet applet, std::string boardModel, std::uint32_t serial);
    ~Grabber();
    Grabber(const Grabber&) = delete;
    Grabber& operator=(const Grabber&) = delete;

    Fg_Struct* handle() { return reinterpret_cast<Fg_Struct*>(this); }
    const Applet& applet() const { return m_applet; }
    const std::string& boardModel() const { return m_boardModel; }
    std::uint32_t serial() const { return m_serial; }
    EventHub& events() { return m_events; }

    /// Stops all channels, wakes all waiting threads and frees the rings. Threads that are just returning
    /// from the object may keep it alive a little longer.
    void close();
    /// The board was unplugged: ends its channels, stops its events, wakes all waiting threads. Does not
    /// wait, so any thread may call it.
    void lose();
    /// Throws FG_DEVICE_LOST.
    void requireThere() const;
    /// Index of the board, for ImageWatch.
    void setBoard(unsigned int index);

    // --- layout: number of processes, and the channels and ports of each
    /// \p value is the position, for queries that need one.
    int layout(int query, unsigned int process, int value) const;
    static bool isLayoutQuery(int parameter);

    // --- parameters; dma is a global index, ignored for a parameter of the whole applet
    ParameterValue get(int parameter, unsigned int dma) const;
    void set(int parameter, unsigned int dma, const ParameterValue& value);
    const ParameterDescription& description(int parameter, unsigned int dma) const;
    /// Each parameter that exists, once.
    const std::vector<const ParameterDescription*>& distinct() const { return m_distinct; }
    /// Null if the applet has channels but not this one.
    FgRegisterInfo* registerInfo(unsigned int dma);

    /// All values that can be written, in a fixed order.
    std::vector<Setting> settings() const;
    const std::string& nameOf(const Setting& setting) const;
    const ParameterDescription* findForSetting(std::optional<int> dma, const std::string& name) const;
    /// Throws for the first value that cannot be applied now, and sets \p failed to its position. Changes
    /// nothing.
    void check(const std::vector<Setting>& settings, std::size_t& failed) const;
    void apply(const std::vector<Setting>& settings);

    // --- images
    DmaChannel& channel(unsigned int dma);
    /// Acquires into \p ring; null: into the channel's own ring.
    void acquire(unsigned int dma, FgFrameIndex frames, FgBufferRing* ring);
    /// For the channels that deliver the port's camera. Throws FG_INVALID_ARGUMENT if there is none.
    void sendSoftwareTrigger(unsigned int port, std::uint64_t count);
    /// \p midway as in DmaChannel.
    void setCameraStream(unsigned int port, const std::shared_ptr<const Stream>& stream, bool midway = false);
    /// Null: the cable is not loose.
    void setLooseLink(unsigned int port, const std::shared_ptr<const LooseLink>& link);

    FgBufferRing* addRing(std::shared_ptr<BufferRing> ring);
    std::shared_ptr<BufferRing> ring(FgBufferRing* ring) const;
    void freeRing(FgBufferRing* ring);
    /// The ring that Fg_AllocMem gave the channel; null if it has none.
    FgBufferRing* ownRing(unsigned int dma) const;
    void setOwnRing(unsigned int dma, FgBufferRing* ring);

private:
    struct Channel
    {
        Channel(const DmaDescription& dma, std::vector<ParameterDescription> descriptions, EventHub& events)
            : parameters(std::move(descriptions)),
              dma(dma, events)
        {}

        ParameterSet parameters;
        std::mutex settings; ///< serialises changes of the channel; taken before the grabber's lock
        DmaChannel dma;
        FgBufferRing* ownRing = nullptr;
        RegisterList registers;
    };

    const Channel& channelOf(unsigned int dma) const;
    Channel& channelOf(unsigned int dma);
    const ParameterSet& setOf(int parameter, unsigned int dma) const;
    ParameterSet& setOf(int parameter, unsigned int dma);
    void requireSettable(int parameter, unsigned int dma, const ParameterValue& value) const;
    void takeUp(Channel& channel);
    template <class Use>
    void forEachEffect(const Channel& channel, Use use) const;
    Processing processingOf(const Channel& channel) const;
    Trigger triggerOf(const Channel& channel) const;

    const Applet m_applet;
    const std::string m_boardModel;
    const std::uint32_t m_serial;
    EventHub m_events;

    std::mutex m_closing;
    /// Guards values and rings. Lock order: this one before a channel's.
    mutable std::mutex m_mutex;
    ParameterSet m_appletParameters;
    std::map<int, std::unique_ptr<Channel>> m_channels;
    std::vector<const ParameterDescription*> m_distinct;
    RegisterList m_appletRegisters;
    std::map<FgBufferRing*, std::shared_ptr<BufferRing>> m_rings;
    bool m_closed = false;
    std::atomic<bool> m_lost{false};
};

} // namespace simulation
