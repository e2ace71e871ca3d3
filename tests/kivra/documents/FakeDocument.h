#pragma once
// One open document as the host's engine presents it to a module's extension, built on the
// host's real controls and a real company database: the item grid (column 0 the serial
// column), the charges grid, the summary grid in its panel, and the series' own input boxes.
// Leaving a cell of the item grid raises the cell events, as the engine does.

#include "host/HostDocument.h"

#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace qx::test {

// A column of the series' item grid: its screen member ("COL_QUANTITY") or module key
// ("ADD_LESS_KGS"), and its format.
struct ItemColumn {
    std::string name;
    std::string format;
};

class FakeDocument : public HostDocument, public DocumentForm {
public:
    explicit FakeDocument(CompanyDb& company) : db(company) {
        grid_.Editable = true;
        grid_.GrowsRows = true;
        grid_.OnCellBeforeLostFocus = [this](int row, int col, const std::string& text,
                                             bool& cancel) {
            Raise([&](DocumentEvents& e) { e.GridCellBeforeLostFocus(row, col, text, cancel); });
        };
        grid_.OnCellLostFocus = [this](int row, int col) {
            Raise([&](DocumentEvents& e) { e.GridCellLostFocus(row, col); });
        };
        for (int col = 0; col <= 17; ++col) charges_.AddColumn("", 1000);
    }

    // What the engine knows of the document; tests set it.
    CompanyDb& db;
    Date docDate = Date::FromYmd(2017, 5, 10);
    std::string docType = "Sale";
    std::string seriesProperties;
    std::string seriesCode = "JF";
    PropertyBag seriesInfo;
    PropertyBag mainFields;
    std::int32_t documentId = 0;

    template <class F> void Raise(F&& raise) {
        for (auto* listener : std::vector(listeners_)) raise(*listener);
    }

    // Builds the item grid of a series, with rows for the lines, and raises the column events.
    void BuildItemGrid(const std::vector<ItemColumn>& columns, int lines = 4) {
        grid_.ClearColumns();
        members_.clear();
        grid_.AddColumn("S.No.", 400);
        Raise([](DocumentEvents& e) { e.MakeGridColumnsBegin(); });
        for (const auto& column : columns) {
            const int col = grid_.AddColumn(column.name, 1000, Align::Default, column.format);
            if (column.name.starts_with("COL_"))
                members_[column.name] = col;
            else
                Raise([&](DocumentEvents& e) { e.MakeGridColumns(col, column.name); });
        }
        Raise([](DocumentEvents& e) { e.MakeGridColumnsEnd(); });
        grid_.SetRows(lines + 1);
    }

    // The series' own input boxes, by name, and the event that finds them.
    void BuildInputBoxes(const std::vector<std::string>& names) {
        boxes_.assign(1, nullptr); // numbered from 1, as the host numbers them
        for (const auto& name : names) {
            auto& box =
                screen_.Add<ui::TextBox>("TXPUDI" + std::to_string(screen_.Controls().size()));
            box.ExtVal().SetValue("Name", name);
            boxes_.push_back(&box);
        }
        Raise([](DocumentEvents& e) { e.MakeInputControls(); });
    }
    ui::TextBox& Box(const std::string& name) {
        for (auto* box : boxes_)
            if (box && box->ExtVal().GetValue("Name").AsText() == name) return *box;
        throw std::invalid_argument("no input box " + name);
    }

    void Set(int row, const std::string& member, std::string text) {
        grid_.SetTextMatrix(row, Col(member), std::move(text));
    }
    const std::string& Get(int row, const std::string& member) const {
        return grid_.TextMatrix(row, Col(member));
    }
    // The column of a screen member or of a module key.
    int Col(const std::string& name) const {
        if (auto it = members_.find(name); it != members_.end()) return it->second;
        for (int col = 1; col < grid_.Cols(); ++col)
            if (grid_.Column(col).caption == name) return col;
        throw std::invalid_argument("no column " + name);
    }

