#include "DocumentScreen.h"

#include "DocumentPrint.h"
#include "NameLookups.h"
#include "ScreenTexts.h"

#include "desk/masters/TableMaster.h"
#include "host/Text.h"

#include <array>
#include <ctime>
#include <stdexcept>
#include <utility>

namespace qx::desk {
namespace {

std::string BasisText(ChargeBasis basis) {
    switch (basis) {
    case ChargeBasis::PerBag:
        return "Per Bag";
    case ChargeBasis::Percent:
        return "%";
    case ChargeBasis::Fixed:
        break;
    }
    return "Fixed";
}

Date Today() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    return Date::FromYmd(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday);
}

// Leaving a control while the screen is reset is not the user's doing: no checks, no events.
class Quietly {
public:
    explicit Quietly(bool& quiet) : quiet_(quiet), was_(quiet) { quiet_ = true; }
    ~Quietly() { quiet_ = was_; }
    Quietly(const Quietly&) = delete;
    Quietly& operator=(const Quietly&) = delete;

private:
    bool& quiet_;
    bool was_;
};

// A column of the host's own in the item grid (the serial number, a hidden mark): no series
// made it, and nobody types into it.
SeriesColumn HostColumn(std::string caption, int width) {
    SeriesColumn column;
    column.caption = std::move(caption);
    column.width = width;
    column.editable = false;
    return column;
}

// The charges grid: the columns extensions address (rate, key, head code) at their numbers, the
// bookkeeping ones hidden; the user types rates only.
void BuildChargeColumns(ui::Grid& charges) {
    using Screen = DocumentScreen;
    struct Shown {
        int col;
        const char* caption;
        int width;
    };
    constexpr std::array kShown = {Shown{0, "", 300}, // + or -
                                   Shown{Screen::kChargeCaptionCol, "Charge", 2000},
                                   Shown{Screen::kChargeBasisCol, "Basis", 900},
                                   Shown{Screen::kChargeRateCol, "Rate", 900},
                                   Shown{Screen::kChargeAmountCol, "Amount", 1200}};
    for (int col = 0; col <= Screen::kChargeHeadCol; ++col) {
        charges.AddColumn("", 0);
        charges.Column(col).editable = col == Screen::kChargeRateCol;
    }
    for (const Shown& shown : kShown) {
        ui::GridColumn& column = charges.Column(shown.col);
        column.caption = shown.caption;
        column.width = shown.width;
    }
    for (int figure : {Screen::kChargeRateCol, Screen::kChargeAmountCol})
        charges.Column(figure).align = Align::Right;
    charges.SetColumnFormat(Screen::kChargeAmountCol, "c2");
}

} // namespace

DocumentScreen::DocumentScreen(DeskApp& app)
    : ui::Screen("Documents", "Documents"), app_(app), document_(app, *this),
      date_(Add<ui::TextBox>("txpDocDate", "Date")), number_(Add<ui::TextBox>("txpDocNo", "No.")),
      party_(Add<ui::TextBox>("txpCustomer", "Party")),
      saleType_(Add<ui::TextBox>("TXPSALETYPE", "Sale Type")), boxPool_(MakeBoxPool()),
      grid_(Add<ui::Grid>("Grid")), charges_(Add<ui::Grid>("GridTot2")),
      gross_(Add<ui::TextBox>("txtGross", "Gross Amount")),
      chargesTotal_(Add<ui::TextBox>("txtCharges", "Charges")),
      roundOff_(Add<ui::TextBox>("txtRoundOff", "Round Off")),
      grandTotal_(Add<ui::TextBox>("txtGrandTotal", "Grand Total")),
      picGridInfo_(Add<ui::Label>("picGridInfo")), gridInfo_(Add<ui::Grid>("GridInfo")),
      bar_(Add<ui::ButtonBar>("BtnBar1")) {
    Icon = "Documents";
    number_.NumericOnly = true;
    saleType_.NumericOnly = true;
    for (ui::TextBox* whole : {&number_, &saleType_})
        whole->OnValidate = [this, whole](bool& cancel) {
            CheckNumberBox(*whole, ColumnKind::WholeNumber, cancel);
        };
    date_.OnValidate = [this](bool& cancel) { CheckDate(cancel); };
    party_.OnValidate = [this](bool& cancel) { CheckParty(cancel); };
    party_.OnLookup = [this] {
        app_.Guard([&] {
            if (auto chosen = ChooseByName(app_, kAccounts, "Party", party_.Text(),
                                           CurrentSeries().partyGroups))
                PartyChosen(chosen->code, chosen->name);
        });
    };

    grid_.Editable = true;
    grid_.GrowsRows = true;
    grid_.OnCellBeforeLostFocus = [this](int row, int col, const std::string& typed, bool& cancel) {
        CheckCell(row, col, typed, cancel);
    };
    grid_.OnCellLostFocus = [this](int row, int col) { TakeCell(row, col); };
    grid_.OnRedraw = [this] {
        if (totalsWaiting_)
            app_.Guard([&] { ShowTotals(); });
    };

    BuildChargeColumns(charges_);
    charges_.Editable = true;
    charges_.OnCellBeforeLostFocus = [this](int row, int col, const std::string& typed,
                                            bool& cancel) { CheckRate(row, col, typed, cancel); };
    charges_.OnCellLostFocus = [this](int row, int col) {
        if (!rateTyped_)
            return;
        charges_.SetTextMatrix(row, col, *std::exchange(rateTyped_, std::nullopt));
        app_.Guard([&] { ShowTotals(); });
    };

    for (ui::TextBox* total : {&gross_, &chargesTotal_, &roundOff_, &grandTotal_})
        total->SetEnabled(false);
    gridInfo_.SetEnabled(false);
    SetShowGridinfo(false);

    bar_.AddItem("Lookup,F2: Look-up,Choose from the list");
    bar_.AddItem("Delete,F3: Delete,Delete the document");
    bar_.AddItem("Series,F4: Series,Another series");
    bar_.AddItem("New,F5: New,A new document");
    bar_.AddItem("Browse,F6: Browse,The series' documents");
    bar_.AddItem("Print,F9: Print,Print the document");
    bar_.AddItem("Save,F10: Save,Save the document");
    bar_.AddItem("Exit,Esc: Exit,Close");
    bar_.OnClick = [this](const std::string& key) { OnCommand(key); };

    BeginGroup();
    AddRow({&date_, &number_, &party_, &saleType_});
    if (!boxPool_.empty())
        AddRow({boxPool_.begin(), boxPool_.end()});
    AddRow({&grid_});
    BeginGroup("Charges");
    AddRow({&charges_});
    BeginGroup("Totals", true);
    for (ui::TextBox* total : {&gross_, &chargesTotal_, &roundOff_, &grandTotal_})
        AddRow({total});
    BeginGroup();
    AddRow({&picGridInfo_});
    AddRow({&gridInfo_});
    AddRow({&bar_});
}

