#include "DocumentExtensions.h"

#include <string>
#include <string_view>
#include <utility>

namespace qx::desk {
namespace {

// The firm setting "DocExtensions": names separated by commas, semicolons or blanks.
std::vector<std::string> ExtensionNames(std::string_view setting) {
    std::vector<std::string> names;
    std::string name;
    for (char c : std::string(setting) + ",") {
        if (c == ',' || c == ';' || c == ' ') {
            if (!name.empty())
                names.push_back(std::move(name));
            name.clear();
        } else {
            name += c;
        }
    }
    return names;
}

} // namespace

void DocumentExtensions::Make(DeskApp& app, DeskDocument& document) {
    const auto setting = app.DeskSession().FirmSettings().GetValue("DocExtensions").AsText();
    for (const std::string& name : ExtensionNames(setting))
        for (const LoadedModule& loaded : app.Modules())
            if (auto extension =
                    std::dynamic_pointer_cast<IDocExtension>(loaded.module->GetForm(name))) {
                extension->Init(document);
                extensions_.push_back(std::move(extension));
            }
}

void DocumentExtensions::Terminate() {
    for (auto& extension : extensions_)
        extension->Terminate();
    extensions_.clear();
}

} // namespace qx::desk
