#pragma once

#include "orvane/IntelligenceError.h"
#include "orvane/IntelligenceRequest.h"

namespace orvane {

/// A language model the router can hand requests to.
class IntelligenceBackendProviding {
public:
    virtual ~IntelligenceBackendProviding() = default;
    virtual IntelligenceBackendKind kind() const = 0;
    /// One fresh single-turn exchange; blocks until the model answers. Throws
    /// IntelligenceError::backendFailed when the call fails; the reply is neither trimmed nor checked.
    virtual IntelligenceResponse respond(const IntelligenceRequest& request) = 0;
};

} // namespace orvane