// The series' own boxes come right after the standard ones, so that Enter reaches them before
// the grid. There are as many as the series with most boxes needs; a series uses the first
// of them and hides the rest.
std::vector<ui::TextBox*> DocumentScreen::MakeBoxPool() {
    std::vector<ui::TextBox*> pool;
    for (int i = 0, count = MostSeriesBoxes(Db()); i < count; ++i) {
        auto& box = Add<ui::TextBox>("TXPUDI" + std::to_string(i));
        const auto index = static_cast<std::size_t>(i);
        box.OnChange = [this, index] { BoxChanged(index); };
        box.OnValidate = [this, index, &box](bool& cancel) {
            CheckNumberBox(box, ColumnKind::Decimal, cancel);
            if (!cancel)
                CheckLookupBox(index, cancel);
        };
        pool.push_back(&box);
    }
    return pool;
}

void DocumentScreen::Load() {
    seriesId_ = PresetSeries();
    if (seriesId_ == 0)
        seriesId_ = ChooseSeries(app_, Properties().GetValue("DocType").AsText());
    if (seriesId_ == 0)
        throw std::runtime_error("Choose a series to enter its documents.");
    extensions_.Make(app_, document_);
    try {
        SeriesSelected();
    } catch (...) {
        extensions_.Terminate(); // the screen is not shown, so it never unloads
        throw;
    }
}

void DocumentScreen::FirstActivate() {
    app_.RegisterWindow(*this, Caption(), Icon);
    FocusFirstBox();
}

void DocumentScreen::Unload() {
    extensions_.Terminate();
}

std::int32_t DocumentScreen::PresetSeries() {
    if (auto id = Properties().GetValue("DocSeriesID").AsInt(); id != 0)
        return id;
    const std::string code = Trim(Properties().GetValue("DocSeriesCode").AsText());
    if (code.empty())
        return 0;
    const std::string name = Properties().GetValue("DocSeriesName").AsText();
    const std::int32_t id = FindSeries(Db(), code, name);
    if (id == 0)
        throw std::runtime_error("The series " + code + (name.empty() ? "" : " (" + name + ")") +
                                 " is not set up in this company.");
    return id;
}

void DocumentScreen::SeriesSelected() {
    Series series = LoadSeries(Db(), seriesId_);
    if (series.boxes.size() > boxPool_.size())
        throw std::runtime_error(
            "The series " + series.Title() +
            " has more boxes than this screen was opened with; open it again.");
    AddSeriesFields(Db(), series);
    document_.SetSeries(std::move(series));
    SetCaption(CurrentSeries().Title());
    document_.Raise([](DocumentEvents& l) { l.SelectSeries(); });
    BuildItemGrid();
    BuildBoxes();
    document_.Raise([](DocumentEvents& l) { l.MakeInputControls(); });
    NewDocument();
}

