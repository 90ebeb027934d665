// SPDX-License-Identifier: MIT
/// \file
/// Names that the library, the host and front ends share.
///
///   keys::SOURCE, keys::VIEWS, keys::CONNECTOR   the board source, the dependencies of Gui
///   keys::IntegerKey and its constants           configuration entries with their defaults
///   keys::parameters                             parameters of applets that the library or the host reads
///
/// \code
/// using ovra::core::HarloApplication;
/// constexpr auto& key = ovra::gui::keys::DEFAULT_BUFFERS;
/// const auto buffers = HarloApplication::getConfigIntEntry(key.name, key.defaultValue);
/// HarloApplication::setConfigEntry(key.name, 32); // for channels that are loaded later
/// \endcode
///
/// Names and defaults are part of the interface: docs/compatibility.md says when they may change.
#pragma once

namespace ovra::gui::keys {

/// Name of the board source, for HlEnvironmentRootNode::getSourcesEntry.
inline constexpr const char* SOURCE = "ovra";

/// Gui::injectDependency: a boost::shared_ptr<Views>, the front end.
inline constexpr const char* VIEWS = "views";
/// Gui::injectDependency: an object of the host, which the library passes to the environment unread.
inline constexpr const char* CONNECTOR = "connector";

/// An integer configuration entry. The host stores it.
struct IntegerKey
{
    const char* name;
    long long defaultValue;
};

/// Limit of the memory of all image buffers, in MiB, 0 or more. A channel that would exceed it gets fewer
/// buffers, but at least one. Each Gui::getTotalDmaMemory reads it.
inline constexpr IntegerKey DMA_MEMORY_LIMIT_MIB{"gui.preferences.max_dma_buffersize", 1024};

/// Longest wait for an image, in seconds, 1 or more. Loading reads it for each DMA channel. For any other
/// number the reference host keeps the applet's timeout, with a warning in the log.
inline constexpr IntegerKey DEFAULT_TIMEOUT_SECONDS{"gui.preferences.acq.default.timeout", 10};

/// Number of image buffers of a channel, 1 or more. Loading reads it for each DMA channel.
inline constexpr IntegerKey DEFAULT_BUFFERS{"gui.preferences.acq.default.buffers", 16};

/// 0: a start does not compare image sizes of cameras and DMA channels; any other number: it does.
inline constexpr IntegerKey COMPARE_IMAGE_SIZES{"gui.preferences.sync_dma_and_camera_dimensions", 1};

/// Not 0: the library does not ask about image sizes and uses ANSWER. It sets this entry to 1 if
/// Views::showChoiceDialog sets `remember`, and never back to 0.
inline constexpr IntegerKey ANSWER_REMEMBERED{"gui.mainwindow.acquisition.sync.remembered", 0};

/// The remembered answer: 0 applies the camera's size to the channel, 1 the channel's to the camera, any
/// other number nothing.
inline constexpr IntegerKey ANSWER{"gui.mainwindow.acquisition.sync.remembered.value", 0};

/// Names for FgLibModel::setParameter. FgLibModel::parameters lists an applet's other parameters.
namespace parameters {

/// Width of a channel's image, integer, pixels.
inline constexpr const char* WIDTH = "FG_WIDTH";
/// Height of a channel's image, integer, lines.
inline constexpr const char* HEIGHT = "FG_HEIGHT";
/// Source of a channel's images: 1 the applet's generator, 0 the camera. An applet without this parameter has
/// no generator.
inline constexpr const char* GENERATOR_SWITCH = "FG_GEN_ENABLE";

} // namespace parameters

} // namespace ovra::gui::keys
