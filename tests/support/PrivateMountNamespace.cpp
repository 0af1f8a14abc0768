#include "support/PrivateMountNamespace.h"

#include <exception>
#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quillon::testing {

namespace {

constexpr int noNamespace = 77;

[[noreturn]] void runChild(const std::function<std::string()>& scenario, int report) {
    if (::geteuid() != 0 || ::unshare(CLONE_NEWNS) != 0 ||
        ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
        ::_exit(noNamespace);
    std::string problems;
    try {
        problems = scenario();
    } catch (const std::exception& failure) {
        problems = std::string("unexpected exception: ") + failure.what();
    }
    (void)!::write(report, problems.data(), problems.size());
    ::_exit(problems.empty() ? 0 : 1);
}

} // namespace

std::optional<std::string> inPrivateMountNamespace(const std::function<std::string()>& scenario) {
    if (::geteuid() != 0)
        return std::nullopt;
    int report[2];
    if (::pipe(report) != 0)
        return std::nullopt;
    const pid_t child = ::fork();
    if (child == 0) {
        ::close(report[0]);
        runChild(scenario, report[1]);
    }
    ::close(report[1]);
    std::string problems;
    char buffer[1024];
    for (ssize_t count; (count = ::read(report[0], buffer, sizeof buffer)) > 0;)
        problems.append(buffer, static_cast<std::size_t>(count));
    ::close(report[0]);
    int status = 0;
    ::waitpid(child, &status, 0);
    if (WIFEXITED(status) && WEXITSTATUS(status) == noNamespace)
        return std::nullopt;
    if (problems.empty() && !(WIFEXITED(status) && WEXITSTATUS(status) == 0))
        problems = "the child process ended abnormally (status " + std::to_string(status) + ")";
    return problems;
}

} // namespace quillon::testing
