#include "intelligence/HttpExchange.h"

#include <boost/asio/connect.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/core/tcp_stream.hpp>
#include <boost/beast/http.hpp>

namespace quillon::intelligence {

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = beast::http;
using tcp = asio::ip::tcp;

namespace {

/// Runs the io_context until the pending operation completes, then readies it for the next step.
void runStep(asio::io_context& io) {
    io.run();
    io.restart();
}

} // namespace

HttpReply sendHttpExchange(const LocalModelEndpoint& endpoint, const HttpExchange& exchange) {
    asio::io_context io;
    beast::error_code error;
    tcp::resolver resolver(io);
    tcp::resolver::results_type addresses = resolver.resolve(endpoint.host, endpoint.port, error);
    if (error)
        throw HttpFailure(HttpFailure::Case::unreachable, error.message());

    // Beast's tcp_stream applies its deadline to asynchronous operations only, so each step is
    // started asynchronously and the private io_context is run until it completes.
    beast::tcp_stream stream(io);
    stream.expires_after(exchange.connectTimeout);
    stream.async_connect(addresses, [&](beast::error_code result, const tcp::endpoint&) { error = result; });
    runStep(io);
    if (error)
        throw HttpFailure(error == beast::error::timeout ? HttpFailure::Case::timedOut : HttpFailure::Case::unreachable,
                          error.message());

    http::request<http::string_body> request{http::string_to_verb(exchange.method), exchange.target, 11};
    request.set(http::field::host, endpoint.host + ":" + endpoint.port);
    request.set(http::field::accept, "application/json");
    request.set(http::field::connection, "close");
    if (!exchange.body.empty()) {
        request.set(http::field::content_type, exchange.contentType);
        request.body() = exchange.body;
    }
    request.prepare_payload();

    stream.expires_after(exchange.replyTimeout);
    http::async_write(stream, request, [&](beast::error_code result, std::size_t) { error = result; });
    runStep(io);

    beast::flat_buffer buffer;
    http::response_parser<http::string_body> parser;
    // A long article or a batch of embeddings can exceed Beast's 8 MB default.
    parser.body_limit(64 * 1024 * 1024);
    if (!error) {
        http::async_read(stream, buffer, parser, [&](beast::error_code result, std::size_t) { error = result; });
        runStep(io);
    }
    if (error) {
        HttpFailure::Case kind =
            error == beast::error::timeout ? HttpFailure::Case::timedOut : HttpFailure::Case::dropped;
        throw HttpFailure(kind, error.message());
    }
    stream.socket().shutdown(tcp::socket::shutdown_both, error);
    return HttpReply{static_cast<int>(parser.get().result_int()), parser.get().body()};
}

} // namespace quillon::intelligence
