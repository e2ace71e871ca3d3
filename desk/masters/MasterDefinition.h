#pragma once
// What a simple master is: one table edited as one grid, a row a record. The generic screen
// TableMaster serves every such master from its definition.

#include "host/CompanyDb.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace qx::desk {

class TableMaster;

enum class ColumnKind { Text, WholeNumber, Decimal, Lookup, YesNo };

// The master a look-up column chooses from: it shows the record's name and stores its code.
struct LookupTarget {
    std::string table;
    std::string codeField;
    std::string nameField;
    std::string noun; // "VAT category": "There is no VAT category named ..."
};

// The fixed form of a number that identifies something (an Aadhaar, a PAN, a mobile number),
// checked once the blanks and hyphens typed between its parts are dropped.
struct TextForm {
    // A regular expression the whole text must match. When it has a group, what the group
    // matches is what is kept: a mobile number is kept without the +91 typed before it.
    std::string pattern;
    std::string refusal; // "PAN must read like ABCDE1234F: ..."
};

// The values a number column takes.
struct NumberRange {
    Amount lowest;
    Amount highest;
};

// Parts with an empty initialiser are optional.
struct MasterColumn {
    std::string field;
    std::string caption;
    int width = 1200; // twips
    ColumnKind kind = ColumnKind::Text;
    // Text only. Lengths count characters, not bytes (Gurmukhi takes several bytes).
    int maxLength = 0; // 0: no limit
    bool upperCase = false;
    TextForm form{};
    std::vector<std::string> choices{}; // when given, one of these (upper case)
    LookupTarget lookup{};              // ColumnKind::Lookup only
    std::optional<NumberRange> range{}; // WholeNumber and Decimal only
};

// What uses a master's records, as the refusal to delete one counts it: "12 documents".
struct UseKind {
    std::string one;  // "document"
    std::string many; // "documents"
};

// A column that names a master's record by its key: a record in use there is not deleted.
// The uses of one kind are counted together, each once (a document whose party is also the
// buyer of its lines is one document).
struct MasterReference {
    std::string table;
    std::string field;
    std::string use; // the columns that tell one use from another: "DOCUMENTID"
    UseKind kind;
};

struct SavedRecord {
    std::int64_t code = 0;
    std::string name;
};

// An extra button of a master. It runs on the record of the current row, saved first.
struct MasterAction {
    std::string control; // the button's name on the screen
    std::string caption;
    std::function<void(TableMaster& screen, const SavedRecord& record)> run;
};

// Parts with an empty initialiser are optional: a definition names only what it has.
struct MasterDefinition {
    std::string key;   // the screen's name and the key of its printed list: "StkMaster"
    std::string title; // "Items"
    std::string table;
    std::string noun; // one record: "item"
    MasterColumn keyColumn;
    // The user types the code (numbers that are the chart's own); otherwise a new record gets
    // MAX+1 when it is first saved and the code is only shown.
    bool keyTyped = false;
    MasterColumn nameColumn; // required, unique without regard to case, kept in upper case
    std::vector<MasterColumn> columns{};
    // Fields a new record gets besides its columns.
    std::vector<std::pair<std::string, Value>> newRecordValues{};
    std::vector<MasterReference> references{};
    // What goes with a record, written in the same unit of work as the record itself.
    std::function<void(CompanyDb&, const SavedRecord&)> afterSave{};
    std::function<void(CompanyDb&, std::int64_t code)> afterDelete{};
    std::vector<MasterAction> actions{};
};

// A look-up column of another master chooses among that master's records.
inline LookupTarget LookupInto(const MasterDefinition& master) {
    return {master.table, master.keyColumn.field, master.nameColumn.field, master.noun};
}

} // namespace qx::desk
