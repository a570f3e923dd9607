// The fixed messages of KvoRegistry and the table of registry error texts.
#ifndef VELD_REGISTRY_REGISTRY_MESSAGES_H_
#define VELD_REGISTRY_REGISTRY_MESSAGES_H_

#include <cstdint>
#include <string>

namespace veld {

inline constexpr char kInvalidRegistryKeyName[] = "Invalid registry key name.";
// Followed by the root part of the name, without a final period.
inline constexpr char kInvalidMainKeyName[] = "Invalid main key name specified - ";
inline constexpr char kNoRootTagSpecified[] = "No root tag specified.";
inline constexpr char kNoValuesSpecified[] = "No values specified.";
inline constexpr char kFailedToLoadValues[] = "Failed to load values from xml.";
// Values XML would not load again (control characters, say) are refused.
inline constexpr char kValuesNotRepresentable[] =
    "Registry values hold characters that XML cannot hold.";

// The message recorded for a registry result code: "" for 0, the table's
// text for the codes it lists, else "Unexpected error occurs(Err#: " + code
// + ").". Some pairings do not match the code's usual meaning (2 reads
// "Invalid parameter.", 259 reads "The buffer is too small to hold all
// data."); callers compare these texts, so they stay as they are.
std::string RegistryErrorText(int32_t code);

}  // namespace veld

#endif  // VELD_REGISTRY_REGISTRY_MESSAGES_H_
