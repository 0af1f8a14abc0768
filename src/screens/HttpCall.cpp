#include "screens/HttpCall.h"

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/beast/core/error.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/core/tcp_stream.hpp>
#include <boost/beast/http.hpp>

#include <cctype>
#include <memory>
#include <optional>

namespace quillon::screens {

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = beast::http;
using tcp = asio::ip::tcp;

namespace {

/// Everything one exchange owns; each step's handler holds it alive until `done` has run.
struct Exchange : std::enable_shared_from_this<Exchange> {
    Exchange(asio::io_context& io, HttpCallRequest call, std::function<void(HttpCallResult)> whenDone)
        : resolver(io), stream(io), request(std::move(call)), done(std::move(whenDone)) {}

    void start() {
        // One deadline for the whole exchange: the stream's own covers connect, write and read;
        // resolving a numeric address does not wait on anything.
        stream.expires_after(request.timeout);
        resolver.async_resolve(request.host, request.port,
                               [self = shared_from_this()](beast::error_code error, tcp::resolver::results_type found) {
                                   if (error)
                                       return self->finish(error.message());
                                   self->connect(found);
                               });
    }

    void connect(const tcp::resolver::results_type& addresses) {
        stream.async_connect(addresses, [self = shared_from_this()](beast::error_code error, const tcp::endpoint&) {
            if (error)
                return self->finish(reason(error));
            self->write();
        });
    }

    void write() {
        outgoing.method(http::string_to_verb(request.method));
        outgoing.target(request.target);
        outgoing.version(11);
        outgoing.set(http::field::host, request.host + ":" + request.port);
        outgoing.set(http::field::accept, "application/json");
        outgoing.set(http::field::connection, "close");
        for (const auto& [name, value] : request.headers)
            outgoing.set(name, value);
        if (!request.body.empty()) {
            outgoing.set(http::field::content_type, "application/json");
            outgoing.body() = request.body;
        }
        outgoing.prepare_payload();
        http::async_write(stream, outgoing, [self = shared_from_this()](beast::error_code error, std::size_t) {
            if (error)
                return self->finish(reason(error));
            self->read();
        });
    }

    void read() {
        parser.emplace();
        parser->body_limit(request.bodyLimit);
        parser->header_limit(16 * 1024);
        http::async_read(stream, buffer, *parser, [self = shared_from_this()](beast::error_code error, std::size_t) {
            if (error)
                return self->finish(reason(error));
            HttpCallResult result;
            result.status = static_cast<int>(self->parser->get().result_int());
            result.body = std::move(self->parser->get().body());
            self->complete(std::move(result));
        });
    }

    static std::string reason(const beast::error_code& error) {
        if (error == beast::error::timeout)
            return "no answer in time";
        if (error == http::error::body_limit)
            return "an answer too long to be one";
        return error.message();
    }

    void finish(std::string failure) { complete(HttpCallResult{0, {}, std::move(failure)}); }

    void complete(HttpCallResult result) {
        beast::error_code ignored;
        stream.socket().shutdown(tcp::socket::shutdown_both, ignored);
        stream.close();
        if (auto callback = std::exchange(done, nullptr))
            callback(std::move(result));
    }

    tcp::resolver resolver;
    beast::tcp_stream stream;
    HttpCallRequest request;
    std::function<void(HttpCallResult)> done;
    http::request<http::string_body> outgoing;
    beast::flat_buffer buffer;
    std::optional<http::response_parser<http::string_body>> parser;
};

} // namespace

void startHttpCall(asio::io_context& io, HttpCallRequest request, std::function<void(HttpCallResult)> done) {
    std::make_shared<Exchange>(io, std::move(request), std::move(done))->start();
}

std::string percentEncode(const std::string& text) {
    static constexpr char hex[] = "0123456789ABCDEF";
    std::string encoded;
    for (unsigned char c : text) {
        if (std::isalnum(c) || c == '-' || c == '_' || c == '.' || c == '~') {
            encoded += static_cast<char>(c);
        } else {
            encoded += '%';
            encoded += hex[c >> 4];
            encoded += hex[c & 15];
        }
    }
    return encoded;
}

} // namespace quillon::screens
