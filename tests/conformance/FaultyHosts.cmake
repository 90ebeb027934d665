# Hosts with one fault each.

# --- commands -------------------------------------------------------------------------------------

set(processor LIBRARY ovra-core SOURCE src/Processor.cpp)

faulty_host(post-phase-on-the-worker ${processor}
    REPLACE "m_queue.post([this, running] { finishIfRunning(running); });"
    BY "finishIfRunning(running);"
    CAUGHT_BY phases-run-on-their-threads commands-of-a-worker-precede-its-post-phase
    MAY_FOLLOW synchronous-command-runs-within-a-phase post-phase-follows-a-failed-worker-phase
        termination-waits-for-the-running-phase
        termination-completes-what-began no-phase-runs-after-termination)

faulty_host(running-command-is-taken-again ${processor}
    REPLACE "    if (!open(record))"
    BY "    if (!open(record) && !onGuiThread())"
    CAUGHT_BY running-command-is-refused)

faulty_host(unload-within-a-load-is-queued ${processor}
    REPLACE "(m_depth == 0 || command->type() != Command::Asynchronous)"
    BY "m_depth == 0"
    CAUGHT_BY synchronous-command-runs-within-a-phase)

faulty_host(events-are-queued ${processor}
    REPLACE "(m_depth == 0 || command->type() != Command::Asynchronous)"
    BY "command->type() != Command::Event"
    CAUGHT_BY synchronous-command-runs-at-once synchronous-command-runs-within-a-phase
        gui-thread-is-free-during-the-worker)

