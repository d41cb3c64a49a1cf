#include "store/SqlDialect.h"

#include "store/TableDefinition.h"

#include <array>
#include <cstdint>
#include <stdexcept>
#include <vector>

namespace {

enum class TokenKind : std::uint8_t { Blank, Word, Quoted, Text, Parameter, Symbol };

struct Token
{
    TokenKind kind;
    std::string_view text;

    [[nodiscard]] bool isWord(std::string_view word) const { return kind == TokenKind::Word && sameName(text, word); }
    [[nodiscard]] bool isSymbol(char symbol) const { return kind == TokenKind::Symbol && text.front() == symbol; }
};

using Tokens = std::vector<Token>;

bool isBlank(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

// A number is a word too: it is left alone, and so are letters that touch it.
bool isWordPart(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == '$' ||
           static_cast<unsigned char>(c) >= 0x80;
}

// The position after the closing mark; a doubled mark does not close. What is
// never closed reaches to the end, and the engine will complain.
std::size_t quotedEnd(std::string_view sql, std::size_t start, char close)
{
    for (std::size_t at = start + 1; at < sql.size(); ++at) {
        if (sql[at] != close) {
            continue;
        }
        if (close == ']' || at + 1 == sql.size() || sql[at + 1] != close) {
            return at + 1;
        }
        ++at;
    }
    return sql.size();
}

std::size_t endAfter(std::string_view sql, std::size_t start, std::string_view mark)
{
    const std::size_t found = sql.find(mark, start);
    return found == std::string_view::npos ? sql.size() : found + mark.size();
}

template <typename Predicate>
std::size_t endWhile(std::string_view sql, std::size_t start, Predicate belongs)
{
    while (start < sql.size() && belongs(sql[start])) {
        ++start;
    }
    return start;
}

Token nextToken(std::string_view sql, std::size_t start)
{
    const auto token = [&](TokenKind kind, std::size_t end) { return Token{kind, sql.substr(start, end - start)}; };
    const char c = sql[start];
    if (isBlank(c)) {
        return token(TokenKind::Blank, endWhile(sql, start, isBlank));
    }
    if (sql.substr(start, 2) == "--") {
        return token(TokenKind::Blank, endAfter(sql, start, "\n"));
    }
    if (sql.substr(start, 2) == "/*") {
        return token(TokenKind::Blank, endAfter(sql, start + 2, "*/"));
    }
    if (c == '\'') {
        return token(TokenKind::Text, quotedEnd(sql, start, c));
    }
    if (c == '"' || c == '`') {
        return token(TokenKind::Quoted, quotedEnd(sql, start, c));
    }
    if (c == '[') {
        return token(TokenKind::Quoted, quotedEnd(sql, start, ']'));
    }
    if (c == ':' || c == '@' || c == '?' || c == '#') {
        return token(TokenKind::Parameter, endWhile(sql, start + 1, isWordPart));
    }
    if (isWordPart(c)) {
        return token(TokenKind::Word, endWhile(sql, start, isWordPart));
    }
    return token(TokenKind::Symbol, start + 1);
}

Tokens tokenize(std::string_view sql)
{
    Tokens tokens;
    for (std::size_t at = 0; at < sql.size(); at += tokens.back().text.size()) {
        tokens.push_back(nextToken(sql, at));
    }
    return tokens;
}

// The index of the first token from \p start on that is not blank.
std::size_t skipBlanks(const Tokens &tokens, std::size_t start)
{
    while (start < tokens.size() && tokens[start].kind == TokenKind::Blank) {
        ++start;
    }
    return start;
}

// Where the "*" of a "DELETE * FROM" that begins at \p start stands, else 0.
std::size_t starOfDelete(const Tokens &tokens, std::size_t start)
{
    if (!tokens[start].isWord("DELETE")) {
        return 0;
    }
    const std::size_t star = skipBlanks(tokens, start + 1);
    if (star == tokens.size() || !tokens[star].isSymbol('*')) {
        return 0;
    }
    const std::size_t from = skipBlanks(tokens, star + 1);
    return from < tokens.size() && tokens[from].isWord("FROM") ? star : 0;
}

std::string translate(const Tokens &tokens, std::size_t start)
{
    std::string sql;
    std::size_t star = 0;
    bool afterDot = false;
    for (std::size_t at = start; at < tokens.size(); ++at) {
        const Token &token = tokens[at];
        if (const std::size_t found = starOfDelete(tokens, at)) {
            star = found;
        }

        if (star != 0 && at == star) {
            if (tokens[at - 1].kind == TokenKind::Blank && tokens[at + 1].kind == TokenKind::Blank) {
                ++at; // one blank is enough
            } else {
                sql += ' ';
            }
        } else if (token.isWord("Index")) {
            sql.append("\"").append(token.text).append("\"");
        } else if (!afterDot && token.isWord("Yes")) {
            sql += '1';
        } else if (!afterDot && token.isWord("No")) {
            sql += '0';
        } else {
            sql += token.text;
        }
        afterDot = token.isSymbol('.');
    }
    return sql;
}

std::string unquoted(const Token &token)
{
    if (token.kind != TokenKind::Quoted) {
        return std::string(token.text);
    }
    std::string name;
    const char close = token.text.front() == '[' ? ']' : token.text.front();
    for (std::size_t at = 1; at + 1 < token.text.size(); ++at) {
        name += token.text[at];
        if (token.text[at] == close) {
            ++at;
        }
    }
    return name;
}

} // namespace

std::string translateSql(std::string_view statement)
{
    return translate(tokenize(statement), 0);
}

KeySelection translateKeySelection(std::string_view statement)
{
    const Tokens tokens = tokenize(statement);
    std::size_t at = 0;
    const auto next = [&] {
        at = skipBlanks(tokens, at);
        return at < tokens.size() ? tokens[at++] : Token{TokenKind::Symbol, ";"};
    };

    const bool selectsRows = next().isWord("SELECT") && next().isSymbol('*') && next().isWord("FROM");
    const Token table = next();
    if (!selectsRows || (table.kind != TokenKind::Word && table.kind != TokenKind::Quoted)) {
        throw std::invalid_argument("not a \"SELECT * FROM\": " + std::string(statement));
    }

    // A second table would select other rows than meant, and so would an alias: a cut-off WHERE looks like one.
    const std::size_t rest = at;
    const Token clause = next();
    if (!clause.isSymbol(';') && !clause.isWord("WHERE") && !clause.isWord("ORDER")) {
        throw std::invalid_argument("not a selection from one table: " + std::string(statement));
    }

    return {unquoted(table), "SELECT rowid FROM " + std::string(table.text) + translate(tokens, rest)};
}
