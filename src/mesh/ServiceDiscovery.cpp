#include "mesh/ServiceDiscovery.h"

#include <avahi-client/client.h>
#include <avahi-client/lookup.h>
#include <avahi-client/publish.h>
#include <avahi-common/error.h>
#include <avahi-common/thread-watch.h>
#include <spdlog/spdlog.h>

#include <atomic>

namespace quillon::mesh {

struct ServiceDiscovery::State {
    std::string name;
    std::uint16_t plainPort = 0;
    std::uint16_t securePort = 0;
    Found found;
    AvahiThreadedPoll* poll = nullptr;
    AvahiClient* client = nullptr;
    AvahiEntryGroup* group = nullptr;
    AvahiServiceBrowser* browser = nullptr;
};

namespace {

std::atomic<bool> discoveryOffLogged{false};

void logDiscoveryOff(const std::string& reason) {
    if (!discoveryOffLogged.exchange(true))
        spdlog::warn("Discovery is off: {}. The scripture mesh keeps listening on its ports.", reason);
}

void publish(ServiceDiscovery::State& state) {
    if (!state.group)
        state.group = avahi_entry_group_new(
            state.client,
            [](AvahiEntryGroup*, AvahiEntryGroupState groupState, void*) {
                if (groupState == AVAHI_ENTRY_GROUP_COLLISION || groupState == AVAHI_ENTRY_GROUP_FAILURE)
                    spdlog::warn("The scripture mesh could not publish its services on the network");
            },
            nullptr);
    if (!state.group || !avahi_entry_group_is_empty(state.group))
        return;
    for (auto [type, port] : {std::pair{ServiceDiscovery::plainService, state.plainPort},
                              std::pair{ServiceDiscovery::secureService, state.securePort}}) {
        int error =
            avahi_entry_group_add_service(state.group, AVAHI_IF_UNSPEC, AVAHI_PROTO_UNSPEC, AvahiPublishFlags(0),
                                          state.name.c_str(), type, nullptr, nullptr, port, nullptr);
        if (error < 0)
            spdlog::warn("Could not publish {}: {}", type, avahi_strerror(error));
    }
    avahi_entry_group_commit(state.group);
}

void resolved(AvahiServiceResolver* resolver, AvahiIfIndex, AvahiProtocol, AvahiResolverEvent event, const char*,
              const char*, const char*, const char* host, const AvahiAddress* address, uint16_t port, AvahiStringList*,
              AvahiLookupResultFlags, void* data) {
    auto* state = static_cast<ServiceDiscovery::State*>(data);
    if (event == AVAHI_RESOLVER_FOUND && state->found) {
        char text[AVAHI_ADDRESS_STR_MAX] = {};
        avahi_address_snprint(text, sizeof text, address);
        state->found(text[0] ? text : host, port);
    }
    avahi_service_resolver_free(resolver);
}

void browsed(AvahiServiceBrowser*, AvahiIfIndex interface, AvahiProtocol protocol, AvahiBrowserEvent event,
             const char* name, const char* type, const char* domain, AvahiLookupResultFlags, void* data) {
    auto* state = static_cast<ServiceDiscovery::State*>(data);
    if (event != AVAHI_BROWSER_NEW)
        return;
    avahi_service_resolver_new(state->client, interface, protocol, name, type, domain, AVAHI_PROTO_UNSPEC,
                               AvahiLookupFlags(0), resolved, state);
}

void clientChanged(AvahiClient* client, AvahiClientState clientState, void* data) {
    auto* state = static_cast<ServiceDiscovery::State*>(data);
    state->client = client; // the callback can run before avahi_client_new returns
    if (clientState == AVAHI_CLIENT_S_RUNNING)
        publish(*state);
    else if (clientState == AVAHI_CLIENT_FAILURE)
        logDiscoveryOff(avahi_strerror(avahi_client_errno(client)));
}

} // namespace

ServiceDiscovery::ServiceDiscovery(std::string serviceName) : m_state(std::make_unique<State>()) {
    m_state->name = std::move(serviceName);
}

ServiceDiscovery::~ServiceDiscovery() {
    stop();
}

bool ServiceDiscovery::start(std::uint16_t plainPort, std::uint16_t securePort, Found calvaneFound) {
    stop();
    m_state->plainPort = plainPort;
    m_state->securePort = securePort;
    m_state->found = std::move(calvaneFound);
    m_state->poll = avahi_threaded_poll_new();
    if (!m_state->poll) {
        logDiscoveryOff("Avahi could not start its event loop");
        return false;
    }
    int error = 0;
    AvahiClient* client = avahi_client_new(avahi_threaded_poll_get(m_state->poll), AvahiClientFlags(0), clientChanged,
                                           m_state.get(), &error);
    if (!client) {
        logDiscoveryOff(std::string("no Avahi daemon is reachable (") + avahi_strerror(error) + ")");
        avahi_threaded_poll_free(m_state->poll);
        m_state->poll = nullptr;
        m_state->client = nullptr;
        return false;
    }
    m_state->client = client;
    m_state->browser = avahi_service_browser_new(client, AVAHI_IF_UNSPEC, AVAHI_PROTO_UNSPEC, calvaneService, nullptr,
                                                 AvahiLookupFlags(0), browsed, m_state.get());
    avahi_threaded_poll_start(m_state->poll);
    return true;
}

void ServiceDiscovery::stop() {
    if (!m_state->poll)
        return;
    avahi_threaded_poll_stop(m_state->poll);
    // Freeing the client frees its groups, browsers and resolvers too.
    if (m_state->client)
        avahi_client_free(m_state->client);
    avahi_threaded_poll_free(m_state->poll);
    m_state->poll = nullptr;
    m_state->client = nullptr;
    m_state->group = nullptr;
    m_state->browser = nullptr;
}

} // namespace quillon::mesh
