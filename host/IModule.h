#pragma once
// The contract of a loadable module. A module is a shared library in the desk's modules
// folder exporting the C function QXCreateModule; the desk calls it once, then Init.

#include "HostApp.h"
#include "Object.h"

#include <memory>
#include <string>

namespace qx {

// Raised when a change to this header breaks modules built against the older one.
inline constexpr int kModuleAbiVersion = 1;

class IModule : public Object {
public:
    virtual void Init(HostApp& app) = 0;
    virtual void Terminate() = 0;
    virtual std::string ID() const = 0;
    virtual std::string Description() const = 0;
    // A new object by name (compared without regard to case); null for an unknown name.
    virtual std::shared_ptr<Object> GetForm(const std::string& name) = 0;
    virtual bool RunProc(const std::string& procedure, const std::string& arguments) = 0;
    // The object through which the host reaches the module's public operations (Invoke).
    virtual Object& Obj() = 0;
};

} // namespace qx

extern "C" {
// Returns a new module, owned by the caller, or null when the host's ABI differs.
using QXCreateModuleFn = qx::IModule* (*)(int hostAbiVersion);
}
