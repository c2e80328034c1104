#pragma once

#include "ai/Contracts.h"

#include <QWidget>

class QHBoxLayout;
class QLineEdit;
class QPushButton;
class QScrollArea;
class QVBoxLayout;

namespace nimbrelle {

class AddWordModel;
class Speaker;
class Theme;

/// The content of the window in which a word is typed: the field on top, what the AI says of it below, and at
/// the foot what can be done with it.
class AddWordView : public QWidget {
    Q_OBJECT

public:
    AddWordView(const Theme &theme, AddWordModel &model, Speaker &speaker);

    /// What the content needs at that width, within the limits of the window.
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;

protected:
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    /// What the lower part was last made from.
    struct Shown {
        std::optional<LookupResult> result;
        bool isKnown = false;
        bool isSpelled = false;

        bool operator==(const Shown &) const = default;
    };

    void build();
    void addFields();
    QHBoxLayout *makeLookupRow();
    void takeFieldsFromModel();
    void refresh();
    void refreshStatus();
    void refreshResult();
    QWidget *makeActions();
    QPushButton *makeSaveButton();
    QPushButton *makeSpellingButton();
    int previewHeight(int width) const;
    void scrollBarTakesMargin(bool isScrolling);
    void arrange();

    const Theme &m_theme;
    AddWordModel &m_model;
    Speaker &m_speaker;

    QWidget *m_top = nullptr;
    QLineEdit *m_word = nullptr;
    QLineEdit *m_sentence = nullptr;
    QPushButton *m_addSentence = nullptr;
    QPushButton *m_lookup = nullptr;
    QWidget *m_running = nullptr;
    QVBoxLayout *m_status = nullptr;
    QScrollArea *m_preview = nullptr; // null without a result, as is
    QWidget *m_actions = nullptr;
    std::optional<Shown> m_shown;
    int m_wantedHeight = 0;
};

} // namespace nimbrelle
