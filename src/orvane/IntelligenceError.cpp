#include "orvane/IntelligenceError.h"

namespace orvane {

namespace {

std::string describe(IntelligenceError::Case kind, const std::optional<IntelligenceUnavailableReason>& reason,
                     const std::string& text) {
    switch (kind) {
    case IntelligenceError::Case::noPermittedBackend:
        return "No permitted model is available: " + (reason ? reason->message() : std::string());
    case IntelligenceError::Case::malformedResponse:
        return "The model's reply could not be used: " + text;
    case IntelligenceError::Case::backendFailed:
        return "The model call failed: " + text;
    } // no default case, so the compiler can warn about missing cases
    return text;
}

} // namespace

IntelligenceError::IntelligenceError(Case kind, std::optional<IntelligenceUnavailableReason> reason, std::string text)
    : std::runtime_error(describe(kind, reason, text)), m_case(kind), m_reason(std::move(reason)),
      m_text(std::move(text)) {}

IntelligenceError IntelligenceError::noPermittedBackend(IntelligenceUnavailableReason reason) {
    return IntelligenceError(Case::noPermittedBackend, std::move(reason), {});
}

IntelligenceError IntelligenceError::malformedResponse(std::string text) {
    return IntelligenceError(Case::malformedResponse, std::nullopt, std::move(text));
}

IntelligenceError IntelligenceError::backendFailed(std::string text) {
    return IntelligenceError(Case::backendFailed, std::nullopt, std::move(text));
}

} // namespace orvane
