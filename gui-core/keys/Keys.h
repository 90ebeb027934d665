/// \file
/// Names that the library, the host and front ends agree on, so that none of them is written twice.
///
///   keys::SOURCE, keys::VIEWS, keys::CONNECTOR   where boards are found, what is injected into Gui
///   keys::IntegerKey and its constants           configuration entries with their defaults
///   keys::parameters                             parameters of an applet that the library or the host looks
///   at itself
///
/// Configuration entries are the host's: it keeps them, in a file or not, and gives the default where there
/// is none.
///
/// \code
/// using ovra::core::HarloApplication;
/// namespace keys = ovra::gui::keys;
/// const auto buffers = HarloApplication::getConfigIntEntry(keys::DEFAULT_BUFFERS.name,
/// keys::DEFAULT_BUFFERS.defaultValue); HarloApplication::setConfigEntry(keys::DEFAULT_BUFFERS.name, 32); //
/// of channels that are loaded from now on \endcode
///
/// Any thread. Names and defaults are part of the interface: docs/compatibility.md says when they may change.
#pragma once

namespace ovra::gui::keys {

/// Name of the board source below HlEnvironmentRootNode::getSourcesEntry that holds the boards.
inline constexpr const char* SOURCE = "ovra";

/// Gui::injectDependency: a boost::shared_ptr<Views>, the front end.
inline constexpr const char* VIEWS = "views";
/// Gui::injectDependency: an object of the host's, which is passed on to the environment unread.
inline constexpr const char* CONNECTOR = "connector";

/// A configuration entry that holds an integer.
struct IntegerKey
{
    const char* name;
    long long defaultValue;
};

/// Limit of the memory of all image buffers, in MiB, 0 or more; read at each Gui::getTotalDmaMemory. A
/// channel that would exceed it gets fewer buffers, but at least one.
inline constexpr IntegerKey DMA_MEMORY_LIMIT_MIB{"gui.preferences.max_dma_buffersize", 1024};

/// Longest wait for an image, in seconds, from 1 on; read for each DMA channel when its applet is loaded.
inline constexpr IntegerKey DEFAULT_TIMEOUT_SECONDS{"gui.preferences.acq.default.timeout", 10};

/// Number of image buffers of a channel, from 1 on; read for each DMA channel when its applet is loaded.
inline constexpr IntegerKey DEFAULT_BUFFERS{"gui.preferences.acq.default.buffers", 16};

/// 0: image sizes of cameras and DMA channels are not compared before a start; any other number: they are.
/// Read at each start.
inline constexpr IntegerKey COMPARE_IMAGE_SIZES{"gui.preferences.sync_dma_and_camera_dimensions", 1};

/// Any number but 0: the user is not asked about image sizes, the answer is ANSWER. Set to 1 by the library
/// when Views::showChoiceDialog sets its `remember`; never set back by it.
inline constexpr IntegerKey ANSWER_REMEMBERED{"gui.mainwindow.acquisition.sync.remembered", 0};

/// The remembered answer: 0 the camera's size goes to the channel, 1 the channel's to the camera, any other:
/// nothing.
inline constexpr IntegerKey ANSWER{"gui.mainwindow.acquisition.sync.remembered.value", 0};

/// Names for FgLibModel::setParameter. An applet has others, too; FgLibModel::parameters lists them.
namespace parameters {

/// Width of a channel's image, integer, pixels.
inline constexpr const char* WIDTH = "FG_WIDTH";
/// Height of a channel's image, integer, lines.
inline constexpr const char* HEIGHT = "FG_HEIGHT";
/// Whether a camera port's images come from the applet's generator (1) or from the camera (0). An applet that
/// lacks the parameter has no generator.
inline constexpr const char* GENERATOR_SWITCH = "FG_GEN_ENABLE";

} // namespace parameters

} // namespace ovra::gui::keys