// Column 0 is the serial number, so that a column number 0 means "absent" to an extension;
// then the series' columns; every line keeps its item's code (STK_CODE) and, with a party
// column, its party's code, in hidden columns when the series does not show them.
void DocumentScreen::BuildItemGrid() {
    std::vector<SeriesColumn> columns = CurrentSeries().columns;
    if (!CurrentSeries().Column(kItemCodeKey))
        columns.push_back(HiddenItemCodeColumn());
    if (CurrentSeries().Column(kPartyKey))
        columns.push_back(HiddenPartyCodeColumn());

    grid_.SetRedraw(false);
    grid_.ClearColumns();
    grid_.Clear();
    gridColumns_.clear();
    members_.clear();
    partyCodeCol_ = 0;
    unworkedCol_ = 0;
    auto add = [this](const SeriesColumn& column) {
        const bool figure =
            column.role == ColumnRole::Number || column.role == ColumnRole::ItemCode;
        const int col =
            grid_.AddColumn(column.caption, column.width, figure ? Align::Right : Align::Default,
                            column.role == ColumnRole::Number ? column.format : "");
        grid_.Column(col).editable = column.editable;
        grid_.Column(col).key = column.key;
        gridColumns_.push_back(column);
        return col;
    };
    add(HostColumn("S.No.", 500));
    document_.Raise([](DocumentEvents& l) { l.MakeGridColumnsBegin(); });
    for (const SeriesColumn& column : columns) {
        const int col = add(column);
        if (column.role == ColumnRole::PartyCode) {
            partyCodeCol_ = col;
            continue;
        }
        members_.try_emplace("COL_" + column.key, col);
        document_.Raise([&](DocumentEvents& l) { l.MakeGridColumns(col, column.key); });
    }
    unworkedCol_ = add(HostColumn({}, 0));
    grid_.SetRows(2);
    grid_.SetRedraw(true);
    document_.Raise([](DocumentEvents& l) { l.MakeGridColumnsEnd(); });
}

void DocumentScreen::BuildBoxes() {
    const auto& boxes = CurrentSeries().boxes;
    boxChoices_.assign(boxes.size(), {});
    for (std::size_t i = 0; i < boxPool_.size(); ++i) {
        ui::TextBox& box = *boxPool_[i];
        if (i >= boxes.size()) {
            box.ExtVal().SetValue("Name", "");
            box.OnLookup = nullptr;
            box.SetVisible(false);
            continue;
        }
        const SeriesBox& configured = boxes[i];
        box.SetCaption(configured.caption);
        box.ExtVal().SetValue("Name", configured.name);
        box.NumericOnly = configured.numeric && configured.lookup.empty();
        box.OnLookup = configured.lookup.empty() ? std::function<void()>()
                                                 : [this, i] { app_.Guard([&] { LookupBox(i); }); };
        box.SetVisible(configured.visible);
    }
}

// The series' charges with their configured rates, or, for a saved document, the rates and
// heads it was saved with.
void DocumentScreen::FillCharges(const std::vector<AppliedCharge>* applied) {
    const auto& charges = CurrentSeries().charges;
    charges_.SetRedraw(false);
    charges_.Clear();
    charges_.SetRows(static_cast<int>(charges.size()) + 1);
    for (std::size_t i = 0; i < charges.size(); ++i) {
        const SeriesCharge& charge = charges[i];
        Amount rate = charge.rate;
        std::int32_t head = charge.headCode;
        if (applied)
            for (const AppliedCharge& saved : *applied)
                if (saved.key == charge.key) {
                    rate = saved.rate;
                    head = saved.headCode;
                }
        const int row = static_cast<int>(i) + 1;
        charges_.SetTextMatrix(row, 0, charge.sign < 0 ? "-" : "+");
        charges_.SetTextMatrix(row, kChargeCaptionCol, charge.caption);
        charges_.SetTextMatrix(row, kChargeBasisCol, BasisText(charge.basis));
        charges_.SetTextMatrix(row, kChargeRateCol, CellText(rate, ""));
        charges_.SetTextMatrix(row, kChargeKeyCol, charge.key);
        charges_.SetTextMatrix(row, kChargeHeadCol, CodeText(head));
    }
    charges_.SetRedraw(true);
}

void DocumentScreen::ClearContent() {
    totalsWaiting_ = false; // of the content that goes
    checked_.reset();
    itemCellRefused_ = rateRefused_ = false;
    partyName_.clear();
    party_.SetText("");
    for (ui::TextBox* box : boxPool_)
        box->SetText("");
    boxChoices_.assign(CurrentSeries().boxes.size(), {});
    grid_.SetRedraw(false);
    grid_.Clear();
    grid_.SetRows(2);
    // The cursor waits in the first cell the user types into.
    for (int col = 1; col < grid_.Cols(); ++col)
        if (grid_.Column(col).editable && grid_.Column(col).width > 0) {
            grid_.SetCurrent(1, col);
            break;
        }
    grid_.SetRedraw(true);
    // An extension's summary was of the document that was on the screen.
    gridInfo_.ClearColumns();
    gridInfo_.Clear();
    document_.Reset();
}

void DocumentScreen::FocusFirstBox() {
    const Quietly quiet(quiet_);
    date_.SetFocus();
}

