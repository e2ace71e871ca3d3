#include "SqlAdapter.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

namespace qx::db {
namespace {

// The statement is cut into tokens so that every rewrite sees words and punctuation only,
// never the inside of a string literal or a quoted name.
enum class Kind { Space, Comment, Word, Number, String, QuotedName, Punct };

struct Token {
    Kind kind;
    std::string text;
};

bool IsAsciiLetter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}
bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}
bool IsSpace(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f';
}
// Bytes of UTF-8 sequences count as letters: names may be written in Gurmukhi.
bool IsWordStart(char c) {
    return IsAsciiLetter(c) || c == '_' || static_cast<unsigned char>(c) >= 0x80;
}
bool IsWordChar(char c) {
    return IsWordStart(c) || IsDigit(c) || c == '$';
}

char AsciiUpper(char c) {
    return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c;
}

std::string Upper(std::string_view text) {
    std::string out(text);
    for (char& c : out)
        c = AsciiUpper(c);
    return out;
}

bool SameWord(std::string_view a, std::string_view b) {
    if (a.size() != b.size())
        return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (AsciiUpper(a[i]) != AsciiUpper(b[i]))
            return false;
    return true;
}

// Length of the run of digits at the start of text.
std::size_t DigitRun(std::string_view text) {
    std::size_t n = 0;
    while (n < text.size() && IsDigit(text[n]))
        ++n;
    return n;
}

std::string TwoDigits(std::string_view digits) {
    return digits.size() == 1 ? "0" + std::string(digits) : std::string(digits);
}

// "#MM/dd/yyyy#" (Access) at the start of text: its length and the ISO literal.
std::optional<std::pair<std::size_t, std::string>> HashDate(std::string_view text) {
    std::size_t pos = 1;
    std::array<std::string_view, 3> parts;
    for (std::size_t part = 0; part < parts.size(); ++part) {
        std::size_t n = DigitRun(text.substr(pos));
        bool lastPart = part == parts.size() - 1;
        if (lastPart ? n != 4 : (n < 1 || n > 2))
            return std::nullopt;
        parts[part] = text.substr(pos, n);
        pos += n;
        char expected = lastPart ? '#' : '/';
        if (pos >= text.size() || text[pos] != expected)
            return std::nullopt;
        ++pos;
    }
    int month = std::stoi(std::string(parts[0]));
    int day = std::stoi(std::string(parts[1]));
    if (month < 1 || month > 12 || day < 1 || day > 31)
        return std::nullopt;
    return std::pair{pos, "'" + std::string(parts[2]) + "-" + TwoDigits(parts[0]) + "-" +
                              TwoDigits(parts[1]) + "'"};
}

// "{d 'yyyy-MM-dd'}" (ODBC escape) at the start of text: its length and the ISO literal.
std::optional<std::pair<std::size_t, std::string>> OdbcDate(std::string_view text) {
    std::size_t pos = 1;
    auto skipSpaces = [&] {
        while (pos < text.size() && IsSpace(text[pos]))
            ++pos;
    };
    skipSpaces();
    if (pos >= text.size() || AsciiUpper(text[pos]) != 'D')
        return std::nullopt;
    ++pos;
    skipSpaces();
    const std::size_t literalStart = pos;
    constexpr std::size_t kIsoLiteral = 12; // 'yyyy-MM-dd'
    if (text.size() < pos + kIsoLiteral)
        return std::nullopt;
    std::string_view literal = text.substr(pos, kIsoLiteral);
    if (literal.front() != '\'' || literal.back() != '\'' || literal[5] != '-' || literal[8] != '-')
        return std::nullopt;
    pos += kIsoLiteral;
    skipSpaces();
    if (pos >= text.size() || text[pos] != '}')
        return std::nullopt;
    return std::pair{pos + 1, std::string(text.substr(literalStart, kIsoLiteral))};
}

// Length of a quoted run starting at text[0], the closing character doubled inside it.
std::size_t QuotedLength(std::string_view text, char close) {
    std::size_t pos = 1;
    while (pos < text.size()) {
        if (text[pos] == close) {
            if (pos + 1 < text.size() && text[pos + 1] == close) {
                pos += 2;
                continue;
            }
            return pos + 1;
        }
        ++pos;
    }
    return text.size(); // unterminated: SQLite reports it
}

