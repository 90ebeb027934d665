// SPDX-License-Identifier: MIT
/// \file
/// Types and numbers of the frame-grabber runtime's C interface.
///
///   - opaque objects:   Fg_Struct_s, FgBufferRing_s, FgRegisterInfo_s, ...
///   - callbacks:        FgApcCallback, FgEventCallback, FgNotifyCallback
///   - status codes:     FG_OK and the negative FG_... codes
///   - parameter ids:    FG_NR_OF_PROCESSES, FG_WIDTH, ...
///   - selectors:        the values that Fg_getStatus, Fg_getSystemInformation and
///                       Fg_getParameterProperty can return
///
/// The header is plain C++ without dependencies; it declares no function. The functions are
/// listed once, in Fglib5Entries.inc, and declared by Fglib5.h.
#pragma once

#include <cstddef>
#include <cstdint>

extern "C" {

/// A board with an applet. Fg_Init, Fg_InitEx and Fg_InitConfig create it, Fg_FreeGrabber frees it.
struct Fg_Struct_s;
using Fg_Struct = Fg_Struct_s;

/// A ring of image buffers. Fg_AllocMemEx creates it with memory: `bytes` is the size of the whole ring,
/// which `frames` buffers share evenly. Fg_AllocMemHead creates it without memory; Fg_AddMem then adds one
/// buffer after the other (`index` from 0). Image n lies in buffer (n - 1) modulo the number of buffers.
struct FgBufferRing_s;
using FgBufferRing = FgBufferRing_s;

/// The parameters of one DMA channel, or of a whole applet; see FgRegisterInfo below.
struct FgRegisterInfo_s;
using FgRegisterInfo = FgRegisterInfo_s;

/// Access to the shading correction of a camera port.
struct FgShadingMaster_s;
using FgShadingMaster = FgShadingMaster_s;

/// A list of applets, and one applet of it.
struct FgAppletIterator_s;
using FgAppletIterator = FgAppletIterator_s;
struct FgAppletIteratorItem_s;
using FgAppletIteratorItem = FgAppletIteratorItem_s;

/// Running number of an image since acquisition start; the first image is 1. Negative values
/// are status codes.
using FgFrameIndex = std::int64_t;

/// Called once for each image of a ring, on the runtime's acquisition thread of that DMA channel. A non-zero
/// result ends the calls. The callback must not stop its own acquisition.
using FgApcCallback = int (*)(FgFrameIndex frame, void* userData);

struct FgApcControl
{
    unsigned int version; ///< 0
    FgApcCallback callback;
    void* userData;
    unsigned int timeoutMs; ///< longest wait for an image before the calls end
    unsigned int flags;     ///< FG_APC_... bits, 0 for one call per image
};

/// Details of an event.
struct FgEventInfo
{
    unsigned int version;       ///< 0
    std::uint64_t mask;         ///< bit of the event
    std::uint64_t timestampNs;  ///< since the board was initialised
    FgFrameIndex frame;         ///< current image, 0: none
    unsigned int droppedEvents; ///< events lost before this one
};

/// Called on the runtime's event thread.
using FgEventCallback = int (*)(std::uint64_t events, void* userData, const FgEventInfo* info);

/// Called on a thread of the runtime when a board, a camera or a link is plugged or unplugged. \p
/// notification is one of FG_NOTIFY_..., \p argument the port of a camera or a link.
using FgNotifyCallback = int (*)(int board, unsigned int notification, std::uint64_t argument,
                                 void* userData);

/// Value types of the ...WithType entries and of FgRegisterDescription::type.
enum FgValueType : int
{
    FG_TYPE_INVALID = 0,
    FG_TYPE_INT32 = 1,  ///< std::int32_t
    FG_TYPE_UINT32 = 2, ///< std::uint32_t
    FG_TYPE_INT64 = 3,  ///< std::int64_t
    FG_TYPE_UINT64 = 4, ///< std::uint64_t
    FG_TYPE_DOUBLE = 5, ///< double
    FG_TYPE_STRING = 6, ///< char*, freed with Fg_freeParameterStringWithType
};

/// One parameter as Fg_getParameterInfo reports it. Texts are UTF-8 and live as long as the
/// board handle.
struct FgRegisterDescription
{
    int id;
    const char* name;
    const char* unit; ///< "": no unit
    FgValueType type;
    double minimum;
    double maximum;
    double step;
    int writable;        ///< 0 or 1
    const char* choices; ///< "8=Mono8;12=Mono12" if only these values are valid, else ""
};

/// The parameters of one DMA channel (or of the applet), in the runtime's order. Owned by the board
/// handle.
struct FgRegisterInfo_s
{
    unsigned int count;
    const FgRegisterDescription* parameters;
};

} // extern "C"