void DocumentScreen::NewDocument() {
    ClearContent();
    date_.SetText(lastDate_.value_or(Today()).ToDisplay());
    proposedNumber_ = std::to_string(NextNumber(Db(), seriesId_));
    number_.SetText(proposedNumber_);
    saleType_.SetText("1");
    FillCharges(nullptr);
    ShowTotals();
    SetupMode();
    FocusFirstBox();
    document_.Raise([](DocumentEvents& l) { l.NewDocumentEnd(); });
    shownContent_ = ContentSnapshot();
}

void DocumentScreen::OpenDocument(std::int32_t documentId) {
    const PropertyBag main = ReadMain(Db(), documentId);
    if (const auto seriesId = main.GetValue("DOCSERIESID").AsInt(); seriesId != seriesId_) {
        seriesId_ = seriesId;
        SeriesSelected();
    }
    ClearContent();
    document_.SetIdentity(documentId, false);
    document_.Raise([](DocumentEvents& l) { l.EditDocumentBegin(); });
    ShowSavedHeader(main);
    document_.Raise([&](DocumentEvents& l) { l.EditMain(main); });

    const std::vector<PropertyBag> lines = ReadLines(Db(), documentId);
    grid_.SetRedraw(false);
    grid_.SetRows(static_cast<int>(lines.size()) + 2);
    for (std::size_t i = 0; i < lines.size(); ++i) {
        ShowSavedLine(static_cast<int>(i) + 1, lines[i]);
        document_.Raise([&](DocumentEvents& l) { l.EditItem(lines[i]); });
    }
    grid_.SetRedraw(true);
    const std::vector<AppliedCharge> charges = ReadCharges(Db(), documentId);
    FillCharges(&charges);
    ShowTotals();
    SetupMode();
    FocusFirstBox();
    document_.Raise([](DocumentEvents& l) { l.EditDocumentEnd(); });
    shownContent_ = ContentSnapshot();
}

// What the user can change of a document, to tell whether he changed it since it was shown.
std::string DocumentScreen::ContentSnapshot() const {
    std::string content;
    auto add = [&](const std::string& text) { content += text + '\x1f'; };
    for (const ui::TextBox* box : {&date_, &number_, &party_, &saleType_})
        add(box->Text());
    for (const ui::TextBox* box : boxPool_)
        add(box->Text());
    for (const ui::Grid* grid : {&grid_, &charges_})
        for (int row = 1; row < grid->Rows(); ++row)
            for (int col = 0; col < grid->Cols(); ++col)
                add(grid->TextMatrix(row, col));
    for (const ui::Grid* grid : {&grid_, &charges_})
        if (grid->Editing())
            add(*grid->Editing());
    return content;
}

// Before the document on the screen gives way (another one, closing): a document the user
// changed is saved or dropped as he says. False when it stays: he cancelled, or its save was
// refused.
bool DocumentScreen::LeaveDocument() {
    if (ContentSnapshot() == shownContent_)
        return true;
    switch (app_.ShowMessage("Do you want to save this document?", kYesNoCancel, "Q")) {
    case kAnswerYes:
        return SaveDocument();
    case kAnswerNo:
        return true;
    default:
        return false;
    }
}

void DocumentScreen::QueryUnload(bool& cancel) {
    if (!app_.Guard([&] { cancel = !LeaveDocument(); }))
        cancel = true;
}

void DocumentScreen::ShowSavedHeader(const PropertyBag& main) {
    date_.SetText(main.GetValue("DOCDATE").AsDate().ToDisplay());
    number_.SetText(main.GetValue("DOCNUMBER").AsText());
    saleType_.SetText(main.GetValue("SALETYPE").AsText());
    const std::int32_t partyCode = main.GetValue("PARTYCODE").AsInt();
    partyName_ = NameOf(Db(), kAccounts, partyCode);
    party_.SetText(partyName_);
    document_.SetParty(partyCode);
    const auto& boxes = CurrentSeries().boxes;
    for (std::size_t i = 0; i < boxes.size(); ++i) {
        const SeriesBox& box = boxes[i];
        const Value saved = box.field.empty() ? Value() : main.GetValue(box.field);
        if (box.lookup.empty()) {
            boxPool_[i]->SetText(box.numeric ? CellText(saved.AsAmount(), "") : saved.AsText());
            continue;
        }
        if (!box.field.empty())
            document_.MainFields().SetValue(box.field, saved);
        // The module that chose the record names it; failing one, the box shows its id.
        std::string text = saved.AsText();
        std::array<Value, 1> args{saved};
        if (!box.lookupText.empty() && saved.AsLong() != 0)
            AskModules(app_, box.lookupText, args,
                       [&](const Value& name) { text = name.AsText(); });
        boxChoices_[i] = text;
        boxPool_[i]->SetText(text);
    }
}

void DocumentScreen::ShowSavedLine(int row, const PropertyBag& line) {
    NumberRow(row);
    for (int col = 1; col < grid_.Cols(); ++col) {
        const SeriesColumn& column = ColumnAt(col);
        const Value saved = column.field.empty() ? Value() : line.GetValue(column.field);
        std::string text;
        switch (column.role) {
        case ColumnRole::Item:
            text = NameOf(Db(), kItems, saved.AsLong());
            break;
        case ColumnRole::Party:
            text = NameOf(Db(), kAccounts, saved.AsLong());
            break;
        case ColumnRole::ItemCode:
        case ColumnRole::PartyCode:
            text = CodeText(saved.AsLong());
            break;
        case ColumnRole::Number:
            text = CellText(saved.AsAmount(), column.format);
            break;
        case ColumnRole::Text:
            text = saved.AsText();
            break;
        }
        grid_.SetTextMatrix(row, col, text);
    }
}

