// How each worker class presents itself to the worker frame. The two dataset
// classes deliberately declare the same name, and the control helper a name
// that is not its class name; the record drops these names, so they never
// show in a description.
#ifndef VELD_FOUNDATION_FRAME_SETTINGS_H_
#define VELD_FOUNDATION_FRAME_SETTINGS_H_

#include "veld/foundation/worker_frame.h"

namespace veld {

inline constexpr FrameSettings kOptionFrame{"KvoOption", "KvoOption", "config"};
inline constexpr FrameSettings kDatasetOFrame{"KvoDatasetO", "KvoDataset", "dataset"};
inline constexpr FrameSettings kDatasetFrame{"KvoDataset", "KvoDataset", "dataset"};
inline constexpr FrameSettings kRegistryFrame{"KvoRegistry", "KvoRegistry", ""};
inline constexpr FrameSettings kXmlHelperFrame{"KvoXmlHelper", "KvoXmlHelper", ""};
inline constexpr FrameSettings kDataCtrlHelperFrame{"KvoDataCtrlHelper", "clsXmlDataHelper", ""};

}  // namespace veld

#endif  // VELD_FOUNDATION_FRAME_SETTINGS_H_
