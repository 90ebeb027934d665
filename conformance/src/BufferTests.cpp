// SPDX-License-Identifier: MIT
// Tests of a group's buffers: their number, their size, and their share of the DMA memory.

#include "ChannelBench.h"
#include "Tests.h"

namespace ovra::conformance {

namespace {

/// Bytes of one buffer of the channel.
long long bufferBytes(const ChannelBench& bench)
{
    const auto group = bench.makeGroup(1);
    const long long bytes = MemoryAccount::s_bytes;
    require(bytes > 0, "a group accounts for its buffers when it is made");
    group->releaseBuffers();
    requireEqual(MemoryAccount::s_bytes.load(), 0, "bytes in use after releaseBuffers");
    return bytes;
}

void groupAccountsForItsBuffers(HostUnderTest& host)
{
    const ChannelBench bench(host);
    const long long one = bufferBytes(bench);
    const auto group = bench.makeGroup(4);
    requireEqual(MemoryAccount::s_bytes.load(), 4 * one, "bytes in use of four buffers");
    group->setBufferCount(7);
    requireEqual(MemoryAccount::s_bytes.load(), 7 * one, "bytes in use of seven buffers");
    group->setBufferCount(2);
    requireEqual(MemoryAccount::s_bytes.load(), 2 * one, "bytes in use of two buffers");
    group->releaseBuffers();
    requireEqual(MemoryAccount::s_bytes.load(), 0, "bytes in use after releaseBuffers");
}

void groupKeepsTheMemoryLimit(HostUnderTest& host)
{
    const ChannelBench bench(host);
    const long long one = bufferBytes(bench);
    MemoryAccount::s_limitBytes = static_cast<unsigned long long>(4 * one);
    const auto group = bench.makeGroup(16);
    requireEqual(group->bufferCount(), 4U, "buffers that a limit of four grants");
    group->setBufferCount(100);
    requireEqual(group->bufferCount(), 4U, "buffers that a limit of four grants to a later request");
    requireEqual(group->requestedBufferCount(), 100U, "buffers that were asked for");
}

void groupHasABufferWithoutMemoryToo(HostUnderTest& host)
{
    const ChannelBench bench(host);
    const long long one = bufferBytes(bench);
    MemoryAccount::s_limitBytes = 1;
    const auto group = bench.makeGroup(16);
    requireEqual(group->bufferCount(), 1U, "buffers that the least limit grants");
    requireEqual(MemoryAccount::s_bytes.load(), one, "bytes in use");
}

void groupGrantsTheBuffersAskedFor(HostUnderTest& host)
{
    const ChannelBench bench(host);
    const auto group = bench.makeGroup(5);
    requireEqual(group->bufferCount(), 5U, "buffers of a new group");
    group->setBufferCount(9);
    requireEqual(group->requestedBufferCount(), 9U, "buffers that were asked for");
    requireEqual(group->bufferCount(), 9U, "buffers that there are");
}

void bufferCountBelowOneChangesNothing(HostUnderTest& host)
{
    const ChannelBench bench(host);
    const auto group = bench.makeGroup(5);
    for (const int count : {0, -1}) {
        try {
            group->setBufferCount(count);
        } catch (const std::exception&) {
            // An exception is allowed, too.
        }
        requireEqual(group->bufferCount(), 5U, "buffers after a request of " + std::to_string(count));
    }
}

void acquisitionGoesOnAfterABufferCountChange(HostUnderTest& host)
{
    ChannelBench bench(host);
    bench.startImages();
    bench.awaitImages("after startGrabbing");
    for (const int count : {12, 3}) {
        bench.group->setBufferCount(count);
        bench.awaitImages("after the number of buffers changed");
    }
}

void releaseMayBeRepeated(HostUnderTest& host)
{
    ChannelBench bench(host);
    bench.startImages();
    bench.awaitImages("after startGrabbing");
    bench.group->releaseBuffers();
    bench.group->releaseBuffers();
    requireEqual(MemoryAccount::s_bytes.load(), 0, "bytes in use after releaseBuffers");
    bench.requireNoImages("after releaseBuffers");
    bench.group->setBufferCount(4); // a front end's request may come after an unload
    requireEqual(MemoryAccount::s_bytes.load(), 0, "bytes in use after a request that came too late");
}

void groupWithoutOwnersGivesItsMemoryBack(HostUnderTest& host)
{
    const ChannelBench bench(host);
    bench.makeGroup(4); // destroyed at once
    requireEqual(MemoryAccount::s_bytes.load(), 0, "bytes in use after the group is gone");
}

void geometryNoticePausesTheAcquisition(HostUnderTest& host)
{
    ChannelBench bench(host);
    bench.startImages();
    bench.awaitImages("after startGrabbing");
    bench.group->notifyGeometryMayHaveChangedSlot(0, 0, true);
    stays(
        host, [] { return true; }, ""); // one image may still be shown
    bench.requireNoImages("between the two notices");
    bench.group->notifyGeometryMayHaveChangedSlot(0, 0, false);
    bench.awaitImages("after the second notice");
}

void geometryNoticeLeavesAStoppedSceneAlone(HostUnderTest& host)
{
    ChannelBench bench(host);
    bench.prepareScene();
    bench.group->notifyGeometryMayHaveChangedSlot(0, 0, true);
    bench.group->notifyGeometryMayHaveChangedSlot(0, 0, false);
    bench.requireNoImages("of a scene that was not started");
    bench.scene->startGrabbing(WITHOUT_END);
    bench.awaitImages("after startGrabbing");
}

void buffersFollowTheGeometry(HostUnderTest& host)
{
    ChannelBench bench(host);
    bench.startImages();
    bench.awaitImages("after startGrabbing");
    const long long before = MemoryAccount::s_bytes;
    const int width = bench.scene->width() / 2, height = bench.scene->height() / 2;
    bench.group->setWidth(width);
    bench.group->setHeight(height);
    bench.group->notifyGeometryMayHaveChangedSlot(0, 0, true);
    bench.group->notifyGeometryMayHaveChangedSlot(0, 0, false);
    requireEqual(bench.scene->width(), width, "width of the scene");
    requireEqual(bench.scene->height(), height, "height of the scene");
    require(MemoryAccount::s_bytes < before, "smaller buffers take less memory");
    bench.awaitImages("of another size");
}

} // namespace

std::vector<Test> bufferTests()
{
    return {
        {"group-grants-the-buffers-asked-for",
         "With enough memory a group has the buffers that were asked for", groupGrantsTheBuffersAskedFor},
        {"group-accounts-for-its-buffers",
         "A group reports each change of its bytes through the function that it was given",
         groupAccountsForItsBuffers},
        {"group-keeps-the-memory-limit", "A group grants as many buffers as the limit allows",
         groupKeepsTheMemoryLimit},
        {"group-has-a-buffer-at-least", "A group grants one buffer at least",
         groupHasABufferWithoutMemoryToo},
        {"buffer-count-below-one-changes-nothing", "A request of less than one buffer changes nothing",
         bufferCountBelowOneChangesNothing},
        {"acquisition-survives-a-buffer-count-change",
         "An acquisition goes on when the number of buffers changes",
         acquisitionGoesOnAfterABufferCountChange},
        {"release-may-be-repeated",
         "releaseBuffers ends the acquisition, releases all memory and may be repeated",
         releaseMayBeRepeated},
        {"group-without-owners-gives-memory-back", "A group that is destroyed releases its memory",
         groupWithoutOwnersGivesItsMemoryBack},
        {"geometry-notice-pauses-the-acquisition",
         "An acquisition pauses at the first geometry notice and goes on at the second",
         geometryNoticePausesTheAcquisition},
        {"geometry-notice-starts-nothing", "Geometry notices do not start a scene that does not grab",
         geometryNoticeLeavesAStoppedSceneAlone},
        {"buffers-follow-the-geometry",
         "After a pair of geometry notices, buffers and scene have the new size", buffersFollowTheGeometry},
    };
}

} // namespace ovra::conformance
