#pragma once
// Finds and loads modules: shared libraries exporting QXCreateModule.

#include "host/IModule.h"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace qx::desk {

struct LoadedModule {
    std::filesystem::path file; // empty for a module plugged in by the program
    void* handle = nullptr;     // null for a module plugged in by the program
    IModule* module = nullptr;
};

class ModuleLoader {
public:
    ModuleLoader() = default;
    ~ModuleLoader();
    ModuleLoader(const ModuleLoader&) = delete;
    ModuleLoader& operator=(const ModuleLoader&) = delete;

    // Loads every module of the folder and calls Init; a file that is not a module is
    // skipped with a line in Problems().
    void LoadFolder(const std::filesystem::path& folder, HostApp& app);
    // Plugs in a module the program made itself (a test's, or one linked in): Init now,
    // Terminate on unloading; the caller keeps ownership.
    void Plug(IModule& module, HostApp& app);
    // Terminate, delete and unload every module, newest first.
    void UnloadAll();
    const std::vector<LoadedModule>& Modules() const { return modules_; }
    const std::vector<std::string>& Problems() const { return problems_; }

private:
    std::vector<LoadedModule> modules_;
    std::vector<std::string> problems_;
};

// The desk's modules folder: $QX_MODULES_DIR, else <folder of the program>/../modules.
std::filesystem::path DefaultModulesFolder();

} // namespace qx::desk
