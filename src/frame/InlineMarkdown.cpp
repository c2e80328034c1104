#include "frame/InlineMarkdown.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

// A piece of the text: plain, or a run of marks of which some may still find their partners.
struct Piece {
    QString text;
    TextStyle style;
    QChar mark; // null for plain text
    qsizetype markCount = 0; // as written; `text` shrinks as marks are used
    bool canOpen = false;
    bool canClose = false;
};

constexpr qsizetype longestAddress = 1000; // so that a heap of brackets stays cheap

enum class Neighbour { space, punctuation, eastAsian, other };

Neighbour neighbourAt(QStringView text, qsizetype position)
{
    if (position < 0 || position >= text.size())
        return Neighbour::space;
    char32_t codePoint = text[position].unicode();
    if (text[position].isLowSurrogate() && position > 0)
        codePoint = QChar::surrogateToUcs4(text[position - 1], text[position]);
    else if (text[position].isHighSurrogate() && position + 1 < text.size())
        codePoint = QChar::surrogateToUcs4(text[position], text[position + 1]);
    if (QChar::isSpace(codePoint))
        return Neighbour::space;
    const auto script = QChar::script(codePoint);
    const bool wide =
        (codePoint >= 0x3000 && codePoint <= 0x303f) || (codePoint >= 0xff00 && codePoint <= 0xff60);
    if (wide || script == QChar::Script_Han || script == QChar::Script_Hiragana
        || script == QChar::Script_Katakana || script == QChar::Script_Hangul)
        return Neighbour::eastAsian;
    return QChar::isPunct(codePoint) || QChar::isSymbol(codePoint) ? Neighbour::punctuation
                                                                   : Neighbour::other;
}

// Whether marks lean on the text at `inner`, with `outer` on their other side.
bool flanks(Neighbour inner, Neighbour outer)
{
    return inner != Neighbour::space && (inner != Neighbour::punctuation || outer != Neighbour::other);
}

bool isEscapable(QChar c)
{
    return c.unicode() < 0x80 && (c.isPunct() || c.isSymbol());
}

bool sumForbidsPair(const Piece &opener, const Piece &closer)
{
    if (!opener.canClose && !closer.canOpen)
        return false;
    return (opener.markCount + closer.markCount) % 3 == 0
        && (opener.markCount % 3 != 0 || closer.markCount % 3 != 0);
}

class Reader {
public:
    explicit Reader(const QString &text) : m_text(text) { }

    QList<StyledRun> read()
    {
        while (m_at < m_text.size())
            readNext();
        pairMarks(0);
        return runs();
    }

private:
    void readNext()
    {
        const QChar c = m_text[m_at];
        if (c == u'\\' && m_at + 1 < m_text.size() && isEscapable(m_text[m_at + 1])) {
            addPlain(m_text.sliced(m_at + 1, 1));
            m_at += 2;
        } else if (c == u'`') {
            readCode();
        } else if (c == u'*' || c == u'_' || c == u'~') {
            readMarks(c);
        } else if (c == u'[') {
            m_brackets.push_back(m_pieces.size());
            m_pieces.push_back({.text = u"["_s});
            ++m_at;
        } else if (c == u']') {
            readClosingBracket();
        } else {
            addPlain(c);
            ++m_at;
        }
    }

    void addPlain(const QString &text)
    {
        const bool startsPiece = m_pieces.empty() || !m_pieces.back().mark.isNull()
            || m_pieces.back().style != TextStyle{}
            || (!m_brackets.empty() && m_brackets.back() == m_pieces.size() - 1);
        if (startsPiece)
            m_pieces.push_back({});
        m_pieces.back().text += text;
    }

    qsizetype runLength(qsizetype from) const
    {
        qsizetype to = from;
        while (to < m_text.size() && m_text[to] == m_text[from])
            ++to;
        return to - from;
    }

    void readCode()
    {
        const qsizetype fence = runLength(m_at);
        qsizetype end = m_text.indexOf(u'`', m_at + fence);
        while (end != -1 && runLength(end) != fence)
            end = m_text.indexOf(u'`', end + runLength(end));
        if (end == -1) {
            addPlain(m_text.sliced(m_at, fence));
            m_at += fence;
            return;
        }
        QString code = m_text.sliced(m_at + fence, end - m_at - fence);
        if (code.startsWith(u' ') && code.endsWith(u' ') && !code.trimmed().isEmpty())
            code = code.sliced(1, code.size() - 2);
        m_pieces.push_back({.text = code, .style = {.code = true}});
        m_at = end + fence;
    }

