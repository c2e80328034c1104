#pragma once

#include <QString>

namespace nimbrelle {

/// What kind of thing a marked text is.
struct SelectionKind {
    enum class Kind {
        word, ///< one to five words: look it up
        passage, ///< longer English: offer a translation
        ignored, ///< no English, or code or figures
    };

    Kind kind = Kind::ignored;
    QString text; ///< trimmed; of a word also without the punctuation and symbols round it; of ignored empty

    static SelectionKind classify(const QString &text);

    bool operator==(const SelectionKind &) const = default;
};

} // namespace nimbrelle