void DocumentScreen::SetShowGridinfo(bool show) {
    showGridInfo_ = show;
    picGridInfo_.SetVisible(show);
    gridInfo_.SetVisible(show);
}

std::vector<ui::TextBox*> DocumentScreen::TXPUDI() {
    return {boxPool_.begin(),
            boxPool_.begin() + static_cast<std::ptrdiff_t>(CurrentSeries().boxes.size())};
}

int DocumentScreen::Member(std::string_view name) const {
    auto member = members_.find(name);
    return member == members_.end() ? 0 : member->second;
}

void DocumentScreen::FillStkInfo(int row) {
    const std::int32_t code = CodeIn(grid_, row, Member("COL_STK_CODE"));
    auto item = Db().OpenRecordset("SELECT * FROM STKMASTER WHERE QMCD=" + std::to_string(code));
    if (item->EndOfRows())
        return;
    const PropertyBag record = RecordOf(*item);
    if (const int itemCol = Member("COL_PRODUCT_ID"))
        grid_.SetTextMatrix(row, itemCol, record.GetValue("QMHD").AsText());
    document_.Raise([&](DocumentEvents& l) { l.FillStkInfo(row, false, record); });
}

// The host's line calculation: amount = quantity x rate, shown as the amount column shows
// figures. An extension may override it in the event that follows. The line is marked as not
// worked out until both have run, so that a failure leaves it marked.
void DocumentScreen::RecalcGridRow(int row) {
    grid_.SetTextMatrix(row, unworkedCol_, "*");
    const int quantityCol = Member("COL_QUANTITY");
    const int rateCol = Member("COL_RATE");
    const int amountCol = Member("COL_AMOUNT");
    if (quantityCol && rateCol && amountCol) {
        const Amount amount = TextToAmount(grid_.TextMatrix(row, quantityCol)) *
                              TextToAmount(grid_.TextMatrix(row, rateCol));
        grid_.SetTextMatrix(row, amountCol, CellText(amount, grid_.ColumnFormat(amountCol)));
    }
    int raisedRow = row;
    document_.Raise([&](DocumentEvents& l) { l.RecalcGridRow(raisedRow); });
    grid_.SetTextMatrix(row, unworkedCol_, "");
}

bool DocumentScreen::IsWorkedOut(int row) const {
    return grid_.TextMatrix(row, unworkedCol_).empty();
}

void DocumentScreen::SetupMode() {
    const bool saved = !document_.IsNewDocument();
    bar_.SetItemEnabled("Delete", saved);
    SetCaption(CurrentSeries().Title() + (saved ? " - No. " + number_.Text() : " - New"));
}

// A line that cannot be worked out stays marked, and the others are worked out all the same.
void DocumentScreen::RecalcGrid() {
    for (int row = 1; row < grid_.Rows(); ++row) {
        if (!document_.IsLine(row))
            continue;
        try {
            RecalcGridRow(row);
        } catch (const std::domain_error&) {
            Warn(UnworkedRefusal(row));
        } catch (const std::overflow_error&) {
            Warn(UnworkedRefusal(row));
        }
    }
    ShowTotals();
}

// A charge's rate: a figure, never below 0 (the series says whether the charge is added or
// deducted), and one with which the document's total can still be worked out.
void DocumentScreen::CheckRate(int row, int col, const std::string& typed, bool& cancel) {
    rateTyped_.reset();
    const bool refusedBefore = std::exchange(rateRefused_, false); // its text is in the cell
    std::string text = Trim(typed);
    if (quiet_ || col != kChargeRateCol)
        return;
    const std::string charge = charges_.TextMatrix(row, kChargeCaptionCol);
    std::string refusal = text.empty() ? std::string() : AcceptNumber(ColumnKind::Decimal, text);
    if (refusal.empty() && TextToAmount(text) < Amount())
        refusal = charge + " cannot be below 0.";
    if (refusal.empty() &&
        (refusedBefore || TextToAmount(text) != TextToAmount(charges_.TextMatrix(row, col)))) {
        const std::string rate = CellText(TextToAmount(text), "");
        const std::string was = charges_.TextMatrix(row, col);
        charges_.SetTextMatrix(row, col, rate);
        try {
            CurrentTotals();
            rateTyped_ = rate;
        } catch (const std::overflow_error&) {
            refusal = charge + ": " + Trim(typed) + " makes the document's total too large.";
        }
        charges_.SetTextMatrix(row, col, was);
    }
    if (!refusal.empty()) {
        Warn(refusal);
        cancel = rateRefused_ = true;
    }
}

