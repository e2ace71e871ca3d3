#include "HostDocuments.h"

#include "DocumentScreen.h"

namespace qx::desk {

void RegisterHostDocuments(DeskApp& app) {
    app.RegisterHostScreen("", "Documents", "Documents",
                           [&app] { return std::make_shared<DocumentScreen>(app); });
    // Choosing no series opens nothing.
    app.RegisterHostScreen("Documents", "DocumentEntry", "Documents",
                           [&app]() -> std::shared_ptr<ui::Screen> {
                               const std::int32_t series = ChooseSeries(app, "");
                               if (series == 0)
                                   return nullptr;
                               auto screen = std::make_shared<DocumentScreen>(app);
                               screen->Properties().SetValue("DocSeriesID", series);
                               return screen;
                           });
}

} // namespace qx::desk
