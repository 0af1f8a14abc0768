#pragma once

#include "intelligence/LocalModelEndpoint.h"

#include <chrono>
#include <stdexcept>
#include <string>

namespace quillon::intelligence {

/// One HTTP/1.1 request and its reply, on a fresh connection.
struct HttpExchange {
    std::string method; ///< "GET" or "POST"
    std::string target;
    std::string body; ///< sent as `contentType` when not empty
    std::chrono::milliseconds connectTimeout{2000};
    std::chrono::milliseconds replyTimeout{120000};
    std::string contentType = "application/json";
};

struct HttpReply {
    int status = 0;
    std::string body;
};

/// Why an exchange produced no reply at all.
class HttpFailure : public std::runtime_error {
public:
    enum class Case { unreachable, timedOut, dropped };
    HttpFailure(Case kind, const std::string& detail) : std::runtime_error(detail), m_case(kind) {}
    Case kind() const { return m_case; }

private:
    Case m_case;
};

/// Sends `exchange` to `endpoint` and waits for the whole reply. Throws HttpFailure when the server
/// cannot be reached within the connect timeout, the reply does not come within the reply timeout,
/// or the connection closes before a complete reply.
HttpReply sendHttpExchange(const LocalModelEndpoint& endpoint, const HttpExchange& exchange);

} // namespace quillon::intelligence
