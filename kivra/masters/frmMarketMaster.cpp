#include "frmMarketMaster.h"

#include "kivra/module/mKivraModule.h"

#include "host/Text.h"

namespace kivra {
namespace {

constexpr const char* kTitle = "Local Mandi Master";

} // namespace

frmMarketMaster::frmMarketMaster(ModuleContext& context)
    : Screen("frmMarketMaster", kTitle), context_(context), grid_(Add<qx::ui::Grid>("Grid")),
      bar_(Add<qx::ui::ButtonBar>("BtnBar1")) {
    Icon = "Books";
    auto& title = Add<qx::ui::Label>("lblTitle", kTitle);
    title.Heading = true;
    AddRow({&title});
    AddRow({&grid_});
    AddRow({&bar_});

    grid_.Editable = true;
    grid_.GrowsRows = true;
    grid_.OnRowAdded = [this](int row) { grid_.SetTextMatrix(row, kColSerial, std::to_string(row)); };
    grid_.OnCellBeforeLostFocus = [this](int row, int col, const std::string& value, bool& cancel) {
        CheckCell(row, col, value, cancel);
    };
    grid_.OnRowLeave = [this](int row, bool& cancel) {
        if (!grid_.TextMatrix(row, kColName).empty() && !SaveRow(row)) cancel = true;
    };
    bar_.OnClick = [this](const std::string& key) { OnCommand(key); };
}

void frmMarketMaster::Load() {
    if (!db_) db_ = &context_.Db();
    CheckMarketTable(*db_);

    grid_.ClearColumns();
    grid_.AddColumn("", 0);
    grid_.AddColumn("Sr. No.", 600, qx::AlignFromCode(4));
    grid_.AddColumn("Market Name", 2500);
    grid_.AddColumn("Station", 1500);
    grid_.AddColumn("State", 1500);
    grid_.AddColumn("Form Series", 800, qx::AlignFromCode(4));
    grid_.AddColumn("Remarks", 3000);
    grid_.Column(kColSerial).editable = false;

    bar_.AddItem("Delete,F3: Delete,Delete");
    bar_.AddItem("F4");
    bar_.AddItem("F5");
    bar_.SetItemEnabled("F4", false);
    bar_.SetItemEnabled("F5", false);
    bar_.AddItem("Preview,F8: Preview,Preview");
    bar_.AddItem("Print,F9: Print,Print");
    bar_.AddItem("Exit,Esc: Exit,Close");

    FillGrid();
}

void frmMarketMaster::FirstActivate() {
    grid_.SetCurrent(grid_.Rows() - 1, kColName); // the empty row for a new market
    grid_.SetFocus();
    context_.Ui().RegisterWindow(*this, kTitle, "Books");
}

void frmMarketMaster::QueryUnload(bool& cancel) {
    // What the user typed last is kept as if he had left the row.
    if (!grid_.Commit()) {
        cancel = true;
        return;
    }
    int row = grid_.Row();
    if (row >= 1 && row < grid_.Rows() && !grid_.TextMatrix(row, kColName).empty() && !SaveRow(row))
        cancel = true;
}

void frmMarketMaster::Unload() { context_.Ui().UnregisterWindow(*this); }

void frmMarketMaster::FillGrid() {
    grid_.SetRedraw(false);
    grid_.SetRows(1);
    auto rows = db_->OpenRecordset("SELECT * FROM MARKETMASTER ORDER BY MARKETNAME");
    int records = 0;
    for (; !rows->EndOfRows(); rows->MoveNext()) {
        int row = ++records;
        grid_.SetRows(row + 1);
        grid_.SetTextMatrix(row, kColId, rows->Field("MARKETID").AsText());
        grid_.SetTextMatrix(row, kColSerial, std::to_string(row));
        grid_.SetTextMatrix(row, kColName, rows->Field("MARKETNAME").AsText());
        grid_.SetTextMatrix(row, kColStation, rows->Field("STATION").AsText());
        grid_.SetTextMatrix(row, kColState, rows->Field("STATE").AsText());
        grid_.SetTextMatrix(row, kColSeries, rows->Field("SERIES").AsText());
        grid_.SetTextMatrix(row, kColRemarks, rows->Field("REMARKS").AsText());
    }
    rows->Close();
    grid_.SetRows(records + 2); // one empty row for a new market
    grid_.SetCurrent(1, kColName);
    grid_.SetRedraw(true);
}

bool frmMarketMaster::NameTaken(const std::string& name, std::int64_t id) {
    auto same = db_->OpenRecordset("SELECT * FROM MARKETMASTER WHERE MARKETNAME=" +
                                   qx::SqlQuote(name) + " AND MARKETID<>" + std::to_string(id));
    const bool taken = !same->EndOfRows();
    same->Close();
    return taken;
}

void frmMarketMaster::CheckCell(int row, int col, const std::string& value, bool& cancel) {
    if (col == kColName && !value.empty()) {
        // Renaming a market to its own name is no duplicate: its own id is left out.
        if (NameTaken(value, qx::Value(grid_.TextMatrix(row, kColId)).AsLong())) {
            context_.Util().ShowMessage("This Market Name already exists.", "", "W");
            cancel = true;
        }
    } else if (col == kColSeries && qx::CharacterCount(value) > 5) {
        // Deliberately tighter than the column's 10: form series are short codes.
        context_.Util().ShowMessage("Maximum 5 characters allowed in Series.", "", "E");
        cancel = true;
    }
}

bool frmMarketMaster::SaveRow(int row) {
    try {
        auto id = qx::Value(grid_.TextMatrix(row, kColId)).AsLong();
        bool isNew = id == 0;
        bool taken = false;
        {
            // The name and a new market's id are decided again under the lock that writes the
            // row: another program may have saved a market since the cell was checked.
            qx::Transaction unit(*db_);
            taken = NameTaken(grid_.TextMatrix(row, kColName), id);
            if (!taken) {
                if (isNew) id = db_->LookupValue("MARKETMASTER", "MAX(MARKETID)", "").AsLong() + 1;
                auto record = db_->OpenRecordset("SELECT * FROM MARKETMASTER WHERE MARKETID=" + std::to_string(id));
                if (record->EndOfRows()) {
                    record->AddNew();
                    record->SetField("MARKETID", id);
                }
                record->SetField("MARKETNAME", grid_.TextMatrix(row, kColName));
                record->SetField("STATION", grid_.TextMatrix(row, kColStation));
                record->SetField("STATE", grid_.TextMatrix(row, kColState));
                record->SetField("SERIES", grid_.TextMatrix(row, kColSeries));
                record->SetField("REMARKS", grid_.TextMatrix(row, kColRemarks));
                record->Update();
                record->Close();
                unit.Commit();
            }
        }
        if (taken) {
            context_.Util().ShowMessage("This Market Name already exists.", "", "W");
            return false;
        }
        // The id is written only once the row is stored, so a failed save leaves it new.
        if (isNew) grid_.SetTextMatrix(row, kColId, std::to_string(id));
        return true;
    } catch (const std::exception& error) {
        context_.Util().ShowMessage(error.what(), "", "E");
        return false;
    }
}

void frmMarketMaster::DeleteRow() {
    int row = grid_.Row();
    if (row < 1 || row >= grid_.Rows()) return;
    auto id = qx::Value(grid_.TextMatrix(row, kColId)).AsLong();
    if (id != 0) {
        grid_.SetRowColour(row, 255);
        if (context_.Util().ShowMessage("Do you want to remove this row ?", "2", "W") != qx::kAnswerYes) {
            grid_.SetRowColour(row, 0);
            return;
        }
        db_->ExecuteSql("DELETE FROM MARKETMASTER WHERE MARKETID=" + std::to_string(id), 128);
    }
    grid_.SetRedraw(false);
    grid_.RemoveRow(row);
    for (int r = row; r < grid_.Rows(); ++r)
        if (!grid_.TextMatrix(r, kColSerial).empty()) grid_.SetTextMatrix(r, kColSerial, std::to_string(r));
    // There is always an empty row to type a new market into.
    int last = grid_.Rows() - 1;
    if (last < 1 || !grid_.TextMatrix(last, kColName).empty() || !grid_.TextMatrix(last, kColId).empty())
        grid_.SetRows(grid_.Rows() + 1);
    grid_.SetRedraw(true);
}

void frmMarketMaster::PrintList(qx::PrintMode mode) {
    auto job = grid_.ToPrintJob(kTitle);
    job.reportName = "MarketMaster";
    // Rows never saved (the empty row for a new market) are not part of the list.
    int keep = grid_.Rows() - 1;
    while (keep >= 2 && qx::Value(grid_.TextMatrix(keep, kColId)).AsLong() == 0) --keep;
    job.rows.resize(static_cast<std::size_t>(std::max(keep, 0)));
    context_.Ui().Print(job, mode);
}

void frmMarketMaster::OnCommand(const std::string& key) {
    if (key == "Delete") DeleteRow();
    else if (key == "Preview") PrintList(qx::PrintMode::Preview);
    else if (key == "Print") PrintList(qx::PrintMode::Print);
    else if (key == "Exit") Close();
}

} // namespace kivra
