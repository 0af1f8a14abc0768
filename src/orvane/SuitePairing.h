#pragma once

#include "orvane/SuiteCapability.h"
#include "orvane/SuiteCrypto.h"

#include <chrono>
#include <string>

namespace orvane {

/// A completed pairing with one peer application: what it may do and the 32-byte secret both share.
struct SuitePairing {
    std::string peerIdentifier;
    SuiteCapability capabilities;
    Bytes secret;
    std::chrono::system_clock::time_point establishedAt;
};

} // namespace orvane
