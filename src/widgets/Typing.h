#pragma once

#include <QObject>

class QLineEdit;
class QWidget;

namespace nimbrelle {

/// Keeps Return from a field while an input method composes in it: the key then belongs to the composing, and
/// without this the field, or its dialog, would take the half-made text for entered.
class ComposingGuard : public QObject {
    Q_OBJECT

public:
    /// Lives as long as the field.
    explicit ComposingGuard(QWidget &field);

    bool isComposing() const { return m_isComposing; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool m_isComposing = false;
};

/// Keeps a blank from replacing what is selected only because the user came to the field with Tab: the blank
/// goes behind it. Anything else that is typed replaces it as everywhere.
class SpaceGuard : public QObject {
    Q_OBJECT

public:
    /// Lives as long as the field.
    explicit SpaceGuard(QLineEdit &field);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QLineEdit &m_field;
    bool m_isFresh = false; // come by Tab, and nothing done since
};

} // namespace nimbrelle