// Status codes. Negative numbers are failures; Fg_getErrorDescription describes each.
inline constexpr int FG_OK = 0;
inline constexpr int FG_INIT_ERROR = -1;             ///< the board could not be initialised
inline constexpr int FG_ALREADY_INITIALISED = -2;    ///< the board already has an applet
inline constexpr int FG_APPLET_NOT_FOUND = -3;       ///< no applet file under that path
inline constexpr int FG_INVALID_APPLET_FILE = -4;    ///< the applet file is broken
inline constexpr int FG_INVALID_ARGUMENT = -5;       ///< a required argument is missing or invalid
inline constexpr int FG_INVALID_HANDLE = -6;         ///< not a board handle
inline constexpr int FG_INVALID_BOARD_NUMBER = -7;   ///< no board with this index
inline constexpr int FG_INVALID_PARAMETER = -8;      ///< unknown parameter
inline constexpr int FG_VALUE_OUT_OF_RANGE = -9;     ///< value outside the parameter's range
inline constexpr int FG_INVALID_TYPE = -10;          ///< the value type does not match the parameter
inline constexpr int FG_NOT_WRITABLE = -11;          ///< parameter cannot be written (now)
inline constexpr int FG_INVALID_DMA = -12;           ///< no such DMA channel
inline constexpr int FG_NO_MEMORY = -13;             ///< buffers could not be allocated
inline constexpr int FG_INVALID_MEMORY = -14;        ///< no such buffer or ring
inline constexpr int FG_ACQUISITION_RUNNING = -15;   ///< not possible while acquiring
inline constexpr int FG_NOT_ACQUIRING = -16;         ///< possible only while acquiring
inline constexpr int FG_TIMEOUT = -17;               ///< no image, or no event, in time
inline constexpr int FG_FILE_ERROR = -18;            ///< a file could not be read or written
inline constexpr int FG_INVALID_CONFIGURATION = -19; ///< configuration file does not fit the applet
inline constexpr int FG_MACHINE_DESCRIPTION = -20;   ///< the hardware description is missing or broken
inline constexpr int FG_APPLET_BOARD_MISMATCH = -21; ///< applet is made for another board model
inline constexpr int FG_DEVICE_LOST = -22;           ///< the board was unplugged
inline constexpr int FG_NOT_SIMULATED = -2000; ///< the virtual installation does not implement the entry
inline constexpr int FG_RUNTIME_UNAVAILABLE = -2130; ///< runtime or entry could not be bound

// Parameter ids of the applet's layout; the dma argument is the process index.
inline constexpr int FG_NR_OF_DMAS_OF_PROCESS = 3050;
inline constexpr int FG_NR_OF_CAMS_OF_PROCESS = 3060;
inline constexpr int FG_NR_OF_PROCESSES = 3070;
inline constexpr int FG_DMA_PORT = 3080; ///< in: j-th DMA channel of the process, out: its global index
inline constexpr int FG_CAM_PORT = 3090; ///< in: j-th camera port of the process, out: its global index

// Parameter ids of one DMA channel; the dma argument is the global DMA index.
inline constexpr int FG_WIDTH = 5010;             ///< int32, pixels
inline constexpr int FG_HEIGHT = 5020;            ///< int32, lines
inline constexpr int FG_PIXELFORMAT = 5030;       ///< int32, FG_PIXELFORMAT_...
inline constexpr int FG_TIMEOUT_PARAMETER = 5040; ///< int32, seconds, named "FG_TIMEOUT"
inline constexpr int FG_GEN_ENABLE = 5100;        ///< int32, 0 = camera, 1 = generator pattern
inline constexpr int FG_GEN_FRAMERATE = 5110;     ///< double, images per second, 0 = as fast as possible
inline constexpr int FG_GEN_PATTERN = 5120;       ///< int32, FG_GEN_PATTERN_...

inline constexpr int FG_GEN_PATTERN_RAMP = 0;
inline constexpr int FG_GEN_PATTERN_CHECKERBOARD = 1;

// Values of FG_PIXELFORMAT. A line begins with a whole byte.
enum FgPixelFormat : int
{
    FG_PIXELFORMAT_MONO8 = 8,
    FG_PIXELFORMAT_MONO10 = 10, ///< to MONO16: words of 16 bits, low byte first; the low bits are used
    FG_PIXELFORMAT_MONO12 = 12,
    FG_PIXELFORMAT_MONO14 = 14,
    FG_PIXELFORMAT_MONO16 = 16,
    FG_PIXELFORMAT_RGB8 = 24,           ///< bytes red, green, blue
    FG_PIXELFORMAT_BGR8 = 25,           ///< bytes blue, green, red
    FG_PIXELFORMAT_BGRA8 = 32,          ///< bytes blue, green, red, 255
    FG_PIXELFORMAT_MONO10_PACKED = 110, ///< bit by bit, the first pixel in the lowest bits of the first byte
    FG_PIXELFORMAT_MONO12_PACKED = 112,
    FG_PIXELFORMAT_BAYER_RG8 =
        208, ///< bytes; the first line alternates red and green, the second green and blue
    FG_PIXELFORMAT_BAYER_GR8 = 218,
    FG_PIXELFORMAT_BAYER_GB8 = 228,
    FG_PIXELFORMAT_BAYER_BG8 = 238,
    FG_PIXELFORMAT_BAYER_RG12 = 212, ///< words as with MONO12
    FG_PIXELFORMAT_BAYER_GR12 = 222,
    FG_PIXELFORMAT_BAYER_GB12 = 232,
    FG_PIXELFORMAT_BAYER_BG12 = 242,
};

