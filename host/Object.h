#pragma once
// Base of every object that the host and a module hand each other by name (GetForm, Obj).
// Invoke is the late-bound call: the host reaches a module's public operations by name
// without knowing its classes. Arguments are passed by reference so that an operation can
// write back into them.

#include "Value.h"

#include <span>
#include <string_view>

namespace qx {

class Object {
public:
    virtual ~Object() = default;
    // Throws std::invalid_argument for an operation the object does not have.
    virtual Value Invoke(std::string_view operation, std::span<Value> args);
};

} // namespace qx
