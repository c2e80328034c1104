#include "frame/Text.h"

#include <QRegularExpression>

#include <algorithm>
#include <memory>
#include <unicode/ubrk.h>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

// In such a text every unit is a character by itself. CR LF is one character, hence the exclusion.
bool isPlainAscii(QStringView text)
{
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() < 0x80 && c != u'\r'; });
}

/// Walks the boundaries between characters. ICU's and not Qt's: Qt 6.4 cuts a flag in two behind an emoji.
class Boundaries {
public:
    explicit Boundaries(QStringView text)
    {
        UErrorCode status = U_ZERO_ERROR;
        ubrk_setText(iterator(), text.utf16(), static_cast<int32_t>(text.size()), &status);
    }

    /// The end of the next character, or -1 behind the last one.
    qsizetype next() { return ubrk_next(iterator()); }

    bool isAt(qsizetype position) { return ubrk_isBoundary(iterator(), static_cast<int32_t>(position)); }

private:
    static UBreakIterator *iterator()
    {
        static thread_local const Iterator shared = [] {
            UErrorCode status = U_ZERO_ERROR;
            return Iterator(ubrk_open(UBRK_CHARACTER, "", nullptr, 0, &status));
        }();
        return shared.get();
    }

    struct Close {
        void operator()(UBreakIterator *opened) const { ubrk_close(opened); }
    };
    using Iterator = std::unique_ptr<UBreakIterator, Close>;
};

template <class Unwanted> QString trimmedWhere(const QString &text, Unwanted unwanted)
{
    qsizetype from = 0, to = text.size();
    while (from < to && unwanted(text[from]))
        ++from;
    while (to > from && unwanted(text[to - 1]))
        --to;
    return text.mid(from, to - from);
}

} // namespace

qsizetype characterCount(QStringView text)
{
    if (isPlainAscii(text))
        return text.size();
    Boundaries boundaries(text);
    qsizetype count = 0;
    while (boundaries.next() != -1)
        ++count;
    return count;
}

QString firstCharacters(const QString &text, qsizetype count)
{
    if (count <= 0)
        return {};
    if (text.size() <= count || isPlainAscii(text))
        return text.left(count);
    Boundaries boundaries(text);
    qsizetype end = 0;
    for (; count > 0; --count) {
        const qsizetype next = boundaries.next();
        if (next == -1)
            return text;
        end = next;
    }
    return text.left(end);
}

QStringList characters(const QString &text)
{
    QStringList result;
    Boundaries boundaries(text);
    qsizetype from = 0;
    for (qsizetype to = boundaries.next(); to != -1; to = boundaries.next()) {
        result.append(text.mid(from, to - from));
        from = to;
    }
    return result;
}

bool isBetweenCharacters(const QString &text, qsizetype position)
{
    return position >= 0 && position <= text.size()
        && (isPlainAscii(text) || Boundaries(text).isAt(position));
}

bool isBlank(QChar c)
{
    return c == u'\t' || c.category() == QChar::Separator_Space;
}

QString trimmedBlanks(const QString &text)
{
    return trimmedWhere(text, isBlank);
}

QString trimmedSpace(const QString &text)
{
    return trimmedWhere(text, [](QChar c) { return c.isSpace(); });
}

QString trimmedOf(const QString &text, QStringView unwanted)
{
    return trimmedWhere(text, [unwanted](QChar c) { return unwanted.contains(c); });
}

QString withoutControls(const QString &text)
{
    static const QRegularExpression unwanted(
        u"[\\p{Cc}\\p{Zl}\\p{Zp}\\x{061C}\\x{200E}\\x{200F}\\x{202A}-\\x{202E}\\x{2066}-\\x{2069}]"_s);
    return QString(text).remove(unwanted);
}

QString withoutSecret(const QString &text, const QString &secret)
{
    static const QRegularExpression bearer(
        u"\\bbearer\\s+[^\\s\"'<>,;]+"_s, QRegularExpression::CaseInsensitiveOption);
    QString shown = text;
    if (!secret.isEmpty()) {
        QString escaped = secret; // as some write it in JSON
        shown.replace(escaped.replace(u'/', u"\\/"_s), u"…"_s).replace(secret, u"…"_s);
    }
    return shown.replace(bearer, u"…"_s);
}

QString wellFormed(const QString &text)
{
    if (text.isValidUtf16())
        return text;
    QString result = text;
    for (qsizetype i = 0; i < result.size(); ++i) {
        const bool paired =
            result[i].isHighSurrogate() && i + 1 < result.size() && result[i + 1].isLowSurrogate();
        if (paired)
            ++i;
        else if (result[i].isSurrogate())
            result[i] = QChar::ReplacementCharacter;
    }
    return result;
}

} // namespace nimbrelle
