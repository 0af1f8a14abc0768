#pragma once

#include <string>

namespace orvane {

/// Why a backend kind cannot be used now. Every reason has a sentence for the user, `message()`,
/// shown wherever a feature explains why it used its fallback.
class IntelligenceUnavailableReason {
public:
    enum class Case {
        other,
        osTooOld,
        deviceNotEligible,
        notEnabled,
        modelNotReady,
        disabledByOperator,
        notConfigured
    };

    /// A reason this system has no case for; `text` is shown as it stands.
    static IntelligenceUnavailableReason other(std::string text) { return {Case::other, std::move(text)}; }
    static IntelligenceUnavailableReason osTooOld() { return {Case::osTooOld, {}}; }
    static IntelligenceUnavailableReason deviceNotEligible() { return {Case::deviceNotEligible, {}}; }
    static IntelligenceUnavailableReason notEnabled() { return {Case::notEnabled, {}}; }
    static IntelligenceUnavailableReason modelNotReady() { return {Case::modelNotReady, {}}; }
    static IntelligenceUnavailableReason disabledByOperator() { return {Case::disabledByOperator, {}}; }
    static IntelligenceUnavailableReason notConfigured() { return {Case::notConfigured, {}}; }

    Case kind() const { return m_case; }
    /// The carried text of `other`; empty for every other case.
    const std::string& text() const { return m_text; }
    std::string message() const;

    /// Equal when the cases are equal and, for `other`, the texts too.
    bool operator==(const IntelligenceUnavailableReason&) const = default;

private:
    IntelligenceUnavailableReason(Case kind, std::string text) : m_case(kind), m_text(std::move(text)) {}

    Case m_case;
    std::string m_text;
};

} // namespace orvane
