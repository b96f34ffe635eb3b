// Turns the host's language into the engine's locale tag.
//
// Called on the host's main thread when the engine starts. Keeps no state.
#ifndef ORBCEFLOCALE_H
#define ORBCEFLOCALE_H

#include <string>

namespace ORBCefLocale {

// The tag of a language by the host's name for it, "en-US" for an unknown or empty name.
std::string TagOfLanguage(const std::string& name);

// The tag of the host's language, with the regional choices for English and Portuguese. Empty off
// the host's main thread.
std::string ComputeLocaleTag();

}  // namespace ORBCefLocale

#endif  // ORBCEFLOCALE_H
