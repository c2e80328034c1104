#pragma once

#include "platform/Speaker.h"
#include "widgets/Theme.h"

#include <QCoreApplication>
#include <QDir>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QTest>
#include <QTextEdit>

#include <gtest/gtest.h>
#include <stdexcept>

namespace nimbrelle {

struct ViewSpeaker final : Speaker {
    void speak(const QString &text) override { said.append(text); }
    QStringList said;
};

/// The user before one window: finds what there is to see and to press by its name, and types.
struct ViewStage {
    /// Shows the view in that size, in points of the design.
    static void show(QWidget &view, const Theme &theme, QSize size)
    {
        view.resize(theme.points(size.width()), theme.points(size.height()));
        view.show();
        view.activateWindow();
        settle();
    }
    static void settle()
    {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
    }

    explicit ViewStage(QWidget &shown) : view(shown) { }

    QList<QWidget *> all(const char *name) const
    {
        QList<QWidget *> visible;
        for (QWidget *each : view.findChildren<QWidget *>(QString::fromLatin1(name)))
            if (each->isVisible())
                visible.append(each);
        return visible;
    }
    /// The last of that name that can be seen, or null.
    QWidget *find(const char *name) const { return all(name).isEmpty() ? nullptr : all(name).last(); }
    bool shows(const char *name) const { return find(name); }
    bool isEnabled(const char *name) const { return shows(name) && find(name)->isEnabled(); }
    bool hasFocus(const char *name) const
    {
        return shows(name) && view.window()->focusWidget() == find(name);
    }
    /// Empty for what can't be seen.
    QString text(const char *name) const { return shows(name) ? textOf(find(name)) : QString(); }
    static QString textOf(const QWidget *widget)
    {
        if (const auto *edit = qobject_cast<const QTextEdit *>(widget))
            return edit->toPlainText();
        if (const auto *line = qobject_cast<const QLineEdit *>(widget))
            return line->text();
        const auto *label = qobject_cast<const QLabel *>(widget);
        return label && !label->text().isEmpty() ? label->text() : widget->accessibleName();
    }
    QRect place(const char *name) const
    {
        const QWidget *widget = find(name);
        return widget ? QRect(widget->mapTo(&view, QPoint(0, 0)), widget->size()) : QRect();
    }

    void press(const char *name)
    {
        auto *button = qobject_cast<QPushButton *>(find(name));
        if (!button)
            throw std::runtime_error(std::string("no button ") + name);
        button->click();
        settle();
    }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(focused(), key, modifiers);
        settle();
    }
    void type(const char *text)
    {
        QTest::keyClicks(focused(), QString::fromUtf8(text));
        settle();
    }
    /// What an input method shows before the user has chosen.
    void compose(const char *text)
    {
        QInputMethodEvent event(QString::fromUtf8(text), {});
        QCoreApplication::sendEvent(focused(), &event);
        settle();
    }
    void commit(const char *text)
    {
        QInputMethodEvent event;
        event.setCommitString(QString::fromUtf8(text));
        QCoreApplication::sendEvent(focused(), &event);
        settle();
    }
    QWidget *focused() const
    {
        QWidget *widget = view.window()->focusWidget();
        return widget ? widget : &view;
    }

    /// Nothing may be cut off at the side, and no text at its foot.
    void expectWhole(const QString &shot) const
    {
        for (const QWidget *widget : view.findChildren<QWidget *>()) {
            const QString name = widget->objectName();
            if (!widget->isVisible() || name.isEmpty() || name.startsWith(QStringLiteral("qt_")))
                continue;
            const auto *edit = qobject_cast<const QTextEdit *>(widget);
            const auto *label = qobject_cast<const QLabel *>(widget);
            if (edit && edit->isReadOnly())
                EXPECT_GE(edit->height(), edit->heightForWidth(edit->width()))
                    << shot.toStdString() << '/' << name.toStdString();
            const QWidget *holder = widget->parentWidget();
            EXPECT_TRUE(
                holder->rect().contains(widget->geometry()) || holder->objectName().startsWith(u"qt_"))
                << shot.toStdString() << '/' << name.toStdString();
            if (label)
                EXPECT_GE(label->width(), label->sizeHint().width())
                    << shot.toStdString() << '/' << name.toStdString();
        }
    }
    /// With NIMBRELLE_LOOK_DIR set a picture is kept there, to be looked at.
    void keep(const QString &name) const
    {
        expectWhole(name);
        const QString folder = qEnvironmentVariable("NIMBRELLE_LOOK_DIR");
        if (folder.isEmpty())
            return;
        QDir().mkpath(folder);
        QImage image(view.size() * 2, QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(2);
        view.render(&image);
        image.save(folder + u'/' + name + QStringLiteral(".png"));
    }

    QWidget &view;
};

} // namespace nimbrelle