std::vector<Token> Tokenize(std::string_view sql) {
    std::vector<Token> tokens;
    std::size_t pos = 0;
    while (pos < sql.size()) {
        std::string_view rest = sql.substr(pos);
        const char c = rest.front();
        Kind kind = Kind::Punct;
        std::size_t length = 1;
        if (IsSpace(c)) {
            kind = Kind::Space;
            while (length < rest.size() && IsSpace(rest[length]))
                ++length;
        } else if (rest.starts_with("--")) {
            kind = Kind::Comment;
            length = std::min(rest.find('\n'), rest.size());
        } else if (rest.starts_with("/*")) {
            kind = Kind::Comment;
            std::size_t end = rest.find("*/", 2);
            length = end == std::string_view::npos ? rest.size() : end + 2;
        } else if (c == '\'') {
            kind = Kind::String;
            length = QuotedLength(rest, '\'');
        } else if (c == '"' || c == '`') {
            kind = Kind::QuotedName;
            length = QuotedLength(rest, c);
        } else if (c == '[') {
            kind = Kind::QuotedName;
            length = QuotedLength(rest, ']');
        } else if (c == '#' || c == '{') {
            if (auto date = c == '#' ? HashDate(rest) : OdbcDate(rest)) {
                tokens.push_back({Kind::String, date->second});
                pos += date->first;
                continue;
            }
        } else if (IsDigit(c) || (c == '.' && rest.size() > 1 && IsDigit(rest[1]))) {
            kind = Kind::Number;
            while (length < rest.size() && (IsDigit(rest[length]) || rest[length] == '.'))
                ++length;
        } else if (IsWordStart(c)) {
            kind = Kind::Word;
            while (length < rest.size() && IsWordChar(rest[length]))
                ++length;
        }
        tokens.push_back({kind, std::string(rest.substr(0, length))});
        pos += length;
    }
    return tokens;
}

std::string Join(const std::vector<Token>& tokens, std::size_t from = 0) {
    std::string out;
    for (std::size_t i = from; i < tokens.size(); ++i)
        out += tokens[i].text;
    return out;
}

bool Significant(const Token& token) {
    return token.kind != Kind::Space && token.kind != Kind::Comment && !token.text.empty();
}

bool IsWord(const Token& token, std::string_view word) {
    return token.kind == Kind::Word && SameWord(token.text, word);
}

bool IsPunct(const Token& token, char c) {
    return token.kind == Kind::Punct && token.text.size() == 1 && token.text[0] == c;
}

// Index of the first significant token at or after from; tokens.size() when none.
std::size_t NextSignificant(const std::vector<Token>& tokens, std::size_t from) {
    while (from < tokens.size() && !Significant(tokens[from]))
        ++from;
    return from;
}

// Index of the last significant token before end; end when none.
std::size_t LastSignificantBefore(const std::vector<Token>& tokens, std::size_t begin,
                                  std::size_t end) {
    for (std::size_t i = end; i > begin; --i)
        if (Significant(tokens[i - 1]))
            return i - 1;
    return end;
}

bool IsAnyWord(const Token& token, std::initializer_list<std::string_view> words) {
    for (std::string_view word : words)
        if (IsWord(token, word))
            return true;
    return false;
}

// "SELECT FIRST n ..." -> "SELECT ... LIMIT n". The limit closes the SELECT it belongs to: at
// the end of the statement, or at the parenthesis that closes a subquery.
void RewriteSelectFirst(std::vector<Token>& tokens) {
    for (std::size_t select = 0; select < tokens.size(); ++select) {
        if (!IsWord(tokens[select], "SELECT"))
            continue;
        std::size_t first = NextSignificant(tokens, select + 1);
        if (first == tokens.size() || !IsWord(tokens[first], "FIRST"))
            continue;
        std::size_t count = NextSignificant(tokens, first + 1);
        if (count == tokens.size() || tokens[count].kind != Kind::Number ||
            DigitRun(tokens[count].text) != tokens[count].text.size())
            continue;
        const std::string limit = " LIMIT " + tokens[count].text;
        for (std::size_t i = first; i <= count; ++i)
            tokens[i].text.clear();
        if (count + 1 < tokens.size() && tokens[count + 1].kind == Kind::Space)
            tokens[count + 1].text.clear();

        std::size_t end = count + 1;
        for (int depth = 0; end < tokens.size(); ++end) {
            if (IsPunct(tokens[end], '('))
                ++depth;
            if (IsPunct(tokens[end], ')') && depth-- == 0)
                break;
            if (IsPunct(tokens[end], ';') && depth == 0)
                break;
        }
        std::size_t last = LastSignificantBefore(tokens, count + 1, end);
        tokens[last == end ? select : last].text += limit;
    }
}

