#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace boost::asio {
class io_context;
}

namespace quillon::screens {

/// One HTTP/1.1 request to another program on the network, on a fresh connection.
struct HttpCallRequest {
    std::string host;
    std::string port;
    std::string method = "GET";
    /// Already percent-encoded.
    std::string target;
    /// Sent as application/json when not empty.
    std::string body;
    std::vector<std::pair<std::string, std::string>> headers;
    /// For the whole exchange, from resolving to the reply's last byte.
    std::chrono::milliseconds timeout{3000};
    /// A reply body beyond this is a failure, whatever its header announces.
    std::size_t bodyLimit = 1024 * 1024;
};

/// The reply, or why none came.
struct HttpCallResult {
    int status = 0;
    std::string body;
    /// Empty when a whole reply came; else a short reason ("Connection refused", "timed out").
    std::string failure;
};

/// Starts `request` on `io` and calls `done` there once, with the reply or the failure. Nothing
/// blocks: a server that is slow, resets or answers nonsense only delays its own `done`. When `io`
/// is stopped and destroyed first, `done` is never called.
void startHttpCall(boost::asio::io_context& io, HttpCallRequest request, std::function<void(HttpCallResult)> done);

/// `text` percent-encoded for a URL query value (unreserved characters kept).
std::string percentEncode(const std::string& text);

} // namespace quillon::screens
