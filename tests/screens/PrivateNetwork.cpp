#include "PrivateNetwork.h"

#include <cstdlib>
#include <fcntl.h>
#include <sched.h>
#include <unistd.h>

namespace quillon::testing {

namespace {

bool run(const std::string& command) {
    return std::system((command + " >/dev/null 2>&1").c_str()) == 0;
}

} // namespace

PrivateNetwork::PrivateNetwork() : m_name("quillon-test-" + std::to_string(getpid())) {
    if (geteuid() != 0) {
        m_why = "creating a network namespace needs root";
        return;
    }
    if (!run("ip netns add " + m_name)) {
        m_why = "`ip netns add` is not available here";
        return;
    }
    m_created = true;
    run("ip netns exec " + m_name + " ip link set lo up");
    m_original = open("/proc/thread-self/ns/net", O_RDONLY | O_CLOEXEC);
    const int inside = open(("/run/netns/" + m_name).c_str(), O_RDONLY | O_CLOEXEC);
    if (m_original >= 0 && inside >= 0 && setns(inside, CLONE_NEWNET) == 0)
        m_entered = true;
    else
        m_why = "could not enter the namespace";
    if (inside >= 0)
        close(inside);
}

PrivateNetwork::~PrivateNetwork() {
    if (m_entered)
        setns(m_original, CLONE_NEWNET);
    if (m_original >= 0)
        close(m_original);
    if (m_created)
        run("ip netns del " + m_name);
}

} // namespace quillon::testing
