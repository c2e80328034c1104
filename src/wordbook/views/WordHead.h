#pragma once

#include "notebook/Catalogue.h"
#include "widgets/Theme.h"

class QWidget;

namespace nimbrelle {

class Speaker;

/// What the window of a word says of it first.
struct WordHead {
    QString headword;
    QString phonetic;
    QString pos;
    Register register_ = Register::neutral;
    QString meaningZh;
    QString definitionEn;
};

/// The word, how it is said, and its register in the corner. `type` is the size of the word.
QWidget *makeHeadLine(
    const Theme &theme, Speaker &speaker, const WordHead &head, TextType type, QWidget *parent = nullptr);

/// What it means, and below it the definition; what is empty is left out.
QWidget *makeMeaningLines(const Theme &theme, const WordHead &head, QWidget *parent = nullptr);

} // namespace nimbrelle
