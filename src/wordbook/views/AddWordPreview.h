#pragma once

#include "ai/Contracts.h"

#include <QWidget>

namespace nimbrelle {

class AddWordModel;
class Speaker;
class Theme;

/// What the AI says of the word that was typed. Made for the model's result of the moment.
class AddWordPreview : public QWidget {
    Q_OBJECT

public:
    AddWordPreview(const Theme &theme, AddWordModel &model, Speaker &speaker);

private:
    QWidget *makeAlternatives(const QList<LookupResult::Alternative> &alternatives);
    QWidget *makeAlternative(const LookupResult::Alternative &alternative);

    const Theme &m_theme;
    AddWordModel &m_model;
};

} // namespace nimbrelle
