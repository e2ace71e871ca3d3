#include "SqliteRecordset.h"

#include "SqliteStatement.h"
#include "StatementCache.h"

#include <sqlite3.h>

#include <algorithm>
#include <utility>

namespace qx::db {
namespace {

char Upper(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
}

std::string QuotedName(std::string_view name) {
    std::string quoted = "\"";
    for (char c : name)
        quoted += c == '"' ? "\"\"" : std::string(1, c);
    return quoted + "\"";
}

} // namespace

std::size_t SqliteRecordset::NameHash::operator()(std::string_view name) const {
    std::size_t hash = 14695981039346656037u; // FNV-1a, over the name in capitals
    for (char c : name)
        hash = (hash ^ static_cast<unsigned char>(Upper(c))) * 1099511628211u;
    return hash;
}

bool SqliteRecordset::NameEqual::operator()(std::string_view a, std::string_view b) const {
    return std::ranges::equal(a, b, [](char x, char y) { return Upper(x) == Upper(y); });
}

void RowsBeingRead::Remove(SqliteRecordset& rows) {
    std::erase(sets_, &rows);
}

void RowsBeingRead::ReadWhole() {
    while (!sets_.empty()) {
        SqliteRecordset* rows = sets_.back();
        sets_.pop_back();
        rows->ReadRest();
    }
}

SqliteRecordset::SqliteRecordset(sqlite3* db, StatementCache& cache, RowsBeingRead& reads,
                                 std::string_view sql)
    : db_(db), cache_(cache), reads_(reads), sql_(sql) {
    const std::string adapted = AdaptSql(sql);
    writable_ = AsWritableQuery(adapted);
    auto query = std::make_unique<Statement>(db, writable_ ? writable_->sqlWithRowid : adapted,
                                             sql, &cache_);
    if (query->Empty())
        throw DbError("no query in: " + sql_);
    // The columns are read once the query has run: a kept "SELECT *" prepared before its table
    // gained a column is prepared again as it runs.
    bool more = query->Step();
    const int first = writable_ ? 1 : 0; // the rowid column is not one of the fields
    for (int i = first; i < query->ColumnCount(); ++i) {
        names_.push_back(query->ColumnName(i));
        kinds_.push_back(query->ColumnKind(i));
        byName_.try_emplace(names_.back(), names_.size() - 1); // the first of a name
    }
    if (!writable_) {
        if (more) {
            live_ = std::move(query);
            liveValues_.resize(names_.size());
            liveRead_.assign(names_.size(), 0);
            reads_.Add(*this);
        }
        return;
    }
    for (; more; more = query->Step())
        rows_.push_back(ReadWholeRow(*query, first));
}

SqliteRecordset::Row SqliteRecordset::ReadWholeRow(const Statement& query, int first) const {
    Row row;
    if (first == 1)
        row.rowid = std::get<std::int64_t>(query.Column(0).Raw());
    row.values.reserve(names_.size());
    for (std::size_t i = 0; i < names_.size(); ++i)
        row.values.push_back(query.Column(static_cast<int>(i) + first, kinds_[i]));
    return row;
}

bool SqliteRecordset::EndOfRows() const {
    return !live_ && current_ >= rows_.size() && failure_.empty();
}

void SqliteRecordset::MoveNext() {
    if (EndOfRows())
        throw DbError("no row after the last one in: " + sql_);
    if (HasUnwrittenChanges())
        throw DbError("a changed row was left without Update in: " + sql_);
    if (live_)
        StepLive();
    else if (current_ < rows_.size())
        ++current_;
    else
        throw DbError(failure_);
}

void SqliteRecordset::StepLive() {
    bool more = false;
    try {
        more = live_->Step();
    } catch (const DbError& error) {
        failure_ = error.what();
        StopReading();
        throw;
    }
    if (more)
        std::ranges::fill(liveRead_, 0);
    else
        StopReading();
}

void SqliteRecordset::ReadRest() {
    // The current row keeps the values already given, where they are.
    for (std::size_t i = 0; i < names_.size(); ++i)
        Cell(i);
    rows_.clear();
    rows_.push_back(Row{0, std::move(liveValues_), {}, false});
    current_ = 0;
    try {
        while (live_->Step())
            rows_.push_back(ReadWholeRow(*live_, 0));
    } catch (const DbError& error) {
        failure_ = error.what();
        live_.reset();
        throw;
    }
    live_.reset();
}

void SqliteRecordset::StopReading() {
    if (!live_)
        return;
    live_.reset();
    reads_.Remove(*this);
}

int SqliteRecordset::FieldCount() const {
    return static_cast<int>(names_.size());
}

std::string SqliteRecordset::FieldName(int index) const {
    if (index < 0 || index >= FieldCount())
        throw DbError("no field number " + std::to_string(index) + " in: " + sql_);
    return names_[static_cast<std::size_t>(index)];
}

bool SqliteRecordset::HasField(std::string_view name) const {
    return FindField(name).has_value();
}

int SqliteRecordset::FieldIndex(std::string_view name) const {
    return static_cast<int>(IndexOf(name));
}

const Value& SqliteRecordset::Field(std::string_view name) const {
    return Cell(IndexOf(name));
}

const Value& SqliteRecordset::Field(int index) const {
    if (index < 0 || index >= FieldCount())
        throw DbError("no field number " + std::to_string(index) + " in: " + sql_);
    return Cell(static_cast<std::size_t>(index));
}

const Value& SqliteRecordset::Cell(std::size_t index) const {
    if (!live_)
        return StoredRow().values[index];
    if (!liveRead_[index]) {
        liveValues_[index] = live_->Column(static_cast<int>(index), kinds_[index]);
        liveRead_[index] = 1;
    }
    return liveValues_[index];
}

void SqliteRecordset::AddNew() {
    if (!writable_)
        throw DbError("rows of this query cannot be added to: " + sql_);
    if (HasUnwrittenChanges())
        throw DbError("a changed row was left without Update in: " + sql_);
    if (!EndOfRows() && CurrentRow().rowid == 0)
        return; // the new row is still blank
    rows_.push_back(
        Row{0, std::vector<Value>(names_.size()), std::vector<bool>(names_.size(), false)});
    current_ = rows_.size() - 1;
}

void SqliteRecordset::SetField(std::string_view name, Value value) {
    if (!writable_)
        throw DbError("rows of this query cannot be changed: " + sql_);
    Row& row = CurrentRow();
    const std::size_t index = IndexOf(name);
    row.values[index] = std::move(value);
    row.changed.resize(names_.size());
    row.changed[index] = true;
}

void SqliteRecordset::Update() {
    if (!writable_)
        throw DbError("rows of this query cannot be changed: " + sql_);
    Row& row = CurrentRow();
    std::vector<std::size_t> changed;
    for (std::size_t i = 0; i < row.changed.size(); ++i)
        if (row.changed[i])
            changed.push_back(i);

    const bool inserts = row.rowid == 0;
    if (!inserts && changed.empty())
        return; // nothing changed
    reads_.ReadWhole();
    if (!write_ || writeInserts_ != inserts || writeFields_ != changed) {
        std::string sql;
        if (inserts && changed.empty()) {
            sql = "INSERT INTO " + writable_->table + " DEFAULT VALUES";
        } else if (inserts) {
            std::string columns;
            std::string parameters;
            for (std::size_t i : changed) {
                columns += (columns.empty() ? "" : ",") + QuotedName(names_[i]);
                parameters += parameters.empty() ? "?" : ",?";
            }
            sql = "INSERT INTO " + writable_->table + " (" + columns + ") VALUES (" +
                  parameters + ")";
        } else {
            std::string assignments;
            for (std::size_t i : changed)
                assignments += (assignments.empty() ? "" : ",") + QuotedName(names_[i]) + "=?";
            sql = "UPDATE " + writable_->table + " SET " + assignments + " WHERE rowid=?";
        }
        write_.reset();
        write_ = std::make_unique<Statement>(db_, sql, std::string_view(), &cache_);
        writeInserts_ = inserts;
        writeFields_ = std::move(changed);
    }
    Statement& write = *write_;
    // Ready for the next row whatever happens to this one.
    struct ResetAfter {
        Statement& statement;
        ~ResetAfter() { statement.Reset(); }
    } resetAfter{write};
    int parameter = 0;
    for (std::size_t i : writeFields_)
        write.Bind(++parameter, row.values[i], kinds_[i]);
    if (!inserts)
        write.Bind(++parameter, Value(row.rowid));
    write.Step();
    if (row.rowid == 0)
        row.rowid = sqlite3_last_insert_rowid(db_);
    std::fill(row.changed.begin(), row.changed.end(), false);
    row.readBack = true;
}

SqliteRecordset::~SqliteRecordset() {
    StopReading();
}

void SqliteRecordset::Close() {
    StopReading();
    write_.reset();
    rows_.clear();
    current_ = 0;
    failure_.clear();
    writable_.reset();
}

std::optional<std::size_t> SqliteRecordset::FindField(std::string_view name) const {
    auto found = byName_.find(name);
    if (found == byName_.end())
        return std::nullopt;
    return found->second;
}

std::size_t SqliteRecordset::IndexOf(std::string_view name) const {
    if (auto index = FindField(name))
        return *index;
    throw DbError("no field " + std::string(name) + " in: " + sql_);
}

const SqliteRecordset::Row& SqliteRecordset::CurrentRow() const {
    if (current_ >= rows_.size() && !failure_.empty())
        throw DbError(failure_);
    if (EndOfRows())
        throw DbError("no current row (past the last one) in: " + sql_);
    return rows_[current_];
}

SqliteRecordset::Row& SqliteRecordset::CurrentRow() {
    return const_cast<Row&>(std::as_const(*this).CurrentRow());
}

const SqliteRecordset::Row& SqliteRecordset::StoredRow() const {
    auto& self = const_cast<SqliteRecordset&>(*this);
    Row& row = self.CurrentRow();
    if (row.readBack)
        self.ReadRow(row.rowid, row);
    return row;
}

bool SqliteRecordset::HasUnwrittenChanges() const {
    return current_ < rows_.size() &&
           std::ranges::any_of(rows_[current_].changed, [](bool c) { return c; });
}

void SqliteRecordset::ReadRow(std::int64_t rowid, Row& row) {
    Statement read(db_, "SELECT * FROM " + writable_->table + " WHERE rowid=?", {}, &cache_);
    read.Bind(1, Value(rowid));
    if (!read.Step())
        throw DbError("the row written is gone from " + writable_->table);
    row.rowid = rowid;
    for (std::size_t i = 0; i < row.values.size(); ++i)
        row.values[i] = read.Column(static_cast<int>(i), kinds_[i]);
    std::fill(row.changed.begin(), row.changed.end(), false);
    row.readBack = false;
}

} // namespace qx::db
