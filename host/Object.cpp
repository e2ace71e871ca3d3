#include "Object.h"

#include <stdexcept>
#include <string>

namespace qx {

Value Object::Invoke(std::string_view operation, std::span<Value>) {
    throw std::invalid_argument("no operation " + std::string(operation));
}

} // namespace qx
