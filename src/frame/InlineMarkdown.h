#pragma once

#include <QList>
#include <QString>

namespace nimbrelle {

/// How a piece of text is to look.
struct TextStyle {
    bool bold = false;
    bool italic = false;
    bool struck = false;
    bool code = false;
    QString link; ///< the address; empty for none

    bool operator==(const TextStyle &) const = default;
};

struct StyledRun {
    QString text;
    TextStyle style;

    bool operator==(const StyledRun &) const = default;
};

/// Reads Markdown's inline syntax: **bold**, *italic*, ~~struck~~, `code`, [links](address) and backslash
/// escapes. Everything else, white space, line breaks and list dashes too, stays as it is, and so does a
/// mark without its partner, as every text that is still streaming in has. Neighbouring runs differ in style.
/// The flanking rules are CommonMark's, eased beside East Asian text, which has no blanks round words.
QList<StyledRun> inlineMarkdown(const QString &text);

} // namespace nimbrelle
