#pragma once
// A folder of its own under the system's temporary folder, removed with all it holds; anyone
// may enter it, since parts of some tests run as another user. And the bytes of a file.

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

namespace qx::test {

class TempFolder {
public:
    TempFolder() {
        std::random_device random;
        path_ = std::filesystem::temp_directory_path() /
                ("qx-test-" + std::to_string(random()) + std::to_string(random()));
        std::filesystem::create_directories(path_);
        std::filesystem::permissions(path_, std::filesystem::perms(0755));
    }
    ~TempFolder() {
        std::error_code ec;
        std::filesystem::remove_all(path_, ec);
    }
    const std::filesystem::path& Path() const { return path_; }

private:
    std::filesystem::path path_;
};

inline std::string FileBytes(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

} // namespace qx::test
