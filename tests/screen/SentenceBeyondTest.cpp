#include "support/Await.h"
#include "support/GestureStage.h"

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

constexpr double letter = 10; // points; every character is as wide
constexpr double textHeight = 20;
constexpr double pitch = 26;
constexpr double firstRow = 350; // from the screen's top

struct PageText {
    double left;
    QStringList rows;
};

/// What an engine would read of the texts inside `area`, y downward: letters that the edges cut are misread.
QList<RecognizedLine> readIn(const QList<PageText> &page, const QRectF &area)
{
    QList<RecognizedLine> lines;
    for (const PageText &text : page)
        for (qsizetype row = 0; row < text.rows.size(); ++row) {
            const double top = firstRow + pitch * static_cast<double>(row);
            RecognizedLine line;
            for (qsizetype i = 0; i < text.rows[row].size(); ++i) {
                const QRectF whole(text.left + letter * static_cast<double>(i), top, letter, textHeight);
                const QRectF part = whole & area;
                if (part.isEmpty())
                    continue;
                const QRectF box((part.x() - area.x()) / area.width(),
                    (area.bottom() - part.bottom()) / area.height(), part.width() / area.width(),
                    part.height() / area.height());
                const QChar c = text.rows[row][i];
                line.text += part == whole || c == u' ' ? c : QChar(u'x');
                line.unitBoxes.append(c == u' ' ? QRectF() : box);
                line.box |= line.unitBoxes.last();
            }
            if (!line.box.isNull())
                lines.append(line);
        }
    return lines;
}

} // namespace

class SentenceBeyond : public testing::Test, protected GestureStage {
protected:
    SentenceBeyond()
    {
        window.pointed.area = {100, 0, 1000, 800};
        capture.willCapture = [this](const QRectF &area) { recognizer.lines = readIn(page, area); };
    }

    /// Of the word whose letter in this column of the second row the pointer is on.
    std::optional<QString> contextAt(qsizetype column)
    {
        const QPointF at(
            page[0].left + letter * (static_cast<double>(column) + 0.5), 800 - firstRow - pitch - 10);
        const auto pointed = await(ocr.recognize(at, ScreenOCR::Seek::word, {}));
        if (!pointed)
            return std::nullopt;
        const auto before = await(ocr.take(at));
        const auto marked = await(ocr.contextOf({.text = *pointed->word, .from = at, .to = at}, before, {}));
        EXPECT_EQ(marked, pointed->context);
        return marked;
    }

    QList<PageText> page{{130,
        {u"Around midnight the gale tore an awning from the quay and flung it across the rigging of it"_s,
            u"and the youngest deckhand crawled forward with a blunt knife and to general astonishment freed"_s,
            u"the halyard in a minute."_s}}};
};

TEST_F(SentenceBeyond, IsWholeWhereverInAWideColumnThePointerIs)
{
    const QString &row = page[0].rows[1];
    int words = 0;
    for (qsizetype column = 0; column < row.size(); ++column)
        if (const auto context = contextAt(column)) {
            EXPECT_EQ(*context, page[0].rows.join(u' ')) << "at column " << column;
            ++words;
        }
    EXPECT_GT(words, row.size() * 2 / 3);
}

TEST_F(SentenceBeyond, NothingComesFromAnotherWindowOrFromBesideTheColumn)
{
    page.append({1101, {u"of"_s, u"another"_s, u"window"_s}});
    page.append({1050 + 4 * letter + 1, {u"15"_s, u"16"_s, u"17"_s}}); // wider off than a blank
    page[0].rows[0].truncate(90);
    page[0].rows[1].truncate(87);
    EXPECT_EQ(contextAt(60), page[0].rows.join(u' '));
    window.pointed = {}; // of no known window nothing more is read
    capture.requests.clear();
    EXPECT_NE(contextAt(60), page[0].rows.join(u' '));
    EXPECT_EQ(capture.requests.size(), 2U);
}

TEST_F(SentenceBeyond, ANarrowColumnIsReadOnce)
{
    for (QString &row : page[0].rows)
        row = row.left(40).trimmed();
    page[0].left = 430;
    EXPECT_EQ(contextAt(21), page[0].rows.join(u' '));
    EXPECT_EQ(capture.requests.size(), 2U);
}

} // namespace nimbrelle