    void readMarks(QChar mark)
    {
        const qsizetype count = runLength(m_at);
        const Neighbour before = neighbourAt(m_text, m_at - 1);
        const Neighbour after = neighbourAt(m_text, m_at + count);
        const bool left = flanks(after, before);
        const bool right = flanks(before, after);
        Piece piece{.text = m_text.sliced(m_at, count), .mark = mark, .markCount = count};
        // Underscores inside a word are part of it, as in some_name.
        piece.canOpen = left && (mark != u'_' || !right || before == Neighbour::punctuation);
        piece.canClose = right && (mark != u'_' || !left || after == Neighbour::punctuation);
        if (mark == u'~' && count != 2)
            piece.canOpen = piece.canClose = false;
        m_pieces.push_back(std::move(piece));
        m_at += count;
    }

    void readClosingBracket()
    {
        const std::optional<qsizetype> end = m_brackets.empty() ? std::nullopt : destinationEnd();
        if (!end) {
            if (!m_brackets.empty())
                m_brackets.pop_back();
            addPlain(u"]"_s);
            ++m_at;
            return;
        }
        const size_t opening = m_brackets.back();
        m_brackets.clear(); // a link holds no link, and none starts before it and ends after it
        pairMarks(opening + 1);
        m_pieces[opening].text.clear();
        const QString inside = m_text.sliced(m_at + 2, *end - m_at - 2).trimmed();
        const QString address = inside.section(u' ', 0, 0);
        for (size_t i = opening; i < m_pieces.size(); ++i) {
            m_pieces[i].style.link = address;
            m_pieces[i].canOpen = m_pieces[i].canClose = false;
        }
        m_at = *end + 1;
    }

    // The position of the ")" of "](address)", with the "]" at the reading position.
    std::optional<qsizetype> destinationEnd() const
    {
        if (m_at + 1 >= m_text.size() || m_text[m_at + 1] != u'(')
            return std::nullopt;
        qsizetype depth = 0;
        const qsizetype limit = std::min(m_text.size(), m_at + longestAddress);
        for (qsizetype i = m_at + 1; i < limit && m_text[i] != u'\n'; ++i) {
            if (m_text[i] == u'(')
                ++depth;
            else if (m_text[i] == u')' && --depth == 0)
                return i > m_at + 2 ? std::optional(i) : std::nullopt;
        }
        return std::nullopt;
    }

    void pairMarks(size_t from)
    {
        std::vector<size_t> openers;
        for (size_t i = from; i < m_pieces.size(); ++i) {
            while (m_pieces[i].canClose && !m_pieces[i].text.isEmpty() && closeWith(openers, i)) { }
            if (m_pieces[i].canOpen && !m_pieces[i].text.isEmpty())
                openers.push_back(i);
        }
    }

    bool closeWith(std::vector<size_t> &openers, size_t closing)
    {
        Piece &closer = m_pieces[closing];
        const auto found = std::find_if(openers.rbegin(), openers.rend(), [&](size_t i) {
            return m_pieces[i].mark == closer.mark && !sumForbidsPair(m_pieces[i], closer);
        });
        if (found == openers.rend())
            return false;
        openers.erase(found.base(), openers.end());
        Piece &opener = m_pieces[openers.back()];
        const qsizetype used = opener.text.size() >= 2 && closer.text.size() >= 2 ? 2 : 1;
        for (size_t i = openers.back() + 1; i < closing; ++i)
            apply(closer.mark, used, m_pieces[i].style);
        opener.text.chop(used);
        closer.text.chop(used);
        if (opener.text.isEmpty())
            openers.pop_back();
        return true;
    }

    static void apply(QChar mark, qsizetype count, TextStyle &style)
    {
        (mark == u'~' ? style.struck : count == 2 ? style.bold : style.italic) = true;
    }

    QList<StyledRun> runs() const
    {
        QList<StyledRun> result;
        for (const Piece &piece : m_pieces) {
            if (piece.text.isEmpty())
                continue;
            if (!result.isEmpty() && result.last().style == piece.style)
                result.last().text += piece.text;
            else
                result.append({.text = piece.text, .style = piece.style});
        }
        return result;
    }

    const QString &m_text;
    qsizetype m_at = 0;
    std::vector<Piece> m_pieces;
    std::vector<size_t> m_brackets; // "[" pieces that may still open a link
};

} // namespace

QList<StyledRun> inlineMarkdown(const QString &text)
{
    return Reader(text).read();
}

} // namespace nimbrelle
