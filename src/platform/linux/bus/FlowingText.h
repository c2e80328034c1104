#pragma once

#include <QString>

namespace nimbrelle {

/// Pieces of text put together as they are read.
class FlowingText {
public:
    enum class Flow {
        inText, ///< as a link or an emphasis stands in its sentence
        line, ///< as one of several lines that a text was cut into
        block, ///< as a paragraph
    };

    void add(const QString &more, Flow flow);

    const QString &text() const { return m_text; }

private:
    QString m_text;
    Flow m_last = Flow::inText;
};

} // namespace nimbrelle
