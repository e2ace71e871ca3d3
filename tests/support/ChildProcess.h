#pragma once
// Parts of a test that must run where the test process itself cannot: as a user without
// privileges (root ignores file permissions, and tests may run as root), or on a disk small
// enough to fill. Each part runs in a child process and reports what it saw as text, so that
// the test compares it; a child that cannot be set up says so in that text, never passes.

#include <sys/mount.h>
#include <sys/wait.h>
#include <fcntl.h>
#include <grp.h>
#include <sched.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <exception>
#include <filesystem>
#include <fstream>
#include <functional>
#include <optional>
#include <string>

namespace qx::test {

// Runs part in a forked child; its text, or what ended it.
inline std::string InChildProcess(const std::function<std::string()>& part) {
    int pipeFds[2];
    if (pipe(pipeFds) != 0) return std::string("no pipe: ") + std::strerror(errno);
    const pid_t child = fork();
    if (child < 0) return std::string("no child process: ") + std::strerror(errno);
    if (child == 0) {
        close(pipeFds[0]);
        std::string text;
        try {
            text = part();
        } catch (const std::exception& error) {
            text = error.what();
        }
        // A blocking write to a pipe writes it all, while the parent reads.
        [[maybe_unused]] const auto written = write(pipeFds[1], text.data(), text.size());
        _exit(0); // nothing of the test's own process is run down twice
    }
    close(pipeFds[1]);
    std::string text;
    char buffer[4096];
    for (ssize_t got; (got = read(pipeFds[0], buffer, sizeof buffer)) > 0;)
        text.append(buffer, static_cast<std::size_t>(got));
    close(pipeFds[0]);
    int status = 0;
    waitpid(child, &status, 0);
    if (!WIFEXITED(status)) text += " (the child process was killed)";
    return text;
}

// As the user "nobody" when the tests run as root, so that permissions hold; as the test's
// own user otherwise.
inline std::string AsUnprivileged(const std::function<std::string()>& part) {
    if (geteuid() != 0) return part();
    return InChildProcess([&]() -> std::string {
        constexpr uid_t kNobody = 65534;
        if (setgroups(0, nullptr) != 0 || setgid(kNobody) != 0 || setuid(kNobody) != 0)
            return std::string("could not give up root: ") + std::strerror(errno);
        return part();
    });
}

// Runs part with a file system of its own mounted on folder, kilobytes large, so that the disk
// under a company really fills up. It is made without privileges, in a user and mount
// namespace of the child; nullopt when the system allows no user namespaces.
inline std::optional<std::string> OnSmallDisk(const std::filesystem::path& folder, int kilobytes,
                                              const std::function<std::string()>& part) {
    const uid_t uid = getuid();
    const gid_t gid = getgid();
    std::string text = InChildProcess([&]() -> std::string {
        if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) return "\x01";
        std::ofstream("/proc/self/setgroups") << "deny";
        std::ofstream("/proc/self/uid_map") << "0 " << uid << " 1";
        std::ofstream("/proc/self/gid_map") << "0 " << gid << " 1";
        const std::string size = "size=" + std::to_string(kilobytes) + "k";
        if (mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
            mount("tmpfs", folder.c_str(), "tmpfs", 0, size.c_str()) != 0)
            return std::string("could not mount a small disk: ") + std::strerror(errno);
        return part();
    });
    if (text == "\x01") return std::nullopt;
    return text;
}

// Fills the disk holding folder to the last byte.
inline void FillDisk(const std::filesystem::path& folder) {
    const int fd = open((folder / "filler").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    if (fd < 0) return;
    const std::string block(4096, 'x');
    while (write(fd, block.data(), block.size()) > 0) {
    }
    while (write(fd, "x", 1) > 0) {
    }
    close(fd);
}

} // namespace qx::test
