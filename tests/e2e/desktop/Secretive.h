#pragma once

#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QWidget>

namespace nimbrelle {

/// A program that offers its marked text to nobody, but copies it when told to.
class Secretive : public QWidget {
public:
    explicit Secretive(Qt::CursorShape pointer = Qt::IBeamCursor)
    {
        setWindowTitle(QStringLiteral("Secretive"));
        setGeometry(300, 100, 400, 300);
        setCursor(pointer);
    }

    int copies = 0;
    QString marked = QStringLiteral("reluctant");

protected:
    void keyPressEvent(QKeyEvent *event) override
    {
        if (!event->matches(QKeySequence::Copy))
            return;
        ++copies;
        QGuiApplication::clipboard()->setText(marked);
    }
};

} // namespace nimbrelle
