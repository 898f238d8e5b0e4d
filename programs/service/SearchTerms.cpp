// SPDX-FileCopyrightText: 2026 The QVSongLrc authors
// SPDX-License-Identifier: MIT
#include "SearchTerms.h"

#include <QStringList>
#include <QStringView>

#include <unicode/uchar.h>
#include <unicode/unorm2.h>
#include <unicode/uscript.h>

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

constexpr size_t MaxQueryTokens = 32;      // SQLite limits the depth of expressions
constexpr qsizetype MaxQueryLength = 1000; // code units
constexpr qsizetype MinPrefixLength = 3;   // a shorter prefix would match nearly everything

struct Token
{
    QString text;
    bool isWord;     // not a single character of a script without spaces
    bool startsPart; // after white space
};

QString normalised(const QString &text)
{
    UErrorCode status = U_ZERO_ERROR;
    const UNormalizer2 *normalizer = unorm2_getNFKCCasefoldInstance(&status);
    QString result(text.size() * 18, Qt::Uninitialized); // the longest NFKC mapping of one code unit
    const int32_t size =
        unorm2_normalize(normalizer, reinterpret_cast<const UChar *>(text.utf16()), int32_t(text.size()),
                         reinterpret_cast<UChar *>(result.data()), int32_t(result.size()), &status);
    result.truncate(U_SUCCESS(status) ? size : 0);
    return result;
}

bool isWrittenWithoutSpaces(UChar32 c)
{
    constexpr UScriptCode Scripts[] = {USCRIPT_HAN,      USCRIPT_HIRAGANA, USCRIPT_KATAKANA, USCRIPT_HANGUL,
                                       USCRIPT_BOPOMOFO, USCRIPT_THAI,     USCRIPT_LAO,      USCRIPT_KHMER,
                                       USCRIPT_MYANMAR,  USCRIPT_YI,       USCRIPT_TIBETAN};
    return c >= 0x0E00 && std::any_of(std::begin(Scripts), std::end(Scripts), [c](UScriptCode script) {
               return uscript_hasScript(c, script);
           });
}

std::vector<Token> tokenize(const QString &text)
{
    std::vector<Token> found;
    QString word;
    bool startsPart = true;
    const auto add = [&](const QString &token, bool isWord) {
        found.push_back({token, isWord, startsPart});
        startsPart = false;
    };
    const auto endWord = [&] {
        if (!word.isEmpty())
            add(std::exchange(word, QString()), true);
    };
    const QString source = normalised(text);
    for (const char32_t character : source.toUcs4()) {
        const auto c = UChar32(character);
        const uint32_t category = U_MASK(u_charType(c));
        if (category & (U_GC_L_MASK | U_GC_N_MASK | U_GC_M_MASK)) {
            if (!isWrittenWithoutSpaces(c)) {
                word += QChar::fromUcs4(character);
                continue;
            }
            endWord();
            add(QString::fromUcs4(&character, 1), false);
        } else {
            endWord();
            if ((category & U_GC_S_MASK) && c > 0x7F)
                add(QString::fromUcs4(&character, 1), false);
            else if (u_isUWhiteSpace(c))
                startsPart = true;
        }
    }
    endWord();
    return found;
}

QString joined(const std::vector<Token> &found)
{
    QString name(u'=');
    for (const Token &token : found)
        name += token.text;
    return name;
}

std::vector<Token> queryTokens(const QString &query)
{
    std::vector<Token> found = tokenize(query.left(MaxQueryLength));
    found.resize(std::min(found.size(), MaxQueryTokens));
    return found;
}

} // namespace

QString SearchTerms::tokenList(const QString &text)
{
    const std::vector<Token> found = tokenize(text);
    QString line;
    for (const Token &token : found)
        line += token.text + u' ';
    return found.empty() ? line : line + joined(found);
}

QString SearchTerms::matchExpression(QLatin1StringView column, const QString &query)
{
    const std::vector<Token> found = queryTokens(query);
    if (found.empty())
        return {};
    // Tokens never contain a quotation mark, so they need no escaping.
    QString expression = column + " : ("_L1;
    for (const Token &token : found) {
        if (&token != &found.front())
            expression += token.startsPart ? "\" AND \""_L1 : " "_L1;
        else
            expression += u'"';
        expression += token.text;
    }
    const bool isPrefix = found.back().isWord && found.back().text.size() >= MinPrefixLength;
    return expression + (isPrefix ? "\" *)"_L1 : "\")"_L1);
}

QString SearchTerms::exactMatchExpression(QLatin1StringView column, const QString &query)
{
    const std::vector<Token> found = tokenize(query.left(MaxQueryLength));
    return found.empty() ? QString() : column + " : (\""_L1 + joined(found) + "\")"_L1;
}