void DocumentScreen::CheckCell(int row, int col, const std::string& typed, bool& cancel) {
    checked_.reset();
    // The text of a cell that was refused is in the cell, but the line was never worked out
    // with it.
    const bool refusedBefore = std::exchange(itemCellRefused_, false);
    if (quiet_)
        return;
    CheckedCell cell{row, col, typed, 0, false};
    std::string refusal;
    const bool ran = app_.Guard([&] {
        refusal = Accept(cell);
        cell.changed = cell.changed || refusedBefore;
        if (refusal.empty())
            cancel = document_.RaiseCancellable([&](DocumentEvents& l, bool& refuse) {
                l.GridCellBeforeLostFocus(row, col, typed, refuse);
            });
        if (refusal.empty() && !cancel && cell.changed && ColumnAt(col).role == ColumnRole::Number)
            refusal = WorkOutWith(cell, Trim(typed));
    });
    if (!refusal.empty())
        Warn(refusal);
    if (!ran || !refusal.empty())
        cancel = true;
    itemCellRefused_ = cancel;
    if (!cancel)
        checked_ = std::move(cell);
}

// Checks what was typed into a cell; the refusal to show, or empty with the cell's text (and
// code) as it is to be kept.
std::string DocumentScreen::Accept(CheckedCell& cell) {
    const SeriesColumn& column = ColumnAt(cell.col);
    std::string text = Trim(cell.text);
    switch (column.role) {
    case ColumnRole::Item:
    case ColumnRole::Party: {
        const bool item = column.role == ColumnRole::Item;
        const NameLookup& lookup = item ? kItems : kAccounts;
        if (!text.empty()) {
            NameFound found = FindNamed(Db(), lookup, text, item ? AccountGroups() : column.groups,
                                        column.caption);
            if (!found.refusal.empty())
                return found.refusal;
            cell.code = found.named.code;
            text = std::move(found.named.name);
        }
        cell.changed =
            cell.code != CodeIn(grid_, cell.row, item ? Member("COL_STK_CODE") : partyCodeCol_);
        break;
    }
    case ColumnRole::ItemCode:
    case ColumnRole::Number:
        if (!text.empty()) {
            if (auto refusal = AcceptNumber(ColumnKind::Decimal, text); !refusal.empty())
                return refusal;
            if (auto refusal = FigureRefusal(column, TextToAmount(text)); !refusal.empty())
                return refusal;
            if (column.role == ColumnRole::ItemCode &&
                NameOf(Db(), kItems, TextToAmount(text).WholePart()).empty())
                return "There is no item with code " + text + ". Press F2 to choose one.";
            text = CellText(TextToAmount(text),
                            column.role == ColumnRole::Number ? column.format : "");
        }
        cell.changed = TextToAmount(text) != TextToAmount(grid_.TextMatrix(cell.row, cell.col));
        break;
    case ColumnRole::PartyCode:
    case ColumnRole::Text:
        cell.changed = text != grid_.TextMatrix(cell.row, cell.col);
        break;
    }
    cell.text = std::move(text);
    return {};
}

// A new figure works its line out before the cell is left, so that a figure the line cannot
// hold is refused while the cursor is still in the cell: one that makes the line's amount or
// the document's total too large is refused and the line keeps what it had. A line that
// cannot be worked out yet (it divides by a figure still 0) takes the figure and stays marked
// until it can be. Returns the refusal; the cell's text is then what the working out left.
std::string DocumentScreen::WorkOutWith(CheckedCell& cell, const std::string& typed) {
    std::vector<std::string> before;
    for (int col = 0; col < grid_.Cols(); ++col)
        before.push_back(grid_.TextMatrix(cell.row, col));
    const auto restore = [&] {
        for (int col = 0; col < grid_.Cols(); ++col)
            grid_.SetTextMatrix(cell.row, col, before[static_cast<std::size_t>(col)]);
    };
    const std::string where =
        "Line " + std::to_string(cell.row) + ", " + ColumnAt(cell.col).caption + ": " + typed;
    grid_.SetTextMatrix(cell.row, cell.col, cell.text);
    bool lineWorkedOut = false;
    try {
        RecalcGridRow(cell.row);
        lineWorkedOut = true;
        CurrentTotals();
    } catch (const std::overflow_error&) {
        restore();
        return where + (lineWorkedOut ? " makes the document's total too large."
                                      : " makes the line's amount too large.");
    } catch (const std::domain_error&) {
        Warn(where + " is kept, but the line cannot be worked out while a figure it divides by "
                     "is 0 or empty. Fill in the rest of the line.");
    } catch (...) {
        restore();
        throw;
    }
    cell.text = grid_.TextMatrix(cell.row, cell.col);
    return {};
}

