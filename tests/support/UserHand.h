#pragma once

#include <QAbstractButton>
#include <QCoreApplication>
#include <QDir>
#include <QInputMethodEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QTest>
#include <QTextEdit>
#include <QWidget>

#include <gtest/gtest.h>
#include <stdexcept>

namespace nimbrelle {

/// The user's part in a screen, played by the names of what there is to see and to press.
class UserHand {
public:
    explicit UserHand(QWidget &screen) : m_screen(screen) { }

    static void settle()
    {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
    }

    template <class Widget = QWidget> Widget *find(const char *name) const
    {
        return m_screen.findChild<Widget *>(QString::fromLatin1(name));
    }
    bool shows(const char *name) const
    {
        const QWidget *widget = find(name);
        return widget && widget->isVisible();
    }
    static QString textOf(const QWidget *widget)
    {
        if (const auto *edit = qobject_cast<const QTextEdit *>(widget))
            return edit->toPlainText();
        if (const auto *label = qobject_cast<const QLabel *>(widget))
            return label->text();
        if (const auto *field = qobject_cast<const QLineEdit *>(widget))
            return field->text();
        return widget ? widget->accessibleName() : QString();
    }
    /// Empty for what is not there.
    QString text(const char *name) const { return textOf(find(name)); }
    /// Of all of that name, in reading order.
    QStringList texts(const char *name) const
    {
        QStringList all;
        for (const QWidget *widget : m_screen.findChildren<QWidget *>(QString::fromLatin1(name)))
            all.append(textOf(widget));
        return all;
    }
    void press(const char *name, qsizetype which = 0) const
    {
        const auto buttons = m_screen.findChildren<QAbstractButton *>(QString::fromLatin1(name));
        if (buttons.size() <= which)
            throw std::runtime_error(std::string("no button ") + name);
        QTest::mouseClick(buttons[which], Qt::LeftButton);
        settle();
    }
    void type(const char *name, const QString &text) const
    {
        auto *field = find<QLineEdit>(name);
        field->setFocus();
        field->selectAll();
        QTest::keyClick(field, Qt::Key_Delete);
        QInputMethodEvent composed; // as Chinese text comes
        composed.setCommitString(text);
        QCoreApplication::sendEvent(field, &composed);
        settle();
    }
    void key(Qt::Key which, Qt::KeyboardModifiers modifiers = {}) const
    {
        QTest::keyClick(m_screen.window()->focusWidget(), which, modifiers);
        settle();
    }

    /// Nothing is cut off or without a name.
    void expectWhole(const QString &shot) const
    {
        for (const QWidget *widget : m_screen.findChildren<QWidget *>()) {
            const QString name = shot + u'/' + widget->objectName();
            if (const auto *button = qobject_cast<const QAbstractButton *>(widget))
                EXPECT_FALSE(button->accessibleName().isEmpty()) << name.toStdString();
            if (!widget->isVisible() || widget->objectName().isEmpty())
                continue;
            const auto *edit = qobject_cast<const QTextEdit *>(widget);
            const auto *label = qobject_cast<const QLabel *>(widget);
            const auto *button = qobject_cast<const QAbstractButton *>(widget);
            if (edit)
                EXPECT_GE(edit->height(), edit->heightForWidth(edit->width())) << name.toStdString();
            if (label)
                EXPECT_GE(label->width(), label->sizeHint().width()) << name.toStdString();
            if (button && !button->text().isEmpty())
                EXPECT_GE(button->width(), button->sizeHint().width()) << name.toStdString();
        }
    }
    /// No field or button lies on another.
    void expectApart(const QString &shot) const
    {
        QList<const QWidget *> controls;
        for (const QWidget *widget : m_screen.findChildren<QWidget *>())
            if (widget->isVisible() && !widget->objectName().isEmpty()
                && (qobject_cast<const QAbstractButton *>(widget) || qobject_cast<const QLineEdit *>(widget)))
                controls.append(widget);
        const auto placeOf = [this](const QWidget *widget) {
            return QRect(widget->mapTo(&m_screen, QPoint(0, 0)), widget->size());
        };
        for (qsizetype i = 0; i < controls.size(); ++i)
            for (qsizetype j = i + 1; j < controls.size(); ++j)
                EXPECT_FALSE(controls[i]->parent() == controls[j]->parent()
                    && placeOf(controls[i]).intersects(placeOf(controls[j])))
                    << shot.toStdString() << ": " << controls[i]->objectName().toStdString() << " and "
                    << controls[j]->objectName().toStdString();
    }
    /// In the folder NIMBRELLE_LOOK_DIR, if that is set, to be looked at.
    void keep(const QString &shot, double ratio = 2) const
    {
        const QString folder = qEnvironmentVariable("NIMBRELLE_LOOK_DIR");
        if (folder.isEmpty())
            return;
        QDir().mkpath(folder);
        QImage image(m_screen.size() * ratio, QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(ratio);
        image.fill(m_screen.palette().color(QPalette::Window));
        m_screen.render(&image, {}, {}, QWidget::DrawChildren);
        image.save(folder + u'/' + shot + QStringLiteral(".png"));
    }

private:
    QWidget &m_screen;
};

} // namespace nimbrelle
