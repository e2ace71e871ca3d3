#pragma once
// Writes a file whole or not at all. What is written goes into a temporary file beside the
// one asked for and takes its name only once it is complete and on the disk, so that a
// failure (a full disk, a program killed part way) leaves the old file, or none, never half
// of one. Failures throw std::runtime_error in words a user is shown: the folder missing, no
// permission, the disk full.

#include <filesystem>
#include <functional>
#include <string_view>

namespace qx::desk {

// write is given the temporary file's path and fills it (libraries that write by name);
// it throws to give up.
void ReplaceFile(const std::filesystem::path& path,
                 const std::function<void(const std::filesystem::path& temporary)>& write);
void ReplaceFile(const std::filesystem::path& path, std::string_view bytes);

} // namespace qx::desk
