#pragma once

#include <functional>
#include <optional>
#include <string>

namespace quillon::testing {

/// Runs `scenario` in a child process with a mount namespace of its own, where it may mount
/// without touching the machine's mounts, and returns the problems it reported (empty when
/// none). Nothing when the namespace cannot be had (not root, or no namespaces here).
std::optional<std::string> inPrivateMountNamespace(const std::function<std::string()>& scenario);

} // namespace quillon::testing
