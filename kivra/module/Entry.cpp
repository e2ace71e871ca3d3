// The C entry point through which the desk creates the module.
#include "CQXModule.h"

extern "C" __attribute__((visibility("default"))) qx::IModule* QXCreateModule(int hostAbiVersion) {
    if (hostAbiVersion != qx::kModuleAbiVersion) return nullptr;
    return new kivra::CQXModule();
}