// Parameter ids of one image in a ring, for Fg_getParameterEx.
inline constexpr int FG_TIMESTAMP_NS =
    6010; ///< uint64, the board's time stamp since the board was initialised

// Notifications of FgNotifyCallback.
inline constexpr unsigned int FG_NOTIFY_BOARD_GONE = 1;
inline constexpr unsigned int FG_NOTIFY_BOARD_THERE = 2; ///< the board has no applet
inline constexpr unsigned int FG_NOTIFY_CAMERA_GONE = 3;
inline constexpr unsigned int FG_NOTIFY_CAMERA_THERE = 4; ///< the camera is stopped
inline constexpr unsigned int FG_NOTIFY_LINK_DOWN = 5;
inline constexpr unsigned int FG_NOTIFY_LINK_UP = 6;

// Number of images for Fg_Acquire: without end.
inline constexpr FgFrameIndex FG_GRAB_INFINITE = -1;

// How Fg_AcquireEx uses a ring.
inline constexpr int FG_ACQUIRE_STANDARD = 1; ///< overwrite the oldest image, never wait for the reader

// Selectors of Fg_getImage and Fg_getImageEx.
inline constexpr int FG_IMAGE_LAST = 1;   ///< the newest image, at once; 0 before the first
inline constexpr int FG_IMAGE_NUMBER = 2; ///< waits for image `frame`

// Selectors of Fg_getStatus and Fg_getStatusEx.
inline constexpr int FG_STATUS_GRABBED_IMAGES = 1; ///< images delivered since the start
inline constexpr int FG_STATUS_LOST_IMAGES =
    2; ///< images that the source sent and the channel did not deliver
inline constexpr int FG_STATUS_BUFFER_COUNT = 3; ///< buffers of the ring
inline constexpr int FG_STATUS_ACQUIRING = 4;    ///< 1 while acquiring
inline constexpr int FG_STATUS_SOURCE = 5;       ///< state of the channel's source, FG_SOURCE_...

inline constexpr FgFrameIndex FG_SOURCE_STREAMS = 0;
inline constexpr FgFrameIndex FG_SOURCE_NONE = 1; ///< no camera, or a stopped one
inline constexpr FgFrameIndex FG_SOURCE_WAITS_FOR_TRIGGER = 2;

// Selectors of Fg_getSystemInformation; the argument is the board index.
enum FgInfoSelector : int
{
    FG_INFO_NR_OF_BOARDS = 1, ///< decimal text
    FG_INFO_BOARD_SERIAL = 2, ///< lowercase hexadecimal text
    FG_INFO_MACHINE_NAME = 3, ///< text
    FG_INFO_NR_OF_PORTS = 4,  ///< camera connectors of a board, decimal text
};

// Initial content of the list of Fg_getAppletIterator. A board index below 0 always gives an empty list.
inline constexpr int FG_APPLETS_NONE = 0;      ///< an empty list, for Fg_addAppletIteratorItem
inline constexpr int FG_APPLETS_INSTALLED = 1; ///< the applet files installed for the board

// Property selectors of Fg_getParameterProperty and Fg_getParameterPropertyEx. Numbers are returned as
// double, whatever the parameter's type; texts with their closing zero. With a null value, only the size is
// returned.
enum FgProperty : int
{
    FG_PROPERTY_MINIMUM = 1,
    FG_PROPERTY_MAXIMUM = 2,
    FG_PROPERTY_STEP = 3,
    FG_PROPERTY_UNIT = 4,
    FG_PROPERTY_NAME = 5,
    FG_PROPERTY_CHOICES = 6, ///< text, as FgRegisterDescription::choices
};

// Selectors of Fg_getAppletIntProperty and Fg_getAppletStringProperty.
enum FgAppletIntProperty : int
{
    FG_APPLET_WRAPPED = 1,         ///< 0 or 1
    FG_APPLET_NR_OF_PROCESSES = 2, ///< negative if the file does not contain it
    FG_APPLET_BOARD_TYPE = 3,
};
enum FgAppletStringProperty : int
{
    FG_APPLET_NAME = 1,
    FG_APPLET_PATH = 2,
    FG_APPLET_TYPE = 3, ///< "HAP", "DLL" or another text in the file
    FG_APPLET_TAGS = 4, ///< tags joined by ";"
    FG_APPLET_VERSION = 5,
};
