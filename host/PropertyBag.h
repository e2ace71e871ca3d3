#pragma once
// Name/value bag for settings and event parameters. Names are looked up without regard to
// letter case, as the host's settings are.

#include "Value.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

struct CaseInsensitiveLess {
    using is_transparent = void;
    bool operator()(std::string_view a, std::string_view b) const;
};

class PropertyBag {
public:
    // Null when the name is not in the bag.
    Value GetValue(std::string_view name) const;
    void SetValue(std::string_view name, Value value);
    bool Has(std::string_view name) const;
    void Remove(std::string_view name);
    std::vector<std::string> Names() const;

private:
    std::map<std::string, Value, CaseInsensitiveLess> values_;
};

} // namespace qx
