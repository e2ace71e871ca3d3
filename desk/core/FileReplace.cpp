#include "FileReplace.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

namespace qx::desk {
namespace {

namespace fs = std::filesystem;

fs::path FolderOf(const fs::path& path) {
    const fs::path folder = path.parent_path();
    return folder.empty() ? fs::path(".") : folder;
}

[[noreturn]] void Fail(const fs::path& path, int error) {
    const std::string file = path.string();
    const std::string cannot = file + " cannot be written: ";
    const std::string folder = FolderOf(path).string();
    switch (error) {
    case ENOSPC:
    case EDQUOT:
        throw std::runtime_error("The disk holding " + file + " is full: free some space and try again.");
    case EACCES:
    case EPERM:
        throw std::runtime_error(cannot + "you have no permission to write in the folder " + folder + ".");
    case EROFS:
        throw std::runtime_error(cannot + "the folder " + folder + " is read-only.");
    case ENOENT:
        throw std::runtime_error(cannot + "the folder " + folder + " does not exist.");
    case ENOTDIR:
        throw std::runtime_error(cannot + folder + " is not a folder.");
    case EISDIR:
        throw std::runtime_error(file + " is a folder: give the file a name.");
    default:
        throw std::runtime_error(cannot + std::strerror(error) + ".");
    }
}

// What a new file of this user gets: read and write as the umask allows. The umask is read,
// not set and set back, since another thread may make a file meanwhile.
mode_t NewFileMode() {
    std::ifstream status("/proc/self/status");
    mode_t mask = 022;
    for (std::string line; std::getline(status, line);)
        if (line.rfind("Umask:", 0) == 0) mask = static_cast<mode_t>(std::stoul(line.substr(6), nullptr, 8));
    return 0666 & ~mask;
}

// The temporary file beside the target; removed unless it took the target's name.
class TemporaryFile {
public:
    explicit TemporaryFile(const fs::path& target) : target_(target) {
        if (fs::is_directory(target)) Fail(target, EISDIR);
        std::string pattern = (FolderOf(target) / ("." + target.filename().string() + ".XXXXXX")).string();
        std::vector<char> name(pattern.begin(), pattern.end());
        name.push_back('\0');
        fd_ = mkstemp(name.data());
        if (fd_ < 0) Fail(target, errno);
        path_ = name.data();
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() {
        if (fd_ >= 0) close(fd_);
        if (!path_.empty()) unlink(path_.c_str());
    }

    const fs::path& Path() const { return path_; }

    void Write(std::string_view bytes) {
        while (!bytes.empty()) {
            const ssize_t written = write(fd_, bytes.data(), bytes.size());
            if (written < 0 && errno == EINTR) continue;
            if (written <= 0) Fail(target_, written < 0 ? errno : ENOSPC);
            bytes.remove_prefix(static_cast<std::size_t>(written));
        }
    }

    // The content is complete: on the disk, with the target's permissions, under its name.
    void TakeTargetsName() {
        // A library that wrote by name may have made the file anew: sync what the name holds.
        const int fd = open(path_.c_str(), O_RDONLY | O_CLOEXEC);
        if (fd < 0) Fail(target_, errno);
        struct stat old {};
        const mode_t mode = stat(target_.c_str(), &old) == 0 ? old.st_mode & 07777 : NewFileMode();
        const int error = fsync(fd) != 0 || fchmod(fd, mode) != 0 ? errno : 0;
        close(fd);
        if (error != 0) Fail(target_, error);
        if (rename(path_.c_str(), target_.c_str()) != 0) Fail(target_, errno);
        path_.clear();
        // The new name itself is on the disk once the folder is synced.
        const int folder = open(FolderOf(target_).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (folder >= 0) {
            fsync(folder);
            close(folder);
        }
    }

    void Close() {
        const int fd = fd_;
        fd_ = -1;
        if (close(fd) != 0) Fail(target_, errno);
    }

private:
    fs::path target_;
    fs::path path_;
    int fd_ = -1;
};

} // namespace

void ReplaceFile(const fs::path& path, const std::function<void(const fs::path& temporary)>& write) {
    TemporaryFile file(path);
    file.Close();
    try {
        write(file.Path());
    } catch (const std::system_error& error) {
        // The library said which system error stopped it: tell it as for any other file.
        if (error.code().category() == std::generic_category() ||
            error.code().category() == std::system_category())
            Fail(path, error.code().value());
        throw;
    }
    file.TakeTargetsName();
}

void ReplaceFile(const fs::path& path, std::string_view bytes) {
    TemporaryFile file(path);
    file.Write(bytes);
    file.Close();
    file.TakeTargetsName();
}

} // namespace qx::desk
