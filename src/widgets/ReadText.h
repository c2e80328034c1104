#pragma once

#include "frame/InlineMarkdown.h"
#include "widgets/Theme.h"

#include <QTextBlock>
#include <QTextEdit>

#include <memory>
#include <optional>

namespace nimbrelle {

/// Text to read and to select: wraps, and keeps an exact distance of lines whatever scripts they mix. It is
/// as high as its text, so it never scrolls. Has the focus, if at all, while something is selected, and
/// leaves all keys but those that copy and select to its window.
class ReadText : public QTextEdit {
    Q_OBJECT

public:
    struct Look {
        TextType type = TextType::text;
        Tone tone = Tone::ink;
        std::optional<QFont::Weight> weight = std::nullopt; ///< the type's own unless given
        std::optional<double> pitch = std::nullopt; ///< in points; the type's own unless given
        std::optional<double> gap = std::nullopt; ///< of an empty line; as the others unless given
        std::optional<TextType> line = std::nullopt; ///< the type of a text beside it, to share its line
    };

    ReadText(const Theme &theme, Look look, QWidget *parent = nullptr);

    void setPlain(const QString &text);
    void setRuns(const QList<StyledRun> &runs);
    /// The same, but leaves the beginning that stays as it is alone, and with it what is selected there.
    void growTo(const QList<StyledRun> &runs);
    /// Bold and in the accent; offsets in UTF-16 units of the text.
    void mark(qsizetype from, qsizetype length);

    /// The width that needs no wrapping, in device-independent pixels.
    int naturalWidth() const;

    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;

private:
    double pitch() const;
    void setOnMiddle();
    QTextCharFormat baseFormat() const;
    QTextCharFormat formatOf(const TextStyle &style) const;
    void write(QTextCursor &cursor, const QList<StyledRun> &runs);
    void setPitches(QTextBlock from);
    QTextDocument &measure() const;
    void forgetMeasure();
    QSize naturalSize() const;

    const Theme &m_theme;
    const Look m_look;
    QList<StyledRun> m_runs;
    mutable std::unique_ptr<QTextDocument> m_measure; // asked for sizes, so that asking never relays us out
    mutable QSize m_natural; // without wrapping; empty before it was asked for
    mutable QHash<int, int> m_heights; // of narrower widths
};

/// With an object name; `what` tells a screen reader what it is.
ReadText *makeReadText(const Theme &theme, const QString &name, const QString &what, const QString &text,
    const ReadText::Look &look, QWidget *parent = nullptr);

/// The beginning of `text` that fits into so many lines, with an ellipsis where something was cut.
QString cutToLines(const QString &text, const QFont &font, int width, int lines);

} // namespace nimbrelle