bool IsColumnConstraintWord(const Token& token) {
    return IsAnyWord(token, {"CONSTRAINT", "PRIMARY", "NOT", "NULL", "UNIQUE", "CHECK", "DEFAULT",
                             "COLLATE", "REFERENCES", "GENERATED", "AS"});
}

bool IsTableConstraintWord(const Token& token) {
    return IsAnyWord(token, {"CONSTRAINT", "PRIMARY", "UNIQUE", "CHECK", "FOREIGN"});
}

// One column definition in tokens [begin, end): "NAME TYPE[(p,s)] [constraints]".
// Decimal types become REAL, so that SQLite keeps 50.0 as a real number and 50/100 gives 0.5
// rather than the integer division its NUMERIC affinity would lead to.
// With fillNotNull (ALTER TABLE ADD), NOT NULL without a default gets one: SQLite refuses to
// add such a column even to an empty table.
void AdaptColumnDefinition(std::vector<Token>& tokens, std::size_t begin, std::size_t end,
                           bool fillNotNull) {
    std::size_t name = NextSignificant(tokens, begin);
    if (name >= end || IsTableConstraintWord(tokens[name]))
        return;

    std::size_t typeBegin = NextSignificant(tokens, name + 1);
    std::size_t typeEnd = typeBegin;
    while (typeEnd < end && tokens[typeEnd].kind == Kind::Word &&
           !IsColumnConstraintWord(tokens[typeEnd]))
        typeEnd = NextSignificant(tokens, typeEnd + 1);
    if (typeEnd < end && typeEnd != typeBegin && IsPunct(tokens[typeEnd], '(')) {
        while (typeEnd < end && !IsPunct(tokens[typeEnd], ')'))
            ++typeEnd;
        typeEnd = std::min(typeEnd + 1, end);
    }
    std::string type;
    for (std::size_t i = typeBegin; i < typeEnd; ++i)
        type += tokens[i].text;
    const SqlTypeKind kind = ClassifySqlType(type);
    if (kind == SqlTypeKind::Decimal) {
        std::size_t typeLast = LastSignificantBefore(tokens, typeBegin, typeEnd);
        for (std::size_t i = typeBegin; i <= typeLast; ++i)
            tokens[i].text.clear();
        tokens[typeBegin].text = "REAL";
    }

    if (!fillNotNull)
        return;
    bool notNull = false;
    bool hasDefault = false;
    for (std::size_t i = typeEnd; i < end; ++i) {
        if (IsWord(tokens[i], "DEFAULT"))
            hasDefault = true;
        if (IsWord(tokens[i], "NOT")) {
            std::size_t next = NextSignificant(tokens, i + 1);
            notNull = notNull || (next < end && IsWord(tokens[next], "NULL"));
        }
    }
    if (notNull && !hasDefault) {
        std::size_t last = LastSignificantBefore(tokens, begin, end);
        tokens[last].text += kind == SqlTypeKind::Text ? " DEFAULT ''" : " DEFAULT 0";
    }
}

