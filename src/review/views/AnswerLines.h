#pragma once

#include "review/ReviewScreen.h"
#include "review/views/ReviewParts.h"
#include "widgets/Layouts.h"
#include "widgets/ReadText.h"

/// The lines of which the review screens put an answer together. `width` is all that there is, in
/// device-independent pixels.
namespace nimbrelle {

/// Word class, meaning and tone.
QWidget *makeMeaningRow(const Theme &theme, const WordEntry &entry, const ReadText::Look &look, int width);
/// Null without one.
QWidget *makeDefinition(const Theme &theme, const WordEntry &entry, TextType type);
/// The form that was wanted and the word that it comes from; null when they are the same.
QWidget *makeBaseRow(const Theme &theme, const ReviewQuestion &question);
/// The translation, behind a sign when the sentence was made up; null when there is nothing to show.
QWidget *makeTranslation(const Theme &theme, const ReviewQuestion &question, TextType type);
/// Null without one.
QWidget *makeMnemonic(const Theme &theme, const WordEntry &entry);
/// The verdict's disc and what there is to say with it.
QWidget *makeVerdict(const Theme &theme, const ReviewSession::Revealed &revealed);
/// What became of the word, or the offer to lay it aside; null for none.
QWidget *makeBanner(const ReviewParts &parts, ReviewScreen::Banner banner);

} // namespace nimbrelle
