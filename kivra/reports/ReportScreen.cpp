#include "ReportScreen.h"

#include "ReportGrid.h"

namespace kivra {

ReportScreen::ReportScreen(ModuleContext& context, std::string name, std::string title)
    : Screen(std::move(name), title), context_(context), heading_(Add<qx::ui::Label>("lblPeriod")),
      grid_(Add<qx::ui::Grid>("Grid")), bar_(Add<qx::ui::ButtonBar>("BtnBar1")) {
    Icon = "FinalAc";
    auto& label = Add<qx::ui::Label>("lblTitle", std::move(title));
    label.Heading = true;
    AddRow({&label});
    AddRow({&heading_});
    AddRow({&grid_});
    AddRow({&bar_});
}

void ReportScreen::Show(const qx::PrintJob& job) {
    heading_.SetText(scope_.Heading());
    ShowJob(grid_, job);
}

} // namespace kivra