// CREATE TABLE name (definitions) and ALTER TABLE name ADD [COLUMN] definition.
void AdaptTableDefinition(std::vector<Token>& tokens) {
    std::size_t verb = NextSignificant(tokens, 0);
    if (verb == tokens.size())
        return;
    if (IsWord(tokens[verb], "CREATE")) {
        std::size_t i = NextSignificant(tokens, verb + 1);
        while (i < tokens.size() && IsAnyWord(tokens[i], {"TEMP", "TEMPORARY"}))
            i = NextSignificant(tokens, i + 1);
        if (i == tokens.size() || !IsWord(tokens[i], "TABLE"))
            return;
        while (i < tokens.size() && !IsPunct(tokens[i], '(')) {
            if (IsWord(tokens[i], "AS"))
                return; // CREATE TABLE ... AS SELECT: no types
            ++i;
        }
        std::size_t definition = i + 1;
        for (int depth = 0; ++i < tokens.size();) {
            if (IsPunct(tokens[i], '('))
                ++depth;
            bool closes = IsPunct(tokens[i], ')') && depth-- == 0;
            if (closes || (depth == 0 && IsPunct(tokens[i], ','))) {
                AdaptColumnDefinition(tokens, definition, i, false);
                definition = i + 1;
            }
            if (closes)
                break;
        }
    } else if (IsWord(tokens[verb], "ALTER")) {
        std::size_t i = NextSignificant(tokens, verb + 1);
        if (i == tokens.size() || !IsWord(tokens[i], "TABLE"))
            return;
        while (i < tokens.size() && !IsWord(tokens[i], "ADD"))
            ++i;
        if (i == tokens.size())
            return;
        std::size_t definition = NextSignificant(tokens, i + 1);
        if (definition < tokens.size() && IsWord(tokens[definition], "COLUMN"))
            ++definition;
        std::size_t end = definition;
        while (end < tokens.size() && !IsPunct(tokens[end], ';'))
            ++end;
        AdaptColumnDefinition(tokens, definition, end, true);
    }
}

} // namespace

std::string AdaptSql(std::string_view sql) {
    std::vector<Token> tokens = Tokenize(sql);
    RewriteSelectFirst(tokens);
    AdaptTableDefinition(tokens);
    return Join(tokens);
}

SqlTypeKind ClassifySqlType(std::string_view declaredType) {
    std::string type = Upper(declaredType);
    std::size_t wordEnd = 0;
    while (wordEnd < type.size() && IsAsciiLetter(type[wordEnd]))
        ++wordEnd;
    const std::string base = type.substr(0, wordEnd);
    auto isOneOf = [&](std::initializer_list<std::string_view> names) {
        for (std::string_view name : names)
            if (base == name)
                return true;
        return false;
    };
    if (isOneOf({"DECIMAL", "DEC", "NUMERIC", "NUMBER", "CURRENCY", "MONEY", "SMALLMONEY", "FLOAT",
                 "DOUBLE", "REAL", "SINGLE"}))
        return SqlTypeKind::Decimal;
    if (isOneOf({"DATE", "DATETIME", "SMALLDATETIME", "TIMESTAMP"}))
        return SqlTypeKind::Date;
    if (base.find("INT") != std::string::npos || isOneOf({"LONG", "BIT", "BOOLEAN", "BOOL"}))
        return SqlTypeKind::Integer;
    if (base.find("CHAR") != std::string::npos || base.find("TEXT") != std::string::npos ||
        base.find("CLOB") != std::string::npos || isOneOf({"MEMO", "STRING"}))
        return SqlTypeKind::Text;
    return SqlTypeKind::Other;
}

std::optional<WritableQuery> AsWritableQuery(std::string_view adaptedSql) {
    const std::vector<Token> tokens = Tokenize(adaptedSql);
    std::size_t select = NextSignificant(tokens, 0);
    std::size_t star = select < tokens.size() ? NextSignificant(tokens, select + 1) : select;
    std::size_t from = star < tokens.size() ? NextSignificant(tokens, star + 1) : star;
    std::size_t table = from < tokens.size() ? NextSignificant(tokens, from + 1) : from;
    if (table >= tokens.size() || !IsWord(tokens[select], "SELECT") ||
        !IsPunct(tokens[star], '*') || !IsWord(tokens[from], "FROM") ||
        (tokens[table].kind != Kind::Word && tokens[table].kind != Kind::QuotedName))
        return std::nullopt;
    std::size_t after = NextSignificant(tokens, table + 1);
    if (after < tokens.size() && !IsPunct(tokens[after], ';') &&
        !IsAnyWord(tokens[after], {"WHERE", "ORDER", "LIMIT"}))
        return std::nullopt;
    return WritableQuery{tokens[table].text,
                         "SELECT rowid AS qx_rowid, *" + Join(tokens, star + 1)};
}

} // namespace qx::db