// The cell was left: the checked text goes in, a new item fills the line, and the totals
// follow what changed (a new figure has worked its line out already).
void DocumentScreen::TakeCell(int row, int col) {
    if (quiet_)
        return;
    app_.Guard([&] {
        bool changed = false;
        if (checked_ && checked_->row == row && checked_->col == col) {
            const CheckedCell cell = std::move(*checked_);
            checked_.reset();
            changed = cell.changed;
            grid_.SetTextMatrix(row, col, cell.text);
            if (changed) {
                NumberRow(row);
                switch (ColumnAt(col).role) {
                case ColumnRole::Item:
                    grid_.SetTextMatrix(row, Member("COL_STK_CODE"), CodeText(cell.code));
                    FillStkInfo(row);
                    break;
                case ColumnRole::ItemCode:
                    FillStkInfo(row);
                    break;
                case ColumnRole::Party:
                    grid_.SetTextMatrix(row, partyCodeCol_, CodeText(cell.code));
                    break;
                case ColumnRole::Number:
                case ColumnRole::PartyCode:
                case ColumnRole::Text:
                    break;
                }
            }
        }
        document_.Raise([&](DocumentEvents& l) { l.GridCellLostFocus(row, col); });
        if (changed)
            ShowTotals();
    });
}

const SeriesColumn& DocumentScreen::ColumnAt(int col) const {
    static const SeriesColumn kUnknown;
    return col >= 0 && static_cast<std::size_t>(col) < gridColumns_.size()
               ? gridColumns_[static_cast<std::size_t>(col)]
               : kUnknown;
}

void DocumentScreen::NumberRow(int row) {
    grid_.SetTextMatrix(row, 0, std::to_string(row));
}

void DocumentScreen::CheckDate(bool& cancel) {
    const std::string typed = Trim(date_.Text());
    auto date = Date::ParseDisplay(typed);
    if (!date) {
        Warn(Date::DisplayRefusal(typed));
        cancel = true;
        return;
    }
    date_.SetText(date->ToDisplay());
    // What an extension shows with the totals may turn on the date (a tax from a given day).
    if (*date != totalledOn_ && HasLines())
        app_.Guard([&] { ShowTotals(); });
}

bool DocumentScreen::HasLines() const {
    for (int row = 1; row < grid_.Rows(); ++row)
        if (document_.IsLine(row))
            return true;
    return false;
}

void DocumentScreen::CheckParty(bool& cancel) {
    const std::string text = Trim(party_.Text());
    if (text == partyName_)
        return;
    if (text.empty()) {
        partyName_.clear();
        document_.SetParty(0);
        return;
    }
    std::string refusal;
    if (!app_.Guard([&] {
            const NameFound party =
                FindNamed(Db(), kAccounts, text, CurrentSeries().partyGroups, party_.Caption());
            refusal = party.refusal;
            if (refusal.empty())
                PartyChosen(party.named.code, party.named.name);
        }))
        cancel = true;
    else if (!refusal.empty()) {
        Warn(refusal);
        cancel = true;
    }
}

void DocumentScreen::PartyChosen(std::int32_t code, const std::string& name) {
    partyName_ = name;
    party_.SetText(name);
    document_.SetParty(code);
    document_.Raise([](DocumentEvents& l) { l.PartySelected(); });
}

// A box the user types into holds its value in the main fields; a look-up box holds the id
// its module chose there instead.
void DocumentScreen::BoxChanged(std::size_t index) {
    const auto& boxes = CurrentSeries().boxes;
    if (index >= boxes.size() || !boxes[index].lookup.empty() || boxes[index].field.empty())
        return;
    const SeriesBox& box = boxes[index];
    const std::string& text = boxPool_[index]->Text();
    document_.MainFields().SetValue(box.field,
                                    box.numeric ? Value(TextToAmount(text)) : Value(text));
}

// A box that takes a number takes it written as any figure is, and never below 0 (a form
// number, a book number).
void DocumentScreen::CheckNumberBox(ui::TextBox& box, ColumnKind kind, bool& cancel) {
    std::string text = Trim(box.Text());
    if (!box.NumericOnly || text.empty())
        return;
    std::string refusal = AcceptNumber(kind, text);
    if (refusal.empty() && TextToAmount(text) < Amount())
        refusal = box.Caption() + " cannot be below 0.";
    if (!refusal.empty()) {
        Warn(refusal);
        cancel = true;
    }
}

void DocumentScreen::CheckLookupBox(std::size_t index, bool& cancel) {
    const auto& boxes = CurrentSeries().boxes;
    if (index >= boxes.size() || boxes[index].lookup.empty())
        return;
    const SeriesBox& box = boxes[index];
    const std::string& text = boxPool_[index]->Text();
    if (text == boxChoices_[index])
        return;
    if (!text.empty()) {
        Warn("Press F2 to choose the " + box.caption + ".");
        cancel = true;
        return;
    }
    boxChoices_[index].clear();
    if (!box.field.empty())
        document_.MainFields().SetValue(box.field, 0);
}

// The module whose operation the box names chooses the record: it is given the id and text
// the box holds and a flag (false), and answers whether the user chose one.
void DocumentScreen::LookupBox(std::size_t index) {
    const SeriesBox& box = CurrentSeries().boxes[index];
    std::array<Value, 3> args{box.field.empty() ? Value(0)
                                                : document_.MainFields().GetValue(box.field),
                              boxPool_[index]->Text(), false};
    bool offered = false;
    app_.LookUpFrom(boxPool_[index]->Text(), [&] {
        offered = AskModules(app_, box.lookup, args, [&](const Value& chosen) {
            if (!chosen.AsBool())
                return;
            boxChoices_[index] = args[1].AsText();
            boxPool_[index]->SetText(args[1].AsText());
            if (!box.field.empty())
                document_.MainFields().SetValue(box.field, args[0].AsInt());
        });
    });
    if (!offered)
        Warn("No module offers " + box.lookup + ".");
}

