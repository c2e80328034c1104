#pragma once

#include <QByteArray>
#include <QWidget>

namespace nimbrelle {

class Theme;

/// A text as a QR code (correction level M) for a camera: black on white in every theme, whole device pixels
/// to a module. Nothing is shown for a text that is too long for one.
class QrCode : public QWidget {
    Q_OBJECT

public:
    QrCode(const Theme &theme, const QString &text, QWidget *parent = nullptr);

    /// The text was too long.
    bool isEmpty() const { return m_side == 0; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    const Theme &m_theme;
    QByteArray m_modules; // row by row, 1 for black
    int m_side = 0; // modules without the quiet zone
};

} // namespace nimbrelle
