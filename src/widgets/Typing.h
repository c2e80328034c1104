#pragma once

#include <QObject>

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

} // namespace nimbrelle
