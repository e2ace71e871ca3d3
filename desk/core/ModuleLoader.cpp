#include "ModuleLoader.h"

#include <dlfcn.h>

#include <algorithm>
#include <cstdlib>

namespace qx::desk {

ModuleLoader::~ModuleLoader() { UnloadAll(); }

void ModuleLoader::LoadFolder(const std::filesystem::path& folder, HostApp& app) {
    std::error_code ec;
    if (!std::filesystem::is_directory(folder, ec)) {
        problems_.push_back("The modules folder " + folder.string() + " does not exist.");
        return;
    }
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder, ec))
        if (entry.is_regular_file() && entry.path().extension() == ".so")
            files.push_back(entry.path());
    std::sort(files.begin(), files.end()); // the same order on every machine

    for (const auto& file : files) {
        void* handle = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
        if (!handle) {
            problems_.push_back(file.filename().string() + ": " + dlerror());
            continue;
        }
        auto create = reinterpret_cast<QXCreateModuleFn>(dlsym(handle, "QXCreateModule"));
        IModule* module = create ? create(kModuleAbiVersion) : nullptr;
        if (!module) {
            problems_.push_back(file.filename().string() +
                                (create ? ": built for another version of QX Desk"
                                        : ": not a QX Desk module"));
            dlclose(handle);
            continue;
        }
        module->Init(app);
        modules_.push_back({file, handle, module});
    }
}

void ModuleLoader::Plug(IModule& module, HostApp& app) {
    module.Init(app);
    modules_.push_back({{}, nullptr, &module});
}

void ModuleLoader::UnloadAll() {
    while (!modules_.empty()) {
        auto loaded = modules_.back();
        modules_.pop_back();
        loaded.module->Terminate();
        if (!loaded.handle) continue; // the program's own: it keeps it
        delete loaded.module; // its code lives in the library: delete before dlclose
        dlclose(loaded.handle);
    }
}

std::filesystem::path DefaultModulesFolder() {
    if (const char* folder = std::getenv("QX_MODULES_DIR"); folder && *folder) return folder;
    std::error_code ec;
    auto program = std::filesystem::read_symlink("/proc/self/exe", ec);
    if (ec) return "modules";
    return program.parent_path().parent_path() / "modules";
}

} // namespace qx::desk
