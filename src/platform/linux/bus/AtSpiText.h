#pragma once

#include "platform/linux/bus/AtSpiElements.h"
#include "platform/linux/bus/AtSpiQuestions.h"
#include "platform/linux/bus/FlowingText.h"

namespace nimbrelle {

/// The text of elements as a reader sees it. Browsers make an element of its own of each link and each
/// emphasis, with U+FFFC in its place, and of each line of a PDF: their texts are put together again, as far
/// as the answers come in time.
class AtSpiText {
public:
    explicit AtSpiText(AtSpiQuestions &questions) : m_questions(questions) { }

    /// Some programs gather an element's attributes only once somebody has asked, so this asks early.
    void prepare(const AccessibleElement &element);
    QCoro::Task<std::optional<MarkedText>> marked(AccessibleElement element, qsizetype reach);

private:
    /// Offsets as the program counts.
    struct Range {
        int start;
        int end;
    };
    struct Extent {
        int start = 0; ///< of what is marked
        int end = 0;
        std::optional<int> characters; ///< of the whole text

        Range around(int reach) const;
    };
    struct Pieces {
        QString left;
        QString selected;
        QString right;
    };
    struct Embedded {
        atspi::Elements elements; ///< of the whole text; none when they are not known
        qsizetype earlier = 0; ///< how many of them stand before the pieces
    };
    struct Content {
        QString text;
        FlowingText::Flow flow;
    };
    struct Place {
        FlowingText::Flow flow = FlowingText::Flow::block;
        std::optional<AccessibleElement> parent;
    };

    static constexpr int toEnd = -1;

    QCoro::Task<std::optional<MarkedText>> markedIn(AccessibleElement element, qsizetype reach, int depth);
    QCoro::Task<std::optional<Extent>> extentOf(AccessibleElement element);
    QCoro::Task<std::optional<Pieces>> piecesOf(AccessibleElement element, Extent extent, Range range);
    QCoro::Task<std::optional<QString>> textBetween(AccessibleElement element, int start, int end);
    QCoro::Task<Embedded> embeddedRound(
        AccessibleElement element, Pieces pieces, Range range, int characters);
    QCoro::Task<atspi::Elements> elementsIn(AccessibleElement element, qsizetype count);
    QCoro::Task<atspi::Elements> linksIn(AccessibleElement element, qsizetype count);
    QCoro::Task<TextPiece> filled(Pieces pieces, Embedded embedded);
    /// Leaves out what stands farther apart than `widest`.
    QCoro::Task<FlowingText> addFilled(FlowingText to, QString text, atspi::Elements embedded, int depth,
        FlowingText::Flow widest = FlowingText::Flow::block);
    QCoro::Task<Content> contentOf(AccessibleElement element, int depth);
    QCoro::Task<Place> placeOf(AccessibleElement element);
    QCoro::Task<TextPiece> widened(TextPiece piece, AccessibleElement element, Place place);

    AtSpiQuestions &m_questions;
};

} // namespace nimbrelle