// F2 in an item or party cell: the choice is typed into the cell and taken as a typed name is.
void DocumentScreen::LookupCell() {
    if (grid_.Row() < 1 || grid_.Row() >= grid_.Rows())
        return;
    const SeriesColumn& column = ColumnAt(grid_.Col());
    if (column.role != ColumnRole::Item && column.role != ColumnRole::Party)
        return;
    const bool item = column.role == ColumnRole::Item;
    const std::string typed = grid_.Editing().value_or(grid_.TextMatrix(grid_.Row(), grid_.Col()));
    if (auto chosen = ChooseByName(app_, item ? kItems : kAccounts, item ? "Items" : column.caption,
                                   typed, column.groups)) {
        grid_.Type(chosen->name);
        grid_.Commit();
    }
}

DocumentTotals DocumentScreen::CurrentTotals() {
    Amount bags;
    if (const int bagsCol = Member("COL_NO_OF_BOXES"))
        for (int row = 1; row < grid_.Rows(); ++row)
            if (document_.IsLine(row))
                bags += TextToAmount(grid_.TextMatrix(row, bagsCol));
    std::vector<ChargeLine> charges;
    const auto& series = CurrentSeries().charges;
    for (std::size_t i = 0; i < series.size(); ++i)
        charges.push_back(
            {TextToAmount(charges_.TextMatrix(static_cast<int>(i) + 1, kChargeRateCol)),
             series[i].basis, series[i].sign});
    return ComputeTotals(document_.DocumentAmount(), bags, charges);
}

// Totals are a sum over every line, and the extensions' summaries after them too: while a
// program fills the item grid with its redraw off they wait, and catch up once when it draws
// again (OnRedraw), so that entering n lines costs n steps, not n squared.
void DocumentScreen::ShowTotals() {
    totalsWaiting_ = !grid_.Redraw();
    if (totalsWaiting_)
        return;
    const DocumentTotals totals = CurrentTotals();
    for (std::size_t i = 0; i < totals.charges.size(); ++i)
        charges_.SetTextMatrix(static_cast<int>(i) + 1, kChargeAmountCol,
                               CellText(totals.charges[i], "c2"));
    gross_.SetText(FormatAmount(totals.gross, "c2"));
    chargesTotal_.SetText(FormatAmount(totals.chargesNet, "c2"));
    roundOff_.SetText(FormatAmount(totals.roundOff, "c2"));
    grandTotal_.SetText(FormatAmount(totals.grandTotal, "c2"));
    totalledOn_ = document_.DocDate();
    document_.Raise([](DocumentEvents& l) { l.UpdateTotals2(); });
}

void DocumentScreen::Browse() {
    if (const std::int32_t chosen = ChooseDocument(app_, seriesId_, CurrentSeries().Title()))
        OpenDocument(chosen);
}

void DocumentScreen::ChangeSeries() {
    const std::int32_t chosen = ChooseSeries(app_, "");
    if (chosen == 0 || chosen == seriesId_)
        return;
    seriesId_ = chosen;
    SeriesSelected();
}

void DocumentScreen::PrintDocument() {
    const DocumentTotals totals = CurrentTotals();
    app_.Print(DocumentPrintJob(grid_, document_, totals,
                                CurrentSeries().Title() + " No. " + number_.Text(),
                                "Date: " + date_.Text() + "    Party: " + party_.Text()),
               PrintMode::Print);
}

bool DocumentScreen::KeyDown(const ui::KeyPress& key) {
    if (key.key != ui::Key::Delete || !key.ctrl || key.shift || key.alt || Focused() != &grid_)
        return ui::Screen::KeyDown(key);
    const int row = grid_.Row();
    if (row < 1 || row >= grid_.Rows() - 1)
        return true; // the empty last row stays
    app_.Guard([&] {
        grid_.RemoveRow(row);
        RecalcGrid();
    });
    return true;
}

void DocumentScreen::OnCommand(const std::string& key) {
    app_.Guard([&] {
        if (key == "Lookup") {
            if (Focused() == &grid_)
                LookupCell();
        } else if (key == "New") {
            if (LeaveDocument())
                NewDocument();
        } else if (key == "Browse") {
            if (LeaveDocument())
                Browse();
        } else if (key == "Delete") {
            DeleteDocument();
        } else if (key == "Series") {
            if (LeaveDocument())
                ChangeSeries();
        } else if (key == "Save") {
            SaveDocument();
        } else if (key == "Print") {
            PrintDocument();
        } else if (key == "Exit") {
            Close();
        }
    });
}

void DocumentScreen::Warn(const std::string& message) {
    desk::Warn(app_, message);
}

} // namespace qx::desk