    // HostDocument
    DocumentForm& Form() override { return *this; }
    CompanyDb& Database() override { return db; }
    Date DocDate() const override { return docDate; }
    std::string DocType() const override { return docType; }
    std::string SeriesProperties() const override { return seriesProperties; }
    const PropertyBag& SeriesInfo() const override { return seriesInfo; }
    std::int32_t SeriesID() const override { return seriesInfo.GetValue("SeriesID").AsInt(); }
    std::string SeriesCode() const override { return seriesCode; }
    PropertyBag& MainFields() override { return mainFields; }
    std::int32_t DocumentID() const override { return documentId; }
    bool IsNewDocument() const override { return documentId == 0; }
    Amount DocumentAmount() const override {
        Amount total;
        for (int row = 1; row < grid_.Rows(); ++row) total += TextToAmount(Get(row, "COL_AMOUNT"));
        return total;
    }
    std::int32_t PartyID() const override { return 0; }
    bool GstApplicable() const override { return false; }
    void CalcTaxAmt() override { Unexpected("CalcTaxAmt"); }
    Amount PostingValue(int) const override { Unexpected("PostingValue"); }
    void SetPostingValue(int, Amount) override { Unexpected("SetPostingValue"); }
    PropertyBag& VoucherFields() override { Unexpected("VoucherFields"); }
    void Subscribe(DocumentEvents& listener) override { listeners_.push_back(&listener); }
    void Unsubscribe(DocumentEvents& listener) override { std::erase(listeners_, &listener); }
    std::size_t Listeners() const { return listeners_.size(); }

    // DocumentForm
    ui::Screen& Screen() override { return screen_; }
    ui::Grid& Grid() override { return grid_; }
    ui::Grid& GridTot2() override { return charges_; }
    ui::Grid& GridInfo() override { return summary_; }
    ui::Control& PicGridInfo() override { return panel_; }
    bool ShowGridinfo() const override { return showGridinfo_; }
    void SetShowGridinfo(bool show) override { showGridinfo_ = show; }
    std::vector<ui::TextBox*> TXPUDI() override { return boxes_; }
    ui::TextBox& TXPSALETYPE() override { return saleType_; }
    ui::TextBox& TxpCustomer() override { return customer_; }
    ui::TextBox& TxpDocDate() override { return docDateBox_; }
    void ChooseParty(std::int32_t, const std::string&) override { Unexpected("ChooseParty"); }
    int Member(std::string_view name) const override {
        auto it = members_.find(std::string(name));
        return it == members_.end() ? 0 : it->second;
    }
    void FillStkInfo(int) override { Unexpected("FillStkInfo"); }
    // The engine's own line value (quantity times rate), then the event.
    void RecalcGridRow(int row) override {
        const Amount amount =
            TextToAmount(Get(row, "COL_QUANTITY")) * TextToAmount(Get(row, "COL_RATE"));
        Set(row, "COL_AMOUNT", FormatAmount(amount, "c2"));
        Raise([&](DocumentEvents& e) { e.RecalcGridRow(row); });
    }
    void SeriesSelected() override {
        Raise([](DocumentEvents& e) { e.SelectSeries(); });
    }
    void SetupMode() override { Unexpected("SetupMode"); }
    void RecalcGrid() override { Unexpected("RecalcGrid"); }

private:
    [[noreturn]] static void Unexpected(const char* what) {
        throw std::logic_error(std::string(what) + " is not raised by the extension at entry time");
    }

    std::vector<DocumentEvents*> listeners_;
    ui::Screen screen_{"Documents", "Documents"};
    ui::Grid& grid_ = screen_.Add<ui::Grid>("Grid");
    ui::Grid& charges_ = screen_.Add<ui::Grid>("GridTot2");
    ui::Grid& summary_ = screen_.Add<ui::Grid>("GridInfo");
    ui::Label& panel_ = screen_.Add<ui::Label>("picGridInfo");
    ui::TextBox& saleType_ = screen_.Add<ui::TextBox>("TXPSALETYPE");
    ui::TextBox& customer_ = screen_.Add<ui::TextBox>("txpCustomer");
    ui::TextBox& docDateBox_ = screen_.Add<ui::TextBox>("txpDocDate");
    std::vector<ui::TextBox*> boxes_;
    std::map<std::string, int> members_;
    bool showGridinfo_ = false;
};

} // namespace qx::test
