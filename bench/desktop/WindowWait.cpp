// window_wait: starts a program and reports how long it took to map its first top-level window
// on the X display, then its resident memory a moment later. Used to compare start-up of desktop
// Bible programs side by side under Xvfb. Usage: window_wait [--settle SECONDS] PROGRAM [ARGS...]
// Prints one line: "<milliseconds to window> <resident MB of the program> <resident MB with its child
// processes>" (helpers such as a web engine's share pages, so the second figure overstates), or fails
// after 30 s. The program runs in its own process group, which is ended as a whole.
#include <X11/Xlib.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

/// The resident set of `pid` alone, in MB (VmRSS, read from /proc).
double ownMegabytes(pid_t pid) {
    std::ifstream status("/proc/" + std::to_string(pid) + "/status");
    std::string line;
    while (std::getline(status, line)) {
        if (line.rfind("VmRSS:", 0) == 0)
            return std::strtod(line.c_str() + 6, nullptr) / 1024.0;
    }
    return 0;
}

/// The resident set of `pid` and its children, in MB.
double residentMegabytes(pid_t pid) {
    double total = 0;
    std::ifstream status("/proc/" + std::to_string(pid) + "/status");
    std::string line;
    while (std::getline(status, line)) {
        if (line.rfind("VmRSS:", 0) == 0)
            total += std::strtod(line.c_str() + 6, nullptr) / 1024.0;
    }
    std::ifstream children("/proc/" + std::to_string(pid) + "/task/" + std::to_string(pid) + "/children");
    pid_t child = 0;
    while (children >> child)
        total += residentMegabytes(child);
    return total;
}

} // namespace

int main(int argc, char** argv) {
    int first = 1;
    double settle = 2.0;
    if (argc > 2 && std::strcmp(argv[1], "--settle") == 0) {
        settle = std::atof(argv[2]);
        first = 3;
    }
    if (first >= argc) {
        std::fprintf(stderr, "usage: window_wait [--settle SECONDS] PROGRAM [ARGS...]\n");
        return 2;
    }
    Display* display = XOpenDisplay(nullptr);
    if (!display) {
        std::fprintf(stderr, "window_wait: no X display\n");
        return 2;
    }
    Window root = DefaultRootWindow(display);
    XSelectInput(display, root, SubstructureNotifyMask);
    XSync(display, False);

    const auto started = std::chrono::steady_clock::now();
    pid_t pid = fork();
    if (pid == 0) {
        setpgid(0, 0);
        execvp(argv[first], argv + first);
        std::perror("window_wait: exec");
        _exit(127);
    }
    const int fd = ConnectionNumber(display);
    double elapsed = -1;
    while (elapsed < 0) {
        while (XPending(display)) {
            XEvent event;
            XNextEvent(display, &event);
            if (event.type == MapNotify && !event.xmap.override_redirect) {
                elapsed = std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - started).count();
                break;
            }
        }
        if (elapsed >= 0)
            break;
        if (std::chrono::steady_clock::now() - started > std::chrono::seconds(30) ||
            waitpid(pid, nullptr, WNOHANG) == pid) {
            std::fprintf(stderr, "window_wait: %s showed no window\n", argv[first]);
            kill(-pid, SIGKILL);
            return 1;
        }
        fd_set set;
        FD_ZERO(&set);
        FD_SET(fd, &set);
        timeval wait{0, 20000};
        select(fd + 1, &set, nullptr, nullptr, &wait);
    }
    std::this_thread::sleep_for(std::chrono::duration<double>(settle));
    std::printf("%.0f %.0f %.0f\n", elapsed, ownMegabytes(pid), residentMegabytes(pid));
    kill(-pid, SIGTERM);
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    kill(-pid, SIGKILL);
    waitpid(pid, nullptr, 0);
    XCloseDisplay(display);
    return 0;
}
