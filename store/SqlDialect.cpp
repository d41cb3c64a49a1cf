#include "store/SqlDialect.h"

#include "store/TableDefinition.h"

#include <algorithm>
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

bool isNumber(const Token &token)
{
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    return token.kind == TokenKind::Word && std::ranges::all_of(token.text, isDigit);
}

/// "column = number OR column = number ...", of one column.
struct ValueChain
{
    std::vector<std::string_view> numbers;
    std::size_t end = 0; ///< the index of the token after the last number
};

// Adds the comparison with \p column that begins at \p start, if there is one.
bool addComparison(const Tokens &tokens, std::size_t start, std::string_view column, ValueChain &chain)
{
    const std::size_t name = skipBlanks(tokens, start);
    const std::size_t equals = skipBlanks(tokens, name + 1);
    const std::size_t number = skipBlanks(tokens, equals + 1);
    if (number >= tokens.size() || !tokens[name].isWord(column) || !tokens[equals].isSymbol('=') ||
        !isNumber(tokens[number])) {
        return false;
    }
    chain.numbers.push_back(tokens[number].text);
    chain.end = number + 1;
    return true;
}

// The chain of two and more that begins at the word at \p start, right behind a WHERE. What binds closer
// than OR would take its last comparison away from it: then it is none.
ValueChain chainAt(const Tokens &tokens, std::size_t start)
{
    const std::string_view column = tokens[start].text;
    ValueChain chain;
    if (!addComparison(tokens, start, column, chain)) {
        return {};
    }
    const auto next = [&] { return skipBlanks(tokens, chain.end); };
    const auto isNext = [&](std::string_view word) { return next() < tokens.size() && tokens[next()].isWord(word); };
    while (isNext("OR") && addComparison(tokens, next() + 1, column, chain)) {
        ;
    }
    const bool endsHere = next() == tokens.size() || tokens[next()].isSymbol(';') || isNext("OR") || isNext("ORDER");
    return endsHere && chain.numbers.size() > 1 ? chain : ValueChain{};
}

std::string listOf(const std::vector<std::string_view> &numbers)
{
    std::string list;
    for (const std::string_view number : numbers) {
        list.append(list.empty() ? "(" : ", ").append(number);
    }
    return list + ")";
}

std::string translate(const Tokens &tokens, std::size_t start)
{
    std::string sql;
    std::size_t star = 0;
    bool afterDot = false;
    bool afterWhere = false;
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

        if (afterWhere) {
            if (const ValueChain chain = chainAt(tokens, at); !chain.numbers.empty()) {
                sql += " IN " + listOf(chain.numbers);
                at = chain.end - 1;
            }
        }
        afterWhere = token.isWord("WHERE") || (afterWhere && token.kind == TokenKind::Blank);
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
