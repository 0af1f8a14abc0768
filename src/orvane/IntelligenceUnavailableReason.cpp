#include "orvane/IntelligenceUnavailableReason.h"

#include "platform/PlatformWording.h"

namespace orvane {

std::string IntelligenceUnavailableReason::message() const {
    namespace wording = quillon::platform::wording;
    switch (m_case) {
    case Case::other:
        return m_text;
    case Case::osTooOld:
        return wording::modelOsTooOld;
    case Case::deviceNotEligible:
        return wording::modelDeviceNotEligible;
    case Case::notEnabled:
        return wording::modelNotEnabled;
    case Case::modelNotReady:
        return "The on-device model is still downloading.";
    case Case::disabledByOperator:
        return "Intelligence features are switched off in Settings.";
    case Case::notConfigured:
        return "No external model has been set up.";
    } // no default case, so the compiler can warn about missing cases
    return m_text;
}

} // namespace orvane
