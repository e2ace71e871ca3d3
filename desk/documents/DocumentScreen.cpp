#include "DocumentScreen.h"

#include "DocumentContent.h"
#include "DocumentPrint.h"
#include "DocumentRecords.h"
#include "ScreenTexts.h"

#include "host/Text.h"

#include <ctime>
#include <stdexcept>
#include <utility>

namespace qx::desk {
namespace {

Date Today() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    return Date::FromYmd(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday);
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
      status_(Add<ui::Label>("lblStatus")), bar_(Add<ui::ButtonBar>("BtnBar1")), itemGrid_(grid_, document_), chargesGrid_(charges_),
      totals_({gross_, chargesTotal_, roundOff_, grandTotal_}, itemGrid_, chargesGrid_, document_),
      header_(app_, document_, {date_, number_, party_, saleType_, boxPool_}),
      typing_(app_, document_, itemGrid_, chargesGrid_, totals_) {
    Icon = "Documents";
    number_.NumericOnly = true;
    saleType_.NumericOnly = true;
    for (ui::TextBox* whole : {&number_, &saleType_})
        whole->OnValidate = [this, whole](bool& cancel) {
            header_.CheckNumber(*whole, ColumnKind::WholeNumber, cancel);
        };
    date_.OnValidate = [this](bool& cancel) {
        const std::optional<Date> date = header_.CheckDate();
        if (!date) {
            cancel = true;
            return;
        }
        // What an extension shows with the totals may turn on the date (a tax from a given day).
        if (*date != totals_.ShownFor() && itemGrid_.HasLines())
            app_.Guard([&] { totals_.Show(); });
    };
    party_.OnValidate = [this](bool& cancel) { header_.CheckParty(cancel); };
    // A choice from a look-up moves on, as Enter after typing the name would.
    party_.OnLookup = [this] {
        app_.Guard([&] {
            if (header_.LookUpParty())
                FocusNext();
        });
    };

    grid_.Editable = true;
    grid_.GrowsRows = true;
    grid_.OnCellBeforeLostFocus = [this](int row, int col, const std::string& typed, bool& cancel) {
        typing_.CheckCell(row, col, typed, cancel);
    };
    grid_.OnCellLostFocus = [this](int row, int col) { typing_.TakeCell(row, col); };
    grid_.OnRedraw = [this] {
        if (totals_.Waiting())
            app_.Guard([&] { totals_.Show(); });
    };
    charges_.OnCellBeforeLostFocus = [this](int row, int col, const std::string& typed,
                                            bool& cancel) {
        typing_.CheckRate(row, col, typed, cancel);
    };
    charges_.OnCellLostFocus = [this](int row, int col) { typing_.TakeRate(row, col); };

    for (ui::TextBox* total : {&gross_, &chargesTotal_, &roundOff_, &grandTotal_})
        total->SetEnabled(false);
    gridInfo_.SetEnabled(false);
    SetShowGridinfo(false);

    bar_.AddItem("Lookup,F2: Look-up,Choose from the list");
    bar_.AddItem("Delete,F3: Delete,Delete the document");
    bar_.AddItem("Series,F4: Series,Another series");
    bar_.AddItem("New,F5: New,A new document");
    bar_.AddItem("Browse,F6: Browse,The series' documents");
    bar_.AddItem("Preview,F8: Preview,The document as it prints");
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
    AddRow({&status_});
    AddRow({&bar_});
}

// The series' own boxes come right after the standard ones, so that Enter reaches them before
// the grid. There are as many as the series with most boxes needs; a series uses the first
// of them and hides the rest.
std::vector<ui::TextBox*> DocumentScreen::MakeBoxPool() {
    std::vector<ui::TextBox*> pool;
    for (int i = 0, count = MostSeriesBoxes(Db()); i < count; ++i) {
        auto& box = Add<ui::TextBox>("TXPUDI" + std::to_string(i + 1)); // numbered from 1
        const auto index = static_cast<std::size_t>(i);
        box.OnChange = [this, index] { header_.SeriesBoxChanged(index); };
        box.OnValidate = [this, index](bool& cancel) { header_.CheckSeriesBox(index, cancel); };
        pool.push_back(&box);
    }
    return pool;
}

void DocumentScreen::Load() {
    std::int32_t seriesId = PresetSeries();
    if (seriesId == 0)
        seriesId = ChooseSeries(app_, Properties().GetValue("DocType").AsText());
    if (seriesId == 0)
        throw std::runtime_error("Choose a series to enter its documents.");
    extensions_.Make(app_, document_);
    try {
        ShowSeries(seriesId);
    } catch (...) {
        extensions_.Terminate(); // the screen is not shown, so it never unloads
        throw;
    }
}

void DocumentScreen::FirstActivate() {
    app_.RegisterWindow(*this, Caption(), Icon);
    shown_ = true;
    FocusFirstBox();
    if (std::exchange(newDocumentWaiting_, false))
        app_.Guard([&] { BeginNewDocument(); });
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

// The series' set-up of the document on the screen again, after a module filled it: the
// extensions decide their mode anew; what the screen holds stays.
void DocumentScreen::SeriesSelected() {
    SetCaption(CurrentSeries().Title());
    document_.Raise([](DocumentEvents& l) { l.SelectSeries(); });
}

void DocumentScreen::ShowSeries(std::int32_t seriesId) {
    Series series = LoadSeries(Db(), seriesId);
    if (series.boxes.size() > boxPool_.size())
        throw std::runtime_error(
            "The series " + series.Title() +
            " has more boxes than this screen was opened with; open it again.");
    AddSeriesFields(Db(), series);
    document_.SetSeries(std::move(series));
    SetCaption(CurrentSeries().Title());
    document_.SelectSeries();
    itemGrid_.Build();
    header_.SetUp();
    document_.Raise([](DocumentEvents& l) { l.MakeInputControls(); });
    NewDocument();
}

void DocumentScreen::ClearContent() {
    totals_.StopWaiting();
    typing_.Forget();
    header_.Clear();
    itemGrid_.Clear();
    // An extension's summary was of the document that was on the screen.
    gridInfo_.ClearColumns();
    gridInfo_.Clear();
    document_.Reset();
}

// The date selected: typing replaces it, Enter keeps it.
void DocumentScreen::FocusFirstBox() {
    const auto quiet = typing_.Quiet();
    date_.SetFocus();
    date_.SelectAll();
}

void DocumentScreen::NewDocument() {
    // A new form is of the market, book and day of the one before, saved or left.
    const auto choices = header_.Choices();
    if (document_.IsNewDocument())
        if (const auto shown = Date::ParseDisplay(Trim(date_.Text())))
            lastDate_ = *shown;
    ClearContent();
    header_.Choose(choices);
    header_.ProposeNumbers();
    date_.SetText(lastDate_.value_or(Today()).ToDisplay());
    proposedNumber_ = std::to_string(NextNumber(Db(), SeriesId()));
    number_.SetText(proposedNumber_);
    saleType_.SetText("1");
    chargesGrid_.Fill(CurrentSeries(), nullptr);
    totals_.Show();
    SetupMode();
    FocusFirstBox();
    document_.KeepSeriesSelection();
    shownContent_ = ContentNow();
    if (shown_)
        BeginNewDocument();
    else
        newDocumentWaiting_ = true; // until the screen is drawn
}

// What a new document asks first, once its screen is drawn: a look-up box it cannot be saved
// without (the market) while it holds nothing, then what the extensions offer (a list to fill
// it from). A document filled from such a list counts as changed.
void DocumentScreen::BeginNewDocument() {
    header_.AskRequiredChoices();
    header_.ProposeNumbers(); // of the market chosen
    shownContent_ = ContentNow();
    document_.Raise([](DocumentEvents& l) { l.NewDocumentEnd(); });
}

void DocumentScreen::ChooseParty(std::int32_t code, const std::string& name) {
    {
        const auto quiet = typing_.Quiet();
        party_.SetFocus();
    }
    header_.PartyChosen(code, name);
}

void DocumentScreen::OpenDocument(std::int32_t documentId) {
    const PropertyBag main = ReadMain(Db(), documentId);
    if (const auto seriesId = main.GetValue("DOCSERIESID").AsInt(); seriesId != SeriesId())
        ShowSeries(seriesId);
    ClearContent();
    document_.SetIdentity(documentId, false);
    document_.Raise([](DocumentEvents& l) { l.EditDocumentBegin(); });
    header_.ShowSaved(main);
    document_.KeepSeriesSelection();
    document_.Raise([&](DocumentEvents& l) { l.EditMain(main); });
    itemGrid_.ShowSaved(ReadLines(Db(), documentId));
    const std::vector<AppliedCharge> charges = ReadCharges(Db(), documentId);
    chargesGrid_.Fill(CurrentSeries(), &charges);
    totals_.Show();
    SetupMode();
    FocusFirstBox();
    document_.Raise([](DocumentEvents& l) { l.EditDocumentEnd(); });
    shownContent_ = ContentNow();
}

// What the user can change of the document, to tell whether he changed it since it was shown.
std::string DocumentScreen::ContentNow() const {
    std::vector<const ui::TextBox*> boxes{&date_, &number_, &party_, &saleType_};
    boxes.insert(boxes.end(), boxPool_.begin(), boxPool_.end());
    return ContentSnapshot(boxes, {&grid_, &charges_});
}

// Before the document on the screen gives way (another one, closing): a document the user
// changed is saved or dropped as he says. False when it stays: he cancelled, or its save was
// refused.
bool DocumentScreen::LeaveDocument() {
    return LeaveChanged(app_, ContentNow() != shownContent_, "Do you want to save this document?",
                        [this] { return SaveDocument(); });
}

void DocumentScreen::QueryUnload(bool& cancel) {
    if (!app_.Guard([&] { cancel = !LeaveDocument(); }))
        cancel = true;
}

void DocumentScreen::SetShowGridinfo(bool show) {
    showGridInfo_ = show;
    picGridInfo_.SetVisible(show);
    gridInfo_.SetVisible(show);
}

void DocumentScreen::SetupMode() {
    const bool saved = !document_.IsNewDocument();
    bar_.SetItemEnabled("Delete", saved);
    SetCaption(CurrentSeries().Title() + (saved ? " \u2014 No. " + number_.Text() : " \u2014 new"));
}

// A line that cannot be worked out stays marked, and the others are worked out all the same.
void DocumentScreen::RecalcGrid() {
    for (int row = 1; row < grid_.Rows(); ++row) {
        if (!document_.IsLine(row))
            continue;
        try {
            itemGrid_.WorkOut(row);
        } catch (const std::domain_error&) {
            Warn(app_, itemGrid_.UnworkedRefusal(row));
        } catch (const std::overflow_error&) {
            Warn(app_, itemGrid_.UnworkedRefusal(row));
        }
    }
    totals_.Show();
}

void DocumentScreen::Browse() {
    if (const std::int32_t chosen = ChooseDocument(app_, SeriesId(), CurrentSeries().Title()))
        OpenDocument(chosen);
}

void DocumentScreen::ChangeSeries() {
    const std::int32_t chosen = ChooseSeries(app_, "");
    if (chosen == 0 || chosen == SeriesId())
        return;
    ShowSeries(chosen);
}

PrintJob DocumentScreen::Paper() {
    DocumentPaper paper{CurrentSeries().Title() + " No. " + number_.Text(),
                        {"Date: " + date_.Text() + "    Party: " + party_.Text()},
                        "Grand Total",
                        {}};
    document_.Raise([&](DocumentEvents& l) { l.PrintDocument(paper); });
    return DocumentPrintJob(grid_, itemGrid_.Member("COL_AMOUNT"), document_, totals_.Current(),
                            paper);
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
                typing_.LookUpCell();
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
        } else if (key == "Preview" || key == "Print") {
            app_.Print(Paper(), key == "Print" ? PrintMode::Print : PrintMode::Preview);
        } else if (key == "Exit") {
            Close();
        }
    });
}

} // namespace qx::desk
