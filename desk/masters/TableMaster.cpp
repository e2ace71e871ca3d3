#include "TableMaster.h"


#include "host/HostSelectDialog.h"
#include "host/Text.h"

#include <algorithm>
#include <array>
#include <map>
#include <regex>
#include <stdexcept>

namespace qx::desk {
namespace {

// Every master keeps its names in upper case and requires one.
MasterDefinition WithNameRules(MasterDefinition definition) {
    definition.nameColumn.kind = ColumnKind::Text;
    definition.nameColumn.upperCase = true;
    return definition;
}

bool IsNumeric(ColumnKind kind) {
    return kind == ColumnKind::WholeNumber || kind == ColumnKind::Decimal;
}

// The text in its form, without the blanks and hyphens typed between its parts; false when
// it has not the form.
bool TakeForm(const TextForm& form, std::string& text) {
    std::string bare = text;
    std::erase_if(bare, [](char c) { return c == ' ' || c == '-'; });
    std::smatch match;
    if (!std::regex_match(bare, match, std::regex(form.pattern)))
        return false;
    text = match.size() > 1 ? match[1].str() : bare;
    return true;
}

// "S, P or O"; "2 documents and 1 ledger row"
std::string Listed(const std::vector<std::string>& items, const std::string& last) {
    std::string list;
    for (std::size_t i = 0; i < items.size(); ++i)
        list += (i == 0 ? "" : i + 1 == items.size() ? " " + last + " " : ", ") + items[i];
    return list;
}

// A stored value as its cell shows it. A zero number shows as an empty cell, which is also
// what an empty cell saves as.
std::string CellText(const MasterColumn& column, const Value& value) {
    switch (column.kind) {
    case ColumnKind::WholeNumber: {
        auto number = value.AsLong();
        return number == 0 ? std::string() : std::to_string(number);
    }
    case ColumnKind::Decimal: {
        auto amount = value.AsAmount();
        return amount.IsZero() ? std::string() : amount.ToPlainString();
    }
    case ColumnKind::YesNo:
        return value.AsBool() ? "Yes" : "No";
    default:
        return value.AsText();
    }
}

} // namespace

std::string AcceptNumber(ColumnKind kind, std::string& text) {
    const TypedAmount typed = ReadTypedAmount(text);
    if (!typed.amount)
        return typed.refusal;
    if (kind == ColumnKind::WholeNumber && !typed.amount->IsWhole())
        return text + " is not a whole number.";
    text = typed.amount->ToPlainString();
    return {};
}

TableMaster::TableMaster(DeskApp& app, MasterDefinition definition)
    : Screen(definition.key, definition.title), app_(app),
      definition_(WithNameRules(std::move(definition))), grid_(Add<ui::Grid>("Grid")),
      bar_(Add<ui::ButtonBar>("BtnBar1")) {
    Icon = "Ledger";
    auto& title = Add<ui::Label>("lblTitle", definition_.title);
    title.Heading = true;
    AddRow({&title});
    AddRow({&grid_});
    std::vector<ui::Control*> buttons;
    for (const MasterAction& action : definition_.actions) {
        auto& button = Add<ui::Button>(action.control, action.caption);
        button.OnClick = [this, &action] { RunAction(action); };
        buttons.push_back(&button);
    }
    if (!buttons.empty())
        AddRow(buttons);
    AddRow({&bar_});

    auto addField = [this](const MasterColumn& column, bool editable) {
        int col = grid_.AddColumn(column.caption, column.width,
                                  IsNumeric(column.kind) ? Align::Right : Align::Default);
        grid_.Column(col).editable = editable;
        fields_.push_back({&column, col});
    };
    addField(definition_.keyColumn, definition_.keyTyped);
    addField(definition_.nameColumn, true);
    for (const MasterColumn& column : definition_.columns)
        addField(column, true);
    // Bookkeeping columns come after what the user sees, hidden.
    auto addHidden = [this] {
        int col = grid_.AddColumn("", 0);
        grid_.Column(col).editable = false;
        return col;
    };
    savedKeyCol_ = addHidden();
    changedCol_ = addHidden();
    bool hasLookup = false;
    for (GridField& field : fields_)
        if (field.column->kind == ColumnKind::Lookup) {
            field.codeCol = addHidden();
            hasLookup = true;
        }

    grid_.Editable = true;
    grid_.GrowsRows = true;
    grid_.OnCellBeforeLostFocus = [this](int row, int col, const std::string& typed, bool& cancel) {
        CheckCell(row, col, typed, cancel);
    };
    grid_.OnCellLostFocus = [this](int row, int col) { TakeCell(row, col); };
    grid_.OnRowLeave = [this](int row, bool& cancel) {
        if (!SaveRow(row))
            cancel = true;
    };

    if (hasLookup)
        bar_.AddItem("Lookup,F2: Look-up,Choose from the list");
    bar_.AddItem("Delete,F3: Delete,Delete");
    bar_.AddItem("Preview,F8: Preview,Preview");
    bar_.AddItem("Print,F9: Print,Print");
    bar_.AddItem("Exit,Esc: Exit,Close");
    bar_.OnClick = [this](const std::string& key) { OnCommand(key); };
}

int TableMaster::ColumnOf(std::string_view field) const {
    return FieldOf(field).col;
}

const TableMaster::GridField* TableMaster::FieldAt(int col) const {
    for (const GridField& field : fields_)
        if (field.col == col)
            return &field;
    return nullptr;
}

const TableMaster::GridField& TableMaster::FieldOf(std::string_view field) const {
    for (const GridField& candidate : fields_)
        if (EqualsNoCase(candidate.column->field, field))
            return candidate;
    throw std::invalid_argument(definition_.key + " has no column " + std::string(field));
}

std::int64_t TableMaster::SavedKey(int row) const {
    return Value(grid_.TextMatrix(row, savedKeyCol_)).AsLong();
}

bool TableMaster::RowHasContent(int row) const {
    return std::any_of(fields_.begin(), fields_.end(), [&](const GridField& field) {
        return !grid_.TextMatrix(row, field.col).empty();
    });
}

CompanyDb& TableMaster::Db() {
    return app_.DeskSession().Database();
}

void TableMaster::Load() {
    FillGrid();
}

void TableMaster::FirstActivate() {
    // The empty row for a new record, at the first cell the user types.
    grid_.SetCurrent(grid_.Rows() - 1, fields_[definition_.keyTyped ? 0 : 1].col);
    grid_.SetFocus();
    app_.RegisterWindow(*this, definition_.title, Icon);
}

void TableMaster::QueryUnload(bool& cancel) {
    if (!SaveCurrentRow())
        cancel = true;
}

void TableMaster::FillGrid() {
    // The names the look-up columns show, read once per master they look into.
    std::map<int, std::map<std::int64_t, std::string>> lookupNames;
    for (const GridField& field : fields_) {
        if (field.codeCol < 0)
            continue;
        const LookupTarget& target = field.column->lookup;
        auto& names = lookupNames[field.col];
        auto rows = Db().OpenRecordset("SELECT " + target.codeField + ", " + target.nameField +
                                       " FROM " + target.table);
        for (; !rows->EndOfRows(); rows->MoveNext())
            names[rows->Field(0).AsLong()] = rows->Field(1).AsText();
        rows->Close();
    }

    std::string fieldList;
    for (const GridField& field : fields_)
        fieldList += (fieldList.empty() ? "" : ", ") + field.column->field;
    auto rows = Db().OpenRecordset("SELECT " + fieldList + " FROM " + definition_.table +
                                   " ORDER BY " + definition_.nameColumn.field);
    grid_.SetRedraw(false);
    grid_.SetRows(1);
    int row = 0;
    for (; !rows->EndOfRows(); rows->MoveNext()) {
        grid_.SetRows(++row + 1);
        grid_.SetTextMatrix(row, savedKeyCol_, rows->Field(0).AsText()); // the key comes first
        for (std::size_t i = 0; i < fields_.size(); ++i) {
            const GridField& field = fields_[i];
            Value value = rows->Field(static_cast<int>(i));
            if (field.codeCol < 0) {
                grid_.SetTextMatrix(row, field.col, CellText(*field.column, value));
                continue;
            }
            auto code = value.AsLong();
            const auto& names = lookupNames[field.col];
            auto name = names.find(code);
            grid_.SetTextMatrix(row, field.col, name == names.end() ? std::string() : name->second);
            grid_.SetTextMatrix(row, field.codeCol,
                                code == 0 ? std::string() : std::to_string(code));
        }
    }
    rows->Close();
    grid_.SetRows(row + 2); // one empty row for a new record
    grid_.SetRedraw(true);
}

void TableMaster::KeepEmptyLastRow() {
    int last = grid_.Rows() - 1;
    if (last < 1 || SavedKey(last) != 0 || RowHasContent(last))
        grid_.SetRows(grid_.Rows() + 1);
}

void TableMaster::CheckCell(int row, int col, const std::string& typed, bool& cancel) {
    accepted_.reset();
    const GridField* field = FieldAt(col);
    if (!field)
        return;
    AcceptedCell accepted{row, col, {}, {}, typed != grid_.TextMatrix(row, col)};
    std::string refusal;
    if (!app_.Guard([&] { refusal = Accept(*field, row, typed, accepted); })) {
        cancel = true;
        return;
    }
    if (!refusal.empty()) {
        Warn(refusal);
        cancel = true;
        return;
    }
    accepted_ = std::move(accepted);
}

std::string TableMaster::Accept(const GridField& field, int row, const std::string& typed,
                                AcceptedCell& accepted) {
    const MasterColumn& column = *field.column;
    std::string& text = accepted.text;
    text = Trim(typed);
    if (&column == &definition_.keyColumn)
        return definition_.keyTyped ? AcceptKey(column, row, text) : "";
    const bool isName = &column == &definition_.nameColumn;
    if (text.empty())
        return isName && SavedKey(row) != 0 ? "Enter a name." : "";
    switch (column.kind) {
    case ColumnKind::WholeNumber:
    case ColumnKind::Decimal: {
        if (auto refusal = AcceptNumber(column.kind, text); !refusal.empty() || !column.range)
            return refusal;
        const auto number = Value(text).AsAmount();
        if (number < column.range->lowest || number > column.range->highest)
            return column.caption + " must be from " + column.range->lowest.ToPlainString() +
                   " to " + column.range->highest.ToPlainString() + ".";
        return {};
    }
    case ColumnKind::Lookup:
        return AcceptLookup(column, text, accepted.code);
    case ColumnKind::YesNo: {
        auto answer = UpperCase(text);
        if (answer == "Y" || answer == "YES")
            text = "Yes";
        else if (answer == "N" || answer == "NO")
            text = "No";
        else
            return column.caption + " takes Yes or No.";
        return {};
    }
    case ColumnKind::Text:
        break;
    }
    if (auto refusal = AcceptText(column, text); !refusal.empty() || !isName)
        return refusal;
    return NameRefusal(row, text);
}

std::string TableMaster::NameRefusal(int row, const std::string& name) {
    // A record keeps its own name when the user passes through it: its own key is left out.
    std::string same = "UPPER(" + definition_.nameColumn.field + ")=" + SqlQuote(name);
    if (auto saved = SavedKey(row); saved != 0)
        same += " AND " + definition_.keyColumn.field + "<>" + std::to_string(saved);
    auto others =
        Db().OpenRecordset("SELECT COUNT(*) FROM " + definition_.table + " WHERE " + same);
    return others->Field(0).AsLong() > 0 ? name + " already exists." : "";
}

std::string TableMaster::AcceptKey(const MasterColumn& column, int row, std::string& text) {
    const auto saved = SavedKey(row);
    const std::string unchangeable =
        "The " + column.caption + " of a saved " + definition_.noun + " cannot be changed.";
    if (text.empty())
        return saved != 0 ? unchangeable : "";
    if (auto refusal = AcceptNumber(ColumnKind::WholeNumber, text); !refusal.empty())
        return refusal;
    const auto code = Value(text).AsLong();
    if (saved != 0)
        return code == saved ? "" : unchangeable;
    if (code <= 0)
        return column.caption + " must be above 0.";
    auto same = Db().OpenRecordset("SELECT COUNT(*) FROM " + definition_.table + " WHERE " +
                                   column.field + "=" + text);
    return same->Field(0).AsLong() > 0 ? column.caption + " " + text + " already exists." : "";
}

std::string TableMaster::AcceptText(const MasterColumn& column, std::string& text) {
    if (column.upperCase || !column.choices.empty())
        text = UpperCase(text);
    if (!column.form.pattern.empty() && !TakeForm(column.form, text))
        return column.form.refusal;
    if (column.maxLength > 0 && CharacterCount(text) > static_cast<std::size_t>(column.maxLength))
        return column.caption + " can hold at most " + std::to_string(column.maxLength) +
               " characters.";
    if (!column.choices.empty() &&
        std::find(column.choices.begin(), column.choices.end(), text) == column.choices.end())
        return column.caption + " must be " + Listed(column.choices, "or") + ".";
    return {};
}

std::string TableMaster::AcceptLookup(const MasterColumn& column, std::string& text,
                                      std::string& code) {
    const LookupTarget& target = column.lookup;
    auto match = Db().OpenRecordset("SELECT " + target.codeField + ", " + target.nameField +
                                    " FROM " + target.table + " WHERE UPPER(" + target.nameField +
                                    ")=" + SqlQuote(UpperCase(text)));
    if (match->EndOfRows())
        return "There is no " + target.noun + " named " + text + ". Press F2 to choose one.";
    code = match->Field(0).AsText();
    text = match->Field(1).AsText();
    return {};
}

void TableMaster::TakeCell(int row, int col) {
    if (!accepted_ || accepted_->row != row || accepted_->col != col)
        return;
    grid_.SetTextMatrix(row, col, accepted_->text);
    if (int codeCol = FieldAt(col)->codeCol; codeCol >= 0)
        grid_.SetTextMatrix(row, codeCol, accepted_->code);
    if (accepted_->changed)
        grid_.SetTextMatrix(row, changedCol_, "*");
    accepted_.reset();
}

bool TableMaster::SaveCurrentRow() {
    const int row = grid_.Row();
    if (row < 1 || row >= grid_.Rows())
        return true;
    return grid_.Commit() && SaveRow(row);
}

bool TableMaster::SaveRow(int row) {
    if (grid_.TextMatrix(row, changedCol_).empty())
        return true;
    if (grid_.TextMatrix(row, ColumnOf(definition_.nameColumn.field)).empty()) {
        if (RowHasContent(row)) {
            Warn("Enter a name.");
            return false;
        }
        grid_.SetTextMatrix(row, changedCol_, "");
        return true;
    }
    const int keyCol = ColumnOf(definition_.keyColumn.field);
    if (definition_.keyTyped && grid_.TextMatrix(row, keyCol).empty()) {
        Warn(definition_.keyColumn.caption + " is required.");
        return false;
    }
    SavedRecord record;
    std::string refusal;
    if (!app_.Guard([&] {
            Transaction unit(Db());
            // The name is checked again under the lock that writes the row: another program
            // may have saved a record of that name since the cell was left.
            refusal = NameRefusal(row, grid_.TextMatrix(row, ColumnOf(definition_.nameColumn.field)));
            if (!refusal.empty())
                return;
            WriteRow(row, record);
            unit.Commit();
        }))
        return false;
    if (!refusal.empty()) {
        Warn(refusal);
        return false;
    }
    // The key is written into the row only once the record is stored, so that a failed save
    // leaves the row new.
    grid_.SetTextMatrix(row, savedKeyCol_, std::to_string(record.code));
    grid_.SetTextMatrix(row, keyCol, std::to_string(record.code));
    grid_.SetTextMatrix(row, changedCol_, "");
    return true;
}

void TableMaster::WriteRow(int row, SavedRecord& record) {
    auto& db = Db();
    const std::string& keyField = definition_.keyColumn.field;
    const bool isNew = SavedKey(row) == 0;
    record.name = grid_.TextMatrix(row, ColumnOf(definition_.nameColumn.field));
    record.code = SavedKey(row);
    if (isNew)
        record.code =
            definition_.keyTyped
                ? Value(grid_.TextMatrix(row, ColumnOf(keyField))).AsLong()
                : db.LookupValue(definition_.table, "MAX(" + keyField + ")", "").AsLong() + 1;
    auto stored = db.OpenRecordset("SELECT * FROM " + definition_.table + " WHERE " + keyField +
                                   "=" + std::to_string(record.code));
    if (stored->EndOfRows()) {
        stored->AddNew();
        stored->SetField(keyField, record.code);
        for (const auto& [field, value] : definition_.newRecordValues)
            stored->SetField(field, value);
    } else if (isNew) {
        // Typed in by someone else since the key was checked: never overwrite his record.
        throw DbError(definition_.keyColumn.caption + " " + std::to_string(record.code) +
                      " already exists.");
    }
    for (const GridField& field : fields_) {
        const MasterColumn& column = *field.column;
        if (&column == &definition_.keyColumn)
            continue;
        const std::string& text = grid_.TextMatrix(row, field.col);
        switch (column.kind) {
        case ColumnKind::WholeNumber:
            stored->SetField(column.field, TextToAmount(text).WholePart());
            break;
        case ColumnKind::Decimal:
            stored->SetField(column.field, TextToAmount(text));
            break;
        case ColumnKind::Lookup:
            stored->SetField(column.field, Value(grid_.TextMatrix(row, field.codeCol)).AsLong());
            break;
        case ColumnKind::YesNo:
            stored->SetField(column.field, text == "Yes");
            break;
        case ColumnKind::Text:
            stored->SetField(column.field, text);
            break;
        }
    }
    stored->Update();
    stored->Close();
    if (definition_.afterSave)
        definition_.afterSave(db, record);
}

void TableMaster::DeleteRow() {
    const int row = grid_.Row();
    if (row < 1 || row >= grid_.Rows())
        return;
    if (const auto code = SavedKey(row); code != 0) {
        const std::string name = grid_.TextMatrix(row, ColumnOf(definition_.nameColumn.field));
        // Refused before the question: the user is not asked about what cannot go.
        if (auto refusal = InUse(name, code); !refusal.empty()) {
            Warn(refusal);
            return;
        }
        grid_.SetRowColour(row, 255);
        const bool confirmed =
            app_.ShowMessage("Do you want to delete " + name + "?", "2", "Q") == kAnswerYes;
        grid_.SetRowColour(row, 0);
        if (!confirmed)
            return;
        if (auto refusal = DeleteRecord(name, code); !refusal.empty()) {
            Warn(refusal);
            return;
        }
    }
    // A row never saved goes without a question.
    grid_.SetRedraw(false);
    grid_.RemoveRow(row);
    KeepEmptyLastRow();
    grid_.SetRedraw(true);
}

std::string TableMaster::DeleteRecord(const std::string& name, std::int64_t code) {
    auto& db = Db();
    Transaction unit(db);
    // Decided again inside the unit that deletes: another desk or qx may have put the record
    // to use while the question was on the screen.
    auto refusal = InUse(name, code);
    if (!refusal.empty())
        return refusal; // the unit rolls back before the user is told
    db.ExecuteSql("DELETE FROM " + definition_.table + " WHERE " + definition_.keyColumn.field +
                  "=" + std::to_string(code));
    if (definition_.afterDelete)
        definition_.afterDelete(db, code);
    unit.Commit();
    return {};
}

std::string TableMaster::InUse(const std::string& name, std::int64_t code) {
    // Per kind of use, in the order the definition first names it: the uses of its columns.
    std::vector<std::pair<const UseKind*, std::string>> usesByKind;
    for (const MasterReference& reference : definition_.references) {
        auto kind = std::find_if(usesByKind.begin(), usesByKind.end(), [&](const auto& entry) {
            return entry.first->many == reference.kind.many;
        });
        if (kind == usesByKind.end())
            kind = usesByKind.insert(usesByKind.end(), {&reference.kind, ""});
        if (!kind->second.empty())
            kind->second += " UNION ";
        kind->second += "SELECT DISTINCT " + reference.use + " FROM " + reference.table +
                        " WHERE " + reference.field + "=" + std::to_string(code);
    }
    std::vector<std::string> counted;
    for (const auto& [kind, uses] : usesByKind) {
        // Each use once: a document of several lines, or one named by several columns.
        const auto count =
            Db().OpenRecordset("SELECT COUNT(*) FROM (" + uses + ") USES")->Field(0).AsLong();
        if (count > 0)
            counted.push_back(std::to_string(count) + " " + (count == 1 ? kind->one : kind->many));
    }
    // A module may need the record whatever the books hold (an account its own vouchers post
    // to by name): each that knows the operation names that use, or nothing.
    for (const LoadedModule& loaded : app_.Modules()) {
        std::array<Value, 2> args{Value(definition_.table), Value(static_cast<long long>(code))};
        try {
            if (std::string use = loaded.module->Obj().Invoke("RecordInUse", args).AsText();
                !use.empty())
                counted.push_back(std::move(use));
        } catch (const std::invalid_argument&) {
            // the module needs no record of its own
        }
    }
    if (counted.empty())
        return {};
    return name + " is used by " + Listed(counted, "and") + "; it cannot be deleted.";
}

void TableMaster::Lookup() {
    const GridField* field = FieldAt(grid_.Col());
    if (!field || field->codeCol < 0)
        return;
    const LookupTarget& target = field->column->lookup;
    auto list = app_.CreateSelectDialog();
    list->SetCaption(field->column->caption);
    list->SetStartText(grid_.Editing().value_or(grid_.TextMatrix(grid_.Row(), grid_.Col())));
    list->FillFromQuery(Db(),
                        "SELECT " + target.codeField + ", " + target.nameField + " FROM " +
                            target.table + " ORDER BY " + target.nameField,
                        target.nameField, target.codeField);
    // The choice is typed into the cell and checked, as a typed name is, when the cell is left.
    if (list->Show())
        grid_.Type(list->SelectedText());
}

void TableMaster::PrintList(PrintMode mode) {
    auto job = grid_.ToPrintJob(definition_.title);
    job.reportName = definition_.key;
    // The list is of stored records: not the empty row for a new one, nor a row being typed.
    std::vector<PrintRow> stored;
    for (int row = 1; row < grid_.Rows(); ++row)
        if (SavedKey(row) != 0)
            stored.push_back(std::move(job.rows[static_cast<std::size_t>(row - 1)]));
    job.rows = std::move(stored);
    app_.Print(job, mode);
}

void TableMaster::RunAction(const MasterAction& action) {
    if (!SaveCurrentRow())
        return;
    const int row = grid_.Row();
    const SavedRecord record{SavedKey(row),
                             grid_.TextMatrix(row, ColumnOf(definition_.nameColumn.field))};
    if (record.code == 0) {
        Warn("Choose a saved " + definition_.noun + " first.");
        return;
    }
    app_.Guard([&] { action.run(*this, record); });
}

void TableMaster::OnCommand(const std::string& key) {
    app_.Guard([&] {
        if (key == "Lookup")
            Lookup();
        else if (key == "Delete")
            DeleteRow();
        else if (key == "Preview")
            PrintList(PrintMode::Preview);
        else if (key == "Print")
            PrintList(PrintMode::Print);
        else if (key == "Exit")
            Close();
    });
}

void TableMaster::Warn(const std::string& message) {
    app_.ShowMessage(message, "", "W");
}

} // namespace qx::desk
