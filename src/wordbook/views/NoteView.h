#pragma once

#include "notebook/Records.h"
#include "wordbook/views/WordbookParts.h"

#include <QWidget>

#include <functional>

namespace nimbrelle {

/// A question put to the AI and what it answered.
class NoteView : public QWidget {
    Q_OBJECT

public:
    /// `showOriginal` also shows the text that was asked about, with its translation and where it was met.
    NoteView(const WordbookParts &parts, const AINote &note, bool showOriginal,
        std::function<void()> onDelete, QWidget *parent = nullptr);

private:
    static QWidget *makeNote(const Theme &theme, const AINote &note, bool showOriginal, QWidget *parent);
};

} // namespace nimbrelle