faulty_host(worker-waits-for-the-gui-thread ${processor}
    REPLACE "        m_queue.post([this, command] { submit(command); });"
    BY "        std::atomic<bool> done{false};
        m_queue.post([this, &done, command] { submit(command); done = true; });
        while (!done && !onGuiThread() && !m_terminated) std::this_thread::yield();
        if (onGuiThread()) throw std::logic_error(\"queued\");"
    CAUGHT_BY worker-does-not-wait
    MAY_FOLLOW no-phase-runs-after-termination)

faulty_host(commands-run-in-any-order LIBRARY ovra-core SOURCE src/WorkQueue.cpp
    REPLACE "m_work.push_back(std::move(work));"
    BY "m_work.push_front(std::move(work));"
    CAUGHT_BY commands-of-a-worker-run-in-order
    MAY_FOLLOW commands-of-a-worker-precede-its-post-phase)

faulty_host(failed-sync-phase-is-forgotten ${processor}
    REPLACE "if (!succeeded || m_terminating)"
    BY "if (m_terminating)"
    CAUGHT_BY failed-sync-phase-skips-the-worker)

faulty_host(failed-sync-phase-ends-the-command ${processor}
    REPLACE "    if (!succeeded || m_terminating)"
    BY "    if (!succeeded) { m_running.pop_back(); close(*command); return; }\n    if (m_terminating)"
    CAUGHT_BY post-phase-follows-a-failed-sync-phase)

faulty_host(failed-worker-phase-ends-the-command ${processor}
    REPLACE "            running->asyncFailure = std::current_exception();"
    BY "            lock.lock(); m_workerBusy = false; m_workerChanged.notify_all(); continue;"
    CAUGHT_BY post-phase-follows-a-failed-worker-phase)

faulty_host(odd-exception-ends-the-processor ${processor}
    REPLACE "(command.*phase)();\n    } catch (...) {"
    BY "(command.*phase)();\n    } catch (const std::exception&) {"
    CAUGHT_BY odd-exception-does-not-end-the-processor)

faulty_host(commands-run-after-termination ${processor}
    REPLACE "finish(m_running.begin());\n    m_terminated = true;"
    BY "finish(m_running.begin());"
    CAUGHT_BY no-phase-runs-after-termination)

faulty_host(termination-forgets-what-began ${processor}
    REPLACE "    while (!m_running.empty())\n        finish(m_running.begin());"
    BY ""
    CAUGHT_BY termination-completes-what-began
    MAY_FOLLOW no-phase-runs-after-termination)

# --- model and boards -------------------------------------------------------------------------------

set(board LIBRARY ovra-lib-environment SOURCE src/HlEnvironmentBoardNode.cpp)

faulty_host(first-child-stays ${board}
    REPLACE "    m_dmas->add(index, dma);"
    BY "    if (!m_dmas->_children().find(index)) m_dmas->add(index, dma);"
    CAUGHT_BY child-of-an-equal-index-is-replaced)

faulty_host(walk-ends-with-its-nodes ${board} INCLUDES ovra-core/GenericModel.h
    REPLACE "oldSnapshot.swap(m_snapshot);"
    BY "oldSnapshot.swap(m_snapshot);
            if (oldSnapshot) for (const auto& node : *oldSnapshot) const_cast<boost::shared_ptr<Node>&>(node).reset();"
    CAUGHT_BY walk-survives-changes
    MAY_FOLLOW model-may-be-read-while-it-changes)

faulty_host(links-keep-their-nodes LIBRARY ovra-lib-environment SOURCE src/HlEnvironmentAppletNodes.cpp
    REPLACE "    m_dmas.add(dma);"
    BY "    m_dmas.add(dma); static std::vector<boost::shared_ptr<HlEnvironmentDmaNode>> kept; kept.push_back(dma.lock());"
    CAUGHT_BY cross-links-are-weak)

faulty_host(resources-in-another-order LIBRARY ovra-lib-environment SOURCE src/HlEnvironmentGlobalResourceModel.cpp
    REPLACE "    return m_resources.iterate();"
    BY "    auto turned = boost::make_shared<GenericModelNodeChildrenIterator<HlEnvironmentGlobalResourceNode>::Snapshot>();
    for (const auto each = m_resources.iterate(); each->hasNext(); each->advance()) turned->insert(turned->begin(), each->current());
    return boost::make_shared<GenericModelNodeChildrenIterator<HlEnvironmentGlobalResourceNode>>(turned);"
    CAUGHT_BY resources-are-walked-in-key-order)

faulty_host(every-handle-is-an-update ${board}
    REPLACE "\"HlEnvironmentBoardNode::beginHandleChange\", \"serial=\", Hex{m_serial});\n    beginChange();"
    BY "\"HlEnvironmentBoardNode::beginHandleChange\", \"serial=\", Hex{m_serial});"
    CAUGHT_BY handle-change-is-one-update)

faulty_host(no-physical-ports ${board}
    REPLACE "    if (after)\n        createPhysicalPorts();"
    BY ""
    CAUGHT_BY handle-appears-with-physical-ports physical-ports-carry-their-cameras physical-ports-come-anew
    MAY_FOLLOW cameras-are-controllable)

faulty_host(physical-ports-once-only ${board}
    REPLACE "    if (after)\n        createPhysicalPorts();"
    BY "    static bool made = false; if (after && !std::exchange(made, true)) createPhysicalPorts();"
    CAUGHT_BY physical-ports-come-anew)

# --- scenes and groups ---------------------------------------------------------------------------------

set(scene LIBRARY ovra-lib-display SOURCE src/DisplayScene.cpp)
set(group LIBRARY ovra-lib-display-fglib SOURCE src/FglibFrameBufferGroup.cpp)
set(buffers LIBRARY ovra-lib-display-fglib SOURCE src/ImageBuffers.cpp)

faulty_host(stop-does-not-wait ${scene}
    REPLACE "    const Joined joined{grabber};"
    BY "    grabber.detach();"
    CAUGHT_BY nothing-is-handed-on-after-a-stop
    MAY_FOLLOW scene-may-be-driven-by-several-threads scene-is-started-anew-while-it-grabs scene-gives-up-its-group
        visualizer-taken-off-is-not-called scene-starts-again-after-a-stop stop-may-be-repeated)

faulty_host(visualizer-is-not-waited-for ${scene}
    REPLACE "    m_state->showingEnded.wait(lock, [&] { return !m_state->showing || m_state->showCount != count; });"
    BY ""
    CAUGHT_BY visualizer-taken-off-is-not-called)

faulty_host(memory-is-not-given-back ${buffers}
    REPLACE "        m_budget.update(-bytes());"
    BY ""
    CAUGHT_BY group-accounts-for-its-buffers group-without-owners-gives-memory-back release-may-be-repeated
    MAY_FOLLOW group-keeps-the-memory-limit group-has-a-buffer-at-least buffers-follow-the-geometry)

faulty_host(memory-limit-is-ignored ${buffers}
    REPLACE "std::max(1ULL, std::min<unsigned long long>(wanted, fitting))"
    BY "wanted"
    CAUGHT_BY group-keeps-the-memory-limit group-has-a-buffer-at-least)

faulty_host(buffer-count-ends-the-acquisition ${group}
    REPLACE "    if (mine)\n        m_state->unpause();"
    BY "    m_state->resume = false;\n    if (mine)\n        m_state->unpause();"
    CAUGHT_BY acquisition-survives-a-buffer-count-change)

faulty_host(geometry-notice-does-not-pause ${group}
    REPLACE "    m_state->pause();\n    if (!begin)"
    BY "    if (begin) return;\n    m_state->pause();\n    if (!begin)"
    CAUGHT_BY geometry-notice-pauses-the-acquisition)

faulty_host(geometry-is-not-taken-up ${group}
    REPLACE "    if (ring && ring->geometry() == size)"
    BY "    if (ring)"
    CAUGHT_BY buffers-follow-the-geometry)

# --- application ------------------------------------------------------------------------------------------

faulty_host(configuration-is-forgotten LIBRARY ovra-core SOURCE src/HarloApplication.cpp
    REPLACE "        application->configuration.set(key, value);"
    BY "        (void)application;"
    CAUGHT_BY configuration-entry-is-kept)

set(log LIBRARY ovra_log SOURCE src/OvraLog.cpp)

faulty_host(log-callback-is-not-waited-for ${log}
    REPLACE "    if (next)\n        dispatch.callEnded.wait"
    BY "    if (false)\n        dispatch.callEnded.wait"
    CAUGHT_BY log-callback-is-not-running-once-taken-off)

faulty_host(first-stop-ends-the-log ${log}
    REPLACE "            --dispatch.starts;"
    BY "            dispatch.starts = 0;"
    CAUGHT_BY log-starts-are-counted)

faulty_host(first-stop-ends-the-library LIBRARY ovra-core SOURCE src/EntryPoints.cpp
    REPLACE "void OvraCoreDeinit()\n{\n    ovra::reference::libraryEnded(\"ovra-core\");"
    BY "#include \"ovra-core/CommandProcessor.h\"\n#include \"ovra-core/HarloApplication.h\"\nvoid OvraCoreDeinit()\n{
    while (ovra::reference::libraryUses(\"ovra-core\") > 0) ovra::reference::libraryEnded(\"ovra-core\");
    if (const auto processor = ovra::core::HarloApplication::commandprocessor()) processor->terminateAsyncCommands();"
    CAUGHT_BY library-starts-are-counted application-survives-one-of-two-stops)
