#pragma once
// The local mandi master: one editable grid of the company's markets, edited in place row
// by row. A row is saved as soon as the user leaves it; there is no save button.

#include "kivra/module/ModuleContext.h"

#include "host/ui/Screen.h"

namespace kivra {

class frmMarketMaster : public qx::ui::Screen {
public:
    explicit frmMarketMaster(ModuleContext& context);

    // Grid columns.
    static constexpr int kColId = 0;
    static constexpr int kColSerial = 1;
    static constexpr int kColName = 2;
    static constexpr int kColStation = 3;
    static constexpr int kColState = 4;
    static constexpr int kColSeries = 5;
    static constexpr int kColRemarks = 6;

protected:
    void Load() override;
    void FirstActivate() override;
    void QueryUnload(bool& cancel) override;
    void Unload() override;

private:
    void FillGrid();
    // Whether another market than the one of that id has the name (the database compares).
    bool NameTaken(const std::string& name, std::int64_t id);
    void CheckCell(int row, int col, const std::string& newValue, bool& cancel);
    bool SaveRow(int row);
    void DeleteRow();
    void PrintList(qx::PrintMode mode);
    void OnCommand(const std::string& key);

    ModuleContext& context_;
    qx::CompanyDb* db_ = nullptr;
    qx::ui::Grid& grid_;
    qx::ui::ButtonBar& bar_;
};

} // namespace kivra
