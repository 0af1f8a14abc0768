#include "screens/LivePageConnection.h"

#include "screens/LivePageServer.h"

#include <boost/asio/write.hpp>
#include <boost/beast/http/read.hpp>
#include <boost/beast/http/string_body.hpp>
#include <boost/beast/http/write.hpp>

#include <spdlog/spdlog.h>

namespace quillon::screens {

namespace beast = boost::beast;
namespace http = boost::beast::http;

namespace {

// A tab left open is a stream, not a request; anything else gets this long to ask.
constexpr std::chrono::seconds requestTimeout{10};
constexpr std::chrono::seconds writeTimeout{10};

} // namespace

LivePageConnection::LivePageConnection(LivePageServer& server, boost::asio::ip::tcp::socket socket,
                                       std::uint64_t identifier, std::shared_ptr<std::atomic<std::size_t>> openCount)
    : m_server(server), m_stream(std::move(socket)), m_identifier(identifier), m_openCount(std::move(openCount)) {
    ++*m_openCount;
}

LivePageConnection::~LivePageConnection() {
    --*m_openCount;
}

void LivePageConnection::start() {
    readRequest();
}

void LivePageConnection::refuse() {
    respond(http::status::service_unavailable, "text/plain; charset=utf-8", "Too many open connections.\n", false);
}

void LivePageConnection::readRequest() {
    m_parser.emplace();
    m_parser->header_limit(8 * 1024);
    m_parser->body_limit(1024);
    m_stream.expires_after(requestTimeout);
    http::async_read(m_stream, m_buffer, *m_parser, [self = shared_from_this()](beast::error_code error, std::size_t) {
        if (error)
            return self->close();
        self->route();
    });
}

void LivePageConnection::route() {
    const auto& request = m_parser->get();
    const std::string target(request.target());
    const bool keepAlive = request.keep_alive();
    if (request.method() != http::verb::get && request.method() != http::verb::head)
        return respond(http::status::method_not_allowed, "text/plain; charset=utf-8", "Only GET is served.\n", false);
    if (!m_server.tokenAccepted(target))
        return respond(http::status::forbidden, "text/plain; charset=utf-8",
                       "This page needs the address with its token.\n", false);
    const std::string path = target.substr(0, target.find('?'));
    if (path == "/events")
        return openStream();
    std::string body = m_server.page(path);
    if (body.empty())
        return respond(http::status::not_found, "text/plain; charset=utf-8", "Not found.\n", keepAlive);
    const char* type = path == "/live.json" ? "application/json" : "text/html; charset=utf-8";
    respond(http::status::ok, type, request.method() == http::verb::head ? std::string() : std::move(body), keepAlive);
}

void LivePageConnection::respond(http::status status, std::string contentType, std::string body, bool keepAlive) {
    auto response = std::make_shared<http::response<http::string_body>>(status, 11);
    response->set(http::field::content_type, contentType);
    response->set(http::field::cache_control, "no-store");
    response->keep_alive(keepAlive);
    response->body() = std::move(body);
    response->prepare_payload();
    m_stream.expires_after(writeTimeout);
    http::async_write(m_stream, *response,
                      [self = shared_from_this(), response, keepAlive](beast::error_code error, std::size_t) {
                          if (error || !keepAlive)
                              return self->close();
                          self->readRequest();
                      });
}

void LivePageConnection::openStream() {
    m_stream.expires_never();
    m_outgoing.push_back(std::make_shared<const std::string>("HTTP/1.1 200 OK\r\n"
                                                             "Content-Type: text/event-stream\r\n"
                                                             "Cache-Control: no-store\r\n"
                                                             "Connection: keep-alive\r\n\r\n"
                                                             "retry: 1000\n\n"));
    m_server.subscribe(shared_from_this());
    writeNext();
    watchForHangUp();
}

// A browser never sends anything on a stream; a read that ends means the tab went away.
void LivePageConnection::watchForHangUp() {
    m_stream.socket().async_read_some(boost::asio::buffer(m_discard),
                                      [self = shared_from_this()](beast::error_code error, std::size_t) {
                                          if (error)
                                              return self->close();
                                          self->watchForHangUp();
                                      });
}

void LivePageConnection::push(std::shared_ptr<const std::string> event) {
    if (m_closed)
        return;
    if (m_outgoing.size() >= maximumQueued) {
        spdlog::debug("Closed a live page stream that stopped reading");
        return close();
    }
    m_outgoing.push_back(std::move(event));
    writeNext();
}

void LivePageConnection::writeNext() {
    if (m_writing || m_closed || m_outgoing.empty())
        return;
    m_writing = true;
    auto event = m_outgoing.front();
    m_stream.expires_after(writeTimeout);
    boost::asio::async_write(m_stream, boost::asio::buffer(*event),
                             [self = shared_from_this(), event](beast::error_code error, std::size_t) {
                                 self->m_writing = false;
                                 if (error || self->m_closed)
                                     return self->close();
                                 self->m_stream.expires_never();
                                 self->m_outgoing.pop_front();
                                 self->writeNext();
                             });
}

void LivePageConnection::close() {
    if (m_closed)
        return;
    m_closed = true;
    m_outgoing.clear();
    m_server.forget(m_identifier);
    beast::error_code ignored;
    m_stream.socket().shutdown(boost::asio::ip::tcp::socket::shutdown_both, ignored);
    m_stream.socket().close(ignored);
}

} // namespace quillon::screens
